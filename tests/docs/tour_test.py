"""docs/tour.md, typed at a terminal as it stands there.

Its console blocks are one session, lines behind a prompt what is typed and lines
between what is shown; "..." is any text, and alone on a line any lines.

Runs with the source folder, diagsh and the default board's blob in SOURCES, DIAGSH
and DTB.
"""

import os
import pathlib
import re
import shlex
import tempfile
import unittest

import pexpect

DOCUMENT = pathlib.Path(os.environ["SOURCES"]) / "docs" / "tour.md"
PROMPT = re.compile(r"(\$|/[-\w/.]*>) (.*)")
TIMEOUT_S = 60


def steps_of(document):
    """The prompt, the command and the lines shown of each step of the tour."""
    steps = []
    for block in re.findall(r"^```console\n(.*?)^```\n", document, re.MULTILINE | re.DOTALL):
        for line in block.splitlines():
            if typed := PROMPT.fullmatch(line):
                steps.append((typed.group(1) + " ", typed.group(2), []))
            else:
                steps[-1][2].append(line)
    return steps


def fits(shown, wanted):
    """Whether lines that were shown are those that the document shows.

    Blanks at their ends and empty lines do not count: where no line is edited, what is
    typed may leave one.
    """
    pattern = "".join("(?:.*\n)*?" if line == "..." else
                      re.escape(line.rstrip()).replace(r"\.\.\.", ".*") + "\n"
                      for line in wanted if line.strip())
    return re.fullmatch(
        pattern, "".join(line.rstrip() + "\n" for line in shown if line.strip())) is not None


class Fits(unittest.TestCase):
    def test_lines_must_be_the_same(self):
        self.assertTrue(fits(["a", "b "], ["a ", "", "b"]))
        self.assertFalse(fits(["a", "b"], ["a"]))
        self.assertFalse(fits(["a"], ["a", "b"]))
        self.assertFalse(fits(["ab"], ["a"]))

    def test_dots_stand_for_text_or_for_lines(self):
        self.assertTrue(fits(["a 1 b", "c"], ["a ... b", "c"]))
        self.assertFalse(fits(["a 1 c"], ["a ... b"]))
        self.assertTrue(fits(["a", "x", "y", "b"], ["a", "...", "b"]))
        self.assertTrue(fits(["a", "b"], ["a", "...", "b"]))
        self.assertFalse(fits(["a", "x"], ["a", "...", "b"]))


class Tour(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        # Stands for the script that builds first.
        run = self.folder / "scripts" / "run"
        run.parent.mkdir()
        run.write_text("#!/bin/sh\nexec " + shlex.join(
            [os.environ["DIAGSH"], "--sim", os.environ["DTB"]]) + ' "$@"\n')
        run.chmod(0o755)

    def test_it_shows_what_the_document_shows(self):
        steps = steps_of(DOCUMENT.read_text())
        self.assertGreater(len(steps), 20)
        # A terminal that edits no lines shows just what is typed and printed.
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "TERM": "dumb",
                       "PS1": "$ ",
                       **{name: value for name, value in os.environ.items()
                          if name.startswith("QEMU_")}}
        shell = pexpect.spawn("bash", ["--norc", "--noprofile", "--noediting"], encoding="utf-8",
                              cwd=str(self.folder), env=environment, dimensions=(50, 500),
                              timeout=TIMEOUT_S)
        self.addCleanup(shell.close, force=True)
        shell.expect_exact(steps[0][0])
        for step, (_, command, wanted) in enumerate(steps):
            shell.sendline(command)
            shell.expect_exact(command + "\r\n")
            following = steps[step + 1][0] if step + 1 < len(steps) else "$ "
            # The prompt, at the start of a line, that the next command is typed at.
            shell.expect(r"(?:^|(?<=\n))" + re.escape(following) + r"\Z")
            shown = shell.before.splitlines()
            self.assertTrue(fits(shown, wanted), "\n".join(
                ["", f"behind {command!r} the document shows", *wanted, "and diagsh", *shown]))
        shell.sendline("exit")
        shell.expect(pexpect.EOF)


if __name__ == "__main__":
    unittest.main()
