"""What a terminal, its user or another program may do to the line editor of diagsh.

Runs with the paths of diagsh, of the default board's blob and of the slow board
in DIAGSH, DTB and BOARD.
"""

import os
import pathlib
import signal
import sys
import termios
import unittest

import pexpect

sys.dont_write_bytecode = True

from diagsh_process import OnSlowBoard  # noqa: E402
from line_editor import CLEARED, CTRL_C, CTRL_D, CTRL_R, CTRL_Z, Editing  # noqa: E402


class Screen(Editing):
    def test_a_resized_window_shows_the_line_in_its_place(self):
        child = self.spawn()
        self.type_and_see(child, "help qu", "help qu")
        for columns in (60, 100):
            child.setwinsize(24, columns)
            child.expect_exact(CLEARED + "/> help qu")
        child.send("it\r")
        self.expect_next_prompt(child, "Leave the shell")
        self.quit(child)

    def test_a_window_made_wider_takes_back_the_rows_of_the_line(self):
        child = self.spawn(columns=20)
        child.send("echo " + "x" * 49 + "y")
        child.expect_exact("y")
        child.setwinsize(24, 40)
        child.expect_exact("\x1b[1A" + CLEARED + "/> echo ")
        child.send("\r")
        self.expect_next_prompt(child, "\r\n" + "x" * 49 + "y\r\n")
        self.quit(child)

    def test_a_dumb_terminal_gets_plain_lines(self):
        for term in ("dumb", None):
            with self.subTest(term):
                self.environment.pop("TERM")
                if term is not None:
                    self.environment["TERM"] = term
                child = self.spawn()
                child.send("echo a")
                child.expect_exact("echo a")
                child.send(CTRL_C)
                child.expect_exact("^C\r\n/> ")
                child.send("echo b\r")
                self.expect_next_prompt(child, "echo b\r\nb\r\n")
                child.send("nope\r")
                self.expect_next_prompt(child, "nope\r\nnope: there is no")
                child.send(CTRL_D)
                child.expect(pexpect.EOF)
                self.assertNotIn("\x1b", child.before)
                self.environment["TERM"] = "xterm"

    def test_a_pipe_gets_no_escapes(self):
        status, out, err = self.run_diagsh(stdin=b"tree\nhelp\n")
        self.assertEqual((status, err), (0, ""))
        self.assertNotIn("\x1b", out)


class Signals(Editing):
    def modes(self, child):
        """Whether the terminal echoes, and whether it reads in lines."""
        flags = termios.tcgetattr(child.child_fd)[3]
        return bool(flags & termios.ECHO), bool(flags & termios.ICANON)

    def under_bash(self):
        self.environment["PS1"] = "bash$ "
        return self.spawn_words("/bin/bash", "--norc", "--noediting", "-i", prompt="bash$ ")

    def test_many_ctrl_c_lose_nothing_that_comes_behind(self):
        child = self.spawn()
        for count in range(30):
            child.send(("echo lost" + CTRL_C) * 5)
            # The thread sanitizer hands a signal on late, when the key behind it
            # may have been read already: that key is a blank here.
            child.send(f" echo {count}.\r")
            self.expect_next_prompt(child, f"\r\n{count}.\r\n")
        self.quit(child)

    def test_ctrl_c_in_a_search_drops_the_line(self):
        child = self.spawn()
        child.sendline("echo needle")
        child.expect_exact("\n/> ")
        self.type_and_see(child, CTRL_R + "nee", "echo needle")
        child.send(CTRL_C)
        child.expect_exact("\n/> ")
        child.send("echo a\r")
        self.expect_next_prompt(child, "\r\na\r\n")
        self.quit(child)

    def test_ctrl_z_gives_the_terminal_back_and_fg_takes_it(self):
        child = self.under_bash()
        line = " ".join(f"'{word}'" for word in self.words())
        child.sendline(line)
        child.expect_exact("/> ")
        self.type_and_see(child, "echo a", "echo a")
        child.send(CTRL_Z)
        child.expect_exact("Stopped")
        child.expect_exact("bash$ ")
        self.assertEqual(self.modes(child), (True, True))
        child.sendline("fg")
        child.expect_exact(CLEARED + "/> echo a")
        self.assertEqual(self.modes(child), (False, False))
        child.send("b\r")
        self.expect_next_prompt(child, "\r\nab\r\n")
        child.sendline("quit")
        child.expect_exact("bash$ ")
        self.assertEqual(self.modes(child), (True, True))
        child.sendline("exit")
        self.expect_end(child)

    def test_what_is_typed_behind_quit_is_for_others(self):
        child = self.under_bash()
        child.sendline(" ".join(f"'{word}'" for word in self.words()))
        child.expect_exact("/> ")
        child.send("quit\recho for $((40 + 2))\r")
        child.expect_exact("for 42\r\n")
        child.expect_exact("bash$ ")
        child.sendline("exit")
        self.expect_end(child)

    def test_the_terminal_is_given_back_at_every_end(self):
        for end, status in ((signal.SIGTERM, 3), (signal.SIGHUP, 3), (signal.SIGQUIT, 3)):
            with self.subTest(end):
                child = self.under_bash()
                child.sendline(" ".join(f"'{word}'" for word in self.words()))
                child.expect_exact("/> ")
                shell = pathlib.Path(f"/proc/{child.pid}/task/{child.pid}/children")
                os.kill(int(shell.read_text().split()[0]), end)
                child.expect_exact("bash$ ")
                self.assertEqual(self.modes(child), (True, True))
                child.sendline("echo status $?")
                child.expect(r"\nstatus (\d+)\r\n")
                self.assertEqual(int(child.match[1]), status)
                child.sendline("exit")
                child.expect(pexpect.EOF)


class WhileACommandRuns(OnSlowBoard):
    def test_what_is_typed_is_kept_for_the_prompt(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go}")
        child.expect_exact("a works\r\n")
        child.send("echo later")
        # The bar is written over and over; of what is typed nothing is.
        child.expect_exact("until: ")
        child.expect_exact("until: ")
        self.assertNotIn("later", child.before)
        self.go.touch()
        child.expect_exact("until: passed\r\n")
        child.expect_exact("/> echo later")
        child.send("\r")
        child.expect_exact("\r\nlater\r\n/> ")
        self.quit(child)

    def test_ctrl_c_works(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go}")
        child.expect_exact("a works\r\n")
        child.send(CTRL_C)
        child.expect_exact("a cleans up\r\n")
        child.expect(r"aborted \(ERR_ABORTED\)")
        child.expect_exact("/> ")
        self.quit(child)

    def test_ctrl_z_gives_the_terminal_back(self):
        self.environment["PS1"] = "bash$ "
        child = self.spawn_words("/bin/bash", "--norc", "--noediting", "-i", prompt="bash$ ")
        child.sendline(" ".join(f"'{word}'" for word in self.words()))
        child.expect_exact("/> ")
        child.sendline(f"a/until {self.go}")
        child.expect_exact("a works\r\n")
        child.send(CTRL_Z)
        child.expect_exact("Stopped")
        child.expect_exact("bash$ ")
        child.sendline("echo visible")
        child.expect_exact("echo visible\r\nvisible\r\n")
        self.go.touch()
        child.sendline("fg")
        child.expect_exact("until: passed\r\n")
        child.expect_exact("/> ")
        self.quit_bash(child)

    def quit_bash(self, child):
        child.sendline("quit")
        child.expect_exact("bash$ ")
        child.sendline("exit")
        self.expect_end(child)


if __name__ == "__main__":
    signal.signal(signal.SIGINT, signal.default_int_handler)
    unittest.main()
