#!/usr/bin/env python3
"""Tests of the image maker: usage: make_images_test.py MAKE_IMAGES.py"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

MAKER = sys.argv.pop(1)

GOOD = """
file = "a/0x50.bin"
size = 8
fill = 0xEE
"""


def field(name, offset, width, content):
    return f'[[field]]\nname = "{name}"\noffset = {offset}\nwidth = {width}\n{content}\n'


class MakeImages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.out = self.folder / "out"

    def run_maker(self, *sources):
        paths = []
        for number, source in enumerate(sources):
            paths.append(self.folder / f"s{number}.toml")
            paths[-1].write_text(source)
        return subprocess.run([sys.executable, MAKER, "--out", self.out, *paths],
                              capture_output=True, text=True)

    def image(self, source, file="a/0x50.bin"):
        done = self.run_maker(source)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return (self.out / file).read_bytes()

    def refusal(self, *sources):
        done = self.run_maker(*sources)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertFalse(self.out.exists(), "a refused source left something behind")
        return done.stderr.replace(str(self.folder) + "/", "")

    def test_fills_what_no_field_covers(self):
        self.assertEqual(self.image(GOOD), b"\xEE" * 8)

    def test_lays_out_values_in_either_order(self):
        source = GOOD + field("a", 0, 2, "value = 0x1234")
        source += field("b", 2, 3, 'value = 0x123456\norder = "little"')
        self.assertEqual(self.image(source), b"\x12\x34\x56\x34\x12\xEE\xEE\xEE")

    def test_pads_texts_with_blanks(self):
        self.assertEqual(self.image(GOOD + field("t", 1, 5, 'text = "abc"')),
                         b"\xEEabc  \xEE\xEE")

    def test_takes_bytes_as_they_are(self):
        self.assertEqual(self.image(GOOD + field("b", 6, 2, "bytes = [0, 255]")),
                         b"\xEE" * 6 + b"\x00\xFF")

    def test_sums_up_after_everything_else_is_there(self):
        source = GOOD + field("sum", 0, 1, 'checksum = "sum8"\nfrom = 1\nto = 2')
        source += field("v", 1, 2, "value = 0x80FF")
        self.assertEqual(self.image(source)[:3], b"\x7F\x80\xFF")

    def test_knows_the_two_kinds_of_crc(self):
        nine = 'file = "c.bin"\nsize = 11\nfill = 0\n' + field("d", 0, 9, 'text = "123456789"')
        for kind, crc in (("crc16-xmodem", b"\x31\xC3"), ("crc16-genibus", b"\xD6\x4E")):
            source = nine + field("crc", 9, 2, f'checksum = "{kind}"\nfrom = 0\nto = 8')
            self.assertEqual(self.image(source, "c.bin")[9:], crc)

    def test_takes_away_images_that_are_no_longer_made(self):
        self.image(GOOD.replace("a/", "b/"), "b/0x50.bin")
        self.image(GOOD)
        self.assertFalse((self.out / "b/0x50.bin").exists())

    def test_refuses_fields_that_overlap(self):
        source = GOOD + field("one", 0, 4, "value = 1") + field("two", 3, 1, "value = 2")
        self.assertEqual(self.refusal(source),
                         "make_images: s0.toml: field two: overlaps field one at byte 3\n")

    def test_refuses_fields_that_pass_the_end(self):
        self.assertEqual(self.refusal(GOOD + field("late", 6, 3, "value = 1")),
                         "make_images: s0.toml: field late: bytes 6 to 8 pass the end of 8 bytes\n")
        self.assertEqual(self.refusal(GOOD + field("out", 8, 1, "value = 1")),
                         "make_images: s0.toml: field out: offset 8 is not 0 to 7\n")

    def test_refuses_values_and_texts_that_do_not_fit(self):
        self.assertEqual(self.refusal(GOOD + field("v", 0, 1, "value = 256")),
                         "make_images: s0.toml: field v: value 0x100 does not fit 1 bytes\n")
        self.assertEqual(
            self.refusal(GOOD + field("t", 0, 2, 'text = "abc"')),
            "make_images: s0.toml: field t: text of 3 characters does not fit 2 bytes\n")
        self.assertEqual(self.refusal(GOOD + field("b", 0, 2, "bytes = [1]")),
                         "make_images: s0.toml: field b: 1 bytes given, width is 2\n")

    def test_refuses_checksums_that_cannot_be(self):
        for content, fault in (
                ('checksum = "sum8"\nfrom = 0\nto = 7', "the checksum covers itself"),
                ('checksum = "md5"\nfrom = 0\nto = 1',
                 'checksum "md5" is none of crc16-xmodem, crc16-genibus, sum8'),
                ('checksum = "crc16-xmodem"\nfrom = 0\nto = 1', "width of this checksum must be 2"),
                ('checksum = "sum8"\nfrom = 0\nto = 8', "to 8 is not 0 to 7")):
            self.assertEqual(self.refusal(GOOD + field("c", 2, 1, content)),
                             f"make_images: s0.toml: field c: {fault}\n")

    def test_refuses_what_it_does_not_understand(self):
        self.assertEqual(self.refusal(GOOD + field("f", 0, 1, "valeu = 1")),
                         "make_images: s0.toml: field f: needs exactly one of value, text, bytes, "
                         "checksum, has 0\n")
        self.assertEqual(self.refusal(GOOD + field("f", 0, 1, "value = 1\nnote = 1")),
                         "make_images: s0.toml: field f: unknown: note\n")
        self.assertEqual(self.refusal(GOOD + "pages = 1\n"),
                         "make_images: s0.toml: unknown: pages\n")
        self.assertEqual(self.refusal(GOOD + '[[field]]\noffset = 0\n'),
                         "make_images: s0.toml: field 0 needs a name\n")
        self.assertIn("make_images: s0.toml: ", self.refusal("file = "))

    def test_refuses_files_outside_the_folder_or_made_twice(self):
        self.assertEqual(self.refusal(GOOD.replace("a/", "../")),
                         'make_images: s0.toml: file "../0x50.bin" leads out of the folder\n')
        self.assertEqual(self.refusal(GOOD, GOOD),
                         "make_images: s1.toml: a/0x50.bin is made by another source too\n")


if __name__ == "__main__":
    unittest.main()
