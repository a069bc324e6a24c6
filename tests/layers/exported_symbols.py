#!/usr/bin/env python3
"""Checks that the library exports what its list names, no more and no less.

    exported_symbols.py --sources FOLDER --list FILE [--library LIBRARY] OBJECT...

The list shall have all that the objects define of what the library's own headers declare,
but for inline functions, which lie in every binary that uses them. Prints what differs and
exits with 1 if something does; --write writes the list anew instead.
"""

import argparse
import pathlib
import re
import sys

from check_built_files import Binary, declared, owner

FOLDERS = ("i2c", "io", "t2080_mdio")


def names_of(sources):
    """The classes and functions that the library's headers declare."""
    names = set()
    for folder in FOLDERS:
        for part in declared(sources / folder):
            names |= part
    return names


def wanted(sources, objects):
    """The symbols that the library shall export."""
    names = names_of(sources)
    # Tables of virtual functions and types are weak even where they have one home.
    return {symbol for path in objects for symbol, letter in Binary(path).defined.items()
            if letter in "TDRBV" and belongs(symbol, letter) in names}


def belongs(symbol, letter):
    """Who declares a symbol; nobody does an instance of a template, as anyone can make it."""
    is_instance = letter == "V" and "<" in symbol
    return None if is_instance else owner(symbol)


def complaints(listed, expected, exported, file):
    """What is wrong with the list, and with what is exported by it."""
    found = []
    for name in sorted(expected - listed):
        found.append(f"{file} does not have {name}: nobody outside can use it")
    for name in sorted(listed - expected):
        found.append(f"{file} has {name}, which is gone: who uses it will not load any more")
    if exported is not None:
        for name in sorted(exported - listed):
            found.append(f"{name} is exported, and {file} does not have it")
        for name in sorted(listed & expected - exported):
            found.append(f"{name} is not exported, though {file} has it")
    return found


def main(arguments):
    parser = argparse.ArgumentParser()
    parser.add_argument("--sources", type=pathlib.Path, required=True)
    parser.add_argument("--list", type=pathlib.Path, required=True)
    parser.add_argument("--library")
    parser.add_argument("--write", action="store_true")
    parser.add_argument("objects", nargs="+", metavar="OBJECT")
    options = parser.parse_args(arguments[1:])
    expected = wanted(options.sources, options.objects)
    if options.write:
        options.list.write_text("".join(f"{name}\n" for name in sorted(expected)))
        return 0
    lines = options.list.read_text().splitlines()
    exported = set(Binary(options.library).exported) if options.library else None
    found = complaints(set(lines), expected, exported, options.list.name)
    if lines != sorted(set(lines)):
        found.append(f"{options.list.name} is not sorted, or has a line twice")
    for line in found:
        print(line)
    if found:
        print("If that is meant, write the list anew: cmake --build BUILD --target update-symbols\n"
              "If a name is gone or means something else, raise MORVA_ABI in CMakeLists.txt too.")
    print(f"{len(lines)} symbols, {len(found)} complaints")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
