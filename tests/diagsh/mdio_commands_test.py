"""diagsh on the MDIO bus, with the simulated driver and without one.

Runs with the programs and the default board's blob in DIAGSH, DIAG_MDIO_UTIL,
MORVA_MDIO_SIM and DTB.
"""

import os
import re
import shlex
import subprocess
import unittest

from diagsh_process import OnQuillbank

DIAG_MDIO_UTIL = os.environ["DIAG_MDIO_UTIL"]
MORVA_MDIO_SIM = os.environ["MORVA_MDIO_SIM"]
DRIVER = "/dev/fsl-fman_xmdio_us"


class WithoutDriver(OnQuillbank):
    def test_nothing_is_read_before_init(self):
        status, output, _ = self.run_diagsh("-c", "mdio/read 1 3 2")
        self.assertEqual(status, 1)
        self.assertIn("MDIO Bus is not operational, run init", output)

    def test_init_says_why_it_fails(self):
        if os.path.exists(DRIVER):
            self.skipTest("there is a driver")
        status, output, _ = self.run_diagsh("-c", "mdio/init")
        self.assertEqual(status, 1)
        self.assertIn(f"Failed open MDIO driver {DRIVER}", output)
        self.assertIn("System error: error 2(No such file or directory)", output)


class OnSimulatedDriver(OnQuillbank):
    def words(self, *arguments):
        return [MORVA_MDIO_SIM, *super().words(*arguments)]

    def data(self, *lines):
        """What reads of a run that passes printed."""
        status, output, errors = self.run_diagsh(*(word for line in lines for word in ("-c", line)))
        self.assertEqual((status, errors), (0, ""))
        return [int(data, 16) for data in re.findall(r"^data = (.*)$", output, re.MULTILINE)]

    def util_reads(self, register, before="true"):
        """What diag_mdio_util reads of device 3 on port 1, behind another command."""
        done = subprocess.run(
            [MORVA_MDIO_SIM, "sh", "-c",
             f"{before} && {shlex.quote(DIAG_MDIO_UTIL)} -r 23 {register:x}"],
            env=self.environment, capture_output=True, text=True, timeout=60, check=True)
        found = re.fullmatch(rf"\nreg 0x{register:04x} = (\w+)\n\n", done.stdout)
        return int(found.group(1), 16)

    def test_it_reads_the_identifier_that_diag_mdio_util_reads(self):
        high, low = self.data("mdio/init", "mdio/read 1 3 2", "mdio/read 1 3 3")
        self.assertEqual((high, low), (0x0229, 0x0920))
        self.assertEqual([self.util_reads(2), self.util_reads(3)], [high, low])

    def test_what_it_writes_diag_mdio_util_reads_in_the_same_run(self):
        write = shlex.join(OnQuillbank.words(self, "-c", "mdio/init && mdio/write 1 3 16 0xcafe"))
        self.assertEqual(self.util_reads(16, before=write), 0xCAFE)

    def test_the_phys_of_the_description_answer_where_it_says(self):
        _, tree, _ = self.run_diagsh("-c", "tree mdio")
        places = re.findall(r"c22 at \w+: port (\d+), device (\d+)$", tree, re.MULTILINE)
        self.assertEqual(places, [("0", "1"), ("0", "2"), ("1", "3")])
        reads = [f"mdio/read {port} {device} 2" for port, device in places]
        self.assertEqual(self.data("mdio/init", *reads), [0x0229] * 3)

    def test_a_link_that_was_down_shows_once(self):
        self.assertEqual(self.data("mdio/init", "mdio/read 1 3 1", "mdio/write 1 3 0 0x8000",
                                   *["mdio/read 1 3 1"] * 2), [0x796D, 0x7969, 0x796D])

    def test_an_access_that_fails_says_why(self):
        self.environment["MORVA_MDIO_SIM_IOCTL_ERRNO"] = "110"
        for line in ("mdio/read 1 3 2", "mdio/write 1 3 16 1"):
            status, output, _ = self.run_diagsh("-c", f"mdio/init && {line}")
            self.assertEqual(status, 1)
            self.assertIn("System error: error 110(Connection timed out)", output)
            self.assertNotRegex(output, r"(?m)^data = \w+$")

    def test_a_driver_that_does_not_open_leaves_the_bus_closed(self):
        self.environment["MORVA_MDIO_SIM_OPEN_ERRNO"] = "13"
        status, output, _ = self.run_diagsh("--keep-going", "-c", "mdio/init",
                                            "-c", "mdio/read 1 3 2")
        self.assertEqual(status, 1)
        self.assertIn("System error: error 13(Permission denied)", output)
        self.assertIn("MDIO Bus is not operational, run init", output)

    def test_another_path_is_not_simulated_and_stays_for_the_next_init(self):
        missing = self.folder / "driver"
        status, output, _ = self.run_diagsh("--keep-going", "-c", f"mdio/init {missing}",
                                            "-c", "peek mdio/driver", "-c", "mdio/init")
        self.assertEqual(status, 1)
        self.assertEqual(output.count(f"Failed open MDIO driver {missing}"), 2)
        self.assertIn(f"driver = {missing}\n", output)

    def test_the_prompt_works_on_it(self):
        child = self.spawn()
        child.sendline("mdio/init")
        child.expect_exact("/> ")
        child.sendline("mdio/read 0 1 3")
        child.expect_exact("data = 0x911\r\n")
        self.quit(child)


if __name__ == "__main__":
    unittest.main()
