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
EXAMPLES = [[sys.executable, "-B", ROOT / "examples" / "add-measurement.py"], [os.environ["EXAMPLE"]]]
TOLD = """\
Measurement: Slam 1
Day: Monday
Variant: Rear doors
Test: Door slam
21.5 degrees, window open
Acceleration in m/s²
"""


def run(*arguments):
    done = subprocess.run([str(one) for one in arguments], capture_output=True, text=True)
    return done.returncode, done.stdout, done.stderr


class AddMeasurement(unittest.TestCase):
    def test_both_languages_tell_the_same(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        folder = pathlib.Path(temporary.name)
        file, database = folder / "bench.atfx", folder / "bench.sqlite"
        shutil.copy(MODEL, file)
        self.assertEqual(run(os.environ["STOREFABRIC"], "import", file, database)[0], 0)
        for example in EXAMPLES:
            with self.subTest(example=example[-1]):
                self.assertEqual(run(*example, file), (0, TOLD, ""))
                self.assertEqual(run(*example, database), (0, TOLD, ""))
                self.assertEqual(run(*example, folder / "nowhere.atfx"),
                                 (1, "", f"Opening the Sifter {folder}/nowhere.atfx causes an error.\n"))
                code, out, err = run(*example)
                self.assertEqual((code in (1, 2), out), (True, ""))
                self.assertRegex(err, r"add-measurement(\.py campaign\.atfx| STORE\.atfx)")


if __name__ == "__main__":
    unittest.main()
