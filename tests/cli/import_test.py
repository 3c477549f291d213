"""The verb "import": everything arrives, or nothing changes, whatever happens meanwhile."""
import contextlib
import os
import random
import re
import resource
import signal
import sqlite3
import subprocess
import sys
import time
import unittest

from program import PROGRAM, ProgramTest, components, demo, on_terminal, output, run

# Of the file whose values must not pass through memory.
MEGABYTES = int(os.environ.get("STOREFABRIC_IMPORT_MEGABYTES", "128"))

# Prints the most memory that a program took, in KiB; a process of its own, since a child's count
# begins with what its parent holds.
PEAK = """import resource, subprocess, sys
subprocess.run(sys.argv[1:], check=True)
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)"""


def content(database):
    """All tables of a database, in an order of their own; also tells that it is sound."""
    with contextlib.closing(sqlite3.connect(f"file:{database}?mode=rw", uri=True)) as connection:
        assert connection.execute("PRAGMA integrity_check").fetchall() == [("ok",)]
        names = [row[0] for row in connection.execute(
            "SELECT name FROM sqlite_master WHERE type='table' AND sql NOT LIKE 'CREATE VIRTUAL%'"
            " AND name NOT GLOB 'SF_TEXT_*' AND name NOT GLOB 'sqlite_*' ORDER BY name")]
        return {name: connection.execute(f'SELECT * FROM "{name}" ORDER BY 1, 2').fetchall()
                for name in names}


def small_store(path, tests=1, drop=""):
    """A file of the demonstration's model with a few records and a column."""
    text = demo().read_text(encoding="utf-8")
    head = text[:text.index("<instance_data>")]
    head = re.sub(r"<files>.*?</files>", "", head, flags=re.S).replace(drop, "")
    records = "".join(f"<Test><Id>{i}</Id><Name>Small {i}</Name></Test>" for i in range(1, tests + 1))
    path.write_text(f"{head}<instance_data>{records}</instance_data></atfx_file>", encoding="utf-8")
    return path


