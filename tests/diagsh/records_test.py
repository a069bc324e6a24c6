"""The EEPROMs with a meaning on the default board: the memory modules' SPD, the
manufacturing record and the optical modules, shown, decoded and checked.

Runs with the paths of diagsh and of the default board's blob in DIAGSH and DTB.
"""

import re
import sys
import unittest

sys.dont_write_bytecode = True

from diagsh_process import OnQuillbank  # noqa: E402

REGISTERED = "/i2c-0/pca9547-0/ch0/spd-0"
UNBUFFERED = "/i2c-0/pca9547-0/ch0/spd-1"
MFG = "/i2c-0/mfg-eeprom"
MFG_FILE = "state/i2c-0/0x50.bin"
SFP_1G = "/i2c-1/pca9548-1/ch0/sfp-1g"
SFP_10G = "/i2c-1/pca9548-1/ch1/pca9547-1/ch3/sfp-10g"


class Records(OnQuillbank):
    def run_commands(self, *commands):
        words = [word for command in commands for word in ("-c", command)]
        return self.run_diagsh(*words)

    def assert_passes(self, *commands):
        status, out, err = self.run_commands(*commands)
        self.assertEqual((status, err), (0, ""), out)
        return out

    def change_byte(self, offset):
        file = self.folder / MFG_FILE
        contents = bytearray(file.read_bytes())
        contents[offset] ^= 0x01
        file.write_bytes(contents)

    def test_memory_modules_are_shown_with_the_section_of_their_type(self):
        registered = self.assert_passes(REGISTERED + "/show-spd-info")
        unbuffered = self.assert_passes(UNBUFFERED + "/show-spd-info")
        self.assertIn("68     : 00 reg_type      (Registered) Register Type\n", registered)
        self.assertIn("76     : 00 rcw[7]\n", registered)
        self.assertIn("63     : 00 addr_mapping  (Unbuffered) Address mapping from Edge "
                      "Connector to DRAM\n117    : 01 Module MfgID", unbuffered)
        for out in (registered, unbuffered):
            lines = out.splitlines()
            # In their order, the reserved bytes in the middle too.
            offsets = [int(line.split()[0].split("-")[0]) for line in lines if line]
            self.assertEqual(offsets, sorted(offsets))
            self.assertIn("39 - 59: " + "00 " * 21, lines)

    def test_the_manufacturing_record_is_shown_and_answered(self):
        out = self.assert_passes(MFG + "/show-manuf-info", MFG + "/get-serial-num",
                                 MFG + "/get-board-info", MFG + "/chk-mfg")
        self.assertIn("\nBoard EEPROM\n\nid           : 01\n", out)
        self.assertIn("macaddr_start: 02:51:42:00:1a:10\nmac_count    : 16\n", out)
        self.assertEqual(out.count("serialnum = QB22350000417\n"), 2)
        self.assertIn("rstate = 0x52310041\n", out)
        self.assertIn("chk-mfg: passed\n", out)

    def test_one_changed_byte_fails_the_check_with_both_checksums(self):
        self.assert_passes(MFG + "/chk-mfg")
        self.change_byte(20)
        status, out, _ = self.run_commands(MFG + "/chk-mfg")
        self.assertEqual(status, 1)
        found = re.search(r"EEPROM checksum error: calculated 0x([0-9A-F]{4}), stored 0x8B07\n", out)
        self.assertIsNotNone(found, out)
        self.assertNotEqual(found[1], "8B07")
        for command in ("show-manuf-info", "get-serial-num", "get-board-info", "decode"):
            self.assertEqual(self.run_commands(f"{MFG}/{command}")[0], 1, command)
        self.change_byte(20)
        self.assert_passes(MFG + "/chk-mfg")

    def test_optical_modules_are_shown_and_classified(self):
        out = self.assert_passes(SFP_1G + "/show-eeprom-info")
        self.assertIn("\nSFP EEPROM:\n\n                      Identifier: 03\n", out)
        # Module vendors' tools know this line, and scripts cut it as it is.
        self.assertRegex(out, r"Wavelength\[2\]: 03 52                         CC_BASE: [0-9a-f]{2}\n")
        self.assertEqual(self.assert_passes(SFP_1G + "/type"), "type = 1\n")
        self.assertEqual(self.assert_passes(SFP_10G + "/type"), "type = 10\n")

    def test_every_record_is_told_in_words(self):
        for path, words in ((REGISTERED, ("RDIMM", "Micron", "13.125 ns")),
                            (UNBUFFERED, ("UDIMM", "Kingston", "13.125 ns")),
                            (MFG, ("QB22350000417", "02:51:42:00:1a:10", "right")),
                            (SFP_1G, ("1000BASE-SX", "850 nm", "550 m", "QUILL OPTICS")),
                            (SFP_10G, ("10GBASE-SR", "850 nm", "41.5", "3.2987 V", "7.5"))):
            with self.subTest(path):
                out = self.assert_passes(path + "/decode")
                for word in words:
                    self.assertIn(word, out)
                self.assertNotIn("wrong", out)


if __name__ == "__main__":
    unittest.main()
