"""The parameter EEPROM at work: programmed, checked and erased by scripts and at
a real terminal, stopped in the middle, and cut off from its bus.

Runs with the paths of diagsh, of the default board's blob and of the schema in
DIAGSH, DTB and SCHEMA.
"""

import json
import os
import pathlib
import re
import signal
import struct
import subprocess
import sys
import time
import unittest

import jsonschema

sys.dont_write_bytecode = True

from diagsh_process import OnQuillbank  # noqa: E402

EEPROM = "/i2c-0/pca9547-0/ch1/pca9548-0/ch2/param-eeprom"
PROG = EEPROM + "/prog-param-eeprom"
CHECK = EEPROM + "/check-param-eeprom"
ERASE = EEPROM + "/erase-param-eeprom"

SIZE = 8192
HEADER = 20
MODULE = 44  # without its registers
# What was there before: nothing that a table could hold.
OLD = bytes([0xA7, 0x5B, 0xC3, 0x9D] * (SIZE // 4))

CTRL_C = "\x03"
INCOMPLETE = ("the image is incomplete and a check will fail, unless the EEPROM held this very "
              "table before. Program it again.")


class Table:
    """A compact table of some modules, each with some registers."""

    def __init__(self, version, modules, registers):
        self.version = version
        self.modules = [(f"PART-{i:03}", [(16 * i + 4 * k, 0x10000 * i + k + 1)
                                          for k in range(registers)]) for i in range(modules)]

    def xml(self):
        def element(name, value):
            return f"<{name}>{value:#x}</{name}>\n"

        text = "<table>\n" + element("dimm_table_version", self.version)
        text += element("signature", 0x51554C42)
        for part, pairs in self.modules:
            text += element("jedec_manufacturer_id", 0x802C)
            text += f"<dimm_part_num>{part}</dimm_part_num>\n"
            text += element("revision_start", 0x31) + element("revision_end", 0x39)
            text += "<register_set>\n"
            for offset, value in pairs:
                text += element("offset", offset) + element("value", value)
            text += "</register_set>\n"
        return text + "</table>\n"

    def image(self):
        body = b""
        for part, pairs in self.modules:
            body += struct.pack(">HH32sHHI", 0x802C, 0, part.ljust(32).encode(), 0x31, 0x39,
                                len(pairs))
            body += b"".join(struct.pack(">II", *pair) for pair in pairs)
        body = struct.pack(">IIII", self.version, HEADER + len(body), 0x51554C42,
                           len(self.modules)) + body
        return struct.pack(">I", crc32(body)) + body

    def words(self):
        return len(self.image()) // 4

    def order(self):
        """The offsets of the image's words in the order in which they are written."""
        offsets = list(range(4, HEADER, 4))
        at = HEADER
        for _, pairs in self.modules:
            registers = at + MODULE
            offsets += range(at, registers, 4)
            at = registers + 8 * len(pairs)
            offsets += range(registers, at, 8)
            offsets += range(registers + 4, at, 8)
        return [*offsets, 0]


def crc32(data):
    crc = 0
    for byte in data:
        crc ^= byte << 24
        for _ in range(8):
            crc = (crc << 1 ^ (0x04C11DB7 if crc & 0x80000000 else 0)) & 0xFFFFFFFF
    return crc


SMALL = Table(version=3, modules=2, registers=2)
# Takes seconds to program.
LARGE = Table(version=4, modules=24, registers=12)


class ParamEeprom(OnQuillbank):
    def setUp(self):
        super().setUp()
        self.chip = self.state / "i2c-0/0x77/ch1/0x70/ch2/0x51.bin"
        self.hold(OLD)
        self.small = self.file("small.xml", SMALL)
        self.large = self.file("large.xml", LARGE)

    def file(self, name, table):
        path = self.folder / name
        path.write_text(table.xml())
        return path

    def hold(self, contents):
        self.chip.parent.mkdir(parents=True, exist_ok=True)
        self.chip.write_bytes(contents)

    def hold_image(self, table):
        self.hold(table.image() + OLD[len(table.image()):])

    def assert_holds(self, contents):
        self.assertEqual(self.chip.read_bytes().hex(" ", 4), contents.hex(" ", 4))

    def assert_written(self, table, words):
        """The first of the words, as they are written, are the table's, all others
        the old ones."""
        contents, image = bytearray(OLD), table.image()
        for offset in table.order()[:words]:
            contents[offset:offset + 4] = image[offset:offset + 4]
        self.assert_holds(bytes(contents))

    def check(self, file):
        return self.run_diagsh("-c", f"{CHECK} {file}")

    def assert_check_passes(self, file):
        status, out, err = self.check(file)
        self.assertIn("EEPROM Parameters Verification PASSED\n", out)
        self.assertEqual((status, err), (0, ""))

    def assert_check_fails(self, file):
        status, out, err = self.check(file)
        self.assertIn("EEPROM Parameters Verification FAILED!\n", out)
        self.assertEqual((status, err), (1, CHECK + ": failed (ERR_FAIL)\n"))
        return out

    def spawn(self):
        return super().spawn(columns=240)

    def begin(self, child, file):
        """Programs until the bar shows, in the middle."""
        child.sendline(f"{PROG} {file}")
        child.expect(rf"\[#+-+\] prog-param-eeprom: \d+%, \d+ of {LARGE.words()}, \d+/s")

    def begin_job(self, child, file):
        """Programs in the background until some of it is done."""
        child.sendline(f"{PROG} {file} &")
        child.expect("started\r\n")
        for _ in range(10_000):
            child.sendline("jobs")
            child.expect(rf"\[1\] {PROG} {file}: (\w+)( (\d+)%)?, 0:00:\d\d\r\n")
            self.assertEqual(child.match[1], "running")
            if child.match[3] and int(child.match[3]) > 1:
                return
        self.fail("the job does not get on")

    def expect_incomplete(self, child, how):
        """The word that it came to."""
        child.expect(rf"Programming {how} word (\d+) of {LARGE.words()}: "
                     + re.escape(INCOMPLETE))
        word = int(child.match[1])
        self.assertGreater(word, 1)
        self.assertLess(word, LARGE.words())
        return word

    def expect_stopped(self, child):
        """Also that as many words as it says are written."""
        self.assert_written(LARGE, self.expect_incomplete(child, "stopped after"))


class Script(ParamEeprom):
    def test_what_is_programmed_checks_until_a_byte_changes_and_is_erased_as_a_whole(self):
        image = SMALL.image()
        status, out, err = self.run_diagsh("-c", f"{PROG} {self.small}")
        self.assertEqual((status, out, err), (0, f"CRC : 0x{crc32(image[4:]):08X}\n", ""))
        self.assert_holds(image + OLD[len(image):])
        self.assert_check_passes(self.small)

        # The last byte of the second module's last value.
        with self.chip.open("r+b") as chip:
            chip.seek(len(image) - 1)
            chip.write(b"\xEE")
        out = self.assert_check_fails(self.small)
        self.assertEqual(re.findall(".* Match: FALSE", out),
                         ["Dimm[1]: DimmRegisterValues Match: FALSE"])

        self.assertEqual(self.run_diagsh("-c", ERASE), (0, "", ""))
        self.assert_holds(b"\xFF" * len(image) + OLD[len(image):])

    def test_the_boards_own_table_is_programmed_and_checked(self):
        status, out, err = self.run_diagsh("-c", f"{PROG} && {CHECK}")
        self.assertEqual((status, err), (0, ""))
        self.assertIn("EEPROM Parameters Verification PASSED\n", out)

    def test_check_names_the_field_of_a_changed_byte(self):
        fields = {4: "DimmVersionNum", 8: "DimmTableLen", 12: "Signature", 16: "NumEntries",
                  20: "Dimm[0]: ManufacturerID", 24: "Dimm[0]: DimmPartNum",
                  55: "Dimm[0]: DimmPartNum", 57: "Dimm[0]: DimmRevision",
                  63: "Dimm[0]: NumRegisters", 64: "Dimm[0]: DimmRegisterValues",
                  80: "Dimm[1]: ManufacturerID"}
        for offset, field in fields.items():
            with self.subTest(field=field, offset=offset):
                self.hold_image(SMALL)
                with self.chip.open("r+b") as chip:
                    chip.seek(offset)
                    chip.write(b"\xEE")
                out = self.assert_check_fails(self.small)
                self.assertEqual(re.findall("(.*) Match: FALSE", out), [field])

    def test_check_tells_of_a_changed_crc(self):
        image = SMALL.image()
        self.hold(b"\0\0\0\0" + image[4:] + OLD[len(image):])
        out = self.assert_check_fails(self.small)
        self.assertIn(f"CRC32 does not match! expected: 0x{crc32(image[4:]):08X}, "
                      "read: 0x00000000\n", out)
        self.assertNotIn("Match: FALSE", out)

    def test_programs_read_version_and_crc(self):
        schema = json.loads(pathlib.Path(os.environ["SCHEMA"]).read_text())
        self.hold_image(SMALL)
        for file, result in ((self.small, "passed"), (self.large, "failed")):
            with self.subTest(result):
                _, out, _ = self.run_diagsh("--json", "-c", f"{CHECK} {file}")
                answer = json.loads(out)
                jsonschema.Draft202012Validator(schema).validate(answer)
                self.assertEqual(answer["result"]["status"], result)
                outputs = {item["name"]: (item["type"], item["value"])
                           for item in answer["outputs"]}
                self.assertEqual(list(outputs), ["version", "crc32"])
                if result == "passed":
                    self.assertEqual(outputs, {
                        "version": ("uint32", SMALL.version),
                        "crc32": ("uint32", crc32(SMALL.image()[4:]))})

    def test_a_file_name_is_a_word_as_any_other(self):
        self.hold_image(SMALL)
        for name, word in (("two words.xml", "'{}/two words.xml'"),
                           ("two words.xml", "{}/two\\ words.xml"),
                           ("quote'd.xml", "\"{}/quote'd.xml\""),
                           ("#1.xml", "{}/#1.xml")):
            with self.subTest(word):
                self.file(name, SMALL)
                self.assert_check_passes(word.format(self.folder))

    def test_what_is_no_table_is_refused_and_nothing_is_written(self):
        (self.folder / "empty.xml").touch()
        (self.folder / "cut.xml").write_text(SMALL.xml()[:-20])
        os.mkfifo(self.folder / "fifo")
        for name in ("missing.xml", "empty.xml", "cut.xml", "fifo", "."):
            with self.subTest(name):
                path = self.folder / name
                status, out, err = self.run_diagsh("-c", f"{PROG} {path}")
                self.assertEqual((status, err), (1, PROG + ": failed (ERR_FAIL)\n"))
                self.assertIn(f'Xml file "{path}" can not be found.\n', out)
                self.assertIn("CMB command failed: Invoke NO_XML_FILE_FOUND\n", out)
        self.assert_holds(OLD)

    def test_one_failed_transfer_at_any_word_leaves_an_image_that_is_rejected(self):
        # A word takes ten transfers: two channels are selected, the word is
        # written, two multiplexers are closed, and the same for reading it.
        table = Table(version=5, modules=1, registers=1)
        file = self.file("tiny.xml", table)
        for word in range(1, table.words() + 1):
            with self.subTest(word=word):
                self.hold(OLD)
                status, out, err = self.run_diagsh(
                    "-c", f"sim/fail-nth i2c-0 {10 * (word - 1) + 3}", "-c", f"{PROG} {file}")
                self.assertEqual((status, err), (1, PROG + ": failed (ERR_FAIL)\n"))
                self.assertIn(f"Programming failed at word {word} of {table.words()}: {INCOMPLETE}"
                              "\n", out)
                self.assert_written(table, word - 1)
                self.assert_check_fails(file)

    def test_sigint_ends_a_script_as_aborted(self):
        with subprocess.Popen(self.words("-c", f"{PROG} {self.large}", "-c", "echo more"),
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, env=self.environment) as process:
            self.addCleanup(process.kill)
            give_up = time.monotonic() + 60
            while self.chip.read_bytes()[24:28] == OLD[24:28]:
                self.assertLess(time.monotonic(), give_up, "nothing is programmed")
            process.send_signal(signal.SIGINT)
            out, err = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 3)
        said = re.fullmatch(rf"stopping {PROG}\nProgramming stopped after word (\d+) of "
                            rf"{LARGE.words()}: {re.escape(INCOMPLETE)}\n", out)
        self.assertTrue(said, out)
        self.assertEqual(err, PROG + ": aborted (ERR_ABORTED)\n")
        self.assert_written(LARGE, int(said[1]))
        self.assert_check_fails(self.large)


class Terminal(ParamEeprom):
    def test_the_bar_counts_words_shows_what_is_done_and_goes(self):
        table = Table(version=5, modules=10, registers=8)
        file = self.file("some.xml", table)
        child = self.spawn()
        child.sendline(f"{PROG} {file}")
        child.expect(rf"\r\x1b\[K\[#+-+\] prog-param-eeprom: \d+%, \d+ of {table.words()}, "
                     r"\d+/s, 0:0\d left, (Writing|SUCCESS|Dimm|Part|Rev|Setting)")
        child.expect_exact(f"\r\x1b[KCRC : 0x{crc32(table.image()[4:]):08X}\r\n")
        child.expect("/> ")
        # Whatever was drawn after that line has been taken away again.
        self.assertNotIn("prog-param-eeprom:", child.before.rsplit("\x1b[K", 1)[1])
        self.quit(child)
        self.assert_check_passes(file)

    def test_ctrl_c_stops_between_two_words_and_says_what_is_left(self):
        child = self.spawn()
        self.begin(child, self.large)
        child.sendintr()
        self.expect_stopped(child)
        child.expect_exact(PROG + ": aborted (ERR_ABORTED)\r\n")
        child.expect("/> ")
        self.quit(child)
        self.assert_check_fails(self.large)

    def test_many_ctrl_c_end_it_once_and_the_prompt_goes_on(self):
        child = self.spawn()
        self.begin(child, self.large)
        child.send(CTRL_C * 50)
        self.expect_stopped(child)
        child.expect_exact(PROG + ": aborted (ERR_ABORTED)\r\n")
        child.expect("/> ")
        child.sendline(f"{PROG} {self.small} && {CHECK} {self.small}")
        child.expect("EEPROM Parameters Verification PASSED\r\n")
        self.quit(child)

    def test_sigterm_stops_it_and_ends_the_shell(self):
        child = self.spawn()
        self.begin(child, self.large)
        child.kill(signal.SIGTERM)
        self.expect_stopped(child)
        self.expect_end(child, 3)

    def test_a_job_is_stopped_by_its_number(self):
        child = self.spawn()
        self.begin_job(child, self.large)
        child.sendline("stop 1")
        child.expect_exact(f"[1] {PROG} {self.large}: stopping\r\n")
        self.expect_stopped(child)
        child.expect_exact(f"[1] {PROG} {self.large}: aborted (ERR_ABORTED)\r\n")
        # The device is free again.
        child.sendline(f"{PROG} {self.small} && {CHECK} {self.small}")
        child.expect("EEPROM Parameters Verification PASSED\r\n")
        self.quit(child)

    def test_two_programmings_of_one_eeprom_take_turns(self):
        table = Table(version=5, modules=6, registers=12)
        first, image = self.file("first.xml", table), table.image()
        child = self.spawn()
        self.begin_job(child, first)
        child.sendline(f"{PROG} {self.small} &")
        child.expect(rf"\[2\] waiting for {EEPROM}, held by {PROG} {first} \(job 1\)\r\n")
        child.sendline("wait")
        child.expect_exact(f"[1] {PROG} {first}: passed\r\n")
        child.expect_exact(f"[2] {PROG} {self.small}: passed\r\n")
        self.quit(child)
        self.assert_holds(SMALL.image() + image[len(SMALL.image()):] + OLD[len(image):])

    def test_a_power_cut_in_the_middle_leaves_an_image_that_is_rejected(self):
        self.hold_image(SMALL)
        child = self.spawn()
        self.begin_job(child, self.large)
        child.sendline("sim/stick i2c-0")
        self.expect_incomplete(child, "failed at")
        child.expect_exact(f"[1] {PROG} {self.large}: failed (ERR_FAIL)\r\n")
        self.quit(child)
        # With the next start the bus is free again.
        self.assert_check_fails(self.large)
        self.assert_check_fails(self.small)
        self.assertEqual(self.run_diagsh("-c", f"{PROG} {self.small}")[0], 0)
        self.assert_check_passes(self.small)


if __name__ == "__main__":
    unittest.main()
