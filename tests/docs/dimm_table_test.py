"""docs/dimm_table.rng takes tables that are stored as they are written, and no others.

Runs with the source folder, diagsh and the default board's blob in SOURCES, DIAGSH
and DTB.
"""

import os
import pathlib
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

import worked_examples

SOURCES = pathlib.Path(os.environ["SOURCES"])
SCHEMA = SOURCES / "docs" / "dimm_table.rng"
TABLES = SOURCES / "boards" / "quillbank" / "xml"
NOT_VALID = 3  # what xmllint ends with, unlike when a file cannot be read
EEPROM = "/i2c-0/pca9547-0/ch1/pca9548-0/ch2/param-eeprom"
CHIP = "i2c-0/0x77/ch1/0x70/ch2/0x51.bin"

# A line for each element, so that complaints tell them apart.
TABLE = """\
<table>
<dimm_table_version>0x1</dimm_table_version>
<signature>0xA5A50001</signature>
<dimm>
<jedec_manufacturer_id>0x802C</jedec_manufacturer_id>
<dimm_part_num>FIRST</dimm_part_num>
<revision_start>0x00</revision_start>
<revision_end>0xFF</revision_end>
<register_set>
<offset>0x104</offset>
<value>0x00000001</value>
</register_set>
</dimm>
<dimm>
<jedec_manufacturer_id>0x80CE</jedec_manufacturer_id>
<dimm_part_num>SECOND</dimm_part_num>
<revision_start>0x0001</revision_start>
<revision_end>0x0002</revision_end>
<register_set>
<offset>0x108</offset>
<value>0xFFFFFFFF</value>
<offset>0x10C</offset>
<value>0X0000abcd</value>
</register_set>
</dimm>
</table>
"""
FIRST_SET = """\
<register_set>
<offset>0x104</offset>
<value>0x00000001</value>
</register_set>
"""
SECOND_SET = """\
<register_set>
<offset>0x108</offset>
<value>0xFFFFFFFF</value>
<offset>0x10C</offset>
<value>0X0000abcd</value>
</register_set>
"""
PART = "<dimm_part_num>SECOND</dimm_part_num>\n"
VALUE = "<value>0xFFFFFFFF</value>\n"

# What else a table may be: edits of the one above.
VARIANTS = {
    "other names": [("<table>", "<bank>"), ("</table>", "</bank>"), ("dimm>", "slot>")],
    "attributes of free elements": [("<table>", '<table board="a">'), ("<dimm>", '<dimm n="1">')],
    "the signature first": [("<dimm_table_version>0x1</dimm_table_version>\n", ""),
                            ("<dimm>\n<jedec_manufacturer_id>0x802C",
                             "<dimm_table_version>0x1</dimm_table_version>\n"
                             "<dimm>\n<jedec_manufacturer_id>0x802C")],
    "another order in a module": [(PART, ""), (SECOND_SET, SECOND_SET + PART)],
    "a pair in an element": [(VALUE, VALUE + "</reg>\n"), ("<offset>0x108", "<reg><offset>0x108")],
    "an empty register set before others": [(FIRST_SET, "<register_set/>\n")],
    "an empty register set at the end": [(SECOND_SET, "<register_set/>\n")],
    "no registers at the end": [(SECOND_SET, "")],
    "no registers at all": [(FIRST_SET, ""), (SECOND_SET, "")],
    "comments": [(VALUE, VALUE + "<!-- a comment -->\n")],
    "a part number of 32 characters": [("SECOND", "ABCDEFGH IJKLMNOP/QRSTUVW-345678")],
    "a manufacturer of 64 bits": [("0x80CE", "0x00000001000080CE")],
}

# Mistakes, and what the complaint must name first: the element that is wrong or lacks
# something, and its line.
MISTAKES = {
    "a number without 0x": ([(VALUE, "<value>10</value>\n")], "value", 21),
    "a number that is none": ([(VALUE, "<value>0x1G</value>\n")], "value", 21),
    "a number of 33 bits": ([(VALUE, "<value>0x1FFFFFFFF</value>\n")], "value", 21),
    "a number on a line of its own": ([(VALUE, "<value>\n0xFFFFFFFF</value>\n")], "value", 21),
    "an empty number": ([(VALUE, "<value/>\n")], "value", 21),
    "a number in an attribute": ([(VALUE, '<value is="0xFFFFFFFF"/>\n')], "value", 21),
    "an empty signature": ([("0xA5A50001", "")], "signature", 3),
    "a revision of 17 bits": ([("0x0002", "0x10002")], "revision_end", 18),
    "a manufacturer of 65 bits": ([("0x80CE", "0x100000000000080CE")],
                                  "jedec_manufacturer_id", 15),
    "a part number of 33 characters": ([("SECOND", "ABCDEFGH IJKLMNOP/QRSTUVW-3456789")],
                                       "dimm_part_num", 16),
    "an empty part number": ([("SECOND", "")], "dimm_part_num", 16),
    "a part number behind a blank": ([("SECOND", " SECOND")], "dimm_part_num", 16),
    "a part number with a tab": ([("SECOND", "SEC\tOND")], "dimm_part_num", 16),
    "a part number that is no ASCII": ([("SECOND", "SECÖND")], "dimm_part_num", 16),
    "a part number that is an element's name": ([("SECOND", "offset")], "dimm_part_num", 16),
    "a part number left out": ([(PART, "")], "dimm", 14),
    "a part number too many": ([(PART, PART + PART)], "dimm_part_num", 17),
    "a misspelt name": ([("<revision_end>0x0002</revision_end>",
                          "<revision_stop>0x0002</revision_stop>")], "dimm", 14),
    "an offset left out": ([("<offset>0x108</offset>\n", "")], "register_set", 19),
    "a value left out": ([(VALUE, "")], "offset", 21),
    "two values for an offset": ([(VALUE, VALUE + VALUE)], "value", 22),
    "offsets before all values": ([(VALUE + "<offset>0x10C</offset>\n",
                                    "<offset>0x10C</offset>\n" + VALUE)], "offset", 21),
    "registers outside of a set": ([("<register_set>\n<offset>0x108", "<offset>0x108"),
                                    ("0X0000abcd</value>\n</register_set>",
                                     "0X0000abcd</value>")], "dimm", 14),
    "two register sets": ([("<offset>0x10C", "</register_set><register_set><offset>0x10C")],
                          "register_set", 19),
    "a register set left out": ([(FIRST_SET, "")], "dimm", 4),
    "no version": ([("<dimm_table_version>0x1</dimm_table_version>\n", "")], "table", 1),
    "two signatures": ([("<dimm>\n<jedec_manufacturer_id>0x802C",
                         "<signature>0x1</signature>\n"
                         "<dimm>\n<jedec_manufacturer_id>0x802C")], "signature", 4),
    "modules in no element": ([("<dimm>\n", ""), ("</dimm>\n", "")],
                              "jedec_manufacturer_id", 4),
    "a module that is named as a field": ([("dimm>", "offset>")], "offset", 4),
    "a namespace": ([("<table>", '<table xmlns="urn:x">')], "table", 1),
}


