"""The worked examples of docs/param_eeprom.md: tables, and their images byte by byte."""

import os
import pathlib
import re

PAGE = pathlib.Path(os.environ["SOURCES"]) / "docs" / "param_eeprom.md"

BLOCK = re.compile(r"^```(xml|text)\n(.*?)^```\n", re.MULTILINE | re.DOTALL)
# Of a line of a dump: where it is, and its bytes; what they mean follows two blanks.
LINE = re.compile(r"([0-9a-f]{4})  ([0-9a-f]{2}(?: [0-9a-f]{2})*)  +\S.*")


def bytes_of(dump):
    """The bytes of an annotated dump, whose lines follow on one another."""
    image = b""
    for line in dump.splitlines():
        found = LINE.fullmatch(line)
        if found is None or int(found.group(1), 16) != len(image):
            raise AssertionError(f"behind {len(image):#x} bytes the page has: {line}")
        image += bytes.fromhex(found.group(2))
    return image


def worked_examples():
    """For each example its XML text and the bytes of its image."""
    blocks = BLOCK.findall(PAGE.read_text())
    kinds = [kind for kind, _ in blocks]
    if not blocks or kinds != ["xml", "text"] * (len(blocks) // 2):
        raise AssertionError(f"the page has blocks of {kinds}, not tables with their dumps")
    texts = [text for _, text in blocks]
    return [(xml, bytes_of(dump)) for xml, dump in zip(texts[::2], texts[1::2])]
