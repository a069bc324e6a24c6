"""i2c-tools and diagsh on the same simulated adapters: what they find and read is the same,
and what the images of the board say.
"""

import json
import pathlib
import re
import shlex
import unittest

from sim_run import DIAGSH, DTB, SimRun, tool

IMAGES = pathlib.Path(DTB).parent / "images"
# The multiplexers of the default board: their addresses, and what opens a channel.
MUXES = {
    "pca9547-0": (0x77, lambda channel: 8 | channel),
    "pca9547-1": (0x71, lambda channel: 8 | channel),
    "pca9548-0": (0x70, lambda channel: 1 << channel),
    "pca9548-1": (0x70, lambda channel: 1 << channel),
}
ADDRESSES_OF_MUXES = {address for address, _ in MUXES.values()}


def line(*words):
    return shlex.join(str(word) for word in words)


def transfer(bus, *words):
    return line(tool("i2ctransfer"), "-y", bus, *words)


def steps_to(path):
    """The bus of a wire, and what opens the way to it, as (address, value)."""
    words = path.strip("/").split("/")
    steps = [(MUXES[mux][0], MUXES[mux][1](int(channel.removeprefix("ch"))))
             for mux, channel in zip(words[1::2], words[2::2])]
    return int(words[0].removeprefix("i2c-")), steps


def on_wire(path, script):
    """A script that opens the way to a wire, runs something and closes the way."""
    bus, steps = steps_to(path)
    close_root = [transfer(bus, f"w1@{address:#x}", 0)
                  for address in sorted(ADDRESSES_OF_MUXES & {0x70, 0x77})
                  if (bus, address) in ((0, 0x77), (1, 0x70))]
    opened = [transfer(bus, f"w1@{address:#x}", value) for address, value in steps]
    closed = [transfer(bus, f"w1@{address:#x}", 0) for address, _ in reversed(steps)]
    return " && ".join([*close_root, *opened, script, *closed])


def adapter_of(path):
    """Shell words for the number of a wire's adapter where the kernel drives multiplexers."""
    words = path.strip("/").split("/")
    number = words[0].removeprefix("i2c-")
    for mux, channel in zip(words[1::2], words[2::2]):
        link = (f"$SYSFS_PATH/bus/i2c/devices/{number}-{MUXES[mux][0]:04x}"
                f"/channel-{channel.removeprefix('ch')}")
        number = f"$(readlink {link} | sed s,.*i2c-,,)"
    return number


def found_in(grid, owned=False):
    """The addresses that i2cdetect shows: those that answer, or those that a driver has."""
    found = set()
    for row, cells in re.findall(r"^([0-7])0: (.*)$", grid, re.MULTILINE):
        for column in range(16):
            cell = cells[3 * column:3 * column + 2]
            if cell == "UU" if owned else re.fullmatch("[0-9a-f]{2}", cell):
                found.add(int(row + f"{column:x}", 16))
    return found