def as_written(text):
    """The image without its CRC of a table, each module taken from its own element."""
    root = xml.etree.ElementTree.fromstring(text)

    def numbers(of, name):
        return [int(element.text, 16) for element in of.iter(name)]

    signature, = numbers(root, "signature")
    modules = b""
    described = [element for element in root if len(element) > 0]
    for module in described:
        manufacturer, = numbers(module, "jedec_manufacturer_id")
        part = module.find("dimm_part_num").text.encode()
        if signature == 0x56454C44:
            modules += struct.pack(">Q", manufacturer) + part[:19].ljust(19) + b"\0"
        else:
            modules += struct.pack(">HH", manufacturer & 0xFFFF, 0) + part[:32].ljust(32)
        modules += struct.pack(">HH", *numbers(module, "revision_start"),
                               *numbers(module, "revision_end"))
        pairs = list(zip(numbers(module, "offset"), numbers(module, "value"), strict=True))
        modules += struct.pack(">I", len(pairs))
        modules += b"".join(struct.pack(">II", *pair) for pair in pairs)
    return struct.pack(">IIII", *numbers(root, "dimm_table_version"), 20 + len(modules),
                       signature, len(described)) + modules


class DimmTable(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.file = self.folder / "table.xml"

    def check(self, file):
        """What xmllint ends with, and what it says of the file."""
        done = subprocess.run(["xmllint", "--noout", "--relaxng", SCHEMA, file], timeout=60,
                              capture_output=True, text=True, check=False)
        return done.returncode, done.stderr

    def write_edited(self, edits):
        text = TABLE
        for old, new in edits:
            self.assertIn(old, text)
            text = text.replace(old, new)
        self.file.write_text(text, encoding="utf-8")

    def assert_valid_and_stored(self, file):
        status, said = self.check(file)
        self.assertEqual(status, 0, said)
        subprocess.run([os.environ["DIAGSH"], "--sim", os.environ["DTB"], "--state",
                        self.folder / "state", "-c", f"{EEPROM}/prog-param-eeprom '{file}'"],
                       timeout=60, capture_output=True, stdin=subprocess.DEVNULL, check=True)
        image = as_written(file.read_text())
        stored = (self.folder / "state" / CHIP).read_bytes()[4:4 + len(image)]
        self.assertEqual(stored.hex(" ", 4), image.hex(" ", 4))

    def test_the_tables_of_the_default_board_are_valid_and_stored_as_written(self):
        for name in ("prog_param_quillbank.xml", "prog_param_quillbank_extended.xml"):
            with self.subTest(name):
                self.assert_valid_and_stored(TABLES / name)

    def test_the_worked_examples_are_valid_and_stored_as_written(self):
        for text, _ in worked_examples.worked_examples():
            self.file.write_text(text)
            self.assert_valid_and_stored(self.file)

    def test_what_else_is_valid_is_stored_as_written(self):
        for name, edits in {"no edits": [], **VARIANTS}.items():
            with self.subTest(name):
                self.write_edited(edits)
                self.assert_valid_and_stored(self.file)

    def test_it_names_the_place_of_a_mistake_first(self):
        for name, (edits, element, line) in MISTAKES.items():
            with self.subTest(name):
                self.write_edited(edits)
                status, said = self.check(self.file)
                self.assertEqual(status, NOT_VALID, said)
                place = re.search(r"^.*/table\.xml:(\d+): element (\w+): ", said, re.MULTILINE)
                self.assertEqual(place.groups(), (str(line), element), said)

    def test_it_refuses_a_table_without_modules(self):
        head = TABLE[:TABLE.index("<dimm>")]
        self.file.write_text(head + "</table>\n")
        self.assertEqual(self.check(self.file)[0], NOT_VALID)


if __name__ == "__main__":
    unittest.main()
