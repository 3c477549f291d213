"""What tests on stores share: the test files, the program that makes databases of them, and sessions."""
import pathlib
import subprocess
import tempfile
import unittest
from xml.sax.saxutils import escape

import storefabric

DATA = pathlib.Path(__file__).resolve().parents[1] / "data"
PROGRAM = pathlib.Path(storefabric.__file__).resolve().parents[1] / "bin" / "storefabric"


def run(*arguments):
    subprocess.run([PROGRAM, *arguments], check=True, capture_output=True)


def temporary_folder(test):
    """A folder that goes with a test, or with a class of tests."""
    folder = tempfile.TemporaryDirectory()
    getattr(test, "addClassCleanup" if isinstance(test, type) else "addCleanup")(folder.cleanup)
    return pathlib.Path(folder.name)


def connect(path):
    plugin = "SQL" if str(path).endswith(".sqlite") else "ATFX"
    env = storefabric.CreateObject("VEX.DataStoreEnvironment")
    return env.ConnectDataStoreByParameter(plugin, f"<filename>{escape(str(path))}</filename>")


class StoreTest(unittest.TestCase):
    def assert_raises(self, number, use, text=None):
        with self.assertRaises(storefabric.DispatchError) as caught:
            use()
        self.assertEqual(caught.exception.number, number)
        if text is not None:
            self.assertEqual(str(caught.exception), text)
