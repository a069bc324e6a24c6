#!/usr/bin/env python3
"""Shows that check_built_files.py finds what it is there to find.

    built_files_test.py COMPILER

Builds a small host, library and board in a temporary folder, right and wrong.
"""

import contextlib
import io
import os
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import check_built_files  # noqa: E402

COMPILER = "c++"

CONTRACT = """
#pragma once
// class CNotThere { void Function(); };
class CDiagObj {
  public:
    virtual ~CDiagObj();
    virtual void Reset();
};
class CDiagMenu : public CDiagObj {
  public:
    CDiagMenu();
};
class CDiagFunc : public CDiagMenu {
  public:
    CDiagFunc();
    virtual void Invoke() = 0;
};
class CDiagDevice : public CDiagMenu {
  public:
    CDiagDevice();
};
struct CMutex {
    CMutex();
};
class IFmtOutput {
  public:
    int vprintf(const char* text);
    int puts(const char* text) { return vprintf(text); }
};
struct CInMsg {
    CInMsg& operator>>(unsigned char& value);
};
struct COutMsg {
    COutMsg& operator<<(unsigned char value);
};
const char* resCode2str(int code);
void MsSleep(unsigned int ms)
    __attribute__((unused));
void Promised();
extern "C" {
CDiagMenu* morva_board_create(int argc, const char* const* argv);
}
"""
HOST = """
#include "framework/contract.h"
CDiagObj::~CDiagObj() {}
void CDiagObj::Reset() {}
CDiagMenu::CDiagMenu() {}
CDiagFunc::CDiagFunc() {}
CDiagDevice::CDiagDevice() {}
CMutex::CMutex() {}
int IFmtOutput::vprintf(const char*) { return 0; }
CInMsg& CInMsg::operator>>(unsigned char&) { return *this; }
COutMsg& COutMsg::operator<<(unsigned char) { return *this; }
const char* resCode2str(int) { return ""; }
void MsSleep(unsigned int) {}
struct CHostOnly { void Function(); };
void CHostOnly::Function() {}
"""
LIBRARY = """
#include "framework/contract.h"
void Extra();
struct CBus : CDiagDevice {
    CBus();
};
class CCommand : public CDiagFunc {
    void Invoke() override {}
};
CBus::CBus() {
    CDiagMenu menu;
    CMutex lock;
    unsigned char byte = 0;
    CInMsg() >> byte;
    COutMsg() << byte;
    IFmtOutput().puts(resCode2str(0));
    MsSleep(1);
    Extra();
    delete new CCommand;
}
"""
BOARD = """
#include "framework/contract.h"
struct CBus : CDiagDevice {
    CBus();
};
CDiagMenu* morva_board_create(int, const char* const*) { return new CBus; }
"""
SOURCES = {
    "framework/contract.h": CONTRACT,
    "host.cpp": HOST,
    "main.cpp": "int main() {}\n",
    "library.cpp": LIBRARY,
    "board.cpp": BOARD,
    "extra.cpp": "void Extra() {}\n",
    "mutex.cpp": '#include "framework/contract.h"\nCMutex::CMutex() {}\n',
    "hidden.cpp": '#include "framework/contract.h"\n'
                  '__attribute__((visibility("hidden"))) void MsSleep(unsigned int) {}\n',
    "promised.cpp": '#include "framework/contract.h"\nvoid Caller() { Promised(); }\n',
    "nowhere.cpp": "void Nowhere();\nvoid Caller() { Nowhere(); }\n",
    "nothing.cpp": "",
}


class BuiltFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = folder.name
        os.mkdir(cls.path("framework"))
        for name, text in SOURCES.items():
            with open(cls.path(name), "w", encoding="utf-8") as file:
                file.write(text)
            if name.endswith(".cpp"):
                cls.compile("-c", "-fPIC", "-I.", name, "-o", name.replace(".cpp", ".o"))
        cls.shared("libextra.so", "extra.o")
        cls.shared("liblibrary.so", "library.o", "libextra.so")
        cls.shared("libboard.so", "board.o", "liblibrary.so")
        cls.program("host", "main.o", "host.o", "-rdynamic")

    @classmethod
    def path(cls, name):
        return os.path.join(cls.folder, name)

    @classmethod
    def compile(cls, *arguments):
        subprocess.run([COMPILER, *arguments], check=True, cwd=cls.folder)

    @classmethod
    def shared(cls, name, *parts):
        cls.compile("-shared", "-o", name, f"-Wl,-soname,{name}", f"-Wl,-rpath,{cls.folder}",
                    "-Wl,--no-as-needed", "-Wl,-z,undefs", *parts)
        return name

    @classmethod
    def program(cls, name, *parts):
        cls.compile("-o", name, f"-Wl,-rpath,{cls.folder}", "-Wl,--no-as-needed",
                    "-Wl,--unresolved-symbols=ignore-all", *parts)
        return name

    def check(self, host="host", library="liblibrary.so", board="libboard.so"):
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            code = check_built_files.main([
                "check_built_files.py", "--framework", self.path("framework"),
                "--host", self.path(host), "--library", self.path(library),
                "--board", self.path(board)])
        return code, output.getvalue()

    def assert_complaints(self, *complaints, **files):
        code, output = self.check(**files)
        self.assertEqual(output.splitlines()[:-1], list(complaints))
        self.assertEqual(code, 1)

    def test_accepts_binaries_that_meet_at_the_contract(self):
        code, output = self.check()
        self.assertEqual(output.splitlines()[:-1], [])
        self.assertRegex(output, r"^1\d symbols of the contract, 1\d of them needed, 0 complaints$")
        self.assertEqual(code, 0)

    def test_takes_the_contract_from_headers_and_host(self):
        contract = check_built_files.Contract(
            self.path("framework"), check_built_files.Binary(self.path("host")))
        for name in ("CDiagObj::Reset()", "CDiagFunc::CDiagFunc()", "CMutex::CMutex()",
                     "IFmtOutput::vprintf(char const*)", "CInMsg::operator>>(unsigned char&)",
                     "COutMsg::operator<<(unsigned char)", "resCode2str(int)",
                     "MsSleep(unsigned int)"):
            self.assertIn(name, contract.symbols)
        for name in ("IFmtOutput::puts(char const*)", "CHostOnly::Function()", "main"):
            self.assertNotIn(name, contract.symbols)
        self.assertNotIn("CNotThere", contract.names)

    def test_finds_a_piece_of_the_contract_in_the_library(self):
        self.shared("libwrong.so", "library.o", "mutex.o", "libextra.so")
        self.shared("libboard2.so", "board.o", "libwrong.so")
        self.assert_complaints(
            "libwrong.so defines CMutex::CMutex(), which is the host's",
            "libwrong.so leaves nothing of CMutex undefined",
            library="libwrong.so", board="libboard2.so")

    def test_finds_a_hidden_piece_of_the_contract_in_the_library(self):
        self.shared("libwrong.so", "library.o", "hidden.o", "libextra.so")
        self.shared("libboard2.so", "board.o", "libwrong.so")
        code, output = self.check(library="libwrong.so", board="libboard2.so")
        self.assertIn("libwrong.so defines MsSleep(unsigned int), which is the host's", output)
        self.assertEqual(code, 1)

    def test_finds_the_whole_contract_in_the_board(self):
        self.shared("libwrong.so", "board.o", "host.o", "liblibrary.so")
        code, output = self.check(board="libwrong.so")
        for name in ("CDiagDevice::CDiagDevice()", "MsSleep(unsigned int)", "resCode2str(int)"):
            self.assertIn(f"libwrong.so defines {name}, which is the host's\n", output)
        self.assertEqual(code, 1)

    def test_finds_a_library_that_does_not_use_the_contract(self):
        self.shared("libempty.so", "nothing.o")
        self.shared("libboard2.so", "board.o", "libempty.so", "liblibrary.so")
        code, output = self.check(library="libempty.so", board="libboard2.so")
        for name in check_built_files.LIBRARY_NEEDS:
            self.assertIn(f"libempty.so leaves nothing of {name} undefined\n", output)
        self.assertEqual(code, 1)

    def test_finds_a_host_that_does_not_export(self):
        self.program("mute", "main.o", "host.o")
        code, output = self.check(host="mute")
        for name in ("CDiagDevice::CDiagDevice()", "MsSleep(unsigned int)",
                     "typeinfo for CDiagObj"):
            self.assertIn(f"liblibrary.so needs {name}, which mute does not export\n", output)
        self.assertEqual(code, 1)

    def test_finds_a_host_without_contract(self):
        self.program("hollow", "main.o", "-rdynamic")
        code, output = self.check(host="hollow")
        self.assertIn("hollow defines nothing of the contract\n", output)
        self.assertIn("liblibrary.so needs CMutex::CMutex(), which hollow does not export\n",
                      output)
        self.assertEqual(code, 1)

    def test_finds_a_declared_function_that_the_host_lacks(self):
        self.shared("libwrong.so", "library.o", "promised.o", "libextra.so")
        self.shared("libboard2.so", "board.o", "libwrong.so")
        self.assert_complaints("libwrong.so needs Promised(), which host does not export",
                               library="libwrong.so", board="libboard2.so")

    def test_finds_a_symbol_that_nobody_brings(self):
        self.shared("libwrong.so", "board.o", "nowhere.o", "liblibrary.so")
        self.assert_complaints("libwrong.so needs Nowhere(), which nobody brings",
                               board="libwrong.so")

    def test_finds_a_host_linked_with_the_library_or_the_board(self):
        self.program("linked", "main.o", "host.o", "-rdynamic", "libboard.so", "liblibrary.so")
        self.assert_complaints("linked is linked with liblibrary.so, which it should load",
                               "linked is linked with libboard.so, which it should load",
                               host="linked")

    def test_finds_a_library_linked_with_the_board(self):
        self.shared("libboard2.so", "board.o", "liblibrary.so")
        self.shared("libwrong.so", "library.o", "libboard2.so", "libextra.so")
        self.shared("libboard2.so", "board.o", "libwrong.so")
        self.assert_complaints("libwrong.so is linked with libboard2.so",
                               library="libwrong.so", board="libboard2.so")

    def test_finds_a_board_that_does_not_bring_the_library(self):
        self.shared("libalone.so", "board.o")
        code, output = self.check(board="libalone.so")
        self.assertIn("libalone.so does not bring liblibrary.so in\n", output)
        self.assertEqual(code, 1)

    def test_finds_a_board_without_entry(self):
        self.shared("libdoor.so", "nothing.o", "liblibrary.so")
        self.assert_complaints("libdoor.so does not export morva_board_create", board="libdoor.so")


if __name__ == "__main__":
    COMPILER = sys.argv.pop(1)
    unittest.main()
