"""The examples that add to a store, run on a copy of the test bench's model."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
MODEL = ROOT / "resources" / "models" / "testbench.atfx"
SCRIPT = [sys.executable, "-B", ROOT / "examples" / "add-measurement.py"]
PROGRAM = [os.environ["EXAMPLE"]]
TOLD = """\
Measurement: Slam 1
Day: Monday
Variant: Rear doors
Test: Door slam
21.5 degrees, window open
Acceleration in m/s²
"""


def run(*arguments):
    return subprocess.run([str(one) for one in arguments], capture_output=True, text=True)


class AddMeasurement(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = pathlib.Path(folder.name) / "bench.atfx"
        shutil.copy(MODEL, self.file)

    def test_both_languages_tell_the_same(self):
        database = self.file.with_suffix(".sqlite")
        self.assertEqual(run(os.environ["STOREFABRIC"], "import", self.file, database).returncode, 0)
        for example in SCRIPT, PROGRAM:
            for store in self.file, database:
                with self.subTest(example=example[-1], store=store.suffix):
                    done = run(*example, store)
                    self.assertEqual((done.stderr, done.stdout), ("", TOLD))

    def test_a_store_that_is_not_there(self):
        nowhere = self.file.with_name("nowhere.atfx")
        for example in SCRIPT, PROGRAM:
            with self.subTest(example=example[-1]):
                done = run(*example, nowhere)
                self.assertEqual((done.returncode, done.stdout, done.stderr),
                                 (1, "", f"Opening the Sifter {nowhere} causes an error.\n"))


if __name__ == "__main__":
    unittest.main()
