"""The verb "export": nothing is lost, nothing is replaced unasked, nothing is left half done."""
import os
import shutil
import unittest

from program import ProgramTest, components, demo, output, run


class Export(ProgramTest):
    def test_an_export_of_an_export_is_the_same(self):
        first, second = self.folder / "first.atfx", self.folder / "second.atfx"
        self.assertEqual((0, "", ""), run("export", demo(), first))
        output("export", first, second)
        self.assert_same_store(demo(), first, second)  # nothing is lost on the way either

    def test_a_file_is_replaced_only_when_told_to(self):
        target = self.folder / "target.atfx"
        target.write_text("precious")
        self.assert_refused("export", demo(), target, reason="--force")
        self.assertEqual("precious", target.read_text())
        for _ in range(2):  # the second time over a file of our own, whose component goes with it
            output("export", demo(), target, "--force")
            self.assert_same_store(demo(), target)
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
                self.assert_refused("export", "source.atfx", target, "--force", cwd=self.folder, reason="same file")
        self.assertEqual(before, source.read_bytes())

    def test_refused_targets(self):
        (self.folder / "folder.atfx").mkdir()
        for target, reason in {"out.txt": "ends in .atfx", "out": "ends in .atfx",
                               "missing/out.atfx": "no folder", "folder.atfx": "is a folder"}.items():
            with self.subTest(target):
                self.assert_refused("export", demo(), self.folder / target, "--force", reason=reason)
        self.assertEqual(["folder.atfx"], self.files())

    def test_a_failure_leaves_nothing(self):
        lonely, target = self.folder / "lonely.atfx", self.folder / "target.atfx"
        shutil.copy(demo(), lonely)  # without its component file
        self.assert_refused("export", lonely, target, reason=components(demo())[0].name)
        self.assertEqual(["lonely.atfx"], self.files())
        target.write_text("precious")
        self.assert_refused("export", lonely, target, "--force", reason=components(demo())[0].name)
        self.assertEqual("precious", target.read_text())
        self.assertEqual(["lonely.atfx", "target.atfx"], self.files())


if __name__ == "__main__":
    unittest.main()
