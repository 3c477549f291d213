"""Exit codes, usage and failures that every verb shares."""
import os
import signal
import subprocess
import unittest

from program import PROGRAM, ProgramTest, demo, folder, on_terminal, run


class Usage(unittest.TestCase):
    def test_wrong_usage_is_told_with_code_2(self):
        for arguments, text in [
            ([], "storefabric [OPTIONS] VERB"),
            (["weigh"], 'there is no verb "weigh"'),
            (["model", "a.atfx", "--fast"], "storefabric model"),
            (["model"], "STORE is required"),
            (["query", "a.atfx"], "EXPRESSION is required"),
            (["export", "a.atfx"], "OUT is required"),
            (["demo", "a.atfx", "b.atfx"], "storefabric demo"),
            (["model", "a.atfx", "--format", "yaml"], '"yaml" is none of lines, table'),
            (["model", "a.atfx", "--format", "2"], '"2" is none of'),
            (["tree", "a.atfx", "--depth", "-1"], '"-1" is no whole number'),
            (["search", "a.atfx", "Test", "--limit", "99999999999"], "or too large"),
            (["model", "a.atfx", "Test", "--all"], "--all"),
        ]:
            with self.subTest(arguments):
                code, out, err = run(*arguments)
                self.assertEqual((2, ""), (code, out))
                self.assertIn(text, err)
                self.assertIn("Usage:", err)

    def test_help_names_the_verbs_there_are(self):
        code, out, err = run("--help")
        self.assertEqual((0, ""), (code, err))
        verbs = [line.split()[0] for line in out.partition("Verbs:")[2].splitlines() if line.strip()]
        self.assertEqual(["model", "query", "search", "tree", "show", "export", "import", "demo"], verbs)
        for verb in verbs:
            self.assertEqual(0, run(verb, "--help")[0])
        self.assertRegex(run("--version")[1], r"^storefabric \d+\.\d+\.\d+\n$")


class Failures(ProgramTest):
    def test_a_store_that_cannot_be_opened(self):
        text = demo().read_text(encoding="utf-8")
        files = {
            "empty.atfx": b"",
            "plain.atfx": b"hello\n",
            "root.atfx": b"<?xml version='1.0'?>\n\n<html/>",
            "nomodel.atfx": b"<atfx_file/>",
            "cut.ATFX": text[:5000].encode(),
            "renamed.xml": text.encode(),
            "badnumber.atfx": text.replace("<Factor>1000</Factor>", "<Factor>many</Factor>").encode(),
        }
        (folder / "folder.atfx").mkdir()
        for name, content in files.items():
            (folder / name).write_bytes(content)
        cases = {
            "none.atfx": "no such file",
            "nowhere": 'no configured store "nowhere"',
            "renamed.xml": 'no configured store "renamed.xml"; names of files end in',
            "folder.atfx": "not a regular file",
            "empty.atfx": "empty.atfx: the file is empty",
            "plain.atfx": "plain.atfx: the file is no XML document",
            "root.atfx": "root.atfx:3: not an ATFX file",
            "nomodel.atfx": "model is missing",
            "cut.ATFX": f"cut.ATFX:{text[:5000].count(chr(10)) + 1}: ",
            "badnumber.atfx": "many",
        }
        for verb, rest in {"model": [], "query": [os.devnull], "export": [folder / "out.atfx"]}.items():
            for name, reason in cases.items():
                with self.subTest(verb=verb, store=name):
                    store = folder / name if name.lower().endswith(".atfx") else name
                    self.assert_refused(verb, store, *rest, cwd=folder, reason=("storefabric: opening ", reason))
                    self.assertFalse((folder / "out.atfx").exists())

    def test_a_name_that_is_not_utf8(self):
        done = subprocess.run([PROGRAM, "model", b"l\xe4rm.atfx"], capture_output=True, timeout=300)
        self.assertEqual((1, b""), (done.returncode, done.stdout))
        self.assertIn("l\ufffdrm.atfx\" isn't UTF-8", done.stderr.decode("utf-8"))

    def test_remarks_are_counted_or_listed(self):
        odd = folder / "odd.atfx"
        text = demo().read_text(encoding="utf-8")
        odd.write_text(text.replace("<Timezone>", "<Mood>fine</Mood>\n   <Timezone>", 1),
                       encoding="utf-8")
        code, out, err = run("model", odd)
        self.assertEqual((0, "storefabric: 1 remark; see --warnings\n"), (code, err))
        self.assertEqual(run("model", demo())[1], out)
        code, _, err = run("model", odd, "--warnings")
        self.assertEqual((0, 1), (code, err.count("\n")))
        self.assertIn("Mood", err)
        self.assertEqual("", run("model", demo())[2])


class Output(unittest.TestCase):
    def test_a_reader_that_is_gone_ends_the_program_quietly(self):
        for restore in (True, False):  # also where the parent ignores the signal
            reader, writer = os.pipe()
            os.close(reader)
            done = subprocess.run([PROGRAM, "model", demo(), "--all"], stdout=writer,
                                  stderr=subprocess.PIPE, restore_signals=restore, timeout=300)
            os.close(writer)
            self.assertEqual((-signal.SIGPIPE, b""), (done.returncode, done.stderr))

    @unittest.skipUnless(os.path.exists("/dev/full"), "no device that is always full")
    def test_a_full_disk_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "model", demo(), "--all"], stdout=full,
                                  stderr=subprocess.PIPE, timeout=300)
        self.assertEqual(1, done.returncode)
        self.assertIn(b"writing the result", done.stderr)

    def test_the_progress_bar_is_for_terminals_only(self):
        self.assertEqual((0, "", ""), run("demo", folder / "quiet.atfx"))
        code, shown = on_terminal("demo", folder / "bar.atfx")
        self.assertEqual(0, code)
        self.assertRegex(shown, rb"Measuring \[[#.]{30}\] +\d+ %")
        self.assertRegex(shown, rb"\r\x1b\[K$")


if __name__ == "__main__":
    unittest.main()
