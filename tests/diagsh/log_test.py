"""What diagsh shows of the log, in which colours, and what it keeps in a file.

Runs with the paths of diagsh and of the default board's blob in DIAGSH and DTB.
"""

import os
import pathlib
import re
import resource
import signal
import subprocess
import tempfile
import unittest

import pexpect

DIAGSH = os.environ["DIAGSH"]
DTB = os.environ["DTB"]

SILENT = "/i2c-0/chk-dev 0x09"
REFUSED = "/i2c-0/trans rd 0x50 3 0 0 0"
REASON = "ERROR: cmd_size arg must be less than 0!"
FAILED = "/i2c-0/trans: failed (ERR_FAIL)"
DUMP = "/i2c-0/mfg-eeprom/read 0 1024"


class Log(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.state = self.folder / "state"
        self.file = self.folder / "session.log"

    def words(self, *arguments):
        return [DIAGSH, "--sim", DTB, "--state", str(self.state), *arguments]

    def run_diagsh(self, *arguments, **keywords):
        done = subprocess.run(self.words(*arguments), stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=60, env=os.environ | {"TERM": "xterm"}, **keywords)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def logged(self):
        return [line.split(" ", 1)[1] for line in self.file.read_text().splitlines()]


class Filter(Log):
    def test_is_set_at_the_start(self):
        _, plain, _ = self.run_diagsh("-c", SILENT)
        _, traced, _ = self.run_diagsh("--log", "all=off", "--log", "hw-debug=1", "-c", SILENT)
        self.assertNotIn("no acknowledge", plain)
        self.assertIn("no acknowledge", traced)
        _, out, _ = self.run_diagsh("--log", "all=off", "--log", "hw-debug=1", "-c", "log")
        self.assertEqual([line.split(None, 1) for line in out.splitlines()], [
            [name, "off"] for name in ("test-error", "system-error", "error", "warning", "system",
                                       "info", "progress", "result")
        ] + [["hw-debug", "up to level 1"], ["sw-debug", "off"]])

    def test_is_set_between_commands(self):
        status, out, _ = self.run_diagsh(
            "--keep-going", "-c", SILENT, "-c", "log hw-debug 1", "-c", "echo traced", "-c", SILENT,
            "-c", "log default", "-c", "echo plain", "-c", SILENT)
        self.assertEqual(status, 1)
        before, traced = out.split("traced\n")
        traced, after = traced.split("plain\n")
        self.assertNotIn("no acknowledge", before)
        self.assertIn("no acknowledge", traced)
        self.assertNotIn("no acknowledge", after)

    def test_settings_that_do_not_fit_exit_2(self):
        for setting, text in (("hw-debug=16", "0 to 15 or off"), ("debug=1", "no type of log texts"),
                              ("hw-debug", "TYPE=LEVEL"), ("print=off", "always shows")):
            status, out, err = self.run_diagsh("--log", setting, "-c", "ls")
            self.assertEqual((status, out), (2, ""), setting)
            self.assertIn(text, err)


class File(Log):
    def test_holds_what_built_ins_print_and_nodes_answer(self):
        self.run_diagsh("--keep-going", "--log-file", str(self.file), "-c", "pwd", "-c", "nope",
                        "-c", "peek /i2c-0/mfg-eeprom/memory 0")
        lines = [re.sub(r", [0-9.]+ [um]?s$", ", TIME", line) for line in self.logged()
                 if line.startswith("shell ")]
        self.assertEqual(lines[:3], ["shell - - pwd", "shell - - /", "shell - - pwd: passed, TIME"])
        self.assertRegex(lines[3], '^shell - - nope: there is no "nope" in /')
        self.assertEqual(lines[4], "shell - - nope: usage, TIME")
        self.assertEqual(lines[6], "shell - - memory[0x0] = 0x01")

    def test_takes_what_the_terminal_does_not_show(self):
        status, out, err = self.run_diagsh(
            "--log-file", str(self.file), "--log", "all=off", "-c", DUMP)
        self.assertEqual((status, err), (0, ""))
        rows = [line for line in out.splitlines() if line.startswith("0x0")]
        self.assertEqual(len(rows), 64)
        logged = self.logged()
        printed = "print:0 - /i2c-0/mfg-eeprom/read "
        self.assertEqual([line.removeprefix(printed) for line in logged
                          if line.startswith(printed + "0x")], rows)
        self.assertTrue([line for line in logged
                         if line.startswith("hw-debug:10 - /i2c-0/mfg-eeprom RD (addr=")])

    def test_names_the_job(self):
        status, _, _ = self.run_diagsh(
            "--log-file", str(self.file), "-c", "/i2c-0/mfg-eeprom/rw-test 0 3 &", "-c", "wait")
        self.assertEqual(status, 0)
        self.assertTrue([line for line in self.logged()
                         if line.startswith("hw-debug:10 1 /i2c-0/mfg-eeprom WR (addr=")])

    def test_that_cannot_be_written_exits_4_before_anything_runs(self):
        for name, reason in ((self.folder / "no" / "file", "No such file or directory"),
                             (self.folder, "Is a directory"),
                             ("/dev/null", "is not a regular file")):
            status, out, err = self.run_diagsh("--log-file", str(name), "-c", "ls")
            self.assertEqual((status, out), (4, ""))
            self.assertEqual(err, f"diagsh: log file {name}: {reason}\n")
            self.assertFalse(self.state.exists())

    def test_without_a_name_exits_2(self):
        status, _, err = self.run_diagsh("--log-file", "", "-c", "ls")
        self.assertEqual(status, 2)
        self.assertIn("--log-file: the name of the file is empty", err)

    def test_a_full_disk_stops_nothing(self):
        self.run_diagsh("-c", "ls")  # makes the files of the EEPROMs
        most = 1000 + max(path.stat().st_size for path in self.state.rglob("*") if path.is_file())
        script = self.folder / "script"
        script.write_text(f"{DUMP}\n" * (2 * most // 2000 + 1))

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
            resource.setrlimit(resource.RLIMIT_FSIZE, (most, most))

        status, out, err = self.run_diagsh("--log-file", str(self.file), str(script),
                                           preexec_fn=limit)
        self.assertEqual(status, 0)
        self.assertEqual(out.count("\n0x0000: "), len(script.read_text().splitlines()))
        self.assertLessEqual(self.file.stat().st_size, most)
        self.assertRegex(err, rf"\Adiagsh: .*{self.file}: File too large; "
                              r"lines of the log are missing\n\Z")


class Colours(Log):
    def shown_at_a_terminal(self, **environment):
        child = pexpect.spawn(DIAGSH, self.words("-c", REFUSED)[1:], encoding="utf-8", timeout=60,
                              env={**os.environ, "TERM": "xterm", "NO_COLOR": "", **environment})
        child.expect(pexpect.EOF)
        child.close()
        self.assertEqual(child.exitstatus, 1)
        return child.before

    def test_mark_errors_on_a_terminal(self):
        shown = self.shown_at_a_terminal()
        self.assertIn(f"\x1b[31m{REASON}\x1b[0m\r\n", shown)
        self.assertIn(f"\x1b[31m{FAILED}\x1b[0m\r\n", shown)

    def test_are_off_where_they_are_not_wanted(self):
        for environment in ({"NO_COLOR": "1"}, {"TERM": "dumb"}):
            shown = self.shown_at_a_terminal(**environment)
            self.assertIn(f"{REASON}\r\n", shown)
            self.assertIn(f"{FAILED}\r\n", shown)
            self.assertNotIn("\x1b[3", shown)

    def test_are_neither_in_a_pipe_nor_in_the_log_file(self):
        _, out, err = self.run_diagsh("--log-file", str(self.file), "-c", REFUSED)
        self.assertIn(f"{REASON}\n", out)
        self.assertEqual(err, f"{FAILED}\n")
        self.assertNotIn("\x1b", out)
        log = self.file.read_text()
        self.assertIn(REASON, log)
        self.assertNotIn("x1b", log)


if __name__ == "__main__":
    unittest.main()
