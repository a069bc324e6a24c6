"""diag_mdio_util as a process, on the simulated driver and without one.

Runs with the program and the switch of the simulation in DIAG_MDIO_UTIL and
MORVA_MDIO_SIM.
"""

import os
import subprocess
import unittest

UTIL = os.environ["DIAG_MDIO_UTIL"]
SWITCH = os.environ["MORVA_MDIO_SIM"]
DRIVER = "/dev/fsl-fman_xmdio_us"

REGISTER_RANGE = b"error - maximum register offset is 65535\n"
PHY_ID_RANGE = b"error - maximum phy_id is 1023\n"
VALUE_RANGE = b"error - maximum val is 65535\n"


def usage(name):
    return (
        f"Usage: {name} -r <hex phy_id> <hex register-offset>            "
        "-- Prints contents of register-offset\n"
        "          -w <hex phy_id> <hex register-offset> <hex val>  "
        "-- Writes 16-bit val to register-offset\n"
        "Note: phy_id = ( (<4 bit port ID> << 5) | <5 bit dev addr> )\n").encode()


def contents(register, value):
    return f"\nreg 0x{register:04x} = 0x{value:04x}\n\n".encode()


class Process(unittest.TestCase):
    def outcome(self, *words, **environment):
        """The exit status and what it printed; it has nothing to say on standard error."""
        done = subprocess.run(words, capture_output=True, timeout=60, stdin=subprocess.DEVNULL,
                              env={**os.environ, **environment})
        self.assertEqual(done.stderr, b"")
        return done.returncode, done.stdout

    def assert_outcome(self, words, status, output, **environment):
        with self.subTest(" ".join(words)):
            self.assertEqual(self.outcome(SWITCH, UTIL, *words, **environment), (status, output))

    def assert_reads(self, register, value, *words):
        self.assert_outcome(("-r", *words), 0, contents(register, value))


class CommandLine(Process):
    def test_what_is_no_usage_form_prints_the_usage(self):
        for words in ((), ("-r",), ("-r", "23"), ("-r", "23", "2", "1"),
                      ("-w",), ("-w", "23"), ("-w", "23", "2"), ("-w", "23", "2", "1", "0"),
                      ("23", "2"), ("r", "23", "2"), ("-rx", "23", "2"), ("-R", "23", "2"),
                      ("", "23", "2"), ("--help",), ("-x", "23", "2"), ("23", "-r", "2"),
                      ("-wx", "23", "2", "1"), ("w", "23", "2", "1"), ("-r", "23", "2", "1", "0")):
            self.assert_outcome(words, 255, usage(UTIL))

    def test_the_usage_has_the_name_that_the_program_is_called_by(self):
        done = subprocess.run(["mdio %s"], executable=UTIL, capture_output=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout), (255, usage("mdio %s")))

    def test_the_usage_goes_before_the_ranges(self):
        self.assert_outcome(("-r", "400", "10000", "1"), 255, usage(UTIL))
        self.assert_outcome(("-w", "400", "10000"), 255, usage(UTIL))


class Ranges(Process):
    def test_are_checked_in_the_order_register_phy_and_value(self):
        for words, output in ((("-w", "23", "10000", "1"), REGISTER_RANGE),
                              (("-w", "400", "10000", "10000"), REGISTER_RANGE),
                              (("-w", "400", "2", "10000"), PHY_ID_RANGE),
                              (("-w", "23", "2", "10000"), VALUE_RANGE),
                              (("-r", "400", "10000"), REGISTER_RANGE),
                              (("-r", "400", "2"), PHY_ID_RANGE)):
            self.assert_outcome(words, 255, output)

    def test_have_their_greatest_numbers_inside(self):
        self.assert_outcome(("-r", "3ff", "1f"), 0, contents(0x1F, 0xFFFF))
        self.assert_outcome(("-w", "3ff", "1f", "ffff"), 0, b"")
        # In range, but clause 22 has no such register.
        self.assert_outcome(("-r", "23", "ffff"), 255,
                            b"ioctl SIOCGMIIREG failed\nmdio_read failed!\n")

    def test_end_the_program_before_the_driver_is_opened(self):
        self.assert_outcome(("-r", "400", "2"), 255, PHY_ID_RANGE, MORVA_MDIO_SIM_OPEN_ERRNO="13")


