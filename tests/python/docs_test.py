"""What the documentation and the examples show is what happens."""
import ast
import contextlib
import io
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import storefabric

ROOT = pathlib.Path(__file__).resolve().parents[2]
BENCH = ROOT / "tests" / "data" / "store" / "bench.atfx"
# A block of Python, and the block of its output if there is one.
BLOCK = re.compile(r"^```python\n(.*?)^```\n(?:```text\n(.*?)^```\n)?", re.S | re.M)


class Documentation(unittest.TestCase):
    def test_the_page_on_scripting(self):
        blocks = BLOCK.findall((ROOT / "docs" / "scripting.md").read_text(encoding="utf-8"))
        self.assertGreater(len(blocks), 4)
        names = {}
        with tempfile.TemporaryDirectory() as folder:
            shutil.copy(BENCH, folder)
            before = os.getcwd()
            self.addCleanup(os.chdir, before)
            os.chdir(folder)
            for code, expected in blocks:
                told = io.StringIO()
                with contextlib.redirect_stdout(told):
                    exec(compile(code, "scripting.md", "exec"), names)
                self.assertEqual(told.getvalue(), expected)
            os.chdir(before)


    def test_the_stub_lists_what_the_module_has(self):
        stub = ast.parse((ROOT / "python" / "storefabric.pyi").read_text(encoding="utf-8"))
        listed = {}
        for node in stub.body:
            if isinstance(node, ast.ClassDef):
                members = (getattr(one, "name", None) or one.target.id for one in node.body
                           if not isinstance(one, ast.Expr))
                listed[node.name] = set(members)
            elif isinstance(node, ast.FunctionDef):
                listed[node.name] = set()
            elif isinstance(node, ast.AnnAssign):
                listed[node.target.id] = set()
        self.assertEqual(set(listed), {name for name in dir(storefabric) if not name.startswith("_")})
        for name in set(listed) - {"DispatchError"}:  # its attributes are an object's own
            has = set(dir(getattr(storefabric, name)))
            if name == "Object":
                has.add("__getattr__")  # which is how a stub says that there are other names
            self.assertLessEqual(listed[name], has, name)


class Examples(unittest.TestCase):
    def walk(self, *arguments):
        script = ROOT / "examples" / "walk-model.py"
        return subprocess.run([sys.executable, "-B", script, *arguments], capture_output=True, text=True)

    def test_walking_a_model(self):
        done = self.walk(BENCH)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.stdout, """\
Test (aotest)
    Id                      longlong  1..1    id
    Name                    string    1..1    name
    Measurements            -> Measurement.Test                             0..n    children
Measurement (aomeasurement)
    Id                      longlong  1..1    id
    Name                    string    1..1    name
    Test                    -> Test.Measurements                            1..1    test
""")

    def test_stores_that_are_not_there(self):
        for store, text in [
            ("nowhere", "nowhere: Opening the Sifter nowhere causes an error.\n"),
            ("none.atfx", "none.atfx: Opening the Sifter none.atfx causes an error.\n"),
            ("none.SQLite", "none.SQLite: Opening the Sifter none.SQLite causes an error.\n"),
        ]:
            with self.subTest(store=store):
                done = self.walk(store)
                self.assertEqual((done.returncode, done.stdout, done.stderr), (1, "", text))


if __name__ == "__main__":
    unittest.main()
