"""The program morva-i2c-sim, and the object that it preloads."""

import os
import pathlib
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from sim_run import DTB, OBJECT, SWITCH, SimRun, run, tool

WRAPPED = {"open", "open64", "openat", "openat64", "__open_2", "__open64_2", "__openat_2",
           "__openat64_2", "ioctl", "read", "write", "__read_chk"}
USAGE = "usage: morva-i2c-sim [OPTIONS] BOARD.dtb COMMAND [ARG...]\n"
MAKER = "0x41\n"
PATIENCE_S = 60


def get_maker(force=False):
    return shlex.join([tool("i2cget"), *(["-f"] if force else []), "-y", "0", "0x4c", "0xfe"])


def await_true(what, condition):
    end = time.monotonic() + PATIENCE_S
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(what)
        time.sleep(0.01)


class Switch(SimRun):
    def test_what_it_runs_has_the_adapters(self):
        self.assertEqual(self.run_in("sh", "-c", get_maker()), (0, MAKER, ""))

    def test_what_runs_side_by_side_has_the_same_chips(self):
        setter, getter = (shlex.join([tool(name), "-y", "1", "0x20", "2"])
                          for name in ("i2cset", "i2cget"))
        self.assertEqual(self.run_in("sh", "-c", f"{setter} 0x5a; {getter}"), (0, "0x5a\n", ""))

    def test_memories_keep_their_contents(self):
        write = [tool("i2ctransfer"), "-y", "0", "w4@0x50", "0x1f", "0xf0", "0x12", "0x34"]
        self.output_of(*write)
        self.assertEqual((self.state / "i2c-0/0x50.bin").read_bytes()[0x1ff0:0x1ff2], b"\x12\x34")
        self.assertEqual(self.output_of(tool("i2ctransfer"), "-y", "0", "w2@0x50", "0x1f", "0xf0",
                                        "r2"), "0x12 0x34\n")

    def test_its_state_folder_is_that_of_the_simulated_board_in_diagsh(self):
        status, _, _ = run(SWITCH, DTB, "true", XDG_STATE_HOME=str(self.folder / "xdg"))
        self.assertEqual(status, 0)
        self.assertTrue((self.folder / "xdg/morva-diags/quillbank/i2c-0/0x50.bin").exists())

    def test_its_state_folder_is_free_again_when_it_has_ended(self):
        for _ in range(5):
            self.assertEqual(self.run_in("true"), (0, "", ""))

    def test_two_runs_cannot_have_one_state_folder(self):
        inner = shlex.join(str(word) for word in self.words("true"))
        status, _, errors = self.run_in("sh", "-c", inner)
        self.assertEqual(status, 125)
        self.assertRegex(errors, r"^morva-i2c-sim: .*state.*\n$")

    def test_one_run_in_another_has_a_board_of_its_own(self):
        setter, getter = (shlex.join([tool(name), "-y", "1", "0x20", "2"])
                          for name in ("i2cset", "i2cget"))
        inner = shlex.join([str(SWITCH), "--state", str(self.folder / "other"), DTB])
        script = f"{setter} 0x5a; {inner} {getter}; {getter}"
        self.assertEqual(self.run_in("sh", "-c", script), (0, "0xff\n0x5a\n", ""))

    def test_it_passes_arguments_and_the_exit_status_on(self):
        self.assertEqual(
            self.run_in("sh", "-c", 'echo "$0|$1|$2|$3"; exit 7', "a b", "", "--help", "--state"),
            (7, "a b||--help|--state\n", ""))

    def test_it_ends_by_the_signal_that_ends_the_command(self):
        self.assertEqual(self.run_in("sh", "-c", "kill -KILL $$")[0], -signal.SIGKILL)
        self.assertEqual(self.run_in("sh", "-c", "kill -TERM $$")[0], -signal.SIGTERM)
        self.assertEqual(list(self.run_folders.iterdir()), [])

    def begin(self, script):
        """The switch and the output of a script that has begun."""
        process = subprocess.Popen([str(word) for word in self.words("bash", "-c", script)],
                                   stdout=subprocess.PIPE, text=True, start_new_session=True,
                                   env={**os.environ, "TMPDIR": str(self.run_folders)})
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.assertEqual(process.stdout.readline(), "begun\n")
        return process

    def test_it_passes_signals_on(self):
        for name in ("TERM", "INT", "HUP", "USR1", "USR2", "QUIT"):
            with self.subTest(name):
                process = self.begin(f"trap 'echo got {name}; exit 5' {name}; echo begun; "
                                     "while :; do sleep 0.02; done")
                process.send_signal(getattr(signal, f"SIG{name}"))
                self.assertEqual(process.stdout.readline(), f"got {name}\n")
                self.assertEqual(process.wait(PATIENCE_S), 5)

    def test_it_stops_and_goes_on_with_the_command(self):
        process = self.begin(f"echo begun; kill -STOP $$; {get_maker()}; exit 5")
        pid, status = os.waitpid(process.pid, os.WUNTRACED)
        self.assertTrue(os.WIFSTOPPED(status), status)
        os.kill(pid, signal.SIGCONT)
        self.assertEqual(process.stdout.readline(), MAKER)
        self.assertEqual(process.wait(PATIENCE_S), 5)

    def test_it_notices_the_end_also_where_ends_of_processes_are_ignored(self):
        ignoring = ("import os, signal, sys; signal.signal(signal.SIGCHLD, signal.SIG_IGN); "
                    "os.execv(sys.argv[1], sys.argv[1:])")
        words = self.words("sh", "-c", "exit 5")
        self.assertEqual(run(sys.executable, "-c", ignoring, *words)[0], 5)

    def test_what_outlives_the_command_finds_no_adapter_any_more(self):
        result = self.folder / "result"
        script = (f"(exec >/dev/null 2>&1; while kill -0 $PPID; do sleep 0.02; done; {get_maker()}; "
                  f"echo $? > {result}.part; mv {result}.part {result}) &")
        self.assertEqual(self.run_in("sh", "-c", script)[0], 0)
        await_true("the program that is left does not end", result.exists)
        self.assertNotEqual(result.read_text(), "0\n")

    def test_it_leaves_nothing_in_the_temporary_folder(self):
        script = 'ls "$(dirname $SYSFS_PATH)"'
        self.assertEqual(self.output_of("sh", "-c", script), "dev\nsys\nturns\n")
        self.assertEqual(list(self.run_folders.iterdir()), [])

    def test_what_is_preloaded_already_stays(self):
        other = self.folder / "other.so"
        shutil.copy(OBJECT, other)
        _, output, _ = run(*self.words("sh", "-c", 'echo "$LD_PRELOAD"'), LD_PRELOAD=str(other))
        self.assertEqual(output, f"{OBJECT}:{other}\n")

    def test_two_dashes_may_stand_before_the_command(self):
        self.assertEqual(self.run_in("--", "sh", "-c", get_maker()), (0, MAKER, ""))
        self.assertEqual(self.run_in("--", "-x")[0], 127)

    def test_a_command_that_cannot_be_run_is_named(self):
        self.assertEqual(self.run_in("/not/there"),
                         (127, "", "morva-i2c-sim: cannot run /not/there: "
                                   "No such file or directory\n"))
        self.assertEqual(self.run_in("/"),
                         (126, "", "morva-i2c-sim: cannot run /: Permission denied\n"))

    def test_a_board_that_cannot_be_read_is_named(self):
        status, output, errors = run(SWITCH, "--state", self.state, "/not/there.dtb", "true")
        self.assertEqual((status, output), (125, ""))
        self.assertIn("/not/there.dtb", errors)
        self.assertEqual(run(SWITCH, "--state", self.state, SWITCH, "true")[0], 125)

    def test_a_temporary_folder_with_too_long_a_name_is_refused(self):
        deep = self.folder / ("x" * 100)
        deep.mkdir()
        status, _, errors = run(*self.words("true"), TMPDIR=str(deep))
        self.assertEqual(status, 125)
        self.assertRegex(errors, "too long a name for a socket's folder, set TMPDIR")

    def test_it_says_how_it_is_used(self):
        status, output, errors = run(SWITCH, "--help")
        self.assertEqual((status, errors), (0, ""))
        self.assertIn(USAGE, output)
        for words, why in (((), "BOARD.dtb is required"), ((DTB,), "COMMAND is required"),
                           ((DTB, ""), "COMMAND is required"),
                           ((DTB, "--verbose", "true"), "--verbose")):
            with self.subTest(words):
                status, output, errors = run(SWITCH, *words)
                self.assertEqual((status, output), (125, ""))
                self.assertIn(why, errors)
                self.assertTrue(errors.endswith(USAGE), errors)

    def test_options_that_are_none_are_named(self):
        for option, text, names in (("--functions", "i2c,fast", "i2c, smbus, quick, "),
                                    ("--no-ack", "ebadf", "enxio, eremoteio, ")):
            with self.subTest(option):
                status, _, errors = run(SWITCH, option, text, DTB, "true")
                self.assertEqual(status, 125)
                self.assertIn(f"{option}: '{text.split(',')[-1]}' is none of {names}", errors)


