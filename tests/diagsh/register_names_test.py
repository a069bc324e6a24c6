"""Names of registers at a real terminal: completed, and asked for when they are
mistyped, on a chip behind two switches.

Runs with the paths of diagsh and of the default board's blob in DIAGSH and DTB.
"""

import json
import sys
import unittest

sys.dont_write_bytecode = True

from diagsh_process import OnQuillbank  # noqa: E402

TEMP = "/i2c-0/pca9547-0/ch1/pca9548-0/ch5/temp-dimm"


class RegisterNames(OnQuillbank):
    def at(self, path):
        child = self.spawn(columns=200)
        child.sendline(f"cd {path}")
        child.expect_exact(f"{path}> ")
        return child

    def type_and_see(self, child, keys, shown):
        child.send(keys)
        child.expect_exact(shown)

    def test_are_completed_by_tab(self):
        child = self.at(TEMP)
        self.type_and_see(child, "regpeek te\t", "mp ")
        self.type_and_see(child, "\r", "regvalue = 0x1810\r\n")
        self.type_and_see(child, "regset co\t", "nf ")
        self.type_and_see(child, "0x61\r", f"{TEMP}> ")
        self.type_and_see(child, "regpeek con\t", "f ")
        self.type_and_see(child, "\r", "regvalue = 0x61\r\n")
        self.quit(child)

    def test_are_listed_where_several_fit(self):
        child = self.at(TEMP)
        child.send("regdump t\t")
        child.expect(r"temp +tlow +thigh\r\n")
        self.type_and_see(child, "l\t", "ow ")
        self.type_and_see(child, "\r", "tlow             0x4b00\r\n")
        self.quit(child)

    def test_lead_to_the_elements_of_an_array(self):
        child = self.at("/i2c-1/gpio-cages")
        self.type_and_see(child, "regpoke conf\t", "ig[")
        child.send("\t")
        child.expect(r"config\[0\] +config\[1\]\r\n")
        self.type_and_see(child, "1\t", "] ")
        self.type_and_see(child, "0xf0\r", "gpio-cages> ")
        self.type_and_see(child, "regpeek config\r", "regvalue = 0xff 0xf0\r\n")
        self.quit(child)

    def test_are_asked_for_when_mistyped(self):
        child = self.at(TEMP)
        for command in ("regpeek tmep", "regpoke tmep 1", "regset tmep 1", "regclr tmep 1"):
            child.sendline(command)
            child.expect_exact("No register named tmep\r\ndid you mean temp?\r\n")
            child.expect_exact("failed (ERR_FAIL)\r\n")
            child.expect_exact(f"{TEMP}> ")
        self.type_and_see(child, "regpoke t 1\r", "did you mean temp, tlow or thigh?\r\n")
        self.type_and_see(child, "help regpeek\r", "an element of an array as NAME[INDEX]")
        self.quit(child)

    def test_that_are_near_stand_in_the_log_of_a_program(self):
        status, out, _ = self.run_diagsh("--json", "-c", f"{TEMP}/regpeek tmep")
        self.assertEqual(status, 1)
        texts = [line["text"].strip() for line in json.loads(out)["log"]
                 if line["type"] == "error"]
        self.assertEqual(texts, ["No register named tmep", "did you mean temp?"])

    def test_that_a_pattern_names_are_not_asked_for_when_the_bus_fails(self):
        status, out, _ = self.run_diagsh("--keep-going", "-c", "/sim/nack i2c-0 0x48",
                                         "-c", f"{TEMP}/regpeek t")
        self.assertEqual(status, 1)
        self.assertIn("temp             ???\n", out)
        self.assertTrue(out.endswith("No register named t\n"), out)

    def test_that_are_far_are_not_asked_for(self):
        status, out, _ = self.run_diagsh("-c", f"{TEMP}/regpeek voltage")
        self.assertEqual((status, out), (1, "No register named voltage\n"))


if __name__ == "__main__":
    unittest.main()
