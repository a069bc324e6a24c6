"""The man pages say of the programs what these say of themselves.

Runs with the source folder, the programs and the default board's blob in SOURCES, DIAGSH,
DIAG_MDIO_UTIL, MORVA_I2C_SIM, MORVA_MDIO_SIM and DTB.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

DIAGSH = os.environ["DIAGSH"]
DIAG_MDIO_UTIL = os.environ["DIAG_MDIO_UTIL"]
DOCS = pathlib.Path(os.environ["SOURCES"]) / "docs"


def run(*words, status=0):
    done = subprocess.run(words, capture_output=True, text=True, timeout=60, check=False,
                          stdin=subprocess.DEVNULL)
    if done.returncode != status:
        raise AssertionError(f"{words} ended with {done.returncode}: {done.stderr}")
    return done.stdout + done.stderr


def rendered(page="diagsh.1"):
    """The page as plain text, wide enough for every heading to be one line."""
    return re.sub(".\b", "", run("mandoc", "-T", "ascii", "-O", "width=200", str(DOCS / page)))


def headings(text, start):
    """What the entries of a list are headed with, of lines that begin with `start`."""
    return re.findall(rf"^     ({start}\S*(?: \S+)*?)(?:   *\S.*)?$", text, re.MULTILINE)


def section(text, title, following):
    found = re.search(rf"^ *{title}\n(.*?)^ *{following}\n", text, re.MULTILINE | re.DOTALL)
    return found.group(1)


class ManPages(unittest.TestCase):
    def test_they_are_well_formed(self):
        pages = sorted(DOCS.glob("*.1"))
        self.assertEqual([page.name for page in pages],
                         ["diag_mdio_util.1", "diagsh.1", "morva-i2c-sim.1", "morva-mdio-sim.1"])
        for page in pages:
            self.assertEqual(run("mandoc", "-T", "lint", "-W", "warning", str(page)), "")


class DiagMdioUtil(unittest.TestCase):
    def test_its_page_has_the_forms_of_its_usage(self):
        usage = run(DIAG_MDIO_UTIL, status=255)
        forms = re.findall(r"(-[a-z] (?:<hex \S+> *)+)", usage)
        self.assertEqual(len(forms), 2)
        synopsis = section(rendered("diag_mdio_util.1"), "SYNOPSIS", "DESCRIPTION")
        self.assertEqual([line.strip() for line in synopsis.splitlines() if line.strip()],
                         ["diag_mdio_util " + re.sub(r"<hex (\S+)>", r"\1", form).strip()
                          for form in forms])

    def test_its_page_has_its_messages(self):
        simulated = (os.environ["MORVA_MDIO_SIM"], DIAG_MDIO_UTIL)
        open_fault = ("env", "MORVA_MDIO_SIM_OPEN_ERRNO=2")
        access_fault = ("env", "MORVA_MDIO_SIM_IOCTL_ERRNO=5")
        page = rendered("diag_mdio_util.1")
        for fault, *words in (((), "-r", "0", "10000"), ((), "-r", "400", "0"),
                              ((), "-w", "0", "0", "10000"),
                              (open_fault, "-r", "0", "0"), (open_fault, "-w", "0", "0", "0"),
                              (access_fault, "-r", "0", "0"), (access_fault, "-w", "0", "0", "0")):
            lines = run(*fault, *simulated, *words, status=255).splitlines()
            self.assertEqual(len(lines), 2 if fault else 1)
            for line in lines:
                self.assertIn(line, page)


class MorvaMdioSim(unittest.TestCase):
    def test_its_page_has_the_form_of_its_usage(self):
        usage = re.search("usage: (.*)", run(os.environ["MORVA_MDIO_SIM"], "--help")).group(1)
        self.assertEqual(section(rendered("morva-mdio-sim.1"), "SYNOPSIS", "DESCRIPTION").strip(),
                         usage)


class MorvaI2cSim(unittest.TestCase):
    def setUp(self):
        self.help = run(os.environ["MORVA_I2C_SIM"], "--help")
        self.page = rendered("morva-i2c-sim.1")

    def test_its_page_has_the_form_of_its_usage(self):
        usage = re.search("usage: (.*)", self.help).group(1)
        self.assertEqual(section(self.page, "SYNOPSIS", "DESCRIPTION").strip(), usage)

    def test_its_page_has_the_options_of_help_and_no_others(self):
        offered = re.findall(r"^  (-\S+(?: [A-Z]+)?)", self.help, re.MULTILINE)
        self.assertIn("--no-ack HOW", offered)
        described = headings(section(self.page, "DESCRIPTION", "ENVIRONMENT"), "-")
        self.assertEqual(sorted(described), sorted(o.replace(",", ", ") for o in offered))

    def test_its_page_has_the_names_that_options_take(self):
        described = section(self.page, "DESCRIPTION", "ENVIRONMENT")
        lists = re.findall(r"(?:list of|acknowledged:) (.*)$", self.help, re.MULTILINE)
        self.assertEqual(len(lists), 2)
        for name in ", ".join(lists).split(", "):
            self.assertRegex(described, rf"[ ,]{name}[ ,.\n]")


class Diagsh(unittest.TestCase):
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
