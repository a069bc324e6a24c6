"""diagsh decode: files of EEPROMs, their bytes or hex dumps of them, told in words.

Runs with the paths of diagsh, of the default board's blob, beside which its images are,
and of the schemas in DIAGSH, DTB and SCHEMA. The dumps are those of the tools themselves.
"""

import json
import os
import pathlib
import subprocess
import sys
import unittest

import jsonschema

sys.dont_write_bytecode = True

from diagsh_process import DIAGSH, OnQuillbank, Process  # noqa: E402

IMAGES = pathlib.Path(os.environ["DTB"]).parent / "images"
SCHEMA = jsonschema.Draft202012Validator(json.loads(
    pathlib.Path(os.environ["SCHEMA"]).with_name("decode.schema.json").read_text()))

KINDS = {"spd": "i2c-0/0x77/ch0/0x51.bin", "sfp": "i2c-1/0x70/ch0/0x50.bin",
         "mfg": "i2c-0/0x50.bin"}

READABLE = (["xxd"], ["xxd", "-u"], ["xxd", "-g", "1"], ["xxd", "-g", "4", "-c", "20"],
            ["xxd", "-g", "0"], ["xxd", "-a"], ["xxd", "-c", "256"], ["xxd", "-p"],
            ["xxd", "-p", "-c", "0"], ["xxd", "-i"], ["hexdump", "-C"], ["hexdump", "-v", "-C"],
            ["od", "-A", "x", "-t", "x1"], ["od", "-A", "x", "-t", "x1z"], ["od", "-t", "x1"],
            ["od", "-A", "d", "-t", "x1"], ["od", "-A", "n", "-t", "x1", "-v"])
UNREADABLE = (["hexdump"], ["hexdump", "-x"], ["hexdump", "-b"], ["hexdump", "-c"],
              ["xxd", "-e"], ["xxd", "-e", "-g", "2"], ["xxd", "-b"],
              ["xxd", "-o", "16"], ["xxd", "-s", "16"], ["od"], ["od", "-x"], ["od", "-c"],
              ["od", "-A", "n", "-t", "x2"])


def dump(tool, data):
    return subprocess.run(tool, input=data, capture_output=True, timeout=60, check=True).stdout


def table_of_chip(data):
    """The 256 bytes as i2cdump prints them."""
    def shown(byte):
        return "." if byte in (0x00, 0xFF) else chr(byte) if 32 <= byte < 127 else "?"
    lines = ["     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f    0123456789abcdef"]
    for at in range(0, 256, 16):
        row = data[at:at + 16]
        lines.append(f"{at:02x}: {row.hex(' ')}    {''.join(map(shown, row))}")
    return "".join(line + "\n" for line in lines).encode()


class Decode(Process):
    def words(self, *arguments):
        return [DIAGSH, *arguments]

    def image(self, kind):
        return (IMAGES / KINDS[kind]).read_bytes()

    def file(self, data, name="image"):
        path = self.folder / name
        path.write_bytes(data)
        return str(path)

    def decode(self, kind, data, *options):
        return self.run_diagsh("decode", *options, kind, self.file(data))

    def refusal(self, *arguments, stdin=b""):
        status, out, err = self.run_diagsh("decode", *arguments, stdin=stdin)
        self.assertEqual((status, out), (2, ""), err)
        self.assertNotEqual(err, "")
        return err


