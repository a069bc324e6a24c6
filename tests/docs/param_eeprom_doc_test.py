"""The worked examples of docs/param_eeprom.md are what diagsh stores and says.

Runs with the source folder, diagsh and the default board's blob in SOURCES, DIAGSH
and DTB.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

import worked_examples

EEPROM = "/i2c-0/pca9547-0/ch1/pca9548-0/ch2/param-eeprom"
CHIP = "i2c-0/0x77/ch1/0x70/ch2/0x51.bin"
PROMPT = re.compile(r"/[-\w/]*> (.*)")


def crc32_posix(data):
    """The CRC of an image, bit by bit."""
    crc = 0
    for byte in data:
        for bit in range(7, -1, -1):
            carry = (crc >> 31) ^ (byte >> bit & 1)
            crc = (crc << 1) & 0xFFFFFFFF
            if carry:
                crc ^= 0x04C11DB7
    return crc


def session():
    """What the console blocks of the page have typed at the prompt, and what is shown."""
    typed, shown = [], []
    for block in re.findall(r"^```console\n(.*?)^```\n", worked_examples.PAGE.read_text(),
                            re.MULTILINE | re.DOTALL):
        for line in block.splitlines():
            if found := PROMPT.fullmatch(line):
                typed.append(found.group(1))
            else:
                shown.append(line)
    return typed, shown


class ParamEepromPage(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.chip = self.folder / "state" / CHIP
        self.examples = worked_examples.worked_examples()

    def run_diagsh(self, *commands, status=0):
        words = [os.environ["DIAGSH"], "--sim", os.environ["DTB"], "--state",
                 self.folder / "state", "--keep-going"]
        for command in commands:
            words += ["-c", command]
        done = subprocess.run(words, capture_output=True, text=True, timeout=120, check=False,
                              stdin=subprocess.DEVNULL, cwd=self.folder)
        self.assertEqual(done.returncode, status, done.stdout + done.stderr)
        return done.stdout

    def program(self, text):
        (self.folder / "table.xml").write_text(text)
        return self.run_diagsh(f"{EEPROM}/prog-param-eeprom table.xml")

    def test_its_check_value_is_that_of_the_crc(self):
        self.assertEqual(crc32_posix(b"123456789"), 0x89A1897F)
        self.assertIn("`123456789` is 0x89A1897F", worked_examples.PAGE.read_text())

    def test_it_has_an_example_of_each_layout(self):
        signatures = [image[12:16] for _, image in self.examples]
        self.assertEqual([signature == b"VELD" for signature in signatures], [False, True])

    def test_its_dumps_have_their_length_and_their_crc(self):
        for _, image in self.examples:
            self.assertEqual(int.from_bytes(image[8:12], "big"), len(image))
            self.assertEqual(int.from_bytes(image[:4], "big"), crc32_posix(image[4:]))

    def test_its_tables_are_stored_as_it_shows_and_nothing_else_is_touched(self):
        for text, image in self.examples:
            self.chip.unlink(missing_ok=True)
            said = self.program(text)
            self.assertEqual(said, f"CRC : 0x{image[:4].hex().upper()}\n")
            contents = self.chip.read_bytes()
            self.assertEqual(contents[:len(image)].hex(" ", 4), image.hex(" ", 4))
            self.assertEqual(set(contents[len(image):]), {0xFF})

    def test_erasing_takes_back_what_was_stored(self):
        self.program(self.examples[0][0])
        self.run_diagsh(f"{EEPROM}/erase-param-eeprom")
        self.assertEqual(set(self.chip.read_bytes()), {0xFF})

    def test_its_session_shows_what_diagsh_says(self):
        (self.folder / "compact.xml").write_text(self.examples[0][0])
        typed, shown = session()
        self.assertGreater(len(typed), 3)
        # The last one fails, as the page says.
        self.assertEqual(self.run_diagsh(*typed, status=1).splitlines(), shown)


if __name__ == "__main__":
    unittest.main()
