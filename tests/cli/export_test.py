"""The verb "export": nothing is lost, nothing is replaced unasked, nothing is left half done."""
import os
import pathlib
import re
import shutil
import unittest

from program import demo, folder, output, run


def normalised(file):
    """The text without what must differ: the time, and the names of component files."""
    text = re.sub(r"<export_date_time>\d{14}<", "<", file.read_text(encoding="utf-8"))
    return re.sub(rf"{file.stem}_(\d+)\.btf", "COMPONENT", text)


def components(file):
    return sorted(file.parent.glob(f"{file.stem}_*.btf"))


class Export(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(folder) / self.id()
        self.folder.mkdir()

    def files(self):
        return sorted(path.name for path in self.folder.iterdir())

    def test_an_export_of_an_export_is_the_same(self):
        first, second = self.folder / "first.atfx", self.folder / "second.atfx"
        self.assertEqual((0, "", ""), run("export", demo(), first))
        output("export", first, second)
        # Nothing is lost on the way either.
        self.assertEqual(normalised(demo()), normalised(first))
        self.assertEqual(normalised(first), normalised(second))
        contents = [[path.read_bytes() for path in components(file)]
                    for file in (demo(), first, second)]
        self.assertTrue(contents[0])
        self.assertEqual(contents[0], contents[1])
        self.assertEqual(contents[1], contents[2])

    def test_a_file_is_replaced_only_when_told_to(self):
        target = self.folder / "target.atfx"
        target.write_text("precious")
        code, _, err = run("export", demo(), target)
        self.assertEqual(1, code)
        self.assertIn("--force", err)
        self.assertEqual("precious", target.read_text())
        for _ in range(2):  # the second time over a file of our own, whose component goes with it
            output("export", demo(), target, "--force")
            self.assertEqual(normalised(demo()), normalised(target))
            self.assertEqual(2, len(self.files()), self.files())

    def test_source_and_target_are_never_the_same(self):
        source = self.folder / "source.atfx"
        shutil.copy(demo(), source)
        shutil.copy(components(demo())[0], self.folder)
        before = source.read_bytes()
        os.symlink("source.atfx", self.folder / "link.atfx")
        os.link(source, self.folder / "hardlink.atfx")
        for target in ("source.atfx", "./source.atfx", "link.atfx", "hardlink.atfx"):
            with self.subTest(target):
                code, _, err = run("export", "source.atfx", target, "--force", cwd=self.folder)
                self.assertEqual(1, code)
                self.assertIn("same file", err)
        self.assertEqual(before, source.read_bytes())

    def test_refused_targets(self):
        cases = {"out.txt": "ends in .atfx", "out": "ends in .atfx",
                 "missing/out.atfx": "no folder", "folder.atfx": "is a folder"}
        (self.folder / "folder.atfx").mkdir()
        for target, reason in cases.items():
            with self.subTest(target):
                code, _, err = run("export", demo(), self.folder / target, "--force")
                self.assertEqual(1, code)
                self.assertRegex(err, r"^storefabric: [^\n]+\n$")
                self.assertIn(reason, err)
        self.assertEqual(["folder.atfx"], self.files())

    def test_a_failure_leaves_nothing(self):
        lonely = self.folder / "lonely.atfx"
        shutil.copy(demo(), lonely)  # without its component file
        target = self.folder / "target.atfx"
        code, _, err = run("export", lonely, target)
        self.assertEqual(1, code)
        self.assertIn(components(demo())[0].name, err)
        self.assertEqual(["lonely.atfx"], self.files())
        target.write_text("precious")
        self.assertEqual(1, run("export", lonely, target, "--force")[0])
        self.assertEqual("precious", target.read_text())
        self.assertEqual(["lonely.atfx", "target.atfx"], self.files())


if __name__ == "__main__":
    unittest.main()
