"""The built-in scan on the simulated default board: the picture, the object for
programs, faults of the bus, and Ctrl-C.

Runs with the paths of diagsh, of the default board's blob and of the schema of an
object in DIAGSH, DTB and SCHEMA.
"""

import json
import os
import pathlib
import sys
import unittest

import jsonschema

sys.dont_write_bytecode = True

from diagsh_process import OnQuillbank  # noqa: E402

# What is on the wires of the board: addresses that answer, and their names.
WIRES = {
    "/i2c-0": {0x40: "power-12v", 0x4C: "temp-cpu", 0x50: "mfg-eeprom", 0x60: "cpld",
               0x77: "pca9547-0"},
    "/i2c-0/pca9547-0/ch0": {0x51: "spd-0", 0x53: "spd-1"},
    "/i2c-0/pca9547-0/ch1": {0x70: "pca9548-0"},
    "/i2c-0/pca9547-0/ch1/pca9548-0/ch2": {0x51: "param-eeprom"},
    "/i2c-0/pca9547-0/ch1/pca9548-0/ch5": {0x48: "temp-dimm"},
    "/i2c-0/pca9547-0/ch1/pca9548-0/ch6": {0x22: "gpio-dimm"},
    "/i2c-1": {0x20: "gpio-cages", 0x49: "temp-cages", 0x68: "rtc", 0x70: "pca9548-1"},
    "/i2c-1/pca9548-1/ch0": {0x50: "sfp-1g"},
    "/i2c-1/pca9548-1/ch1": {0x71: "pca9547-1"},
    "/i2c-1/pca9548-1/ch1/pca9547-1/ch3": {0x50: "sfp-10g", 0x51: "sfp-10g"},
    "/i2c-1/pca9548-1/ch2": {0x21: "gpio-panel"},
}
CHANNELS = 4 * 8
BUSES = 2


class OfTheWholeBoard(OnQuillbank):
    def scan(self, *arguments):
        status, out, _ = self.run_diagsh("--json", "-c", " ".join(("scan", *arguments)))
        schema = json.loads(pathlib.Path(os.environ["SCHEMA"]).read_text())
        result = json.loads(out)
        jsonschema.validate(result, schema)
        return status, result["scan"]

    def test_finds_everything_on_the_board_and_nothing_else(self):
        status, scan = self.scan()
        self.assertEqual(status, 0)
        self.assertEqual(len(scan), BUSES + CHANNELS)
        found = {wire["path"]: {cell["address"]: cell["name"] for cell in wire["answers"]}
                 for wire in scan if wire["answers"]}
        self.assertEqual(found, WIRES)

    def test_accounts_for_each_address_once(self):
        _, scan = self.scan()
        for wire in scan:
            told = [cell["address"] for kind in ("answers", "silent", "owned", "failed")
                    for cell in wire[kind]] + wire["upstream"]
            self.assertEqual(sorted(told), list(range(0x08, 0x78)), wire["path"])

    def test_asks_reserved_addresses_too_when_told_so(self):
        _, scan = self.scan("-a", "/i2c-1/pca9548-1/ch7")
        self.assertEqual(len(scan), 1)
        self.assertEqual([cell["address"] for cell in scan[0]["silent"]] + scan[0]["upstream"],
                         [address for address in range(128)
                          if address not in WIRES["/i2c-1"]] + list(WIRES["/i2c-1"]))

    def test_shows_one_picture(self):
        status, out, err = self.run_diagsh("-c", "scan")
        self.assertEqual((status, err), (0, ""))
        self.assertEqual([line for line in out.splitlines()
                          if line.startswith("/") and ":" not in line], list(WIRES))
        self.assertIn("\n/i2c-0/pca9547-0/ch2 to ch7: nothing answers\n", out)
        self.assertIn("50: ^^ 51 -- 53 -- -- -- -- -- -- -- -- -- -- -- --\n"
                      "     0x51 spd-0, 0x53 spd-1\n", out)
        self.assertEqual(out.count("^^ answers nearer"), 1)


class WithFaults(OnQuillbank):
    def test_a_stuck_bus_is_not_an_empty_one(self):
        status, out, err = self.run_diagsh("-c", "sim/stick i2c-0", "-c", "scan i2c-0")
        self.assertEqual(status, 1)
        self.assertIn("!! !! !!\n", out)
        self.assertIn("failed at 0x08 to 0x77: bus stuck low\n", out)
        self.assertIn("scan: not everything could be asked\n", err)

    def test_one_failed_transfer_is_marked_and_the_scan_goes_on(self):
        status, out, err = self.run_diagsh("-c", "sim/fail-nth i2c-1 20", "-c",
                                           "scan i2c-1")
        self.assertEqual(status, 1)
        self.assertEqual(out.count("!! --") + out.count("-- !!\n"), 1)
        self.assertIn(": arbitration lost\n", out)
        self.assertIn("70: 70 --", out)
        self.assertIn("scan: not everything could be asked\n", err)

    def test_a_silent_multiplexer_hides_its_channels_and_says_so(self):
        status, out, _ = self.run_diagsh("-c", "sim/nack i2c-0 0x77", "-c", "scan i2c-0")
        self.assertEqual(status, 1)
        self.assertIn("     no answer from 0x77 pca9547-0\n", out)
        self.assertIn("/i2c-0/pca9547-0/ch0 to ch1: the I2C path could not be opened\n"
                      "/i2c-0/pca9547-0/ch1/pca9548-0/ch0 to ch7: "
                      "the I2C path could not be opened\n"
                      "/i2c-0/pca9547-0/ch2 to ch7: the I2C path could not be opened\n", out)
        self.assertEqual(out.count("cannot write"), 1)


class AtThePrompt(OnQuillbank):
    def test_ctrl_c_ends_it_with_all_channels_closed(self):
        child = self.spawn()
        child.sendline("sim/pace 10000")
        child.expect_exact("i2c-1: pace")
        child.expect_exact("/> ")
        child.sendline("scan")
        # Far enough to have a channel open.
        child.expect(r"scan: (2[5-9]|3\d)%, \d+ of \d+, .*/i2c-0/pca9547-0/ch")
        child.sendintr()
        child.expect_exact("/i2c-0\r\n")
        child.expect_exact("scan: aborted")
        child.expect_exact("/> ")
        child.sendline("sim/pace 0; i2c-0/pca9547-0/show-channels")
        child.expect_exact("open channels: none")
        child.expect_exact("/> ")
        self.quit(child)

    def test_a_job_behind_a_multiplexer_waits_for_its_end(self):
        child = self.spawn()
        child.sendline("i2c-0/pca9547-0/ch0/spd-0/read-cont 3600 &")
        child.expect_exact("started")
        child.sendline("scan i2c-0")
        child.expect_exact("waiting for the path through /i2c-0, held by "
                           "/i2c-0/pca9547-0/ch0/spd-0/read-cont 3600 (job 1)")
        child.sendintr()
        child.expect_exact("scan: aborted")
        child.sendline("stop; wait; scan i2c-0")
        child.expect_exact("0x51 spd-0, 0x53 spd-1")
        child.expect_exact("/> ")
        self.quit(child)

    def test_completes_buses_and_channels(self):
        child = self.spawn()
        child.send("scan i2c-0/pca\t")
        child.expect_exact("9547-0/")
        child.sendline("ch7")
        child.expect_exact("/i2c-0/pca9547-0/ch7: nothing answers")
        child.expect_exact("/> ")
        self.quit(child)


if __name__ == "__main__":
    unittest.main()