class Tools(SimRun):
    def read_image(self, image):
        """What i2ctransfer reads of the chip of an image, whole."""
        place = image.relative_to(IMAGES).parts
        bus = place[0].removeprefix("i2c-")
        path = "/" + place[0]
        for mux, channel in zip(place[1:-1:2], place[2:-1:2]):
            name = {("0", "0x77"): "pca9547-0", ("0", "0x70"): "pca9548-0",
                    ("1", "0x70"): "pca9548-1", ("1", "0x71"): "pca9547-1"}[bus, mux]
            path += f"/{name}/{channel}"
        address = image.stem
        size = image.stat().st_size
        start = ["w2@" + address, "0", "0"] if size > 256 else ["w1@" + address, "0"]
        output = self.output_of("sh", "-c", on_wire(path, transfer(bus, *start, f"r{size}")))
        return bytes(int(byte, 16) for byte in output.split())

    def images(self):
        images = sorted(IMAGES.rglob("*.bin"))
        self.assertGreaterEqual(len(images), 6)
        return images

    def test_i2ctransfer_reads_what_the_images_hold(self):
        for image in self.images():
            with self.subTest(image):
                self.assertEqual(self.read_image(image), image.read_bytes())

    def test_i2cdump_reads_what_the_images_hold(self):
        image = IMAGES / "i2c-0/0x77/ch0/0x51.bin"
        for mode in ("b", "c", "i"):
            with self.subTest(mode):
                script = on_wire("/i2c-0/pca9547-0/ch0",
                                 line(tool("i2cdump"), "-y", "0", "0x51", mode))
                rows = re.findall(r"^[0-9a-f]0:((?: [0-9a-f]{2}){16}) ",
                                  self.output_of("sh", "-c", script), re.MULTILINE)
                self.assertEqual(bytes.fromhex("".join(rows)), image.read_bytes())

    def test_i2cget_reads_bytes_words_and_blocks(self):
        image = (IMAGES / "i2c-0/0x77/ch0/0x51.bin").read_bytes()
        get = line(tool("i2cget"), "-y", "0", "0x51")
        script = on_wire("/i2c-0/pca9547-0/ch0",
                         f"{get} 0x10 b && {get} 0x10 w && {get} 0x10 i 8")
        self.assertEqual(self.output_of("sh", "-c", script),
                         f"0x{image[0x10]:02x}\n0x{image[0x11]:02x}{image[0x10]:02x}\n"
                         + " ".join(f"0x{byte:02x}" for byte in image[0x10:0x18]) + "\n")

    def test_i2cset_writes_what_i2cget_reads(self):
        set_, get = (line(tool(name), "-y", "1", "0x20", "2") for name in ("i2cset", "i2cget"))
        readback = line(tool("i2cset"), "-y", "-r", "1", "0x20", "2", "0x78")
        script = f"{set_} 0x12 && {get} && {set_} 0x5634 w && {get} w && {readback}"
        output = self.output_of("sh", "-c", script)
        self.assertEqual(output.splitlines()[:2], ["0x12", "0x5634"])
        self.assertIn("Value 0x78 written, readback matched", output)

    def test_a_chip_behind_a_channel_answers_while_that_is_open(self):
        get = line(tool("i2cget"), "-y", "0", "0x53", "2")
        select = line(tool("i2cset"), "-y", "0", "0x77")
        script = (f"{select} 0x00; {get} 2>/dev/null || echo closed; {select} 0x08; {get}; "
                  f"{select} 0x09; {get} 2>/dev/null || echo closed; "
                  + line(tool("i2cget"), "-y", "0", "0x77"))
        spd = (IMAGES / "i2c-0/0x77/ch0/0x53.bin").read_bytes()
        self.assertEqual(self.output_of("sh", "-c", script),
                         f"closed\n0x{spd[2]:02x}\nclosed\n0x09\n")

    def test_i2cdetect_shows_what_the_kernel_owns(self):
        device = "$SYSFS_PATH/bus/i2c/devices/0-0050"
        script = (f"mkdir {device} && ln -s ../../drivers/at24 {device}/driver && "
                  + line(tool("i2cdetect"), "-y", "0"))
        self.assertIn("50: UU ", self.output_of("sh", "-c", script))

    def test_programs_side_by_side_do_not_disturb_each_other(self):
        image = (IMAGES / "i2c-0/0x50.bin").read_bytes()
        reader = f"for i in 1 2 3 4 5; do {transfer(0, 'w2@0x50', 0, 0, 'r8192')}; done"
        script = f"({reader}) > $0/1 & ({reader}) > $0/2 & ({reader}) > $0/3 & wait"
        self.output_of("sh", "-c", script, self.folder)
        expected = (" ".join(f"0x{byte:02x}" for byte in image) + "\n") * 5
        for name in "123":
            self.assertEqual((self.folder / name).read_text(), expected)


