"""diagsh as a process: what it prints and how it exits, from the command line,
from scripts, from a pipe and at a real terminal.

Runs with the paths of diagsh and of the default board's blob in DIAGSH and DTB.
"""

import os
import signal
import subprocess
import sys
import unittest

import pexpect

sys.dont_write_bytecode = True

from diagsh_process import OnQuillbank  # noqa: E402

READ_16 = "/i2c-0/trans rd 0x50 2 0 0 16"
REFUSED = "/i2c-0/trans rd 0x50 3 0 0 0"


def hex_row(data):
    """Sixteen bytes as trans prints them."""
    return "data 0-15: " + "".join(f" {byte:2x}" for byte in data[:8]) + "  " + "".join(
        f" {byte:2x}" for byte in data[8:]) + " \n"


class CommandLine(OnQuillbank):
    def test_probe_lists_the_addresses(self):
        status, out, err = self.run_diagsh("-c", "/i2c-0/probe")
        self.assertEqual((status, err), (0, ""))
        self.assertIn("         device with addr = 0x50 found \n", out)

    def test_trans_prints_the_bytes_of_the_file(self):
        status, out, _ = self.run_diagsh("-c", READ_16)
        self.assertEqual(status, 0)
        self.assertIn(hex_row(self.eeprom.read_bytes()[:16]), out)

    def test_a_byte_changed_in_the_file_changes_the_print(self):
        self.run_diagsh("-c", "ls")
        data = bytearray(self.eeprom.read_bytes())
        data[5] ^= 0xFF
        self.eeprom.write_bytes(data)
        status, out, _ = self.run_diagsh("-c", READ_16)
        self.assertEqual(status, 0)
        self.assertIn(hex_row(data[:16]), out)

    def test_a_refused_transfer_exits_1(self):
        status, out, err = self.run_diagsh("-c", REFUSED)
        self.assertEqual(status, 1)
        self.assertIn("ERROR: cmd_size arg must be less than 0!\n", out)
        self.assertEqual(err, "/i2c-0/trans: failed (ERR_FAIL)\n")

    def test_commands_stop_at_the_first_failure(self):
        status, out, _ = self.run_diagsh("-c", "ls", "-c", REFUSED, "-c", "help quit")
        self.assertEqual(status, 1)
        self.assertNotIn("Leave the shell", out)

    def test_wrong_usage_exits_2(self):
        for arguments in (["-c", "nope"], ["-c", "/i2c-0/trans rd"], ["-c", "/i2c-0/chk-dev 256"],
                          ["--no-such-option"], ["/no/such/script"], ["-c", "ls", "script"],
                          ["--log", "hw-debug=16"], ["/"]):
            status, _, err = self.run_diagsh(*arguments)
            self.assertEqual(status, 2, arguments)
            self.assertNotEqual(err, "", arguments)

    def test_a_board_that_cannot_start_exits_4(self):
        for arguments in (["--board", "/no/such/board.so"], ["--sim", "/no/such/blob.dtb"],
                          ["--sim", "/dev/null"], ["--", "--no-such-board-option"]):
            status, out, err = self.run_diagsh(*arguments, "-c", "ls") if arguments[0] != "--" \
                else self.run_diagsh("-c", "ls", *arguments)
            self.assertEqual((status, out), (4, ""), arguments)
            self.assertIn("diagsh: ", err)
            if arguments[0] != "--":
                self.assertIn(arguments[1], err)

    def test_debug_text_shows_when_asked_for(self):
        _, plain, _ = self.run_diagsh("-c", "/i2c-0/chk-dev 0x09")
        _, debug, _ = self.run_diagsh("--log", "hw-debug=1", "-c", "/i2c-0/chk-dev 0x09")
        self.assertNotIn("no acknowledge", plain)
        self.assertIn("no acknowledge", debug)


class Scripts(OnQuillbank):
    def script(self, text):
        path = self.folder / "script.txt"
        path.write_bytes(text)
        return str(path)

    def test_a_script_runs_to_its_end(self):
        status, out, err = self.run_diagsh(self.script(b"# walk\ncd i2c-0\r\nchk-dev 0x50\n"))
        self.assertEqual((status, err), (0, ""))
        self.assertIn("device with addr = 0x50 found", out)

    def test_a_script_names_the_line_of_its_error(self):
        path = self.script(b"ls\n\nnope\nquit\n")
        status, _, err = self.run_diagsh(path)
        self.assertEqual(status, 2)
        self.assertTrue(err.startswith(f"{path}:3: nope: "), err)

    def test_commands_come_from_a_pipe(self):
        status, out, _ = self.run_diagsh(stdin=READ_16.encode())
        self.assertEqual(status, 0)
        self.assertIn("data 0-15: ", out)
        status, _, err = self.run_diagsh(stdin=b"ls\nfoo\n")
        self.assertEqual(status, 2)
        self.assertTrue(err.startswith("stdin:2: foo: "), err)

    def test_garbage_is_refused(self):
        for garbage in (b"\0\n", b"\xff\xfe\n", b"\x1b[A\n", b"'\n", b"a" * 100000 + b"\n"):
            status, _, err = self.run_diagsh(stdin=garbage)
            self.assertEqual(status, 2, garbage[:20])
            self.assertIn("stdin:1: ", err)


