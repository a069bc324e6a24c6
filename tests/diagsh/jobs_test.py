"""diagsh as a process, with tests that take as long as they are told: jobs,
waits for devices and progress, from scripts and at a real terminal.

Runs with the paths of diagsh and of the slow board in DIAGSH and BOARD.
"""

import signal
import subprocess
import sys
import unittest

import pexpect

sys.dont_write_bytecode = True

from diagsh_process import OnSlowBoard  # noqa: E402


class CommandLine(OnSlowBoard):
    def test_a_job_is_awaited_and_its_lines_have_its_number(self):
        status, out, err = self.run_commands(f"a/until {self.now} &", "wait")
        self.assertEqual((status, err), (0, ""))
        self.assertEqual(out.splitlines(), [
            f"[1] /a/until {self.now}: started",
            "[1] a works",
            f"[1] /a/until {self.now}: passed"])

    def test_jobs_of_two_devices_run_at_once(self):
        # Each ends only once the other has run.
        status, out, err = self.run_commands(
            f"a/until {self.go} &", f"b/until {self.now}", "stop 1", "wait 1")
        self.assertEqual((status, err), (3, f"[1] /a/until {self.go}: aborted (ERR_ABORTED)\n"))
        self.assertIn("until: passed\n", out)
        self.assertIn(f"[1] /a/until {self.go}: stopping\n", out)

    def test_wait_gives_the_worst_result(self):
        status, _, err = self.run_commands(
            f"a/until {self.now} &", f"b/fail-at {self.now} &", "wait")
        self.assertEqual((status, err), (1, f"[2] /b/fail-at {self.now}: failed (ERR_FAIL)\n"))

    def test_jobs_shows_what_became_of_them(self):
        status, out, _ = self.run_commands(
            f"a/until {self.now} &", "wait", f"a/until {self.go} &", "stop 2", "jobs")
        self.assertEqual(status, 0)
        self.assertRegex(out, rf"\[1\] /a/until {self.now}: passed, 0:00:\d\d\n")
        self.assertRegex(out, rf"\[2\] /a/until {self.go}: (stopping|aborted \(ERR_ABORTED\)), "
                              r"0:00:\d\d\n")

    def test_leaving_stops_what_runs(self):
        status, out, err = self.run_commands(f"a/until {self.go} &")
        self.assertEqual(status, 3)
        self.assertIn("leaving: 1 job is asked to stop and awaited; Ctrl-C tells how far\n", out)
        self.assertIn(f"[1] /a/until {self.go}: stopping\n", out)
        self.assertEqual(err, f"[1] /a/until {self.go}: aborted (ERR_ABORTED)\n")

    def test_a_job_that_was_stopped_on_purpose_is_no_failure(self):
        status, _, _ = self.run_commands(f"a/until {self.go} &", "stop")
        self.assertEqual(status, 0)

    def test_a_failed_job_counts_in_the_end(self):
        with subprocess.Popen(self.words(), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as child:
            child.stdin.write(f"a/fail-at {self.now} &\n")
            child.stdin.flush()
            self.assertEqual(child.stderr.readline(),
                             f"[1] stdin:1: /a/fail-at {self.now}: failed (ERR_FAIL)\n")
            out, err = child.communicate("a/say still\n", timeout=20)
        self.assertEqual((child.returncode, err), (1, ""))
        self.assertIn("still\n", out)

    def start(self, *commands):
        arguments = [word for command in commands for word in ("-c", command)]
        child = subprocess.Popen(self.words(*arguments), stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(child.kill)
        return child

    def test_the_end_of_the_process_lets_tests_clean_up(self):
        for end in (signal.SIGTERM, signal.SIGHUP):
            with self.subTest(end):
                child = self.start(f"b/until {self.go} &", f"a/until {self.go}")
                lines = [child.stdout.readline() for _ in range(3)]
                self.assertIn(b"a works\n", lines)
                child.send_signal(end)
                out, _ = child.communicate(timeout=60)
                self.assertIn(b"a cleans up\n", out)
                self.assertIn(b"[1] b cleans up\n", out)
                self.assertEqual(child.returncode, 3)

    def test_a_reader_that_goes_away_ends_no_test(self):
        child = self.start(f"a/until {self.go} 50", "a/say 1")
        self.assertEqual(child.stdout.readline(), b"a works\n")
        child.stdout.close()
        self.go.touch()
        child.stdout = None
        _, err = child.communicate(timeout=60)
        self.assertEqual(child.returncode, 4)
        self.assertIn(b"standard output: Broken pipe", err)

    def test_a_command_that_cannot_stop_says_so(self):
        with subprocess.Popen(self.words(), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as child:
            child.stdin.write(f"a/hold {self.go} &\n")
            child.stdin.flush()
            for line in child.stdout:
                if line == "[1] a is held\n":
                    break
            child.stdin.write("stop 1\nhelp quit\n")
            child.stdin.flush()
            lines = [child.stdout.readline() for _ in range(2)]
            self.go.touch()
            out, err = child.communicate(timeout=20)
        self.assertEqual(lines[0], f"[1] /a/hold {self.go}: cannot be stopped, it goes on to its end\n")
        self.assertEqual(lines[1], "usage: quit\n")
        self.assertIn(f"[1] /a/hold {self.go}: passed\n", out)
        self.assertEqual((child.returncode, err), (0, ""))

    def test_wrong_usage_exits_2(self):
        for command, error in (("&", "& at column 1 needs a command before it"),
                               ("ls &", "ls: & runs commands and tests, not built-ins"),
                               ("wait 7", "there is no job 7; jobs lists them"),
                               ("wait a", "there is no job a; jobs lists them"),
                               ("stop 7", "there is no job 7; jobs lists them"),
                               ("stop 99999999999999", "there is no job 99999999999999; jobs lists them"),
                               ("stop c", "c: there is no \"c\" in /; try ls or help"),
                               ("a &", "/a is a device; cd /a goes there, ls /a lists it")):
            self.assertEqual(self.run_commands(command), (2, "", error + "\n"), command)
        status, out, err = self.run_commands("a/say &")
        self.assertEqual((status, out), (2, ""))
        self.assertIn("missing argument text", err)

    def test_progress_without_a_terminal_is_plain_lines(self):
        arguments = self.words("-c", f"a/until {self.go} 50")
        with subprocess.Popen(arguments, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              text=True) as child:
            self.assertEqual(child.stdout.readline(), "a works\n")
            self.assertEqual(child.stdout.readline(), "until: 50%, 50 of 100, 0/s\n")
            self.go.touch()
            self.assertEqual(child.communicate(timeout=20)[0].splitlines()[-1], "until: passed")
        self.assertEqual(child.returncode, 0)

    def test_ctrl_c_ends_a_wait_for_a_device(self):
        with subprocess.Popen(self.words(), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as child:
            child.stdin.write(f"a/until {self.go} &\n")
            child.stdin.flush()
            while child.stdout.readline() != "[1] a works\n":
                pass
            child.stdin.write("a/say hello\n")
            child.stdin.flush()
            self.assertEqual(child.stdout.readline(),
                             f"waiting for /a, held by /a/until {self.go} (job 1)\n")
            child.send_signal(signal.SIGINT)
            out, err = child.communicate(timeout=20)
        self.assertEqual(child.returncode, 3)
        self.assertNotIn("hello", out)
        self.assertTrue(err.startswith("stdin:2: /a/say: aborted (ERR_ABORTED)\n"), err)


class Terminal(OnSlowBoard):
    def test_a_jobs_lines_come_above_the_line_that_is_typed(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go} &")
        child.expect(r"\[1\] a works\r\n")
        child.send("help qu")
        child.expect("help qu")
        self.go.touch()
        # The row is cleared, the job's line written, and the prompt drawn anew.
        child.expect(r"\r\x1b\[J\[1\] /a/until [^ ]*: passed\r\n")
        child.expect("/> help qu")
        child.sendline("it")
        child.expect("Leave the shell")
        child.expect("/> ")
        self.quit(child)

    def test_a_jobs_lines_come_above_a_line_of_several_rows(self):
        child = self.spawn(columns=20)
        child.sendline(f"a/until {self.go} &")
        child.expect(r"\[1\] a works\r\n")
        child.send("x" * 50 + "y")
        child.expect("y")
        self.go.touch()
        child.expect(r"\x1b\[2A\r\x1b\[J\[1\] /a/until")
        child.expect("passed")
        child.expect("y")
        child.sendintr()
        child.expect("/> ")
        self.quit(child)

    def test_ctrl_c_ends_wait_and_leaves_the_job_alone(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go} &")
        child.expect(r"\[1\] a works\r\n")
        child.sendline("wait")
        # The echo shows that the line was read; Ctrl-C at the prompt would
        # answer nothing.
        child.expect("wait\r\n")
        child.sendintr()
        child.expect("wait: ended by Ctrl-C; the jobs go on\r\n")
        child.sendline("jobs")
        child.expect(r"\[1\] /a/until [^ ]*: running, 0:00:")
        self.go.touch()
        child.sendline("wait 1")
        child.expect(r"\[1\] /a/until [^ ]*: passed")
        child.expect("/> ")
        self.quit(child)

    def test_a_foreground_test_shows_a_bar_and_stops_at_ctrl_c(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go} 50")
        child.expect_exact("[##########----------] until: 50%, 50 of 100, 0/s")
        child.sendintr()
        # The bar goes before the next line comes.
        child.expect(r"\r\x1b\[Ka cleans up\r\n")
        child.expect(r"/a/until: aborted \(ERR_ABORTED\)")
        child.expect("/> ")
        self.quit(child)

    def test_a_job_prints_above_the_bar(self):
        child = self.spawn()
        child.sendline(f"b/until {self.go} &")
        child.expect(r"\[1\] b works\r\n")
        child.sendline(f"a/until {self.folder}/never 50")
        child.expect_exact("[##########----------] until: 50%")
        self.go.touch()
        child.expect(r"\r\x1b\[K\[1\] /b/until [^ ]*: passed\r\n(\r\x1b\[K)?"
                     r"\[##########----------\] until: 50%")
        child.sendintr()
        child.expect(r"/a/until: aborted")
        child.expect("/> ")
        self.quit(child)

    def test_a_job_that_waits_says_for_whom(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go} &")
        child.expect(r"\[1\] a works\r\n")
        child.sendline(f"a/fail-at {self.folder}/never &")
        child.expect(rf"\[2\] waiting for /a, held by /a/until {self.go} \(job 1\)\r\n")
        child.sendline("jobs")
        child.expect(rf"\[2\] /a/fail-at {self.folder}/never: waiting for /a, held by "
                     rf"/a/until {self.go} \(job 1\), 0:00:")
        child.sendline("stop 2")
        child.expect(r"\[2\] /a/fail-at [^ ]*: aborted \(ERR_ABORTED\)")
        self.go.touch()
        child.expect(r"\[1\] /a/until [^ ]*: passed")
        self.quit(child)

    def test_stop_takes_a_node(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go} &")
        child.expect(r"\[1\] a works\r\n")
        child.sendline(f"b/until {self.go} &")
        child.expect(r"\[2\] b works\r\n")
        child.sendline("stop b")
        child.expect(r"\[2\] /b/until [^ ]*: aborted")
        child.sendline("jobs")
        child.expect(r"\[1\] /a/until [^ ]*: running, ")
        child.sendline("stop")
        child.expect(r"\[1\] /a/until [^ ]*: aborted")
        self.quit(child)

    def test_leaving_stops_the_jobs(self):
        child = self.spawn()
        child.sendline(f"a/until {self.go} &")
        child.expect(r"\[1\] a works\r\n")
        child.sendeof()
        child.expect("\r\nleaving: 1 job is asked to stop and awaited; Ctrl-C tells how far\r\n")
        child.expect(r"\[1\] a cleans up\r\n")
        child.expect(r"\[1\] /a/until [^ ]*: aborted \(ERR_ABORTED\)\r\n")
        self.expect_end(child)

    def test_a_transcript_through_a_pipe_keeps_lines_whole(self):
        child = self.spawn_through_pipe()
        child.sendline(f"a/until {self.go} &")
        child.expect(r"\[1\] a works\r\n")
        self.go.touch()
        child.expect(r"\n\[1\] /a/until [^ ]*: passed\r\n/> ")
        child.sendline("quit")
        child.expect(pexpect.EOF)


if __name__ == "__main__":
    signal.signal(signal.SIGINT, signal.default_int_handler)
    unittest.main()
