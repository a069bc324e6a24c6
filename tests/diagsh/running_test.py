"""What diagsh shows of what runs, and what Ctrl-C does: at a real terminal, in
scripts, and at its end.

Runs with the paths of diagsh, of the default board's blob and of the slow board
in DIAGSH, DTB and BOARD.
"""

import os
import re
import signal
import subprocess
import sys
import unittest

sys.dont_write_bytecode = True

from diagsh_process import DIAGSH, Process  # noqa: E402

EEPROM = "/i2c-0/mfg-eeprom"
# Long enough to be met in its middle, once writing has begun.
RW_TEST = EEPROM + "/rw-test"
WRITING = r"rw-test: (2[6-9]|[34]\d)%, "
CTRL_C = "\x03"
MANY = 50


class Running(Process):
    def setUp(self):
        super().setUp()
        # What a test of the slow board waits for.
        self.go = self.folder / "go"

    def slow(self, *arguments):
        return [DIAGSH, "--board", os.environ["BOARD"], *arguments]

    def simulated(self, *arguments):
        return [DIAGSH, "--sim", os.environ["DTB"], "--state", str(self.folder / "state"),
                *arguments]

    def memories(self):
        """The contents of all chips that the simulated board keeps."""
        state = self.folder / "state"
        return {path.relative_to(state): path.read_bytes()
                for path in state.rglob("*.bin")}

    def make_memories(self):
        subprocess.run(self.simulated("-c", "pwd"), stdin=subprocess.DEVNULL, check=True,
                       stdout=subprocess.DEVNULL, timeout=60)
        made = self.memories()
        self.assertTrue(made)
        return made

    def spawn(self, words, columns=160):
        return self.spawn_words(*words, columns=columns)

    def paced(self, percent):
        child = self.spawn(self.simulated())
        child.sendline(f"sim/pace {percent}")
        child.expect("i2c-1: pace")
        child.expect("/> ")
        return child


class Progress(Running):
    def test_a_bar_tells_the_time_left(self):
        child = self.paced(300)
        child.sendline(RW_TEST)
        child.expect(r"\[#+-+\] rw-test: \d+%, \d+ of 32768, \d+/s, 0:\d\d left, saving, writing")
        child.sendintr()
        child.expect("aborted")
        child.expect("/> ")
        self.quit(child)

    def test_a_long_command_shows_its_time(self):
        child = self.spawn(self.slow())
        child.sendline(f"a/hold {self.go}")
        child.expect("a is held\r\n")
        child.expect_exact("\r\x1b[Khold: 0:00:01")
        child.expect_exact("\r\x1b[Khold: 0:00:02")
        self.go.touch()
        child.expect(r"\r\x1b\[K.*/> ")
        self.quit(child)

    def test_a_long_built_in_shows_how_far_it_is(self):
        child = self.paced(1000)
        child.sendline(f"export {EEPROM} {self.folder}/saved.bin")
        child.expect(r"\[#+-+\] export: \d+%, \d+ of 8192, \d+/s")
        child.sendintr()
        child.expect("export aborted, no file was written")
        child.expect("/> ")
        self.quit(child)

    def test_a_test_that_was_suspended_goes_on_and_shows_its_bar_again(self):
        self.environment["PS1"] = "bash: "
        shell = self.spawn_words("/bin/bash", "--norc", "--noprofile", "-i", columns=160,
                                 prompt="bash: ")
        shell.sendline(" ".join(f"'{word}'" for word in self.slow()))
        shell.expect("/> ")
        shell.sendline(f"a/until {self.go} 50")
        shell.expect_exact("[##########----------] until: 50%, 50 of 100, 0/s")
        shell.send("\x1a")
        shell.expect("Stopped")
        shell.expect("bash: ")
        shell.sendline("fg")
        shell.expect_exact("\r\x1b[K[##########----------] until: 50%, 50 of 100, 0/s")
        self.go.touch()
        shell.expect("until: passed")
        shell.expect("/> ")
        shell.sendline("quit")
        shell.expect("bash: ")
        shell.sendline("echo status $?")
        shell.expect("status 0")


    def test_a_job_that_fails_again_and_again_leaves_the_prompt_usable(self):
        child = self.spawn(self.simulated())
        child.sendline("sim/nack i2c-0 0x50")
        child.expect("/> ")
        child.sendline(f"{EEPROM}/read-cont 3600 &")
        child.expect(r"\[1\] too many errors: from here on they are only counted")
        child.sendline("pwd")
        child.expect("\n/\r\n")
        child.sendline("stop 1")
        child.expect(r"\[1\] \d+ errors and warnings left out, the last: ERROR: ")
        child.expect("aborted")
        self.quit(child)