class Plumbing(OnQuillbank):
    def test_lost_output_is_an_error(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run(self.words("-c", "ls", "-c", "/i2c-0/chk-dev 1"), stdout=full,
                                  stderr=subprocess.PIPE, timeout=20)
        self.assertEqual(done.returncode, 4)
        self.assertEqual(done.stderr, b"diagsh: standard output: No space left on device\n")

    def test_closed_descriptors_do_no_harm(self):
        for closed, status in (("<&-", 0), (">&-", 4), ("2>&-", 0), ("<&- >&- 2>&-", 0)):
            words = " ".join(f"'{word}'" for word in self.words())
            done = subprocess.run(f"{words} {closed}", shell=True, stdin=subprocess.DEVNULL,
                                  capture_output=True, timeout=20)
            if closed == ">&-":
                done = subprocess.run(f"{words} -c ls {closed}", shell=True,
                                      capture_output=True, timeout=20)
            self.assertEqual(done.returncode, status, closed)

    def test_half_a_line_of_a_pipe_is_not_run_when_interrupted(self):
        with subprocess.Popen(self.words(), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as child:
            child.stdin.write(b"/i2c-0/chk-dev 0x50\n/i2c-0/trans wr 0x50 0 2 0 1")
            child.stdin.flush()
            # The first line's answer tells that the second is being read.
            for line in child.stdout:
                if b"exit" in line:
                    break
            child.send_signal(signal.SIGINT)
            out, err = child.communicate(timeout=20)
        self.assertEqual(child.returncode, 3)
        self.assertNotIn(b"trans", out)
        # The signal may come before the second line is waited for.
        self.assertRegex(err, rb"^stdin:[12]: aborted\n$")


class Terminal(OnQuillbank):
    def test_walks_probes_reads_and_quits(self):
        child = self.spawn()
        child.sendline("cd i2c-0")
        child.expect("/i2c-0> ")
        child.sendline("probe")
        child.expect("device with addr = 0x50 found")
        child.expect("/i2c-0> ")
        child.sendline("trans rd 0x50 2 0 0 16")
        row = hex_row(self.eeprom.read_bytes()[:16]).rstrip("\n")
        child.expect_exact(row)
        child.expect("/i2c-0> ")
        child.sendline("trans rd 0x50 3 0 0 0")
        child.expect("cmd_size arg must be less than 0!")
        child.expect("failed \\(ERR_FAIL\\)")
        child.expect("/i2c-0> ")
        self.quit(child)

    def test_recalls_the_last_line(self):
        child = self.spawn()
        child.sendline("help quit")
        child.expect("Leave the shell")
        child.expect("/> ")
        child.send("\x1b[A\r")
        child.expect("Leave the shell")
        child.expect("/> ")
        self.quit(child)

    def test_ctrl_c_drops_what_was_typed(self):
        child = self.spawn()
        child.send("quit garbage")
        child.expect("quit garbage")
        self.wait_until_idle(child)
        child.sendintr()
        child.expect("/> ")
        child.sendline("help quit")
        child.expect("Leave the shell")
        child.expect("/> ")
        self.quit(child)

    def test_a_stopped_shell_goes_on_with_the_line_it_shows(self):
        child = self.spawn()
        child.send("help qu")
        child.expect("help qu")
        self.wait_until_idle(child)
        os.kill(child.pid, signal.SIGSTOP)
        os.waitpid(child.pid, os.WUNTRACED)
        os.kill(child.pid, signal.SIGCONT)
        child.expect("/> help qu")
        child.sendline("it")
        child.expect("Leave the shell")
        child.expect("/> ")
        self.quit(child)

    def test_bytes_that_are_no_characters_are_refused(self):
        child = self.spawn()
        os.write(child.child_fd, b"help quit \xc3\r")
        child.expect("were no characters, nothing of it was done")
        child.expect("/> ")
        self.quit(child)

    def test_a_transcript_can_go_through_a_pipe(self):
        child = self.spawn_through_pipe()
        child.sendline("/i2c-0/chk-dev 1")
        child.expect("failed")
        child.sendline("help quit")
        child.expect("Leave the shell")
        child.sendline("quit")
        child.expect(pexpect.EOF)

    def test_ctrl_d_leaves(self):
        child = self.spawn()
        child.sendeof()
        self.expect_end(child)

    def test_utf8_and_long_lines_do_no_harm(self):
        child = self.spawn()
        child.sendline("gr\u00fc\u00df")
        child.expect("there is no \"gr\u00fc\u00df\"")
        child.expect("/> ")
        child.sendline("x" * 300)
        child.expect("there is no")
        child.expect("/> ")
        self.quit(child)


if __name__ == "__main__":
    signal.signal(signal.SIGINT, signal.default_int_handler)
    unittest.main()
