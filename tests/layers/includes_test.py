#!/usr/bin/env python3
"""Shows that check_includes.py finds what it is there to find."""

import contextlib
import io
import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import check_includes  # noqa: E402

CLEAN = {
    "framework/menu.h": '#include <string>\n#include "framework/obj.h"\n',
    "framework/obj.h": "#pragma once\n",
    "i2c/bus.h": '#include "framework/menu.h"\n#include <linux/i2c.h>\n',
    "io/port.cpp": '#include "io/port.h"\n#include "i2c/bus.h"\n',
    "io/port.h": "",
    "t2080_mdio/mdio.cpp": '#include <linux/mii.h>\n#include "framework/menu.h"\n',
    "decode/words.cpp": '#include "decode/words.h"\n#include "i2c/crc16.h"\n',
    "decode/words.h": "",
    "host/log.h": '#include "framework/menu.h"\n#include "decode/words.h"\n',
    "host/shell/shell.cpp": '#include "host/log.h"\n#include "shell.h"\n',
    "host/shell/shell.h": "",
    "boards/root_bus/bus.h": '#include "i2c/bus.h"\n',
    "boards/linux/bus.cpp": '#include "boards/root_bus/bus.h"\n#include <sys/ioctl.h>\n',
    "boards/linux/bus.h": "",
    "boards/sim/bus.cpp": '#include "boards/root_bus/bus.h"\n#include "io/port.h"\n',
    "boards/sim/bus.h": "",
    "boards/mdio_sim/phy.cpp": '#include <linux/mii.h>\n#include "boards/mdio_sim/phy.h"\n',
    "boards/mdio_sim/phy.h": "",
    "boards/preload/open.h": "",
    "boards/mdio_sim/preload.cpp": '#include "boards/preload/open.h"\n',
    "boards/i2c_sim/switch.cpp": '#include "boards/preload/open.h"\n#include "host/log.h"\n'
                                 '#include "boards/sim/bus.h"\n',
    "boards/i2c_sim/switch.h": "",
    "boards/tree/mount.cpp": '#include "boards/linux/bus.h"\n#include "boards/sim/bus.h"\n',
    "tests/support/fake.h": '#include "host/log.h"\n#include "boards/sim/bus.h"\n',
}


