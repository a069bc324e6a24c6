#!/usr/bin/env python3
"""Make the EEPROM images of a board from readable descriptions.

usage: make_images.py --out FOLDER SOURCE.toml...

A source says where its image goes and what stands in it:

    file = "i2c-0/0x50.bin"     # below FOLDER
    size = 256                  # bytes
    fill = 0xFF                 # what no field covers

    [[field]]
    name = "mfg_date"
    offset = 120
    width = 2
    bytes = [0x22, 0x17]

A field holds exactly one of
    value = NUMBER              big-endian, or as `order = "little"` says
    text = "ASCII"              padded with blanks to the width
    bytes = [BYTE, ...]         as many as the width
    checksum = "KIND"           over the bytes `from` to `to`, both included,
                                stored as a value is
The kinds of checksum: crc16-xmodem (as DDR3 SPDs have it), crc16-genibus, sum8.

Fields may neither overlap nor pass the end, and nothing is guessed: what is
not understood is refused with the names of the source and the field.
"""
import argparse
import pathlib
import sys
import tomllib

SOURCE_KEYS = {"file", "size", "fill", "field"}
FIELD_KEYS = {"name", "offset", "width"}
CONTENT_KEYS = {
    "value": {"order"},
    "text": set(),
    "bytes": set(),
    "checksum": {"from", "to", "order"},
}


class BadSource(Exception):
    """What is wrong with a source; the text names it."""


def crc16(data, initial):
    """CRC-16 with polynomial 0x1021, most significant bit first."""
    crc = initial
    for byte in data:
        crc ^= byte << 8
        for _ in range(8):
            crc = (crc << 1 ^ (0x1021 if crc & 0x8000 else 0)) & 0xFFFF
    return crc


CHECKSUMS = {
    "crc16-xmodem": (2, lambda data: crc16(data, 0x0000)),
    "crc16-genibus": (2, lambda data: crc16(data, 0xFFFF) ^ 0xFFFF),
    "sum8": (1, lambda data: sum(data) & 0xFF),
}


def require(condition, where, text):
    if not condition:
        raise BadSource(f"{where}: {text}")


def number(table, key, where, lowest, highest):
    value = table.get(key)
    require(type(value) is int, where, f"{key} must be a number")
    require(lowest <= value <= highest, where, f"{key} {value} is not {lowest} to {highest}")
    return value


def in_order(value, field, width, where):
    order = field.get("order", "big")
    require(order in ("big", "little"), where, f'order "{order}" is neither "big" nor "little"')
    require(value < 1 << 8 * width, where, f"value {value:#x} does not fit {width} bytes")
    return value.to_bytes(width, order)


def content_of(field, kind, width, image, where):
    """The bytes that a field holds; `image` is what stands so far."""
    if kind == "value":
        return in_order(number(field, "value", where, 0, 1 << 64), field, width, where)
    if kind == "text":
        text = field["text"]
        require(isinstance(text, str) and text.isascii() and text.isprintable(), where,
                "text must be printable ASCII")
        require(len(text) <= width, where,
                f"text of {len(text)} characters does not fit {width} bytes")
        return text.encode("ascii").ljust(width)
    if kind == "bytes":
        data = field["bytes"]
        require(isinstance(data, list) and all(type(b) is int and 0 <= b <= 255 for b in data),
                where, "bytes must be a list of numbers from 0 to 255")
        require(len(data) == width, where, f"{len(data)} bytes given, width is {width}")
        return bytes(data)
    require(field["checksum"] in CHECKSUMS, where,
            f'checksum "{field["checksum"]}" is none of {", ".join(CHECKSUMS)}')
    needed, compute = CHECKSUMS[field["checksum"]]
    require(width == needed, where, f"width of this checksum must be {needed}")
    first = number(field, "from", where, 0, len(image) - 1)
    last = number(field, "to", where, first, len(image) - 1)
    offset = field["offset"]
    require(last < offset or offset + width <= first, where, "the checksum covers itself")
    return in_order(compute(image[first:last + 1]), field, width, where)


def check_field(field, size, where):
    """The kind of content, once the field's form is right."""
    kinds = [key for key in CONTENT_KEYS if key in field]
    require(len(kinds) == 1, where,
            f"needs exactly one of {', '.join(CONTENT_KEYS)}, has {len(kinds)}")
    unknown = set(field) - FIELD_KEYS - set(kinds) - CONTENT_KEYS[kinds[0]]
    require(not unknown, where, f"unknown: {', '.join(sorted(unknown))}")
    offset = number(field, "offset", where, 0, size - 1)
    width = number(field, "width", where, 1, size)
    require(offset + width <= size, where,
            f"bytes {offset} to {offset + width - 1} pass the end of {size} bytes")
    return kinds[0]


def make_image(source):
    """Where the image of a source goes, and its bytes."""
    try:
        table = tomllib.loads(source.read_text(encoding="utf-8"))
    except (OSError, UnicodeDecodeError, tomllib.TOMLDecodeError) as fault:
        raise BadSource(f"{source}: {fault}") from None
    unknown = set(table) - SOURCE_KEYS
    require(not unknown, source, f"unknown: {', '.join(sorted(unknown))}")
    file = table.get("file")
    require(isinstance(file, str) and file, source, "file must name the image")
    target = pathlib.PurePosixPath(file)
    require(not target.is_absolute() and ".." not in target.parts, source,
            f'file "{file}" leads out of the folder')
    size = number(table, "size", source, 1, 1 << 20)
    image = bytearray([number(table, "fill", source, 0, 255)]) * size

    fields = table.get("field", [])
    require(isinstance(fields, list) and all(isinstance(field, dict) for field in fields), source,
            "fields must be written as [[field]]")
    owners = [None] * size
    checked = []
    for position, field in enumerate(fields):
        name = field.get("name")
        require(isinstance(name, str) and name, source, f"field {position} needs a name")
        where = f"{source}: field {name}"
        kind = check_field(field, size, where)
        for at in range(field["offset"], field["offset"] + field["width"]):
            require(owners[at] is None, where, f"overlaps field {owners[at]} at byte {at}")
            owners[at] = name
        checked.append((field, kind, where))

    # A checksum is taken over all other contents, wherever its field stands.
    for field, kind, where in sorted(checked, key=lambda entry: entry[1] == "checksum"):
        offset, width = field["offset"], field["width"]
        image[offset:offset + width] = content_of(field, kind, width, image, where)
    return target, bytes(image)


def main(arguments):
    ask = argparse.ArgumentParser(description=__doc__,
                                  formatter_class=argparse.RawDescriptionHelpFormatter)
    ask.add_argument("--out", type=pathlib.Path, required=True, metavar="FOLDER")
    ask.add_argument("sources", type=pathlib.Path, nargs="+", metavar="SOURCE.toml")
    args = ask.parse_args(arguments)
    try:
        images = {}
        for source in args.sources:
            target, image = make_image(source)
            require(target not in images, source, f"{target} is made by another source too")
            images[target] = image
        # What sources made earlier and no longer make must not be found.
        for stale in args.out.rglob("*.bin"):
            if stale.relative_to(args.out).as_posix() not in map(str, images):
                stale.unlink()
        for target, image in images.items():
            (args.out / target).parent.mkdir(parents=True, exist_ok=True)
            (args.out / target).write_bytes(image)
    except (BadSource, OSError) as fault:
        print(f"make_images: {fault}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
