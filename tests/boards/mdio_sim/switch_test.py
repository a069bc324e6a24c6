"""morva-mdio-sim as a process, and the object that it preloads.

Runs with the switch, its object, diag_mdio_util and a driver to preload behind in
MORVA_MDIO_SIM, OBJECT, DIAG_MDIO_UTIL and GRANTING_DRIVER.
"""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

SWITCH = pathlib.Path(os.environ["MORVA_MDIO_SIM"])
OBJECT = pathlib.Path(os.environ["OBJECT"])
UTIL = os.environ["DIAG_MDIO_UTIL"]
GRANTING_DRIVER = os.environ["GRANTING_DRIVER"]

WRAPPED = {"open", "open64", "openat", "openat64", "__open_2", "__open64_2", "__openat_2",
           "__openat64_2", "ioctl"}
DRIVER = "/dev/fsl-fman_xmdio_us"
USAGE = ("usage: morva-mdio-sim COMMAND [ARG...]\n"
         "Runs COMMAND with the driver /dev/fsl-fman_xmdio_us simulated.\n")
IDENTIFIER = "\nreg 0x0002 = 0x0229\n\n"


def run(*words, **environment):
    done = subprocess.run([str(word) for word in words], capture_output=True, text=True,
                          timeout=60, stdin=subprocess.DEVNULL, env={**os.environ, **environment})
    return done.returncode, done.stdout, done.stderr


class Switch(unittest.TestCase):
    def test_what_it_runs_has_the_driver(self):
        self.assertEqual(run(SWITCH, UTIL, "-r", "23", "2"), (0, IDENTIFIER, ""))

    def test_what_that_starts_has_the_same_phys(self):
        script = f"{shlex.quote(UTIL)} -w 23 10 1234; {shlex.quote(UTIL)} -r 23 10"
        self.assertEqual(run(SWITCH, "sh", "-c", script), (0, "\nreg 0x0010 = 0x1234\n\n", ""))

    def test_the_phys_come_up_anew_in_each_run(self):
        self.assertEqual(run(SWITCH, UTIL, "-w", "23", "10", "1234"), (0, "", ""))
        self.assertEqual(run(SWITCH, UTIL, "-r", "23", "10"), (0, "\nreg 0x0010 = 0x0000\n\n", ""))

    def test_one_run_in_another_has_phys_of_its_own(self):
        util, switch = shlex.quote(UTIL), shlex.quote(str(SWITCH))
        script = f"{util} -w 23 10 1234; {switch} {util} -r 23 10; {util} -r 23 10"
        self.assertEqual(run(SWITCH, "sh", "-c", script),
                         (0, "\nreg 0x0010 = 0x0000\n\n\nreg 0x0010 = 0x1234\n\n", ""))

    def test_it_passes_arguments_and_the_exit_status_on(self):
        self.assertEqual(run(SWITCH, "sh", "-c", 'echo "$0|$1|$2"; exit 7', "a b", "", "--help"),
                         (7, "a b||--help\n", ""))

    def test_what_is_preloaded_already_stays(self):
        with tempfile.TemporaryDirectory() as folder:
            other = pathlib.Path(folder) / "other.so"
            shutil.copy(OBJECT, other)
            script = 'echo "$LD_PRELOAD"'
            _, output, _ = run(SWITCH, "sh", "-c", script, LD_PRELOAD=str(other))
        self.assertEqual(output, f"{OBJECT}:{other}\n")

    def test_it_works_wherever_the_two_files_are(self):
        way = os.path.relpath(OBJECT, SWITCH.parent)
        for name in ("plain", "with blank", "with:colon"):
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                switch = pathlib.Path(folder) / name / "bin" / SWITCH.name
                for source, copy in ((SWITCH, switch), (OBJECT, switch.parent / way)):
                    copy.parent.mkdir(parents=True, exist_ok=True)
                    shutil.copy(source, copy)
                script = f"{shlex.quote(UTIL)} -r 23 2; exit 0"
                self.assertEqual(run(switch, "sh", "-c", script), (0, IDENTIFIER, ""))
                # A script may use whatever descriptors it likes.
                for number in (*range(3, 20), 63, 200, 255):
                    script = f"exec {number}</etc/passwd; {shlex.quote(UTIL)} -r 23 2; exit 0"
                    self.assertEqual(run(switch, "bash", "-c", script), (0, IDENTIFIER, ""),
                                     number)

    def test_it_works_below_a_low_limit_of_descriptors(self):
        words = shlex.join([str(SWITCH), UTIL, "-r", "23", "2"])
        for limit in (16, 64, 256):
            self.assertEqual(run("sh", "-c", f"ulimit -n {limit}; {words}"), (0, IDENTIFIER, ""))
        _, names, _ = run("sh", "-c", f"ulimit -n 64; {shlex.quote(str(SWITCH))} ls /proc/self/fd")
        self.assertIn("32", names.split())

    def test_two_dashes_may_stand_before_the_command(self):
        self.assertEqual(run(SWITCH, "--", UTIL, "-r", "23", "2"), (0, IDENTIFIER, ""))
        self.assertEqual(run(SWITCH, "--", "-x")[:2], (127, ""))

    def test_without_its_object_it_says_what_is_missing(self):
        with tempfile.TemporaryDirectory() as folder:
            switch = pathlib.Path(folder) / "bin" / SWITCH.name
            switch.parent.mkdir()
            shutil.copy(SWITCH, switch)
            missing = os.path.normpath(switch.parent / os.path.relpath(OBJECT, SWITCH.parent))
            self.assertEqual(
                run(switch, "true"),
                (125, "", f"morva-mdio-sim: cannot preload {missing}: No such file or directory\n"))

    def test_a_command_that_cannot_be_run_is_named(self):
        self.assertEqual(run(SWITCH, "/not/there"),
                         (127, "", "morva-mdio-sim: cannot run /not/there: "
                                   "No such file or directory\n"))
        self.assertEqual(run(SWITCH, "/"),
                         (126, "", "morva-mdio-sim: cannot run /: Permission denied\n"))

    def test_it_says_how_it_is_used(self):
        self.assertEqual(run(SWITCH, "--help"), (0, USAGE, ""))
        self.assertEqual(run(SWITCH, "-h"), (0, USAGE, ""))
        for words in ((), ("",), ("--verbose", "true"), ("-r", "23", "2"), ("--",),
                      ("--", "")):
            with self.subTest(words):
                self.assertEqual(run(SWITCH, *words), (125, "", USAGE))

    def test_a_fault_that_is_no_error_number_is_refused(self):
        for variable in ("MORVA_MDIO_SIM_OPEN_ERRNO", "MORVA_MDIO_SIM_IOCTL_ERRNO"):
            for text in ("", "0", "-5", "4096", "EIO", "5 ", " 5", "5x", "0x5", 30 * "9"):
                with self.subTest(f"{variable}={text}"):
                    self.assertEqual(
                        run(SWITCH, "true", **{variable: text}),
                        (125, "", f"morva-mdio-sim: {variable} is '{text}', "
                                  "should be an error number from 1 to 4095\n"))

    def test_a_fault_that_is_misspelt_inside_fails_and_says_why(self):
        for variable, what in (("MORVA_MDIO_SIM_OPEN_ERRNO", "could not open " + DRIVER),
                               ("MORVA_MDIO_SIM_IOCTL_ERRNO", "ioctl SIOCGMIIREG failed")):
            script = f"{variable}=EIO {shlex.quote(UTIL)} -r 23 2"
            with self.subTest(variable):
                self.assertEqual(run(SWITCH, "sh", "-c", script),
                                 (255, f"{what}\nmdio_read failed!\n",
                                  f"morva-mdio-sim: {variable} is 'EIO', "
                                  "should be an error number from 1 to 4095\n"))

    def test_a_fault_reaches_the_program(self):
        self.assertEqual(run(SWITCH, UTIL, "-r", "23", "2", MORVA_MDIO_SIM_IOCTL_ERRNO="5")[0], 255)


