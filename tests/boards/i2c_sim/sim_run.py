"""morva-i2c-sim as a process, for the tests beside this file.

Takes the paths of the switch, its object, diagsh and the default board's blob from
MORVA_I2C_SIM, OBJECT, DIAGSH and DTB.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

SWITCH = pathlib.Path(os.environ["MORVA_I2C_SIM"])
OBJECT = pathlib.Path(os.environ["OBJECT"])
DIAGSH = os.environ["DIAGSH"]
DTB = os.environ["DTB"]


def tool(name):
    """A program of i2c-tools, which may stand where only root looks."""
    found = shutil.which(name, path=os.environ["PATH"] + ":/usr/sbin:/sbin")
    if found is None:
        raise AssertionError(f"there is no {name}: install i2c-tools")
    return found


def run(*words, **environment):
    done = subprocess.run([str(word) for word in words], capture_output=True, text=True,
                          timeout=120, stdin=subprocess.DEVNULL,
                          env={**os.environ, **environment})
    return done.returncode, done.stdout, done.stderr


class SimRun(unittest.TestCase):
    """A folder of the test's own, with the state of the board in it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.state = self.folder / "state"
        self.run_folders = self.folder / "tmp"
        self.run_folders.mkdir()

    def words(self, *words, options=()):
        return [SWITCH, "--state", self.state, *options, DTB, *words]

    def run_in(self, *words, options=()):
        return run(*self.words(*words, options=options), TMPDIR=str(self.run_folders))

    def output_of(self, *words, options=()):
        status, output, errors = self.run_in(*words, options=options)
        self.assertEqual((status, errors), (0, ""), words)
        return output
