"""The line editor of diagsh at a real terminal: typing, completion, the history,
and what a terminal, its user or another program may do to it.

Runs with the paths of diagsh, of the default board's blob and of the slow board
in DIAGSH, DTB and BOARD.
"""

import os
import pathlib
import signal
import stat
import sys
import termios
import threading
import time
import unittest

import pexpect

sys.dont_write_bytecode = True

from diagsh_process import OnQuillbank, OnSlowBoard  # noqa: E402

UP = "\x1b[A"
DOWN = "\x1b[B"
LEFT = "\x1b[D"
CTRL_A = "\x01"
CTRL_C = "\x03"
CTRL_D = "\x04"
CTRL_R = "\x12"
CTRL_V = "\x16"
CTRL_Z = "\x1a"
BELL = "\x07"
CLEARED = "\r\x1b[J"  # the row of the prompt


class Editing(OnQuillbank):
    def type_and_see(self, child, keys, shown):
        """Tab completes only behind the last key, so what is typed next has to wait."""
        child.send(keys)
        child.expect_exact(shown)

    def wait_for(self, what, condition):
        deadline = time.monotonic() + 20
        while not condition():
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.001)

    def send_quoted(self, child, key):
        """Sends Ctrl-V, and the key once it no longer would be a signal."""
        child.send(CTRL_V)
        self.wait_for("the key is not quoted",
                      lambda: not termios.tcgetattr(child.child_fd)[3] & termios.ISIG)
        child.send(key)

    def paste(self, child, text):
        """Sends a text that is too long for the terminal to hold while nobody reads."""
        def write():
            left = text.encode()
            while left:
                left = left[os.write(child.child_fd, left):]

        writer = threading.Thread(target=write, daemon=True)
        writer.start()
        self.addCleanup(writer.join, 20)

    def expect_next_prompt(self, child, text, prompt="/> "):
        child.expect_exact(text)
        child.expect_exact(prompt)


class Typing(Editing):
    def test_in_the_middle_of_a_line(self):
        child = self.spawn()
        child.send("hlp quit" + CTRL_A + "\x1b[C" + "e" + "\r")
        self.expect_next_prompt(child, "Leave the shell")
        self.quit(child)

    def test_with_the_keys_beside_the_letters(self):
        child = self.spawn()
        home, end, delete, page_up, word_left = "\x1b[H", "\x1b[F", "\x1b[3~", "\x1b[5~", "\x1b[1;5D"
        child.send("xecho one" + home + delete + end + page_up + " three" + word_left + "two \r")
        self.expect_next_prompt(child, "\r\none two three\r\n")
        self.quit(child)

    def test_ctrl_d_deletes_in_a_line_and_leaves_at_an_empty_one(self):
        child = self.spawn()
        child.send("help qxuit" + LEFT * 4 + CTRL_D + "\r")
        self.expect_next_prompt(child, "Leave the shell")
        # At the end of a line it does nothing.
        self.type_and_see(child, "x" + CTRL_D, BELL)
        child.send("\x15help quit\r")
        self.expect_next_prompt(child, "Leave the shell")
        child.send(CTRL_D)
        self.expect_end(child)

    def test_wide_characters_take_two_columns(self):
        child = self.spawn(columns=20)
        child.send("\u6f22" * 10)  # the ninth does not fit into the first row
        child.send(LEFT + "x\r")
        self.expect_next_prompt(child, "\u6f22" * 9 + "x\u6f22: ")
        self.quit(child)

    def test_a_line_of_64_kib(self):
        child = self.spawn()
        for size, answer in ((65_500, "x\r\n/> "),
                             (65_536, "line too long, nothing of it was done\r\n/> ")):
            self.paste(child, "echo " + "x" * size + "\r")
            child.expect_exact("\r\n", timeout=60)
            child.expect_exact(answer)
        self.quit(child)

    def test_control_bytes_are_refused(self):
        child = self.spawn()
        for byte, shown in ((CTRL_C, r"\x03"), ("\x1b", r"\x1b")):
            child.send("echo ")
            self.send_quoted(child, byte + "x\r")
            self.expect_next_prompt(child, f"control character {shown} at column 6")
        self.quit(child)

    def test_nuls_are_passed_over(self):
        child = self.spawn()
        self.type_and_see(child, "echo \0a\0b", "ab")
        self.send_quoted(child, "\0c\0\r")
        self.expect_next_prompt(child, "\r\nabc\r\n")
        self.quit(child)