class Options(SimRun):
    def test_adapters_may_lack_functions(self):
        output = self.output_of(tool("i2cdetect"), "-F", "0", options=("--functions", "byte"))
        self.assertEqual(re.findall(r"(\w[\w ]*?) +yes", output),
                         ["SMBus Send Byte", "SMBus Receive Byte"])
        status, _, _ = self.run_in(tool("i2ctransfer"), "-y", "0", "w1@0x4c", "0xfe", "r1",
                                   options=("--functions", "smbus"))
        self.assertNotEqual(status, 0)
        self.assertEqual(self.output_of("sh", "-c", get_maker(),
                                        options=("--functions", "smbus")), MAKER)

    def test_a_function_that_is_missing_is_not_supported(self):
        script = ("import errno, fcntl, os\n"
                  "fd = os.open('/dev/i2c-0', os.O_RDWR)\n"
                  "fcntl.ioctl(fd, 0x0703, 0x4c)\n"
                  "try: os.read(fd, 1)\n"
                  "except OSError as fault: print(fault.errno == errno.EOPNOTSUPP)")
        self.assertEqual(self.output_of("python3", "-c", script, options=("--functions", "smbus")),
                         "True\n")

    def test_messages_are_not_supported_where_there_is_smbus_alone(self):
        script = ("import ctypes, errno, fcntl, os, struct\n"
                  "fd = os.open('/dev/i2c-0', os.O_RDWR)\n"
                  "byte = ctypes.create_string_buffer(1)\n"
                  "message = struct.pack('@HHHP', 0x4c, 1, 1, ctypes.addressof(byte))\n"
                  "messages = ctypes.create_string_buffer(message)\n"
                  "request = bytearray(struct.pack('@PI0P', ctypes.addressof(messages), 1))\n"
                  "try: print(fcntl.ioctl(fd, 0x0707, request))\n"
                  "except OSError as fault: print(fault.errno == errno.EOPNOTSUPP)")
        for functions, outcome in (("smbus", "True\n"), ("i2c", "1\n")):
            self.assertEqual(self.output_of("python3", "-c", script,
                                            options=("--functions", functions)), outcome)

    def test_a_multiplexer_of_the_kernels_is_left_as_the_description_says(self):
        blob = self.folder / "board.dtb"
        shutil.copy(DTB, blob)
        link = "$SYSFS_PATH/bus/i2c/devices/0-0077/channel-0"
        get = shlex.quote(tool("i2cget"))
        script = (f"{get} -y $(readlink {link} | sed s,.*i2c-,,) 0x51 2 > $0/byte && "
                  f"{get} -f -y 0 0x77")
        words = [SWITCH, "--state", self.state, "--kernel-mux", blob, "sh", "-c", script,
                 self.folder]
        self.assertEqual(run(*words), (0, "0x00\n", ""))
        mux = "/soc@ffe000000/i2c@118000/i2c-mux@77"
        self.assertEqual(run("fdtput", "-d", blob, mux, "i2c-mux-idle-disconnect"), (0, "", ""))
        self.assertEqual(run(*words), (0, "0x08\n", ""))

    def test_nobody_can_be_told_in_several_ways(self):
        script = ("import errno, fcntl, os\n"
                  "fd = os.open('/dev/i2c-0', os.O_RDWR)\n"
                  "fcntl.ioctl(fd, 0x0703, 0x2a)\n"
                  "try: print(len(os.read(fd, 1)))\n"
                  "except OSError as fault: print(errno.errorcode[fault.errno])")
        for how in ("enxio", "eremoteio", "etimedout", "eio"):
            self.assertEqual(self.output_of("python3", "-c", script, options=("--no-ack", how)),
                             how.upper() + "\n")
        self.assertEqual(self.output_of("python3", "-c", script, options=("--no-ack", "short")),
                         "0\n")
        _, _, errors = self.run_in(tool("i2ctransfer"), "-y", "0", "w1@0x4c", "0xfe", "r1@0x2a",
                                   options=("--no-ack", "short"))
        self.assertIn("only 1/2 messages were sent", errors)


