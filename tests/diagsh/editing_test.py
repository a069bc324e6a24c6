"""The line editor of diagsh at a real terminal: typing and completion.

Runs with the paths of diagsh and of the default board's blob in DIAGSH and DTB.
"""

import signal
import sys
import unittest

sys.dont_write_bytecode = True

from line_editor import BELL, CLEARED, CTRL_A, CTRL_C, CTRL_D, LEFT, Editing  # noqa: E402


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