class Includes(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = folder.name
        for path, text in CLEAN.items():
            self.write(path, text)

    def write(self, path, text):
        path = os.path.join(self.tree, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def check(self):
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            code = check_includes.main(["check_includes.py", self.tree])
        return code, output.getvalue()

    def assert_found(self, path, text, *places):
        self.write(path, text)
        code, output = self.check()
        self.assertEqual(code, 1, output)
        found = [line.split(": ")[0] for line in output.splitlines()[:-1]]
        self.assertEqual(found, list(places), output)

    def test_accepts_a_clean_tree(self):
        code, output = self.check()
        self.assertEqual((code, output), (0, "23 files, 0 includes across a layer's edge\n"))

    def test_finds_the_host_below_the_contract_and_the_library(self):
        for layer in ("framework", "i2c", "io", "t2080_mdio"):
            with self.subTest(layer):
                self.assert_found(f"{layer}/bad.h", '#include "host/log.h"\n', f"{layer}/bad.h:1")
                self.write(f"{layer}/bad.h", "")

    def test_finds_a_device_and_the_contract_below_the_decoders(self):
        for include in ("i2c/bus.h", "framework/menu.h", "host/log.h", "boards/sim/bus.h"):
            with self.subTest(include):
                self.assert_found("decode/bad.h", f'#include "{include}"\n', "decode/bad.h:1")

    def test_finds_a_board_below_the_contract_and_the_library(self):
        for layer in ("framework", "i2c", "io", "t2080_mdio"):
            with self.subTest(layer):
                self.assert_found(
                    f"{layer}/bad.cpp", '\n\n#include "boards/sim/bus.h"\n', f"{layer}/bad.cpp:3")
                self.write(f"{layer}/bad.cpp", "")

    def test_finds_the_library_below_the_contract(self):
        self.assert_found("framework/bad.h", '#include "i2c/bus.h"\n', "framework/bad.h:1")

    def test_finds_the_library_and_boards_below_the_host(self):
        self.assert_found(
            "host/shell/bad.cpp",
            '#include "framework/menu.h"\n#include "i2c/bus.h"\n#include "boards/sim/bus.h"\n',
            "host/shell/bad.cpp:2", "host/shell/bad.cpp:3")

    def test_finds_the_host_below_a_board(self):
        self.assert_found("boards/tree/bad.cpp", '#include "host/log.h"\n', "boards/tree/bad.cpp:1")

    def test_finds_the_kernel_bus_and_the_simulated_one_knowing_each_other(self):
        self.assert_found("boards/linux/bad.h", '#include "boards/sim/bus.h"\n', "boards/linux/bad.h:1")
        self.write("boards/linux/bad.h", "")
        self.assert_found("boards/sim/bad.h", '#include "boards/linux/bus.h"\n', "boards/sim/bad.h:1")

    def test_finds_the_simulated_driver_knowing_the_project_or_known_to_it(self):
        self.assert_found(
            "boards/mdio_sim/bad.h",
            '#include "framework/menu.h"\n#include "boards/sim/bus.h"\n#include "i2c/bus.h"\n',
            "boards/mdio_sim/bad.h:1", "boards/mdio_sim/bad.h:2", "boards/mdio_sim/bad.h:3")
        self.write("boards/mdio_sim/bad.h", "")
        self.assert_found(
            "boards/sim/bad.h", '#include "boards/mdio_sim/phy.h"\n', "boards/sim/bad.h:1")

    def test_finds_what_is_preloaded_knowing_the_project(self):
        self.assert_found(
            "boards/preload/bad.h", '#include "framework/menu.h"\n#include "boards/sim/bus.h"\n',
            "boards/preload/bad.h:1", "boards/preload/bad.h:2")

    def test_finds_a_program_that_simulates_known_to_a_board(self):
        self.assert_found(
            "boards/sim/bad.h", '#include "boards/i2c_sim/switch.h"\n', "boards/sim/bad.h:1")

    def test_finds_tests_below_the_product(self):
        self.assert_found("host/bad.cpp", '#include "tests/support/fake.h"\n', "host/bad.cpp:1")

    def test_lists_every_violation(self):
        self.write("i2c/bad.h", '#include "host/log.h"\n')
        self.assert_found("io/bad.h", '#include "host/log.h"\n', "i2c/bad.h:1", "io/bad.h:1")

    def test_sees_through_the_ways_an_include_can_be_written(self):
        for text in ("#include <host/log.h>\n", '  #  include   "host/log.h"\n',
                     '#include "../host/log.h"\n', '#include "./../host/log.h"\n',
                     '#include "framework/../host/log.h"\n', '#include "host/not_there.h"\n',
                     '/* why */ #include "host/log.h"\n', '#include "host/log.h" // why\n',
                     f'#include "{self.tree}/host/log.h"\n', '#import "host/log.h"\n',
                     '#include "../../elsewhere.h"\n', "#include HEADER\n",
                     '#include \\\n"host/log.h"\n'):
            with self.subTest(text):
                self.assert_found("i2c/bad.h", text, "i2c/bad.h:1")

    def test_is_not_misled_by_comments_and_literals(self):
        self.write("i2c/good.cpp",
                   '// #include "host/log.h"\n'
                   '/*\n#include "host/log.h"\n*/\n'
                   'const char* a = "/*";\n'
                   "const char b = '\"';\n"
                   'const char* c = R"(\n// \n)";\n')
        code, output = self.check()
        self.assertEqual(code, 0, output)
        self.assert_found("i2c/bad.cpp",
                          'const char* a = "/*";\n'
                          "const char b = '\"';\n"
                          'const char* c = "//";\n#include "host/log.h"\n// */\n',
                          "i2c/bad.cpp:4")

    def test_does_not_pass_a_tree_it_does_not_know(self):
        with tempfile.TemporaryDirectory() as empty:
            self.tree = empty
            self.assertEqual(self.check()[0], 1)
            for layer in check_includes.MUST_EXIST:
                os.mkdir(os.path.join(empty, layer))
            code, output = self.check()
            self.assertEqual(code, 1)
            self.assertIn("nothing was checked", output)


if __name__ == "__main__":
    unittest.main()