class Completing(Editing):
    def test_a_built_in(self):
        child = self.spawn()
        self.type_and_see(child, "hel\t", "p ")
        self.type_and_see(child, "qui\t", "t ")
        child.send("\r")
        self.expect_next_prompt(child, "Leave the shell")
        self.quit(child)

    def test_a_node_part_by_part(self):
        child = self.spawn()
        self.type_and_see(child, "cd i2c-0/pca\t", "9547-0/")
        self.type_and_see(child, "ch1\t", "/")
        child.send("\r")
        child.expect_exact("/i2c-0/pca9547-0/ch1> ")
        child.sendline("cd")
        child.expect_exact("\n/> ")
        self.quit(child)

    def test_an_enumerated_argument_and_the_hint_behind_it(self):
        child = self.spawn()
        self.type_and_see(child, "i2c-0/trans r\t", "d ")
        self.type_and_see(child, "\t", CLEARED + "usage: /i2c-0/trans rdwr addr ")
        child.expect_exact("\r\naddr: address (0 to 255)\r\n/> i2c-0/trans rd ")
        child.send(CTRL_C)
        child.expect_exact("\n/> ")
        self.quit(child)

    def test_a_file(self):
        (self.folder / "an old image.bin").write_bytes(b"x")
        child = self.spawn()
        self.type_and_see(child, f"import i2c-0/mfg-eeprom {self.folder}/an\t",
                          "\\ old\\ image.bin ")
        child.send(CTRL_C)
        child.expect_exact("\n/> ")
        self.quit(child)

    def test_several_are_listed_above_the_line(self):
        child = self.spawn(columns=40)
        self.type_and_see(child, "cd i2c-\t", CLEARED + "i2c-0/  i2c-1/\r\n/> cd i2c-")
        self.type_and_see(child, "1\t", "/")
        child.send("\r")
        child.expect_exact("/i2c-1> ")
        self.quit(child)

    def test_nothing_rings_the_bell(self):
        child = self.spawn()
        self.type_and_see(child, "no-such\t", BELL)
        child.send(CTRL_C)
        child.expect_exact("\n/> ")
        self.quit(child)

    def test_a_tab_in_a_pasted_text_is_a_blank(self):
        child = self.spawn()
        child.send("echo\ta\tb\necho c\td\n")
        self.expect_next_prompt(child, "\r\na b\r\n")
        self.expect_next_prompt(child, "\r\nc d\r\n")
        self.quit(child)


class History(Editing):
    def history_file(self):
        return self.folder / "xdg" / "morva-diags" / "history"

    def test_is_there_in_the_next_run(self):
        child = self.spawn()
        child.sendline("help quit")
        self.expect_next_prompt(child, "Leave the shell")
        self.quit(child)
        self.assertEqual(stat.S_IMODE(self.history_file().stat().st_mode), 0o600)
        child = self.spawn()
        self.type_and_see(child, UP, "quit")
        child.send(UP + "\r")
        self.expect_next_prompt(child, "Leave the shell")
        self.quit(child)
        self.assertEqual(self.history_file().read_text(), "help quit\nquit\nhelp quit\nquit\n")

    def test_keeps_the_lines_of_two_shells(self):
        first = self.spawn()
        second = self.spawn_words(*self.words()[:-1], str(self.folder / "second"))
        for child, text in ((first, "one"), (second, "two"), (first, "three")):
            child.sendline(f"echo {text}")
            self.expect_next_prompt(child, f"\r\n{text}\r\n")
        self.quit(first)
        self.quit(second)
        self.assertEqual(self.history_file().read_text(),
                         "echo one\necho two\necho three\nquit\nquit\n")

    def test_is_searched_by_what_is_typed(self):
        child = self.spawn()
        for line in ("echo one", "echo two", "pwd"):
            child.sendline(line)
            child.expect_exact("\n/> ")
        self.type_and_see(child, "ec" + UP, "ho two")
        self.type_and_see(child, UP, "one")
        self.type_and_see(child, UP, BELL)
        child.send(DOWN + DOWN + "ho typed\r")
        self.expect_next_prompt(child, "\r\ntyped\r\n")
        self.quit(child)

    def test_is_searched_with_ctrl_r(self):
        child = self.spawn()
        for line in ("echo needle", "echo hay"):
            child.sendline(line)
            child.expect_exact("\n/> ")
        self.type_and_see(child, CTRL_R + "nee", "echo needle")
        child.send("\r")
        self.expect_next_prompt(child, "\r\nneedle\r\n")
        self.quit(child)

    def test_leaves_out_what_begins_with_a_blank(self):
        child = self.spawn()
        child.sendline(" echo secret")
        self.expect_next_prompt(child, "\r\nsecret\r\n")
        child.sendline("history")
        self.expect_next_prompt(child, "history\r\n    1  history\r\n")
        self.quit(child)

    def test_that_cannot_be_kept_is_told_once(self):
        (self.folder / "xdg").write_bytes(b"no folder")
        child = self.spawn(prompt="history: ")
        child.expect_exact(": Not a directory; lines are kept for this session only\r\n/> ")
        child.sendline("echo a")
        self.expect_next_prompt(child, "echo a\r\na\r\n")
        child.send(UP + "\r")
        self.expect_next_prompt(child, "\r\na\r\n")
        self.quit(child)

    def test_does_without_a_home(self):
        del self.environment["XDG_STATE_HOME"]
        self.environment.pop("HOME", None)
        child = self.spawn(prompt="history: ")
        child.expect_exact("neither XDG_STATE_HOME nor HOME names a folder; lines are kept for "
                           "this session only\r\n/> ")
        self.quit(child)

    def test_is_none_in_a_script(self):
        status, out, err = self.run_diagsh("-c", "history")
        self.assertEqual((status, out), (2, ""))
        self.assertIn("there is no history", err)


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


class Questions(Editing):
    def test_an_answer_is_echoed_and_the_editor_goes_on(self):
        image = self.folder / "image.bin"
        image.write_bytes(bytes(16))
        child = self.spawn()
        child.sendline(f"import i2c-0/mfg-eeprom {image}")
        child.expect_exact("? [y/N] ")
        child.send("no")
        child.expect_exact("no")
        child.send("\r")
        child.expect_exact("\n/> ")
        self.type_and_see(child, "hel\t", "p ")
        child.send("quit\r")
        self.expect_next_prompt(child, "Leave the shell")
        self.quit(child)


if __name__ == "__main__":
    signal.signal(signal.SIGINT, signal.default_int_handler)
    unittest.main()