class Raw(Decode):
    def test_a_record_whose_checksums_hold_exits_0(self):
        for kind in KINDS:
            status, out, err = self.decode(kind, self.image(kind))
            self.assertEqual((status, err), (0, ""), kind)
            self.assertRegex(out, r"\A\S.*\n  \S.* : \S")
            self.assertNotIn("wrong", out)

    def test_a_changed_byte_exits_1_and_the_rest_is_told(self):
        for kind in KINDS:
            right = self.image(kind)
            wrong = right[:20] + bytes([right[20] ^ 0x01]) + right[21:]
            status, out, err = self.decode(kind, wrong)
            self.assertEqual((status, err), (1, ""), kind)
            self.assertIn(", wrong: calculated 0x", out)
            self.assertEqual(len(out.splitlines()),
                             len(self.decode(kind, right)[1].splitlines()), kind)

    def test_any_bytes_are_told(self):
        for kind in KINDS:
            for data in (bytes(512), b"\xff" * 512, bytes(range(256)) * 2):
                status, out, err = self.decode(kind, data)
                self.assertEqual((status, err), (1, ""))
                self.assertTrue(out.isascii())

    def test_a_blank_chip_exits_1_and_is_told_first(self):
        for kind in KINDS:
            for data, shown in ((bytes(256), "0x00"), (b"\xff" * 256, "0xff")):
                status, out, err = self.decode(kind, data)
                self.assertEqual((status, err), (1, ""), kind)
                self.assertRegex(out, rf"\A\S+\n  Contents +: blank, all {shown}\n")
                status, out, _ = self.decode(kind, data, "--json")
                self.assertEqual((status, json.loads(out)["checks_hold"]), (1, False))

    def test_bytes_behind_the_record_change_nothing(self):
        image = self.image("spd")
        self.assertEqual(self.decode("spd", image + bytes(100)), self.decode("spd", image))

    def test_standard_input_is_a_file_too(self):
        image = self.image("spd")
        self.assertEqual(self.run_diagsh("decode", "spd", "-", stdin=image),
                         self.decode("spd", image))

    def test_a_file_may_be_called_decode(self):
        path = self.file(self.image("spd"), "decode")
        done = subprocess.run([DIAGSH, "decode", "spd", "decode"], cwd=self.folder,
                              capture_output=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout.decode(), done.stderr),
                         self.run_diagsh("decode", "spd", path)[:2] + (b"",))

    def test_lost_output_exits_4(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run(self.words("decode", "spd", self.file(self.image("spd"))),
                                  stdout=full, stderr=subprocess.PIPE, timeout=60)
        self.assertEqual((done.returncode, done.stderr.decode()),
                         (4, "diagsh: standard output: No space left on device\n"))


class Dumps(Decode):
    def test_dumps_of_the_tools_tell_the_same_as_the_bytes(self):
        for kind in KINDS:
            image = self.image(kind)[:512]
            told = self.decode(kind, image)
            for tool in READABLE:
                text = dump(tool, image)
                self.assertEqual(self.decode(kind, text), told, tool)
                self.assertEqual(self.decode(kind, text.replace(b"\n", b"\r\n")), told, tool)

    def test_the_table_of_i2cdump_tells_the_same_as_the_bytes(self):
        for kind in KINDS:
            image = self.image(kind).ljust(256, b"\xff")[:256]
            self.assertEqual(self.decode(kind, table_of_chip(image)), self.decode(kind, image))

    def test_an_array_in_c_tells_the_same_as_the_bytes(self):
        for kind in KINDS:
            image = self.image(kind)[:512]
            array = dump(["xxd", "-i", self.file(image, "module.bin")], b"")
            self.assertIn(b"unsigned char", array)
            self.assertEqual(self.decode(kind, array), self.decode(kind, image))

    def test_dumps_of_both_addresses_tell_the_same_as_the_bytes(self):
        pages = [(IMAGES / f"i2c-1/0x70/ch1/0x71/ch3/0x5{address}.bin").read_bytes()
                 for address in (0, 1)]
        told = self.decode("sfp", b"".join(pages))
        self.assertIn("  CC_DMI ", told[1])
        for tool in (["xxd"], ["hexdump", "-C"], ["od", "-t", "x1"], ["od", "-A", "x", "-t", "x1"]):
            dumps = b"".join(dump(tool, page) for page in pages)
            self.assertEqual(self.decode("sfp", dumps), told, tool)
        self.assertEqual(self.decode("sfp", b"".join(map(table_of_chip, pages))), told)

    def test_utf_16_is_refused(self):
        path = self.file(dump(["xxd"], self.image("spd")).decode().encode("utf-16"))
        self.assertEqual(self.refusal("spd", path),
                         f"diagsh: {path} is UTF-16 text; save it as UTF-8 or ASCII\n")

    def test_other_dumps_are_refused_with_the_line(self):
        image = self.image("spd")
        for tool in UNREADABLE:
            path = self.file(dump(tool, image))
            self.assertRegex(self.refusal("spd", path), rf"\Adiagsh: {path}:\d+: .+\n\Z", tool)

    def test_words_are_refused_with_what_can_be_read_instead(self):
        path = self.file(dump(["hexdump"], self.image("spd")))
        self.assertEqual(
            self.refusal("spd", path),
            f'diagsh: {path}:1: "1192" is a word of 4 digits, and the order of its bytes is not '
            "known; xxd, hexdump -C and od -A x -t x1 give dumps that can be read\n")

    def test_bytes_that_could_not_be_read_are_named(self):
        rows = table_of_chip(self.image("spd")).replace(b"\n10: ", b"\n10: XX ", 1)
        path = self.file(rows)
        self.assertEqual(
            self.refusal("spd", path),
            f"diagsh: {path}:3: byte 0 of row 10 is XX, which the chip did not give; dump it "
            "again\n")


class Refusals(Decode):
    def test_an_unknown_kind_is_refused_with_those_there_are(self):
        self.assertIn('there is no "spf", there are spd, sfp, mfg; did you mean',
                      self.refusal("spf", self.file(self.image("spd"))))

    def test_a_kind_and_one_file_are_needed(self):
        path = self.file(self.image("spd"))
        for arguments in ((), ("spd",), ("spd", path, path)):
            self.refusal(*arguments)

    def test_a_short_file_is_refused_with_the_bytes_it_lacks(self):
        path = self.file(self.image("spd")[:100])
        self.assertEqual(self.refusal("spd", path),
                         f"diagsh: {path}: 100 bytes, at least 256 are needed "
                         "(SPD EEPROM of a DDR3 module)\n")

    def test_what_is_no_plain_file_is_refused(self):
        pipe = str(self.folder / "pipe")
        os.mkfifo(pipe)
        for path in (pipe, "/dev/zero", str(self.folder), "/no/such/file", ""):
            self.assertTrue(self.refusal("spd", path).startswith(f"diagsh: {path}"))

    def test_standard_input_without_an_end_is_refused(self):
        with open("/dev/zero", "rb") as endless:
            done = subprocess.run(self.words("decode", "spd", "-"), stdin=endless,
                                  capture_output=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout, done.stderr.decode()),
                         (2, b"", "diagsh: standard input: more than 1 MiB, no image of an "
                                  "EEPROM\n"))

    def test_options_of_the_shell_are_refused(self):
        path = self.file(self.image("spd"))
        for options in (["--sim", path], ["--state", path], ["--board", path], ["-c", "ls"],
                        ["--keep-going"], ["--junit", "report.xml"], ["--log", "info=1"],
                        ["--log-file", "log"], [path]):
            for words in ((*options, "decode", "spd", path), ("decode", "spd", path, *options)):
                status, out, err = self.run_diagsh(*words)
                self.assertEqual((status, out), (2, ""), words)
                self.assertNotEqual(err, "")
        self.assertIn("which loads no board", self.refusal("spd", path, "--", "--sim", path))


