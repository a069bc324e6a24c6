"""Register chips, port expanders and I/O ports of the default board, as an operator and
a script reach them.

Runs with the paths of diagsh and of the default board's blob in DIAGSH and DTB.
"""

import sys
import unittest

sys.dont_write_bytecode = True

from diagsh_process import OnQuillbank  # noqa: E402

TEMP = "/i2c-0/pca9547-0/ch1/pca9548-0/ch5/temp-dimm"
OUTSIDE = "/sim/i2c-0.pca9547-0.ch1.pca9548-0.ch5.temp-dimm"
GPIO_DIMM = "/i2c-0/pca9547-0/ch1/pca9548-0/ch6/gpio-dimm"
CPLD = "/i2c-0/cpld"
GPIO = "/i2c-1/gpio-cages"


class Registers(OnQuillbank):
    def run_commands(self, *commands):
        """Status, output and errors of one run; it goes on behind a failure."""
        return self.run_diagsh("--keep-going", *(word for command in commands
                                                 for word in ("-c", command)))

    def assert_prints(self, text, *commands):
        self.assertEqual(self.run_commands(*commands), (0, text, ""))

    def test_a_temperature_is_read_through_two_switches(self):
        self.assert_prints("regvalue = 0x1810\n", f"{TEMP}/regpeek temp")

    def test_the_world_outside_gives_the_temperature(self):
        self.assert_prints("regvalue = 0x5a00\n", f"poke {OUTSIDE}/temp 0x5a00",
                           f"{TEMP}/regpeek temp")

    def test_registers_are_poked_set_and_cleared_through_two_switches(self):
        self.assert_prints("regvalue = 0x41\nregvalue = 0x6400\n",
                           f"{TEMP}/regpoke thigh 0x6400", f"{TEMP}/regset conf 0x61",
                           f"{TEMP}/regclr conf 0x20", f"{TEMP}/regpeek conf",
                           f"{TEMP}/regpeek thigh")

    def test_elements_are_reached_by_index(self):
        self.assert_prints("regvalue = 0x8208\nregvalue = 0x0208 0x0208 0x8200 0x0208\n",
                           f"{CPLD}/regset lane[2] 0x8000", f"{CPLD}/regpeek lane[2]",
                           f"{CPLD}/regclr lane[2] 8", f"{CPLD}/regpeek lane")

    def test_a_dump_leaves_alone_what_a_read_would_change(self):
        status, out, err = self.run_commands(f"{CPLD}/regdump", f"{CPLD}/regpeek events",
                                             f"{CPLD}/regpeek events")
        self.assertEqual((status, err), (0, ""))
        self.assertIn("id               0x5142\n", out)
        self.assertIn("events           not read (RC)\n", out)
        self.assertIn("reset            not read (WO)\n", out)
        self.assertTrue(out.endswith("regvalue = 0x01\nregvalue = 0x00\n"), out)

    def test_a_dump_of_a_sensor_behind_two_switches_shows_its_registers(self):
        self.assert_prints("temp             0x1810\nconf             0x00\n"
                           "tlow             0x4b00\nthigh            0x5000\n", f"{TEMP}/regdump")

    def test_what_is_asked_of_the_cpld_shows_outside(self):
        self.assert_prints("reset = 0x04\n", f"{CPLD}/regpoke reset 4",
                           "peek /sim/i2c-0.cpld/reset")

    def test_a_masked_write_changes_only_these_bits_of_the_expander(self):
        self.assert_prints("regvalue = 0xff 0xf5\npins = 0xf5ff\nport = 245\n",
                           f"{GPIO}/regpoke config[1] 0", f"{GPIO}/write-port 1 0x50 0x0a",
                           f"{GPIO}/regpeek output", "peek /sim/i2c-1.gpio-cages/pins",
                           f"{GPIO}/read-port 1")

    def test_an_expander_behind_two_switches_is_reached_by_name_and_index(self):
        self.assert_prints("regvalue = 0xff\nregvalue = 0x01\nregvalue = 0xff 0xfa\n"
                           "port = 251\npins = 0xfbff\n",
                           f"{GPIO_DIMM}/regpeek output[1]", f"{GPIO_DIMM}/regpoke config[1] 0",
                           f"{GPIO_DIMM}/regset config[1] 1", f"{GPIO_DIMM}/regpeek config[1]",
                           f"{GPIO_DIMM}/write-port 1 0x0a 0x0f", f"{GPIO_DIMM}/regpeek output",
                           f"{GPIO_DIMM}/read-port 1",
                           "peek /sim/i2c-0.pca9547-0.ch1.pca9548-0.ch6.gpio-dimm/pins")

    def test_an_expander_tells_the_names_of_its_pins(self):
        self.assert_prints("lines-1 = 0 dimm0-power-en, 1 dimm1-power-en, 2 dimm-led-fault, "
                           "3 dimm-led-ok\n", f"peek {GPIO_DIMM}/lines-1")

    def test_a_pin_that_is_pulled_low_outside_reads_low(self):
        self.assert_prints("port = 253\n", "poke /sim/i2c-1.gpio-cages/pins 0xfffd",
                           f"{GPIO}/read-port 0")

    def test_a_signed_quantity_is_shown_and_given_with_its_sign(self):
        self.assert_prints("regvalue = -1000\nregvalue = -10000\nregvalue = 6000\n",
                           "/i2c-0/power-12v/regpoke calibration 0xa000",
                           "poke /sim/i2c-0.power-12v/shunt-voltage -1000",
                           "poke /sim/i2c-0.power-12v/bus-voltage 24000",
                           "/i2c-0/power-12v/regpeek shunt-voltage",
                           "/i2c-0/power-12v/regpeek current", "/i2c-0/power-12v/regpeek power")

    def test_io_ports_are_bytes_of_a_file(self):
        self.assert_prints("port = 245\n", "/io-local/write-port 2 0x55 0x0f",
                           "/io-local/read-port 2")
        self.assertEqual((self.state / "io-ports/0xf00000.bin").read_bytes(),
                         b"\xff\xff\xf5\xff")

    def test_bits_that_a_register_does_not_have_are_refused(self):
        for command in (f"{CPLD}/regset lane[0] 0x10000", f"{CPLD}/regclr lane[0] 0x10000",
                        "/i2c-0/temp-cpu/regset offset 0xffffffffffffff00"):
            with self.subTest(command):
                path, name, mask = command.split()
                self.assertEqual(self.run_commands(command),
                                 (1, f"{mask} does not fit register {name.split('[')[0]}\n",
                                  f"{path}: failed (ERR_FAIL)\n"))

    def test_an_element_is_dumped_and_found_in_the_table_by_its_index(self):
        self.assert_prints("lane[1]          0x0208\n", f"{CPLD}/regdump lane[1]")
        status, out, err = self.run_commands(f"{CPLD}/regtable lane[0]")
        self.assertEqual((status, err), (0, ""))
        self.assertEqual([line.split()[0] for line in out.splitlines()], ["register", "lane"])

    def test_a_peek_fails_when_the_path_stays_open(self):
        status, out, err = self.run_commands("/sim/fail-nth i2c-0 5", f"{TEMP}/regpeek conf")
        self.assertEqual((status, err), (1, f"{TEMP}/regpeek: failed (ERR_FAIL)\n"))
        self.assertIn("  Error when disabling I2C path!\n", out)
        self.assertTrue(out.endswith("regvalue = 0x00 (failed)\n"), out)

    def test_what_a_register_does_not_allow_is_refused(self):
        for command, why in ((f"{CPLD}/regpoke id 1", "register id cannot be written"),
                             (f"{CPLD}/regpeek reset", "register reset cannot be read"),
                             (f"{GPIO}/read-port 2", "ports are 0 to 1"),
                             ("/io-local/read-port 4", "ports are 0 to 3")):
            with self.subTest(command):
                status, out, err = self.run_commands(command)
                self.assertEqual((status, err),
                                 (1, f"{command.split()[0]}: failed (ERR_FAIL)\n"))
                self.assertIn(why, out)


if __name__ == "__main__":
    unittest.main()
