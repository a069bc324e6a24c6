#!/usr/bin/env python3
"""Shows that exported_symbols.py finds what it is there to find.

    exported_symbols_test.py COMPILER

Builds a small library in a temporary folder, and holds lists that are right and wrong
against it.
"""

import contextlib
import io
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import exported_symbols  # noqa: E402

COMPILER = "c++"

HEADER = """
#pragma once
#include <vector>
class CBus {
  public:
    virtual ~CBus();
    void Probe(unsigned char addr);
    void Inline() { m_found.push_back(1); }
  private:
    std::vector<int> m_found;
};
template <class T>
class CCommandOf {
  public:
    virtual ~CCommandOf() {}
};
unsigned int Checksum(const void* data);
"""
SOURCE = """
#include "i2c/bus.h"
class CNobodysBusiness {
  public:
    void Function();
};
void CNobodysBusiness::Function() {}
void Neither() {}
CBus::~CBus() {}
void CBus::Probe(unsigned char) {
    Inline();
    CCommandOf<int> command;
}
unsigned int Checksum(const void*) { return 0; }
"""
RIGHT = ["CBus::Probe(unsigned char)", "CBus::~CBus()", "Checksum(void const*)",
         "typeinfo for CBus", "typeinfo name for CBus", "vtable for CBus"]


class ExportedSymbols(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        for name in exported_symbols.FOLDERS:
            (cls.folder / name).mkdir()
        (cls.folder / "i2c/bus.h").write_text(HEADER)
        (cls.folder / "bus.cpp").write_text(SOURCE)
        cls.object = cls.folder / "bus.o"
        cls.compile("-c", "-fPIC", cls.folder / "bus.cpp", "-o", cls.object)

    @classmethod
    def compile(cls, *words):
        subprocess.run([COMPILER, "-I", cls.folder, *words], check=True, timeout=60)

    def link(self, names):
        script, library = self.folder / "script", self.folder / "libbus.so"
        exported = "".join(f'"{name}";' for name in names)
        script.write_text('{ global: extern "C++" { %s }; local: *; };' % exported)
        self.compile("-shared", self.object, f"-Wl,--version-script={script}", "-o", library)
        return library

    def check(self, listed, exported=None):
        """The status, and what is said of a list and of a library that exports by another."""
        file = self.folder / "list"
        file.write_text("".join(f"{name}\n" for name in listed))
        library = self.link(listed if exported is None else exported)
        said = io.StringIO()
        with contextlib.redirect_stdout(said):
            status = exported_symbols.main(
                ["", "--sources", str(self.folder), "--list", str(file), "--library",
                 str(library), str(self.object)])
        return status, said.getvalue()

    def test_it_is_content_with_what_headers_declare(self):
        self.assertEqual(self.check(RIGHT), (0, "6 symbols, 0 complaints\n"))

    def test_it_finds_a_symbol_that_is_not_listed(self):
        status, said = self.check(RIGHT[1:])
        self.assertEqual(status, 1)
        self.assertIn("list does not have CBus::Probe(unsigned char): nobody outside", said)
        self.assertIn("update-symbols", said)

    def test_it_finds_a_symbol_that_is_gone(self):
        status, said = self.check(["CBus::Forget()", *RIGHT])
        self.assertEqual(status, 1)
        self.assertIn("list has CBus::Forget(), which is gone", said)

    def test_it_finds_what_the_library_exports_without_being_told(self):
        status, said = self.check(RIGHT, [*RIGHT, "Neither()"])
        self.assertEqual(status, 1)
        self.assertIn("Neither() is exported, and list does not have it\n", said)

    def test_it_finds_what_the_library_hides(self):
        status, said = self.check(RIGHT, RIGHT[1:])
        self.assertEqual(status, 1)
        self.assertIn("CBus::Probe(unsigned char) is not exported, though list has it\n", said)

    def test_it_finds_a_list_that_is_not_in_order(self):
        status, said = self.check(RIGHT[::-1])
        self.assertEqual(status, 1)
        self.assertIn("list is not sorted", said)

    def test_it_writes_the_list_that_it_is_content_with(self):
        file = self.folder / "written"
        self.assertEqual(exported_symbols.main(
            ["", "--sources", str(self.folder), "--list", str(file), "--write",
             str(self.object)]), 0)
        self.assertEqual(file.read_text().splitlines(), RIGHT)


if __name__ == "__main__":
    COMPILER = sys.argv.pop(1)
    unittest.main()