class Json(Decode):
    def test_an_object_tells_what_the_lines_tell(self):
        for kind in KINDS:
            _, lines, _ = self.decode(kind, self.image(kind))
            status, out, err = self.decode(kind, self.image(kind), "--json")
            self.assertEqual((status, err, out.count("\n")), (0, "", 1))
            told = json.loads(out)
            SCHEMA.validate(told)
            self.assertEqual((told["schema"], told["kind"], told["checks_hold"]), (1, kind, True))
            self.assertEqual(told["file"], str(self.folder / "image"))
            fields = [field for section in told["sections"] for field in section["fields"]]
            shown = [line.split(" : ", 1) for line in lines.splitlines() if line.startswith(" ")]
            self.assertEqual([[field["name"], field["value"]] for field in fields],
                             [[name.strip(), value] for name, value in shown])
            self.assertEqual([section["name"] for section in told["sections"]],
                             [line for line in lines.splitlines() if not line.startswith(" ")])

    def test_the_option_may_stand_before_the_command(self):
        path = self.file(bytes(256))
        self.assertEqual(self.run_diagsh("--json", "decode", "spd", path),
                         self.run_diagsh("decode", "spd", path, "--json"))

    def test_checksums_that_do_not_hold_are_false(self):
        status, out, _ = self.decode("spd", self.image("spd")[:255] + b"\0", "--json")
        self.assertEqual((status, json.loads(out)["checks_hold"]), (0, True))
        status, out, _ = self.decode("spd", b"\x92\x10" + self.image("spd")[2:], "--json")
        self.assertEqual((status, json.loads(out)["checks_hold"]), (1, False))

    def test_a_refusal_is_no_object(self):
        self.assertIn("No such file", self.refusal("--json", "spd", "/no/such/file"))

    def test_a_name_that_is_no_text_spoils_nothing(self):
        path = os.fsencode(self.folder / "name") + b"\xff"
        pathlib.Path(os.fsdecode(path)).write_bytes(self.image("spd"))
        done = subprocess.run([DIAGSH, "decode", "--json", "spd", path], capture_output=True,
                              timeout=60)
        self.assertEqual(done.returncode, 0)
        SCHEMA.validate(json.loads(done.stdout))


class FromTheBoard(OnQuillbank):
    def test_what_read_prints_tells_the_same_as_what_export_wrote(self):
        dumped = self.run_diagsh("-c", "/i2c-0/mfg-eeprom/read 0")[1]
        saved = str(self.folder / "saved.bin")
        self.run_diagsh("-c", f"export /i2c-0/mfg-eeprom {saved}")
        text = self.folder / "read.txt"
        text.write_text(dumped)
        told = [subprocess.run([DIAGSH, "decode", "mfg", str(file)], capture_output=True,
                               timeout=60) for file in (text, saved)]
        self.assertEqual((told[0].returncode, told[0].stderr), (0, b""))
        self.assertEqual(told[0].stdout, told[1].stdout)
        self.assertNotEqual(told[0].stdout, b"")


if __name__ == "__main__":
    unittest.main()