class Interrupt(Running):
    def test_ctrl_c_in_the_middle_of_rw_test_leaves_the_memory_as_it_was(self):
        before = self.make_memories()
        child = self.paced(300)
        child.sendline(RW_TEST)
        child.expect(WRITING)
        child.sendintr()
        child.expect(r"\[#+-*\] rw-test: stopping, \d+%, \d+ of 32768")
        child.sendintr()
        child.expect(re.escape(EEPROM) + r"/rw-test: still stopping and restoring after [\d.]+ [mu]?s, "
                     r"\d+%, \d+ of 32768: [^\r]* 0x0000 to 0x1fff\r\n")
        child.expect("EEPROM 0x0000 to 0x1fff holds what it held before the test")
        child.expect(re.escape(EEPROM) + r"/rw-test: aborted \(ERR_ABORTED\)")
        child.expect("/> ")
        self.assertEqual(self.memories(), before)
        self.quit(child)
        self.assertEqual(self.memories(), before)

    def test_many_ctrl_c_in_a_test_restore_it_all_the_same(self):
        before = self.make_memories()
        child = self.paced(300)
        child.sendline(RW_TEST)
        child.expect(WRITING)
        child.send(CTRL_C * MANY)
        child.expect(r"rw-test: aborted \(ERR_ABORTED\)")
        child.expect("/> ")
        self.assertEqual(self.memories(), before)
        self.quit(child)

    def test_many_ctrl_c_at_the_prompt_do_nothing(self):
        child = self.spawn(self.slow())
        child.send(CTRL_C * MANY)
        for _ in range(MANY):
            child.send(CTRL_C)
        child.sendline("a/say still-here")
        child.expect(r"\nstill-here\r\n")
        child.expect("/> ")
        self.quit(child)

    def test_many_ctrl_c_end_a_script_between_its_commands(self):
        script = self.folder / "script"
        script.write_text("a/say x\n" * 100_000)
        with subprocess.Popen(self.slow(str(script)), stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as child:
            self.addCleanup(child.kill)
            for _ in range(100):
                self.assertEqual(child.stdout.readline(), "x\n")
            for _ in range(MANY):
                child.send_signal(signal.SIGINT)
            _, err = child.communicate(timeout=60)
        self.assertEqual(child.returncode, 3)
        self.assertRegex(err, rf"^{script}:\d+: .*abort")

    def test_many_ctrl_c_while_leaving_let_the_jobs_end(self):
        child = self.spawn(self.slow())
        child.sendline(f"a/fail-at {self.go} &")
        # Stopped before, it would have no need to end by itself.
        child.expect_exact("[1] a works\r\n")
        child.sendline("quit")
        child.expect("leaving: 1 job is asked to stop and awaited; Ctrl-C tells how far\r\n")
        child.expect_exact("\r\x1b[Kleaving: 0:00:01, awaiting job 1")
        child.send(CTRL_C * MANY)
        child.expect(rf"\[1\] /a/fail-at {self.go}: stopping, 0:00:\d\d\r\n")
        self.go.touch()
        child.expect(rf"\[1\] /a/fail-at {self.go}: failed")
        self.expect_end(child, 0)

    def test_a_command_that_cannot_be_stopped_says_so(self):
        child = self.spawn(self.slow())
        child.sendline(f"a/hold {self.go}")
        child.expect("a is held\r\n")
        child.sendintr()
        child.expect("/a/hold: cannot be stopped, it goes on to its end\r\n")
        child.sendintr()
        child.expect("/a/hold: goes on to its end\r\n")
        self.go.touch()
        child.expect("/> ")
        self.quit(child)

    def test_without_a_screen_a_line_says_that_a_test_stops(self):
        with subprocess.Popen(self.slow("-c", f"a/until {self.go}"), stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              text=True) as child:
            self.addCleanup(child.kill)
            self.assertEqual(child.stdout.readline(), "a works\n")
            child.send_signal(signal.SIGINT)
            out = child.communicate(timeout=60)[0]
        self.assertEqual(child.returncode, 3)
        # The test may have ended before the line was written: it is stopped first.
        self.assertEqual(sorted(out.splitlines()), ["a cleans up", "stopping /a/until"])

    def test_sigterm_in_the_middle_of_rw_test_leaves_the_memory_as_it_was(self):
        before = self.make_memories()
        child = self.paced(300)
        child.sendline(RW_TEST)
        child.expect(WRITING)
        child.kill(signal.SIGTERM)
        child.expect(r"rw-test: stopping, ")
        child.expect("EEPROM 0x0000 to 0x1fff holds what it held before the test")
        self.expect_end(child, 3)
        self.assertEqual(self.memories(), before)


if __name__ == "__main__":
    unittest.main()