class Object(unittest.TestCase):
    def test_it_replaces_what_opens_and_requests_and_nothing_else(self):
        _, symbols, _ = run("nm", "--dynamic", "--defined-only", OBJECT)
        self.assertEqual({line.split()[2] for line in symbols.splitlines()}, WRAPPED)

    def test_it_brings_no_library_but_the_one_of_c(self):
        _, dynamic, _ = run("readelf", "--dynamic", "--wide", OBJECT)
        needed = re.findall(r"\(NEEDED\)\s+Shared library: \[(.*?)\]", dynamic)
        self.assertEqual(needed, ["libc.so.6"])

    def test_it_leaves_errno_alone_when_another_driver_grants_the_request(self):
        # The descriptor is none, so finding out whose it is fails on the way.
        script = ("import ctypes; libc = ctypes.CDLL(None, use_errno=True); "
                  "ctypes.set_errno(33); print(libc.ioctl(-1, 0x8948, None), ctypes.get_errno())")
        self.assertEqual(run(SWITCH, sys.executable, "-c", script, LD_PRELOAD=GRANTING_DRIVER),
                         (0, "0 33\n", ""))

    def test_without_the_switch_it_has_no_bus(self):
        status, output, _ = run(UTIL, "-r", "23", "2", LD_PRELOAD=str(OBJECT))
        self.assertEqual((status, output),
                         (255, "could not open /dev/fsl-fman_xmdio_us\nmdio_read failed!\n"))


if __name__ == "__main__":
    unittest.main()
