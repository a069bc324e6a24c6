#!/usr/bin/env python3
"""SPD images decoded by `diagsh decode spd` and by decode-dimms of i2c-tools: every field
that both print is the same.
"""
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True

from decode_dimms_fields import (  # noqa: E402
    ONLY_HERE, ONLY_THERE, RANGE, TABLE, clocks_are_unlike)
from spd_modules import ALL, ImageMaker  # noqa: E402

DIAGSH = os.environ["DIAGSH"]
DECODE_DIMMS = "/usr/bin/decode-dimms"
IMAGES_OF_EACH_TYPE = 20


def decoded_here(path):
    answer = subprocess.run([DIAGSH, "decode", "--json", "spd", path], check=True,
                            capture_output=True, text=True, timeout=60)
    return {field["name"]: field["value"]
            for section in json.loads(answer.stdout)["sections"] for field in section["fields"]}


def decoded_there(paths):
    answer = subprocess.run([DECODE_DIMMS, "-x", *paths], check=True, capture_output=True,
                            text=True, timeout=300)
    if answer.stderr:
        raise AssertionError(answer.stderr)
    parts = re.split(r"^Decoding EEPROM: .*\n", answer.stdout, flags=re.MULTILINE)[1:]
    if len(parts) != len(paths):
        raise AssertionError(f"{len(parts)} of {len(paths)} images decoded")
    modules = []
    for part in parts:
        fields = {}
        name = None
        for line in part.splitlines():
            # Names are padded to a width; titles of sections and the last line are not.
            if len(line) > 49 and line[48] == " ":
                if line[:48].strip():
                    name = line[:48].strip()
                    fields[name] = line[49:]
                else:
                    fields[name] += "\n" + line[49:]
        for name in list(fields):
            if match := re.fullmatch(r"EEPROM CRC of bytes (0-\d+)", name):
                fields["EEPROM CRC"] = fields.pop(name)
                fields["CRC coverage"] = match.group(1)
        fields.setdefault("Bus Width Extension", "none")
        modules.append(fields)
    return modules


def hex_dump(image):
    return "".join(f"{at:08x}  " + " ".join(f"{byte:02x}" for byte in image[at:at + 16]) + "\n"
                   for at in range(0, len(image), 16))


class DecodeDimms(unittest.TestCase):
    def compare(self, image, here, there):
        """Returns the rows that were compared."""
        module_type = image[3]
        compared = []
        for row in TABLE:
            has_it = module_type in row.types
            if row.here == RANGE:
                has_it = bool(image[31] & 1)
            what = f"{row.here} / {row.there} of {image.hex()}"
            self.assertEqual(row.here in here, has_it, what)
            if not has_it:
                continue
            self.assertIn(row.there, there, what)
            if row.here == "CL-tRCD-tRP-tRAS" and clocks_are_unlike(here, there):
                continue
            value_here = row.read_here(here[row.here])
            value_there = row.read_there(there[row.there])
            self.assertTrue(row.agree(value_here, value_there),
                            f"{what}: {here[row.here]!r}, there {there[row.there]!r}")
            compared.append(row)
        self.assertLessEqual(set(here), {row.here for row in TABLE} | ONLY_HERE)
        unknown = {name for name in there if not ONLY_THERE.fullmatch(name)}
        self.assertLessEqual(unknown, {row.there for row in TABLE})
        return compared

    def test_prints_the_same_of_modules_that_could_exist(self):
        images_of = ImageMaker()
        images = [images_of.image(module_type)
                  for _ in range(IMAGES_OF_EACH_TYPE) for module_type in sorted(ALL)]
        self.assertGreaterEqual(len(set(images)), 200)
        times = dict.fromkeys(TABLE, 0)
        with tempfile.TemporaryDirectory() as folder:
            dumps = []
            for at, image in enumerate(images):
                dumps.append(os.path.join(folder, f"{at}.hex"))
                with open(dumps[-1], "w", encoding="ascii") as dump:
                    dump.write(hex_dump(image))
            for image, dump, there in zip(images, dumps, decoded_there(dumps)):
                for row in self.compare(image, decoded_here(dump), there):
                    times[row] += 1
        for row, count in times.items():
            self.assertGreater(count, 0, f"{row.here} was never compared")
        print(f"{len(images)} images, {sum(times.values())} comparisons, "
              f"at least {min(times.values())} of each of {len(TABLE)} rows")


if __name__ == "__main__":
    unittest.main()
