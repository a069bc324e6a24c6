"""What needs the operator's consent, at a real terminal, in scripts and with --force.

Runs with the paths of diagsh and of the slow board in DIAGSH and BOARD.
"""

import sys
import unittest

sys.dont_write_bytecode = True

from diagsh_process import OnSlowBoard  # noqa: E402

QUESTION = "overwrite it? [y/N] "
DONE = "a is overwritten\r\na is overwritten\r\n"
LEFT = "a is left alone\r\na is left alone\r\n"


class AtThePrompt(OnSlowBoard):
    def test_a_yes_holds_until_the_command_ends(self):
        child = self.spawn()
        for answer, result in (("y", DONE), ("n", LEFT), ("", LEFT), ("yes", DONE)):
            child.sendline("a/overwrite")
            child.expect_exact(QUESTION)
            child.sendline(answer)
            child.expect_exact(answer + "\r\n" + result)
            child.expect_exact("/> ")
        self.quit(child)

    def test_ctrl_c_is_a_no_and_stops_what_asked(self):
        child = self.spawn()
        child.sendline("repeat 5 a/overwrite")
        child.expect_exact(QUESTION)
        child.sendintr()
        child.expect_exact("a is left alone\r\n")
        child.expect_exact("a is left alone\r\n")
        child.expect_exact("repeat: 1 run,")
        child.expect_exact("/> ")
        self.assertNotIn("[y/N]", child.before)
        # The next command is asked for anew.
        child.sendline("a/overwrite")
        child.expect_exact(QUESTION)
        child.sendline("y")
        child.expect_exact(DONE)
        child.expect_exact("/> ")
        self.quit(child)

    def test_the_end_of_input_is_a_no(self):
        child = self.spawn()
        child.sendline("a/overwrite")
        child.expect_exact(QUESTION)
        child.sendeof()
        child.expect_exact(LEFT)
        child.expect_exact("/> ")
        self.quit(child)

    def test_the_question_shows_what_is_to_be_done(self):
        child = self.spawn()
        child.sendline("a/overwrite 'write to 0x50 on i2c-0, which the driver at24 uses'")
        child.expect_exact("write to 0x50 on i2c-0, which the driver at24 uses? [y/N] ")
        child.sendline("n")
        child.expect_exact(LEFT)
        child.expect_exact("/> ")
        self.quit(child)

    def test_a_job_and_a_script_ask_nobody(self):
        script = self.folder / "script"
        script.write_text("a/overwrite\n")
        child = self.spawn()
        for line, end in (("a/overwrite &", "[1] /a/overwrite: passed"),
                          (f"source {script}", "/> ")):
            child.sendline(line)
            child.expect_exact(line + "\r\n")
            child.expect_exact(end)
            self.assertIn("a is left alone", child.before)
            self.assertNotIn("[y/N]", child.before)
        self.quit(child)

    def test_with_force_nobody_is_asked(self):
        child = self.spawn("--force")
        child.sendline("a/overwrite")
        child.expect_exact("a/overwrite\r\n" + DONE)
        child.expect_exact("/> ")
        self.quit(child)


class InAScript(OnSlowBoard):
    def test_what_nobody_can_allow_is_refused_without_a_word(self):
        status, out, err = self.run_commands("a/overwrite")
        self.assertEqual((status, out, err), (0, "a is left alone\n" * 2, ""))
        status, out, err = self.run_diagsh(stdin=b"a/overwrite\n")
        self.assertEqual((status, out, err), (0, "a is left alone\n" * 2, ""))

    def test_force_allows_it_also_to_jobs(self):
        status, out, err = self.run_diagsh("--force", "-c", "a/overwrite")
        self.assertEqual((status, out, err), (0, "a is overwritten\n" * 2, ""))
        status, out, err = self.run_diagsh("--force", "-c", "a/overwrite &", "-c", "wait")
        self.assertEqual((status, out.count("a is overwritten\n"), err), (0, 2, ""))


if __name__ == "__main__":
    unittest.main()