class Agreement(SimRun):
    def diagsh(self, *commands, options=()):
        words = [word for command in commands for word in ("-c", command)]
        status, output, errors = self.run_in(DIAGSH, *words, options=options)
        self.assertEqual(status, 0, errors)
        return output

    def scan(self, options=(), wanted_status=0):
        status, output, errors = self.run_in(DIAGSH, "--json", "-c", "scan", options=options)
        self.assertEqual(status, wanted_status, errors)
        return json.loads(output)["scan"]

    def test_scan_and_i2cdetect_find_the_same_on_every_wire(self):
        wires = self.scan()
        self.assertEqual(len(wires), 2 + 2 * 8 + 2 * 8)
        found = {wire["path"]: {answer["address"] for answer in wire["answers"]}
                 for wire in wires}
        separator = "echo next"
        script = f" && {separator} && ".join(
            on_wire(path, line(tool("i2cdetect"), "-y", steps_to(path)[0])) for path in found)
        grids = self.output_of("sh", "-c", script).split("next\n")
        self.assertEqual(len(grids), len(found))
        for (path, answers), grid in zip(found.items(), grids):
            words = path.split("/")
            nearer = set().union(*(found["/".join(words[:n])] for n in range(2, len(words), 2)))
            with self.subTest(path):
                self.assertEqual(answers, found_in(grid) - nearer)

    def test_scan_and_i2cdetect_agree_where_the_kernel_drives_the_multiplexers(self):
        options = ("--kernel-mux",)
        wires = self.scan(options)
        self.assertEqual(len(wires), 2 + 2 * 8 + 2 * 8)
        detect = line(tool("i2cdetect"), "-y")
        script = "; ".join(f"bus={adapter_of(wire['path'])}; {detect} $bus; echo next"
                           for wire in wires)
        grids = self.output_of("sh", "-c", script, options=options).split("next\n")
        for wire, grid in zip(wires, grids):
            upstream = set(wire["upstream"])
            with self.subTest(wire["path"]):
                self.assertEqual({answer["address"] for answer in wire["answers"]},
                                 found_in(grid) - upstream)
                self.assertEqual({owned["address"] for owned in wire["owned"]},
                                 found_in(grid, owned=True) - upstream)
        self.assertEqual({wire["path"]: [owned["name"] for owned in wire["owned"]]
                          for wire in wires if wire["owned"] and wire["path"].count("/") > 1},
                         {"/i2c-0/pca9547-0/ch1": ["pca9548-0"],
                          "/i2c-1/pca9548-1/ch1": ["pca9547-1"]})

    def test_scan_finds_the_same_however_adapters_tell_that_nobody_answers(self):
        wires = self.scan()
        for how in ("eremoteio", "etimedout", "short"):
            with self.subTest(how):
                self.assertEqual(self.scan(options=("--no-ack", how)), wires)

    def test_scan_finds_the_same_where_nobody_is_an_error_but_cannot_tell_who_is_missing(self):
        found = [wire["answers"] for wire in self.scan()]
        wires = self.scan(options=("--no-ack", "eio"), wanted_status=1)
        self.assertEqual([wire["answers"] for wire in wires], found)
        self.assertEqual([wire["silent"] for wire in wires], [[]] * len(wires))

    def test_scan_finds_the_same_on_adapters_that_only_know_smbus(self):
        found = [wire["answers"] for wire in self.scan()]
        smbus = [wire["answers"] for wire in self.scan(options=("--functions", "smbus"))]
        self.assertEqual(smbus, found)

    def test_diagsh_exports_what_i2ctransfer_reads(self):
        nodes = {(wire["path"], answer["address"]): answer["name"]
                 for wire in self.scan() for answer in wire["answers"]}
        eeproms = [(path, address, name) for (path, address), name in nodes.items()
                   if name is not None and ("eeprom" in name or name.startswith(("spd", "sfp")))]
        self.assertGreaterEqual(len(eeproms), 6)
        for options in ((), ("--kernel-mux",)):
            for path, address, name in eeproms:
                node = f"{path}/{name}" + ("/diagnostics" if address == 0x51 and
                                           name.startswith("sfp") else "")
                file = self.folder / "export.bin"
                with self.subTest(node=node, options=options):
                    self.diagsh(f"export {node} {file}", options=options)
                    exported = file.read_bytes()
                    file.unlink()
                    self.assertEqual(exported, self.transferred(path, address, len(exported)))

    def transferred(self, path, address, size):
        start = ([f"w2@{address:#x}", "0", "0"] if size > 256 else [f"w1@{address:#x}", "0"])
        bus = steps_to(path)[0]
        output = self.output_of("sh", "-c", on_wire(path, transfer(bus, *start, f"r{size}")))
        return bytes(int(byte, 16) for byte in output.split())

    def test_what_diagsh_writes_i2ctransfer_reads(self):
        self.diagsh("poke /i2c-0/mfg-eeprom/memory 8000 0x5a",
                    "poke /i2c-0/pca9547-0/ch1/pca9548-0/ch2/param-eeprom/memory 8001 0xa5")
        self.assertEqual(self.transferred("/i2c-0", 0x50, 8192)[8000], 0x5A)
        self.assertEqual(
            self.transferred("/i2c-0/pca9547-0/ch1/pca9548-0/ch2", 0x51, 8192)[8001], 0xA5)

    def test_diagsh_and_i2c_tools_work_at_the_same_time(self):
        dump = "/i2c-0/mfg-eeprom/read 0 256"
        script = (f"(while test ! -e $0/end; do {transfer(0, 'w2@0x50', 0, 0, 'r256')}; done"
                  " | sort -u > $0/tools) & "
                  + line(DIAGSH, "-c", f"repeat 50 {dump}") + " > $0/diagsh; status=$?; "
                  "touch $0/end; wait; exit $status")
        self.assertEqual(self.run_in("sh", "-c", script, self.folder)[0], 0)
        image = (IMAGES / "i2c-0/0x50.bin").read_bytes()[:256]
        self.assertEqual((self.folder / "tools").read_text(),
                         " ".join(f"0x{byte:02x}" for byte in image) + "\n")

    def test_the_kernels_chips_are_left_alone(self):
        device = "$SYSFS_PATH/bus/i2c/devices/0-0050"
        script = (f"mkdir {device} && ln -s ../../drivers/at24 {device}/driver && "
                  + line(DIAGSH, "--keep-going", "-c", "poke /i2c-0/mfg-eeprom/memory 8000 0x5a",
                         "-c", "peek /i2c-0/last-error"))
        status, output, _ = self.run_in("sh", "-c", script)
        self.assertNotEqual(status, 0)
        self.assertRegex(output, "at24.*--force")
        self.assertNotEqual((self.state / "i2c-0/0x50.bin").read_bytes()[8000], 0x5A)


if __name__ == "__main__":
    unittest.main()
