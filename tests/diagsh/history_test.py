"""The history of the line editor of diagsh, at a real terminal.

Runs with the paths of diagsh and of the default board's blob in DIAGSH and DTB.
"""

import signal
import stat
import sys
import unittest

sys.dont_write_bytecode = True

from line_editor import BELL, CTRL_R, DOWN, UP, Editing  # noqa: E402


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


if __name__ == "__main__":
    signal.signal(signal.SIGINT, signal.default_int_handler)
    unittest.main()