class Numbers(Process):
    def test_are_hexadecimal_with_and_without_a_mark(self):
        for register in ("10", "0x10", "0X10", "010", " 10", "+10", "00000000000000000010"):
            self.assert_reads(0x10, 0, "23", register)
        for phy in ("23", "0x23", "0X23", "023"):
            self.assert_reads(0x2, 0x0229, phy, "2")
        self.assert_reads(0xA, 0x3C00, "23", "a")
        self.assert_reads(0xA, 0x3C00, "23", "A")

    def test_end_at_the_first_character_that_is_no_digit(self):
        self.assert_reads(0x2, 0x0229, "23", "2zz")
        self.assert_reads(0x0, 0x1140, "23", "junk")
        self.assert_reads(0x0, 0x1140, "23", "")
        self.assert_reads(0x2, 0xFFFF, "junk", "2")

    def test_below_zero_are_out_of_range(self):
        self.assert_outcome(("-r", "23", "-1"), 255, REGISTER_RANGE)
        self.assert_outcome(("-r", "-1", "2"), 255, PHY_ID_RANGE)
        self.assert_outcome(("-w", "23", "2", "-1"), 255, VALUE_RANGE)

    def test_of_any_length_are_out_of_range(self):
        for number in ("100000002", "ffffffff", "100000000", "ffffffffffffffff",
                       "10000000000000002", "1" + 40 * "0"):
            self.assert_outcome(("-r", "23", number), 255, REGISTER_RANGE)
            self.assert_outcome(("-r", number, "2"), 255, PHY_ID_RANGE)
            self.assert_outcome(("-w", "23", "2", number), 255, VALUE_RANGE)


class Access(Process):
    def test_a_read_prints_the_register(self):
        self.assert_reads(0x2, 0x0229, "23", "2")
        self.assert_reads(0x3, 0x0920, "23", "3")
        self.assert_reads(0x1, 0x796D, "1", "1")

    def test_a_read_where_no_phy_is_prints_all_ones(self):
        self.assert_reads(0x2, 0xFFFF, "24", "2")

    def test_a_write_is_silent_and_changes_the_register(self):
        self.assertEqual(
            self.outcome(SWITCH, "sh", "-c", f"'{UTIL}' -w 23 10 beef && '{UTIL}' -r 23 10"),
            (0, contents(0x10, 0xBEEF)))

    def test_a_write_to_what_is_read_only_passes(self):
        self.assertEqual(
            self.outcome(SWITCH, "sh", "-c", f"'{UTIL}' -w 23 2 0 && '{UTIL}' -r 23 2"),
            (0, contents(0x2, 0x0229)))


class Failures(Process):
    def test_without_the_driver_nothing_is_accessed(self):
        if os.path.exists(DRIVER):
            self.skipTest("there is a driver")
        for option, words in (("read", ("-r", "23", "2")), ("write", ("-w", "23", "2", "1"))):
            self.assertEqual(
                self.outcome(UTIL, *words),
                (255, f"could not open {DRIVER}\nmdio_{option} failed!\n".encode()))

    def test_a_driver_that_does_not_open_is_told_of(self):
        for error in ("2", "13", "16", "24"):
            for option, words in (("read", ("-r", "23", "2")), ("write", ("-w", "23", "2", "1"))):
                self.assert_outcome(words, 255,
                                    f"could not open {DRIVER}\nmdio_{option} failed!\n".encode(),
                                    MORVA_MDIO_SIM_OPEN_ERRNO=error)

    def test_an_access_that_fails_is_told_of(self):
        for error in ("5", "14", "19", "95", "110"):
            self.assert_outcome(("-r", "23", "2"), 255,
                                b"ioctl SIOCGMIIREG failed\nmdio_read failed!\n",
                                MORVA_MDIO_SIM_IOCTL_ERRNO=error)
            self.assert_outcome(("-w", "23", "2", "1"), 255,
                                b"ioctl SIOCSMIIREG failed\nmdio_write failed!\n",
                                MORVA_MDIO_SIM_IOCTL_ERRNO=error)


if __name__ == "__main__":
    unittest.main()
