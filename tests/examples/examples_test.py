"""The examples that add to a store, run on a copy of the test bench's model, and the demonstration
store as its browse path shows it."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import storefabric

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

    def test_no_store_is_named(self):
        for example in SCRIPT, PROGRAM:
            done = run(*example)
            self.assertEqual(done.stdout, "")
            self.assertRegex(done.stderr, r"add-measurement(\.py campaign\.atfx| STORE\.atfx)")
            self.assertIn(done.returncode, (1, 2))

    def test_a_store_that_is_not_there(self):
        nowhere = self.file.with_name("nowhere.atfx")
        for example in SCRIPT, PROGRAM:
            with self.subTest(example=example[-1]):
                done = run(*example, nowhere)
                self.assertEqual((done.returncode, done.stdout, done.stderr),
                                 (1, "", f"Opening the Sifter {nowhere} causes an error.\n"))


class Demonstration(unittest.TestCase):
    PATH = [("Test", "", "Variants"), ("Variant", "Test", "Days"), ("Day", "Variant", "Measurements"),
            ("Measurement", "Day", "MeasurementQuantities"), ("MeasurementQuantity", "Measurement", "")]

    def walk(self, file):
        """The path's levels, and the names down the last branch of the tree, which leads up again."""
        plugin = "SQL" if file.suffix == ".sqlite" else "ATFX"
        environment = storefabric.CreateObject("VEX.DataStoreEnvironment")
        store = environment.ConnectDataStoreByParameter(plugin, f"<filename>{file}</filename>")
        levels, level = [], store.BrowseSettings.RootEntity
        while level:
            levels.append((level.EntityType.Name, level.ParentPath, level.ChildPath))
            level = level.ChildEntity
        names, below = [], store.RootElements
        while below:
            element = below(len(below) - 1)
            names.append(element.Name)
            below = element.Children
        for name in reversed(names):
            self.assertEqual(element.Name, name)
            element = element.Parent
        self.assertIsNone(element)
        return levels, names

    def test_its_path_leads_from_tests_to_channels(self):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "demo.atfx"
            database = file.with_suffix(".sqlite")
            self.assertEqual(run(os.environ["STOREFABRIC"], "demo", file).returncode, 0)
            self.assertEqual(run(os.environ["STOREFABRIC"], "import", file, database).returncode, 0)
            levels, names = self.walk(file)
            self.assertEqual(levels, self.PATH)
            self.assertEqual(len(names), len(levels))
            self.assertEqual(self.walk(database), (levels, names))


if __name__ == "__main__":
    unittest.main()