class Import(ProgramTest):
    def setUp(self):
        self.target = self.folder / "target.sqlite"

    def make_target(self):
        """A database that is there already, and its content."""
        output("import", small_store(self.folder / "first.atfx"), self.target)
        (self.folder / "first.atfx").unlink()
        return content(self.target)

    def measure_import(self):
        """(bytes, seconds) of an import into a database that isn't there yet."""
        begin, new = time.monotonic(), self.folder / "new.sqlite"
        output("import", demo(), new)
        measured = new.stat().st_size, time.monotonic() - begin
        new.unlink()
        return measured

    def test_an_export_of_an_import_is_the_same(self):
        self.assertEqual((0, "", ""), run("import", demo(), self.target))
        self.assertEqual(["target.sqlite"], self.files())
        back = self.folder / "back.atfx"
        output("export", self.target, back)
        self.assert_same_store(demo(), back)

    def test_records_are_added_to_a_database_or_replace_it(self):
        old = self.make_target()
        output("import", demo(), self.target)
        both = content(self.target)
        alone = self.folder / "alone.SQLite"
        output("import", demo(), alone)
        added = content(alone)
        for table in ("MEASUREMENT", "LOCALCOLUMN", "SF_BULK", "SF_INSTATTR"):
            self.assertEqual(len(old[table]) + len(added[table]), len(both[table]), table)
        self.assertEqual(sorted(row[-1] for row in added["SF_BULK"]),
                         sorted(row[-1] for row in both["SF_BULK"]))
        # Into an empty place the second half has the same records as the first, links included.
        output("import", demo(), alone)
        back = self.folder / "back.atfx"
        output("export", alone, back)
        self.assertEqual(2 * demo().read_text().count("<Measurement>"),
                         back.read_text().count("<Measurement>"))
        output("import", demo(), self.target, "--replace")
        self.assertEqual(added, content(self.target))
        self.assertEqual(["alone.SQLite", "back.atfx", "back_1.btf", "target.sqlite"], self.files())

    def test_what_does_not_fit_the_model_is_told_and_nothing_is_added(self):
        output("import", small_store(self.folder / "a.atfx", drop="<name>Remark</name>"), self.target)
        before = content(self.target)
        other = small_store(self.folder / "b.atfx", 3)
        text = other.read_text(encoding="utf-8")
        text = text.replace("<name>Test</name>", "<name>Trial</name>", 1)
        text = text.replace("<ref_to>Test</ref_to>", "<ref_to>Trial</ref_to>")
        text = re.sub(r"<(/?)Test>(?=<Id>|<Test|</instance)", r"<\1Trial>", text)
        other.write_text(text, encoding="utf-8")
        self.assert_refused("import", other, self.target, reason=("don't fit", "no element Trial"))
        self.assertEqual(["a.atfx", "b.atfx", "target.sqlite"], self.files())
        self.assertEqual(before, content(self.target))

    def test_refused_targets_and_sources(self):
        (self.folder / "folder.sqlite").mkdir()
        (self.folder / "text.sqlite").write_text("precious, but no database" * 100)
        (self.folder / "lonely.atfx").write_bytes(demo().read_bytes())  # without its component file
        text = demo().read_text(encoding="utf-8")
        (self.folder / "cut.atfx").write_text(text[:len(text) // 2], encoding="utf-8")
        output("import", demo(), self.target)
        before = content(self.target)
        there = self.files()
        cases = [
            (demo(), "out.db", "ends in .sqlite"),
            (demo(), "folder.sqlite", "is a folder"),
            (demo(), "missing/out.sqlite", "no folder"),
            (demo(), "text.sqlite", "not a database"),
            (self.target, "target.sqlite", "same file"),
            (self.folder / "none.atfx", "new.sqlite", "no such file"),
            (self.folder / "cut.atfx", "new.sqlite", "cut.atfx:"),
            (self.folder / "cut.atfx", "target.sqlite", "cut.atfx:"),
            (self.folder / "lonely.atfx", "new.sqlite", components(demo())[0].name),
            (self.folder / "lonely.atfx", "target.sqlite", components(demo())[0].name),
            (self.folder / "lonely.atfx", "text.sqlite", "not a database"),
        ]
        for source, target, reason in cases:
            with self.subTest(source=source.name, target=target):
                self.assert_refused("import", source, self.folder / target, reason=reason)
        self.assert_refused("import", self.folder / "lonely.atfx", self.target, "--replace",
                            reason=components(demo())[0].name)
        self.assertEqual(before, content(self.target))
        self.assertTrue((self.folder / "text.sqlite").read_text().startswith("precious"))
        self.assertEqual(there, self.files())

    @unittest.skipIf(os.geteuid() == 0, "the superuser may write everywhere")
    def test_a_folder_that_cannot_be_written(self):
        before = self.make_target()
        self.folder.chmod(0o555)
        try:
            for arguments in ((self.target, "--replace"), (self.folder / "new.sqlite",)):
                self.assert_refused("import", demo(), *arguments, reason="Permission denied")
        finally:
            self.folder.chmod(0o755)
        self.assertEqual(before, content(self.target))
        self.assertEqual(["target.sqlite"], self.files())

    def test_a_full_disk_changes_nothing(self):
        before = self.make_target()
        size, _ = self.measure_import()
        for limit in (64 << 10, size // 2, size * 9 // 10):

            def restrict():
                resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))

            for arguments in (("new.sqlite",), ("target.sqlite",), ("target.sqlite", "--replace")):
                with self.subTest(limit=limit, arguments=arguments):
                    self.assert_refused("import", demo(), *arguments, cwd=self.folder, preexec_fn=restrict,
                                        reason=str(self.folder))
                    self.assertEqual(["target.sqlite"], self.files())
                    self.assertTrue(before == content(self.target))

    def test_a_signal_at_any_moment_changes_nothing(self):
        before = self.make_target()
        _, longest = self.measure_import()
        dice = random.Random(5)
        stopped = 0
        for number in range(24):
            arguments = [("new.sqlite",), ("target.sqlite",), ("target.sqlite", "--replace")][number % 3]
            sent = (signal.SIGINT, signal.SIGTERM, signal.SIGINT, signal.SIGKILL)[number % 4]
            with self.subTest(number=number, arguments=arguments, sent=sent):
                program = subprocess.Popen([PROGRAM, "import", demo(), *arguments], cwd=self.folder,
                                           stderr=subprocess.PIPE)
                time.sleep(dice.uniform(0, longest))
                program.send_signal(sent)
                err = program.communicate(timeout=300)[1].decode()
                self.assertIn(program.returncode, (0, -sent), err)
                if program.returncode == 0 or sent == signal.SIGKILL:
                    # All of it may be done; what is left over is another test's matter.
                    done = self.folder / arguments[0]
                    if done.exists() and content(done) != before:
                        self.assertEqual(200, len(content(done)["MEASUREMENT"]))
                    for name in self.files():
                        (self.folder / name).unlink()
                    before = self.make_target()
                    continue
                stopped += 1
                self.assertEqual(["target.sqlite"], self.files())
                self.assertTrue(before == content(self.target), "the target was changed")
        self.assertGreater(stopped, 0)

    def test_the_next_run_clears_what_a_killed_one_left(self):
        self.make_target()
        own = self.folder / "target.sqlite.new-mine"
        own.write_text("a user's own file")
        left = []
        for delay in range(100):
            program = subprocess.Popen([PROGRAM, "import", demo(), self.target, "--replace"])
            deadline = time.monotonic() + 60
            while time.monotonic() < deadline and program.poll() is None and len(self.files()) < 3:
                time.sleep(0.001)
            program.kill()
            program.wait()
            left = [name for name in self.files() if re.search(r"\.new-\d+", name)]
            if left:
                break
        self.assertTrue(left, "the program was never caught in the act")
        output("import", demo(), self.target, "--replace")
        self.assertEqual(["target.sqlite", own.name], self.files())

    def test_the_bar_is_drawn_on_a_terminal_and_gone_after_an_interruption(self):
        def interrupt(program, shown):
            if b"Writing" not in shown:
                return False
            program.send_signal(signal.SIGINT)
            return True

        for _ in range(20):  # the program may be done before the signal comes
            code, shown = on_terminal("import", demo(), self.target, seen=interrupt)
            self.assertIn(code, (0, -signal.SIGINT))
            if code != 0:
                break
            self.target.unlink()
        self.assertEqual(-signal.SIGINT, code)
        self.assertRegex(shown, rb"Reading \[[#.]{30}\] +\d+ %")
        self.assertRegex(shown, rb"Writing \[[#.]{30}\] +\d+ %")
        self.assertRegex(shown, rb"\r\x1b\[Kstorefabric: importing [^\n]+stopped\r\n$")
        self.assertEqual([], self.files())

    @unittest.skipIf(os.environ.get("STOREFABRIC_SANITIZED") == "1", "a sanitizer holds memory back")
    def test_values_inside_the_file_do_not_pass_through_memory(self):
        peaks = []
        for megabytes in (1, MEGABYTES):
            source = self.folder / "source.atfx"
            head = small_store(source).read_text(encoding="utf-8").partition("</instance_data>")[0]
            line = "".join(f"{value * 0.3183098861837907:.15g} " for value in range(1000))
            with open(source, "w", encoding="utf-8") as file:
                file.write(head)
                ids = range(1, 9)
                for column in ids:  # a few long ones: none may be held as a whole either
                    file.write(f"<LocalColumn><Id>{column}</Id><Name>c</Name><Values><A_FLOAT64>")
                    for _ in range(megabytes * 1000000 // len(ids) // len(line) + 1):
                        file.write(line)
                    file.write("</A_FLOAT64></Values></LocalColumn>\n")
                file.write("</instance_data></atfx_file>\n")
            begin = time.monotonic()
            arguments = [PROGRAM, "import", source, self.target, "--replace"]
            peaks.append(int(subprocess.run([sys.executable, "-c", PEAK, *map(str, arguments)],
                                            check=True, capture_output=True).stdout) / 1024)
            if __name__ == "__main__":
                print(f"{source.stat().st_size / 1e6:.0f} MB of inline values: peak {peaks[-1]:.0f} MiB, "
                      f"{time.monotonic() - begin:.1f} s")
        with contextlib.closing(sqlite3.connect(self.target)) as connection:
            bytes_stored = connection.execute("SELECT sum(length(DATA)) FROM SF_BULK").fetchone()[0]
        self.assertGreater(bytes_stored, MEGABYTES * 1000000 // 17 * 8 * 0.9)
        self.assertLess(peaks[1] - peaks[0], 64, "MiB more for more values")


if __name__ == "__main__":
    unittest.main()
