"""What the documentation and the examples show is what happens."""
import ast
import contextlib
import io
import os
import re
import shutil
import subprocess
import sys
import unittest

import storefabric
from stores import DATA, temporary_folder

ROOT = DATA.parents[1]
BENCH = DATA / "store" / "bench.atfx"
# A block of Python, and the block of its output if there is one.
BLOCK = re.compile(r"^```python\n(.*?)^```\n(?:```text\n(.*?)^```\n)?", re.S | re.M)


def names_of(node):
    """The names that a statement of the stub declares."""
    name = getattr(node, "name", None) or getattr(getattr(node, "target", None), "id", None)
    return {name} - {None}


class Documentation(unittest.TestCase):
    def test_the_page_on_scripting(self):
        blocks = BLOCK.findall((ROOT / "docs" / "scripting.md").read_text(encoding="utf-8"))
        self.assertGreater(len(blocks), 4)
        names = {}
        shutil.copy(BENCH, folder := temporary_folder(self))
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder)
        for code, expected in blocks:
            told = io.StringIO()
            with contextlib.redirect_stdout(told):
                exec(compile(code, "scripting.md", "exec"), names)
            self.assertEqual(told.getvalue(), expected)

    def test_the_stub_lists_what_the_module_has(self):
        stub = ast.parse((ROOT / "python" / "storefabric.pyi").read_text(encoding="utf-8"))
        listed = {name: {member for one in getattr(node, "body", []) for member in names_of(one)}
                  for node in stub.body for name in names_of(node)}
        self.assertEqual(set(listed), {name for name in dir(storefabric) if not name.startswith("_")})
        for name in set(listed) - {"DispatchError"}:  # its attributes are an object's own
            # A stub says by "__getattr__" that there are other names.
            self.assertLessEqual(listed[name] - ({"__getattr__"} if name == "Object" else set()),
                                 set(dir(getattr(storefabric, name))), name)


class Examples(unittest.TestCase):
    def walk(self, store):
        done = subprocess.run([sys.executable, "-B", ROOT / "examples" / "walk-model.py", store],
                              capture_output=True, text=True)
        return done.returncode, done.stdout, done.stderr

    def test_walking_a_model(self):
        self.assertEqual(self.walk(BENCH), (0, """\
Test (aotest)
    Id                      longlong  1..1    id
    Name                    string    1..1    name
    Measurements            -> Measurement.Test                             0..n    children
Measurement (aomeasurement)
    Id                      longlong  1..1    id
    Name                    string    1..1    name
    Test                    -> Test.Measurements                            1..1    test
""", ""))
        for store in "nowhere", "none.atfx", "none.SQLite":
            self.assertEqual(self.walk(store), (1, "", f"{store}: Opening the Sifter {store} causes an error.\n"))


if __name__ == "__main__":
    unittest.main()
