#!/usr/bin/env python3
"""Checks that the three binaries meet at the contract and nowhere else.

    check_built_files.py --framework FOLDER --host DIAGSH --library LIBRARY --board BOARD

The contract is what the headers of FOLDER declare and DIAGSH defines. Prints
every symbol that lies on the wrong side and exits with 1 if there is one.
"""

import argparse
import os
import re
import subprocess
import sys

# No device can do without these, so a library that does not ask for them has
# found them elsewhere or is not the library.
LIBRARY_NEEDS = (
    "CDiagObj", "CDiagMenu", "CDiagFunc", "CDiagDevice", "CMutex", "IFmtOutput", "CInMsg",
    "COutMsg")
BOARD_ENTRY = "morva_board_create"

ARTIFICIAL = re.compile(
    r"^(?:(?:construction )?vtable for |VTT for |typeinfo (?:name |fn )?for "
    r"|(?:non-)?virtual thunk to |covariant return thunk to |guard variable for )+")
NOT_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.DOTALL)


def run(*command):
    return subprocess.run(
        command, check=True, capture_output=True, text=True, errors="replace",
        env={**os.environ, "LC_ALL": "C"}).stdout


class Binary:
    """The symbols of one file: what it defines, exports and leaves undefined."""

    def __init__(self, path):
        self.path = path
        self.name = os.path.basename(path)
        self.exported = {}  # name: type letter
        self.undefined = set()
        for name, letter in self.symbols("--dynamic"):
            if letter == "U":
                self.undefined.add(name)
            elif letter not in "wv":
                self.exported[name] = letter
        self.defined = dict(self.exported)  # and what is not exported
        for name, letter in self.symbols():
            if letter not in "Uwv":
                self.defined.setdefault(name, letter)
        self.needed = re.findall(
            r"\(NEEDED\)\s+Shared library: \[(.*?)\]", run("readelf", "--dynamic", "--wide", path))
        soname = re.search(
            r"\(SONAME\)\s+Library soname: \[(.*?)\]", run("readelf", "--dynamic", "--wide", path))
        self.soname = soname.group(1) if soname else self.name

    def symbols(self, *options):
        # No size or address is asked for: LETTER at a known place, then the name.
        for line in run("nm", "--demangle", *options, self.path).splitlines():
            match = re.match(r"^(?:[0-9a-fA-F]+| +) ([A-Za-z]) (.*)$", line)
            if match:
                yield match.group(2), match.group(1)


def owner(symbol):
    """The class a demangled symbol belongs to, or a free function's own name."""
    head = ARTIFICIAL.sub("", symbol).split("(")[0].split("[abi:")[0]
    return re.split(r"::|<", head)[0]


def declared(framework):
    """Names of the classes and free functions that the headers declare."""
    classes, functions = set(), set()
    for file in sorted(os.listdir(framework)):
        if not file.endswith(".h"):
            continue
        with open(os.path.join(framework, file), encoding="utf-8") as header:
            text = header.read()
        text = NOT_CODE.sub(lambda m: '""' if m.group()[0] in "\"'" else " ", text)
        text = re.sub(r"(?m)^[ \t]*#(?:[^\n\\]|\\\n|\\.)*", "", text)
        text = re.sub(r'extern\s+""\s*\{', "", text)
        # What stands outside every brace, statement by statement.
        outside, depth = [], 0
        for piece in re.split(r"([{}])", text):
            if piece == "{":
                depth += 1
                if depth == 1:
                    outside.append("{};")
            elif piece == "}":
                depth -= 1
            elif depth <= 0:
                depth = 0
                outside.append(piece)
        for statement in "".join(outside).split(";"):
            statement = statement.strip()
            kind = re.match(r"(?:class|struct)\s+(\w+)[^;]*\{\}", statement)
            if kind:
                classes.add(kind.group(1))
                continue
            function = re.match(
                r"(?!.*\b(?:template|typedef|using|inline|constexpr|enum|class|struct)\b)"
                r"[\w:\s*&<>,]*?[\s*&](\w+)\s*\([^{}]*$", statement, re.DOTALL)
            if function:
                functions.add(function.group(1))
    return classes, functions


class Contract:
    def __init__(self, framework, host):
        classes, functions = declared(framework)
        self.names = classes | functions
        # Inline functions are weak and lie in every binary that uses them.
        self.symbols = {
            name for name, letter in host.defined.items()
            if letter in "TDRB" and self.owns(name)}

    def owns(self, symbol):
        return owner(symbol) in self.names


def exports_of_system_libraries(*binaries):
    ours = {os.path.realpath(binary.path) for binary in binaries}
    names = set()
    for binary in binaries:
        for path in re.findall(r"=> (/\S+) \(0x|^\s*(/\S+) \(0x", run("ldd", binary.path), re.M):
            path = path[0] or path[1]
            if os.path.realpath(path) not in ours:
                for line in run("nm", "--dynamic", "--demangle", "--defined-only", path).splitlines():
                    names.add(re.split(r" [A-Za-z] ", line, maxsplit=1)[-1].split("@")[0])
    return names


def complaints(framework, host_path, library_path, board_path):
    host, library, board = Binary(host_path), Binary(library_path), Binary(board_path)
    contract = Contract(framework, host)
    found = []
    if not contract.symbols:
        found.append(f"{host.name} defines nothing of the contract")

    for binary in (library, board):
        for name in sorted(contract.symbols & binary.defined.keys()):
            found.append(f"{binary.name} defines {name}, which is the host's")

    asked = {owner(name) for name in library.undefined if contract.owns(name)}
    for name in LIBRARY_NEEDS:
        if name not in asked:
            found.append(f"{library.name} leaves nothing of {name} undefined")

    for binary, others in ((library, ()), (board, (library,))):
        for name in sorted(binary.undefined):
            if contract.owns(name) and name not in host.exported:
                found.append(f"{binary.name} needs {name}, which {host.name} does not export")
        rest = {name for name in binary.undefined if "@" not in name and not contract.owns(name)}
        rest -= host.exported.keys()
        for other in others:
            rest -= other.exported.keys()
        if rest:
            rest -= exports_of_system_libraries(host, library, board)
        for name in sorted(rest):
            found.append(f"{binary.name} needs {name}, which nobody brings")

    for other in (library, board):
        if other.soname in host.needed:
            found.append(f"{host.name} is linked with {other.name}, which it should load")
    if board.soname in library.needed:
        found.append(f"{library.name} is linked with {board.name}")
    if library.soname not in board.needed:
        found.append(f"{board.name} does not bring {library.name} in")
    if BOARD_ENTRY not in board.exported:
        found.append(f"{board.name} does not export {BOARD_ENTRY}")
    used = {name for name in library.undefined | board.undefined if contract.owns(name)}
    return found, len(contract.symbols), len(used)


def main(arguments):
    parser = argparse.ArgumentParser()
    for option in ("--framework", "--host", "--library", "--board"):
        parser.add_argument(option, required=True)
    options = parser.parse_args(arguments[1:])
    found, symbols, used = complaints(
        options.framework, options.host, options.library, options.board)
    for line in found:
        print(line)
    print(f"{symbols} symbols of the contract, {used} of them needed, {len(found)} complaints")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
