"""The man page says of options and built-ins what diagsh says of them.

Runs with the source folder, diagsh and the default board's blob in SOURCES, DIAGSH
and DTB.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

DIAGSH = os.environ["DIAGSH"]
PAGE = pathlib.Path(os.environ["SOURCES"]) / "docs" / "diagsh.1"


def run(*words, status=0):
    done = subprocess.run(words, capture_output=True, text=True, timeout=60, check=False,
                          stdin=subprocess.DEVNULL)
    if done.returncode != status:
        raise AssertionError(f"{words} ended with {done.returncode}: {done.stderr}")
    return done.stdout + done.stderr


def rendered():
    """The page as plain text, wide enough for every heading to be one line."""
    return re.sub(".\b", "", run("mandoc", "-T", "ascii", "-O", "width=200", str(PAGE)))


def headings(text, start):
    """What the entries of a list are headed with, of lines that begin with `start`."""
    return re.findall(rf"^     ({start}\S*(?: \S+)*?)(?:   *\S.*)?$", text, re.MULTILINE)


def section(text, title, following):
    found = re.search(rf"^ *{title}\n(.*?)^ *{following}\n", text, re.MULTILINE | re.DOTALL)
    return found.group(1)


class ManPage(unittest.TestCase):
    def test_it_is_well_formed(self):
        self.assertEqual(run("mandoc", "-T", "lint", "-W", "warning", str(PAGE)), "")

    def test_it_has_the_options_of_help_and_no_others(self):
        summary = run(DIAGSH, "--help")
        offered = re.findall(r"^  (-\S+(?: [A-Z][\w.=]+)?)", summary, re.MULTILINE)
        self.assertIn("--sim FILE.dtb", offered)
        described = headings(section(rendered(), "DESCRIPTION", "Lines"), "-")
        self.assertEqual(sorted(described), sorted(o.replace(",", ", ") for o in offered))

    def test_it_has_the_built_ins_of_help_with_their_arguments_and_no_others(self):
        with tempfile.TemporaryDirectory() as state:
            board = ("--sim", os.environ["DTB"], "--state", state)
            names = re.findall(r"^  ([a-z]+)  ", run(DIAGSH, *board, "-c", "help"), re.MULTILINE)
            asked = [word for name in names for word in ("-c", f"help {name}")]
            usages = re.findall(r"^usage: (.*)$", run(DIAGSH, *board, *asked), re.MULTILINE)
        self.assertIn("peek NODE [POSITION|FIRST..LAST]", usages)
        self.assertEqual(len(usages), len(names))
        described = headings(section(rendered(), "Built-in commands", "Signals"), "[a-z]")
        self.assertEqual(described, usages)

    def test_it_has_the_types_of_log_texts(self):
        types = re.search("there are (.*), and all", run(DIAGSH, "--log", "none=1", status=2))
        page = re.sub(r"\s+", " ", rendered())
        self.assertIn(f"TYPE is {types.group(1)} or all.", page)


if __name__ == "__main__":
    unittest.main()