class Object(unittest.TestCase):
    def test_it_replaces_what_opens_and_moves_and_nothing_else(self):
        _, symbols, _ = run("nm", "--dynamic", "--defined-only", OBJECT)
        self.assertEqual({line.split()[2] for line in symbols.splitlines()}, WRAPPED)

    def test_it_brings_no_library_but_the_one_of_c(self):
        _, dynamic, _ = run("readelf", "--dynamic", "--wide", OBJECT)
        needed = re.findall(r"\(NEEDED\)\s+Shared library: \[(.*?)\]", dynamic)
        self.assertEqual(needed, ["libc.so.6"])

    def test_without_the_switch_it_has_no_adapter(self):
        status, output, errors = run("sh", "-c", get_maker(), LD_PRELOAD=str(OBJECT))
        self.assertEqual((status, output), (1, ""))
        self.assertIn("No such device", errors)


class Installed(SimRun):
    def test_it_works_wherever_its_files_are(self):
        way = pathlib.Path(os.path.relpath(OBJECT, SWITCH.parent))
        for name in ("plain", "with blank"):
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                switch = pathlib.Path(folder) / name / "bin" / SWITCH.name
                copy = switch.parent / way
                switch.parent.mkdir(parents=True)
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(SWITCH, switch)
                shutil.copy(OBJECT, copy)
                self.assertEqual(run(switch, "--state", self.state, DTB, "sh", "-c", get_maker()),
                                 (0, MAKER, ""))

    def test_without_its_object_it_says_what_is_missing(self):
        with tempfile.TemporaryDirectory() as folder:
            switch = pathlib.Path(folder) / "bin" / SWITCH.name
            switch.parent.mkdir()
            shutil.copy(SWITCH, switch)
            missing = os.path.normpath(switch.parent / os.path.relpath(OBJECT, SWITCH.parent))
            self.assertEqual(
                run(switch, "--state", self.state, DTB, "true"),
                (125, "", f"morva-i2c-sim: cannot preload {missing}: No such file or directory\n"))


if __name__ == "__main__":
    # A shell that starts this in the background has both ignored, and COMMAND could not trap them.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    signal.signal(signal.SIGQUIT, signal.SIG_DFL)
    unittest.main()
