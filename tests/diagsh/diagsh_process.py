"""diagsh as a process on a board, for the tests beside this file: run to its end,
or at a real terminal.

Takes the paths of diagsh, the default board's blob and the slow board from
DIAGSH, DTB and BOARD.
"""

import os
import pathlib
import signal
import subprocess
import tempfile
import time
import unittest

import pexpect

DIAGSH = os.environ["DIAGSH"]


class Process(unittest.TestCase):
    """A folder of the test's own, and diagsh with its state in it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.environment = {**os.environ, "TERM": "xterm", "NO_COLOR": "1",
                            "XDG_STATE_HOME": str(self.folder / "xdg")}

    def words(self, *arguments):
        """The command line, with the board."""
        raise NotImplementedError

    def run_diagsh(self, *arguments, stdin=b""):
        done = subprocess.run(self.words(*arguments), input=stdin, capture_output=True,
                              timeout=60, env=self.environment)
        return done.returncode, done.stdout.decode(), done.stderr.decode(errors="replace")

    def spawn(self, *arguments, columns=120, prompt="/> "):
        return self.spawn_words(*self.words(*arguments), columns=columns, prompt=prompt)

    def spawn_through_pipe(self, *arguments):
        """diagsh at a terminal, its output through a pipe."""
        line = " ".join(f"'{word}'" for word in self.words(*arguments))
        return self.spawn_words("/bin/sh", "-c", line + " | cat")

    def spawn_words(self, *words, columns=120, prompt="/> "):
        # What is typed before the shell has taken the terminal is echoed as it
        # stands, be it text or not.
        child = pexpect.spawn(words[0], list(words[1:]), encoding="utf-8",
                              codec_errors="replace", timeout=60, dimensions=(24, columns),
                              env=self.environment)
        self.addCleanup(self.end, child)
        child.expect_exact(prompt)
        return child

    @staticmethod
    def end(child):
        """Ends what is left of a child, however long the machine takes for that."""
        if child.isalive():
            child.kill(signal.SIGKILL)
            child.wait()
        child.close()

    def quit(self, child):
        child.sendline("quit")
        self.expect_end(child)

    def expect_end(self, child, status=0):
        child.expect(pexpect.EOF)
        child.close()
        self.assertEqual((child.exitstatus, child.signalstatus), (status, None))

    def wait_until_idle(self, child):
        """Waits until the child sleeps, so that it waits for a key."""
        stat = pathlib.Path(f"/proc/{child.pid}/stat")
        deadline = time.monotonic() + 20
        while stat.read_text().rsplit(")", 1)[1].split()[0] != "S":
            self.assertLess(time.monotonic(), deadline, "the child does not come to rest")
            time.sleep(0.001)


class OnQuillbank(Process):
    """On the simulated default board."""

    def setUp(self):
        super().setUp()
        self.state = self.folder / "state"
        self.eeprom = self.state / "i2c-0" / "0x50.bin"

    def words(self, *arguments):
        return [DIAGSH, "--sim", os.environ["DTB"], "--state", str(self.state), *arguments]


class OnSlowBoard(Process):
    """On a board whose tests take as long as they are told."""

    def setUp(self):
        super().setUp()
        # What a test waits for, and a file that is there already.
        self.go = self.folder / "go"
        self.now = self.folder / "now"
        self.now.touch()

    def words(self, *arguments):
        return [DIAGSH, "--board", os.environ["BOARD"], *arguments]

    def run_commands(self, *commands):
        return self.run_diagsh(*(word for command in commands for word in ("-c", command)))
