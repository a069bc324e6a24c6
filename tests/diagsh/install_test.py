"""diagsh as it is installed: complete, and at home wherever it is put.

Runs with cmake, the build folder, and the folders of programs and data below the
prefix in CMAKE, BUILD, BINDIR and DATADIR.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        built_for = cls.folder / "first"
        subprocess.run([os.environ["CMAKE"], "--install", os.environ["BUILD"], "--prefix",
                        built_for], check=True, capture_output=True, timeout=120)
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

    def test_it_says_its_version(self):
        self.assertRegex(self.run_diagsh(self.diagsh, "--version"),
                         r"^diagsh \(morva-diags\) \d+\.\d+\.\d+\n$")

    def test_it_simulates_the_default_board(self):
        self.assertIn("i2c-0/   fsl-i2c, simulated", self.run_diagsh(*self.words, "-c", "ls"))

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
        self.assertEqual({path.name for path in loaded},
                         {"libmorva-board.so", "libmorva-diags.so"})
        for path in loaded:
            self.assertTrue(path.is_relative_to(self.prefix), path)

    def test_documents_are_where_they_are_looked_for(self):
        for name in ("man/man1/diagsh.1", "bash-completion/completions/diagsh",
                     "morva-diags/diagsh.schema.json"):
            self.assertTrue((self.data / name).is_file(), name)


if __name__ == "__main__":
    unittest.main()
