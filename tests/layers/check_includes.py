#!/usr/bin/env python3
"""Checks who includes whom.

    check_includes.py SOURCE_TREE

Prints every include that a layer may not make as FILE:LINE and exits with 1 if
there is one, or if there was nothing to look at.
"""

import os
import re
import sys

LIBRARY = ("i2c", "io", "t2080_mdio")
# What chips hold, told without any device.
LAYOUTS = ("i2c/big_endian.h", "i2c/crc16.h", "i2c/ddr3_spd.h", "i2c/mfg_inventory.h",
           "i2c/record_layout.h", "i2c/sfp_serial_id.h")

# For each layer the layers, and single headers, that it may include from. A folder
# below a layer may be a layer of its own; the longest name that fits a file is its layer.
MAY_INCLUDE = {
    "framework": ("framework",),
    "i2c": ("framework",) + LIBRARY,
    "io": ("framework",) + LIBRARY,
    "t2080_mdio": ("framework",) + LIBRARY,
    "decode": ("decode",) + LAYOUTS,
    "host": ("framework", "host", "decode"),
    "boards": ("framework", "boards", "decode") + LIBRARY,
    # Goes into objects that are preloaded into programs of every kind.
    "boards/preload": ("boards/preload",),
    "boards/mdio_sim": ("boards/mdio_sim", "boards/preload"),
    # A program of its own that hosts a board as diagsh does.
    "boards/i2c_sim": ("framework", "boards", "boards/i2c_sim", "boards/preload", "host"),
}
# Layers that do not know each other although what is above them may.
STRANGERS = {
    "boards/linux": ("boards/sim",),
    "boards/sim": ("boards/linux",),
}
# A tree without one of these is not ours, and a clean result would mean nothing.
MUST_EXIST = ("framework", "i2c", "decode", "host", "boards")

SUFFIXES = (".h", ".hpp", ".c", ".cc", ".cpp", ".inc", ".ipp")

# Comments and literals, so that an include in a comment does not count and a
# "//" in a literal does not hide one.
NOT_CODE = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<raw>[^\s()\\]*)\(.*?\)(?P=raw)"'
    r'|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'',
    re.DOTALL)
INCLUDE = re.compile(
    r'^[ \t]*#[ \t]*(?:include|include_next|import)\b[ \t]*(?P<what>[^\n]*)', re.MULTILINE)
NAMED = re.compile(r'["<](?P<name>[^">\n]+)[">]')


def without_comments(text):
    """The text with comments blanked out, every line still at its place."""
    text = text.replace("\\\n", " \n")  # a continued comment is none of ours to write
    return NOT_CODE.sub(
        lambda m: m.group() if m.group()[0] in "\"'R" else re.sub(r"[^\n]", " ", m.group()), text)


def is_below(path, folder):
    return path == folder or path.startswith(folder + "/")


def target_of(tree, includer, name):
    """The path that an include names, seen from the tree's root; None for a system header."""
    beside = os.path.relpath(os.path.join(tree, os.path.dirname(includer), name), tree)
    if os.path.exists(os.path.join(tree, beside)) or name.startswith((".", "/")):
        return beside
    from_root = os.path.normpath(name)
    top = from_root.split("/")[0]
    return from_root if "/" in from_root and os.path.isdir(os.path.join(tree, top)) else None


def layer_of(path):
    """The longest name of a layer that fits; None outside of all of them."""
    return max((layer for layer in MAY_INCLUDE if is_below(path, layer)), key=len, default=None)


def refusal(includer, target):
    """Why `includer` may not include `target`, or None."""
    layer = layer_of(includer)
    if layer_of(target) not in MAY_INCLUDE[layer] and target not in MAY_INCLUDE[layer]:
        return f"{layer}/ includes {target}"
    for folder, strangers in STRANGERS.items():
        for stranger in strangers:
            if is_below(includer, folder) and is_below(target, stranger):
                return f"{folder}/ includes {target}"
    return None


def sources(tree):
    for layer in (layer for layer in MAY_INCLUDE if "/" not in layer):
        for folder, subfolders, files in os.walk(os.path.join(tree, layer)):
            subfolders.sort()
            for file in sorted(files):
                if file.endswith(SUFFIXES):
                    yield os.path.relpath(os.path.join(folder, file), tree)


def violations(tree):
    """All violations as "FILE:LINE: WHY", and the number of files looked at."""
    found = []
    count = 0
    for path in sources(tree):
        count += 1
        with open(os.path.join(tree, path), encoding="utf-8", errors="replace") as file:
            text = without_comments(file.read())
        for include in INCLUDE.finditer(text):
            place = f"{path}:{text.count(chr(10), 0, include.start()) + 1}"
            named = NAMED.match(include.group("what").strip())
            if named is None:
                found.append(f"{place}: includes what a macro says, which nobody can check")
                continue
            target = target_of(tree, path, named.group("name"))
            why = refusal(path, target) if target is not None else None
            if why is not None:
                found.append(f"{place}: {why}")
    return found, count


def main(arguments):
    if len(arguments) != 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    tree = arguments[1]
    missing = [layer for layer in MUST_EXIST if not os.path.isdir(os.path.join(tree, layer))]
    if missing:
        print(f"{tree}: no folder {', '.join(missing)}: nothing was checked")
        return 1
    found, count = violations(tree)
    for line in found:
        print(line)
    if count == 0:
        print(f"{tree}: no source files: nothing was checked")
        return 1
    print(f"{count} files, {len(found)} includes across a layer's edge")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
