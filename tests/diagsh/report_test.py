"""What diagsh reports to programs: JSON objects that its schema accepts, JUnit
reports, and exit statuses.

Runs with the paths of diagsh, of the default board's blob and of the schema in
DIAGSH, DTB and SCHEMA.
"""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

import jsonschema

DIAGSH = os.environ["DIAGSH"]
DTB = os.environ["DTB"]
SCHEMA = jsonschema.Draft202012Validator(json.loads(pathlib.Path(os.environ["SCHEMA"]).read_text()))

EEPROM = "/i2c-0/mfg-eeprom"


class Report(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_diagsh(self, *arguments, stdin=b""):
        words = [DIAGSH, "--sim", DTB, "--state", str(self.folder / "state"), *arguments]
        done = subprocess.run(words, input=stdin, capture_output=True, timeout=60)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def json(self, *commands, options=()):
        """The exit status, and the objects, each accepted by the schema."""
        words = [word for command in commands for word in ("-c", command)]
        status, out, self.err = self.run_diagsh("--json", *options, *words)
        objects = [json.loads(line) for line in out.splitlines()]
        for item in objects:
            SCHEMA.validate(item)
        return status, objects


class Json(Report):
    def test_a_command_that_passes_is_one_object(self):
        status, objects = self.json("/i2c-0/chk-dev 0x50")
        self.assertEqual((status, len(objects)), (0, 1))
        self.assertEqual(objects[0]["command"], "/i2c-0/chk-dev 0x50")
        self.assertEqual(objects[0]["path"], "/i2c-0/chk-dev")
        self.assertEqual(objects[0]["arguments"], ["0x50"])
        self.assertEqual(objects[0]["result"],
                         {"status": "passed", "exit": 0, "code": 0, "name": "SUCCESS"})

    def test_a_command_that_fails_is_one_object(self):
        status, objects = self.json("/i2c-0/chk-dev 0x12")
        self.assertEqual((status, len(objects)), (1, 1))
        self.assertEqual(objects[0]["result"]["status"], "failed")
        self.assertIn(objects[0]["errors"][0] + "\n", self.err)

    def test_what_people_read_goes_to_standard_error(self):
        _, objects = self.json("/i2c-0/chk-dev 0x50")
        printed = "".join(line["text"] + "\n" for line in objects[0]["log"])
        self.assertIn("device with addr = 0x50 found", printed)
        self.assertEqual(printed, self.err)

    def test_what_a_command_prints_past_the_log_does_not_spoil_the_objects(self):
        status, objects = self.json("/i2c-0/trans rd 0x50 2 0 0 16")
        self.assertEqual((status, len(objects)), (0, 1))
        self.assertIn("16-command = 0x0\n", self.err)

    def test_every_kind_of_command_fits_the_schema(self):
        script = self.folder / "script"
        script.write_text("/i2c-0/chk-dev 0x50\nnope\n/i2c-0/chk-dev\n")
        status, objects = self.json(
            "ls", "cd /i2c-0", "peek last-error", f"peek {EEPROM}/memory 0..3",
            f"poke {EEPROM}/memory 0x40 1", f"{EEPROM}/rw-test 0 63", f"{EEPROM}/rw-test 0 63 &",
            "wait", "repeat 2 chk-dev 0x50", f"source {script}", "chk-dev 'x", "status",
            "log hw-debug=15", f"{EEPROM}/read 0 4", "sleep 0.01", "help", "history",
            options=["--keep-going"])
        self.assertEqual(status, 2)
        by_command = {item["command"]: item for item in objects}
        self.assertEqual(by_command["peek last-error"]["outputs"][0]["name"], "last-error")
        peeked = by_command[f"peek {EEPROM}/memory 0..3"]["outputs"]
        self.assertEqual([value["name"] for value in peeked],
                         ["memory[0x0]", "memory[0x1]", "memory[0x2]", "memory[0x3]"])
        self.assertEqual([item["job"] for item in objects if item["job"]], [1])
        self.assertEqual(by_command["repeat 2 chk-dev 0x50"]["outputs"][0]["value"], 2)
        self.assertEqual(by_command["nope"]["origin"], f"{script}:2")
        self.assertEqual(by_command["chk-dev 'x"]["result"]["status"], "usage")
        self.assertIn("hw-debug", {line["type"] for line in by_command[f"{EEPROM}/read 0 4"]["log"]})

    def test_a_board_that_cannot_start_gives_no_object(self):
        done = subprocess.run([DIAGSH, "--json", "--sim", "/does/not/exist", "-c", "ls"],
                              capture_output=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout), (4, b""))
        self.assertIn(b"/does/not/exist", done.stderr)

    def test_lost_output_ends_the_run(self):
        with open("/dev/full", "w") as full:
            done = subprocess.run([DIAGSH, "--sim", DTB, "--state", str(self.folder / "state"),
                                   "--json", "-c", "ls", "-c", "pwd"],
                                  stdout=full, stderr=subprocess.PIPE, timeout=60)
        self.assertEqual(done.returncode, 4)
        self.assertIn(b"standard output", done.stderr)


class Junit(Report):
    def test_a_run_is_reported(self):
        path = self.folder / "report.xml"
        status, _, _ = self.run_diagsh("--junit", str(path), "--keep-going",
                                       "-c", "/i2c-0/chk-dev 0x50", "-c", "/i2c-0/chk-dev 0x12",
                                       "-c", f"{EEPROM}/rw-test 0 63", "-c", "nope")
        self.assertEqual(status, 1)
        suite = xml.etree.ElementTree.parse(path).getroot().find("testsuite")
        self.assertEqual([suite.get(name) for name in ("tests", "failures", "errors", "skipped")],
                         ["4", "1", "1", "0"])
        cases = suite.findall("testcase")
        self.assertEqual([case.get("name") for case in cases],
                         ["chk-dev 0x50", "chk-dev 0x12", "rw-test 0 63", "nope"])
        self.assertEqual([case.get("classname") for case in cases],
                         ["i2c-0", "i2c-0", "i2c-0.mfg-eeprom", "diagsh"])
        self.assertIsNotNone(cases[1].find("failure"))
        self.assertEqual(cases[3].find("error").get("type"), "usage")

    def test_a_report_that_cannot_be_written_stops_the_start(self):
        status, out, err = self.run_diagsh("--junit", "/does/not/exist/r.xml", "-c", "ls")
        self.assertEqual((status, out), (4, ""))
        self.assertIn("/does/not/exist/r.xml: No such file or directory", err)


class ExitStatus(Report):
    def test_runs_that_keep_going_end_with_the_worst(self):
        failing = "/i2c-0/chk-dev 0x12"
        for commands, expected in ((["ls", failing, "pwd"], 1), (["nope", "ls"], 2),
                                   (["nope", failing], 1), ([failing, "nope"], 1), (["ls"], 0)):
            words = [word for command in commands for word in ("-c", command)]
            status, _, _ = self.run_diagsh("--keep-going", *words)
            self.assertEqual(status, expected, commands)

    def test_a_script_that_keeps_going_runs_to_its_end(self):
        status, out, err = self.run_diagsh("--keep-going", stdin=b"nope\n/i2c-0/chk-dev 0x50\n")
        self.assertEqual(status, 2)
        self.assertIn("stdin:1: nope", err)
        self.assertNotEqual(out, "")


if __name__ == "__main__":
    unittest.main()
