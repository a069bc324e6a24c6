"""diagsh as it is installed: complete, and at home wherever it is put.

Runs with cmake, the build folder, and the folders of programs and data below the
prefix in CMAKE, BUILD, BINDIR and DATADIR.
"""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        built_for = cls.folder / "first"
        done = subprocess.run([os.environ["CMAKE"], "--install", os.environ["BUILD"], "--prefix",
                               built_for], check=True, capture_output=True, text=True,
                              timeout=120)
        installed = re.findall(r"^-- (?:Installing|Up-to-date): (.*)$", done.stdout, re.MULTILINE)
        cls.elsewhere = [path for path in installed
                         if not pathlib.Path(path).is_relative_to(built_for)]
        cls.installed = len(installed)
        # Nothing may remember where it was put first.
        cls.prefix = cls.folder / "second"
        shutil.move(built_for, cls.prefix)
        cls.data = cls.prefix / os.environ["DATADIR"]
        cls.diagsh = cls.prefix / os.environ["BINDIR"] / "diagsh"
        cls.words = [cls.diagsh, "--sim", cls.data / "morva-diags" / "quillbank" / "quillbank.dtb",
                     "--state", cls.folder / "state"]

    def run_diagsh(self, *words):
        return subprocess.run(words, capture_output=True, text=True, timeout=60, check=True,
                              stdin=subprocess.DEVNULL).stdout

    def test_nothing_is_put_outside_of_the_prefix(self):
        self.assertGreater(self.installed, 0)
        self.assertEqual(self.elsewhere, [])

    def test_it_says_its_version(self):
        self.assertRegex(self.run_diagsh(self.diagsh, "--version"),
                         r"^diagsh \(morva-diags\) \d+\.\d+\.\d+\n$")

    def test_it_simulates_the_default_board(self):
        self.assertRegex(self.run_diagsh(*self.words, "-c", "ls"), "i2c-0/ +fsl-i2c, simulated")

    def test_the_simulated_memories_have_their_contents(self):
        self.run_diagsh(*self.words, "-c", "ls")
        contents = (self.folder / "state" / "i2c-0" / "0x50.bin").read_bytes()
        self.assertNotEqual(set(contents), {0xFF})

    def test_it_loads_its_own_board_and_library(self):
        with subprocess.Popen(self.words, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              text=True) as running:
            # Once it answers, everything is loaded.
            running.stdin.write("echo ready\n")
            running.stdin.flush()
            self.assertEqual(running.stdout.readline(), "ready\n")
            maps = pathlib.Path(f"/proc/{running.pid}/maps").read_text()
            running.communicate(timeout=60)
        loaded = {pathlib.Path(line.split()[-1]) for line in maps.splitlines()
                  if "libmorva" in line}
        self.assertEqual({path.name.split(".so")[0] for path in loaded},
                         {"libmorva-board", "libmorva-diags"})
        for path in loaded:
            self.assertTrue(path.is_relative_to(self.prefix), path)

    def test_the_simulated_driver_serves_both_programs(self):
        switch = self.diagsh.with_name("morva-mdio-sim")
        self.assertIn("data = 0x229\n", self.run_diagsh(
            switch, *self.words, "-c", "mdio/init && mdio/read 1 3 2"))
        self.assertEqual(
            self.run_diagsh(switch, self.diagsh.with_name("diag_mdio_util"), "-r", "23", "2"),
            "\nreg 0x0002 = 0x0229\n\n")

    def test_the_tables_of_memory_modules_are_where_they_are_looked_for(self):
        # With the prefix /usr the first is the one that the commands know; beside the blob
        # they are found wherever it is.
        for folder in (self.prefix / "lib/morva/diags/bin/xml",
                       self.data / "morva-diags" / "quillbank" / "xml"):
            tables = [folder / name for name in ("prog_param_quillbank.xml",
                                                 "prog_param_quillbank_extended.xml")]
            subprocess.run(["xmllint", "--noout", "--relaxng",
                            self.data / "morva-diags" / "dimm_table.rng", *tables],
                           check=True, capture_output=True, timeout=60)

    def test_the_parameter_eeprom_is_programmed_without_naming_a_table(self):
        eeprom = "/i2c-0/pca9547-0/ch1/pca9548-0/ch2/param-eeprom"
        self.assertIn("EEPROM Parameters Verification PASSED\n", self.run_diagsh(
            *self.words, "-c", f"{eeprom}/prog-param-eeprom && {eeprom}/check-param-eeprom"))


if __name__ == "__main__":
    unittest.main()
