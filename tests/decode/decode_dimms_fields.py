"""The fields that both `diagsh decode spd` and decode-dimms print: which is which, and how
their values are compared."""
import re

from spd_modules import ALL, LOAD_REDUCED, REGISTERED, UNBUFFERED


def number(text):
    """The only number in it, or the last one."""
    return float(re.findall(r"\d+(?:\.\d+)?", text)[-1])


def first_number(text):
    return float(re.search(r"\d+(?:\.\d+)?", text).group())


def same(text):
    return text.strip()


def lower(text):
    return text.strip().lower()


def mebibytes(text):
    amount, unit = text.split()
    return int(amount) * {"MB": 1, "MiB": 1, "GiB": 1024}[unit]


def speed_here(text):
    """(MT/s, PC3 number); the latter for the grades alone."""
    match = re.match(r"DDR3-(\d+) \(PC3-(\d+)\), ", text)
    return match.groups() if match else (re.match(r"(\d+) MT/s, ", text).group(1), None)


def speed_there(text):
    return re.fullmatch(r"(\d+) MT/s \(PC3-(\d+)\)", text).groups()


def same_speed(here, there):
    return here[0] == there[0] and here[1] in (None, there[1])


def tenths_of_a_picosecond(text):
    return round(10000 * first_number(text))


def same_time(here, there):
    """Ours have a tenth of a picosecond, theirs are rounded to picoseconds."""
    return abs(here - there) < 0.00056


def same_period(here, there):
    """Where the grade's period is no whole number of fine steps, decode-dimms puts the
    exact one in place of the module's; the steps have up to 5 ps."""
    return same_time(here, there) or there in (1.071, 0.938) and abs(here - there) < 0.005


def numbers(text):
    return sorted(int(n) for n in re.findall(r"\d+", text))


def part_of(index):
    """One of the numbers of "8 x 16 x 10 x 64"."""
    return lambda text: float(text.split(" x ")[index])


def voltages_here(text):
    return set(text.split(", "))


def voltages_there(text):
    # "tolerant" is what may be powered with that voltage, but not operated.
    names = {"1.5V": "1.5 V", "1.35V": "1.35 V", "1.2X V": "1.25 V"}
    return {names[v.strip()] for v in text.split(",") if not v.strip().endswith("tolerant")}


def dies_there(text):
    """It stands in a second line, when it is specified."""
    _, _, count = text.partition("\n")
    return count.replace("Single", "1").removesuffix(" die") or "not specified"


def limit_here(text):
    """The upper end of a range of lengths; that of an open one is a step further."""
    return number(text) + (1 if text.startswith("more than") else 0)


def thickness_there(index):
    return lambda text: float(text.split(", ")[index].split()[0])


def width(text):
    return "undefined" if text in ("not defined", "TBD") else number(text)


def activate_count_there(text):
    return lower(text).replace(" k", "000")


def name_or_code(text):
    return "undefined" if text == "Undefined" or text.startswith("0x") else text


def first_word(text):
    return text.split()[0]


def maker_here(text):
    return re.fullmatch(r"(.+) \(bank \d+, code 0x[0-9a-f]{2}\)", text).group(1).lower()


def same_maker(here, there):
    """Ours are short names, theirs tell of former ones too."""
    return all(word in there for word in here.split())


def location_there(text):
    return lower(text) if text.startswith("0x") else f"0x{ord(text):02x}"


def week(text):
    return tuple(int(n) for n in re.fullmatch(r"(\d+)(?: week |-W)(\d+)", text).groups())


def crc_here(text):
    return tuple(text.lower().split(", "))


def crc_there(text):
    verdict, value = re.fullmatch(r"(\w+) \((0x[0-9A-F]{4})\)", text).groups()
    return value.lower(), {"OK": "right"}[verdict]


def equal(here, there):
    return here == there


class Row:
    """A field of ours and one of decode-dimms, which modules have it, how to compare."""

    def __init__(self, here, there, read_here, read_there=None, types=ALL, agree=equal):
        self.here, self.there, self.types, self.agree = here, there, types, agree
        self.read_here, self.read_there = read_here, read_there or read_here


RANGE = "Refresh above 85 degrees C"  # only of modules with the extended range
TABLE = [
    Row("Memory type", "Fundamental Memory type", same),
    Row("Module type", "Module Type", same),
    Row("SPD revision", "SPD Revision", same),
    Row("SPD bytes used", "# of bytes written to SDRAM EEPROM", number),
    Row("SPD bytes total", "Total number of bytes in EEPROM", number),
    Row("Capacity", "Size", mebibytes),
    Row("Ranks", "Ranks", number),
    Row("Bus width", "Primary Bus Width", number),
    Row("Bus width", "Banks x Rows x Columns x Bits", number, part_of(3)),
    Row("ECC", "Bus Width Extension", same),
    Row("Device width", "SDRAM Device Width", number),
    Row("Banks", "Banks x Rows x Columns x Bits", number, part_of(0)),
    Row("Row address bits", "Banks x Rows x Columns x Bits", number, part_of(1)),
    Row("Column address bits", "Banks x Rows x Columns x Bits", number, part_of(2)),
    Row("Voltages", "Operable voltages", voltages_here, voltages_there),
    Row("Maximum speed", "Maximum module speed", speed_here, speed_there, agree=same_speed),
    Row("CL-tRCD-tRP-tRAS", "tCL-tRCD-tRP-tRAS", same),
    Row("CAS latencies", "Supported CAS Latencies (tCL)", numbers),
    Row("tCKmin", "Minimum Cycle Time (tCK)", first_number, agree=same_period),
    Row("tAAmin", "Minimum CAS Latency Time (tAA)", first_number, agree=same_time),
    Row("tWRmin", "Minimum Write Recovery time (tWR)", first_number, agree=same_time),
    Row("tRCDmin", "Minimum RAS# to CAS# Delay (tRCD)", first_number, agree=same_time),
    Row("tRRDmin", "Minimum Row Active to Row Active Delay (tRRD)", first_number, agree=same_time),
    Row("tRPmin", "Minimum Row Precharge Delay (tRP)", first_number, agree=same_time),
    Row("tRASmin", "Minimum Active to Precharge Delay (tRAS)", first_number, agree=same_time),
    Row("tRCmin", "Minimum Active to Auto-Refresh Delay (tRC)", first_number, agree=same_time),
    Row("tRFCmin", "Minimum Recovery Delay (tRFC)", first_number, agree=same_time),
    Row("tWTRmin", "Minimum Write to Read CMD Delay (tWTR)", first_number, agree=same_time),
    Row("tRTPmin", "Minimum Read to Pre-charge CMD Delay (tRTP)", first_number, agree=same_time),
    Row("tFAWmin", "Minimum Four Activate Window Delay (tFAW)", first_number, agree=same_time),
    Row("RZQ/6 drive", "RZQ/6 supported?", lower),
    Row("RZQ/7 drive", "RZQ/7 supported?", lower),
    Row("DLL-off mode", "DLL-Off Mode supported?", lower),
    Row("Temperature range", "Operating temperature range", numbers),
    Row(RANGE, "Refresh Rate in extended temp range", lower),
    Row("Auto self-refresh", "Auto Self-Refresh?", lower),
    Row("On-die thermal sensor readout", "On-Die Thermal Sensor readout?", lower),
    Row("Partial array self-refresh", "Partial Array Self-Refresh?", lower),
    Row("Thermal sensor on the module", "Module Thermal Sensor", lower),
    Row("Device type", "SDRAM Device Type", lower, lambda text: lower(text.split("\n")[0])),
    Row("Dies in a device", "SDRAM Device Type", same, dies_there),
    Row("Maximum activate count", "Maximum Activate Count (MAC)", lower, activate_count_there),
    Row("Height", "Module Height", limit_here, number),
    Row("Width", "Module Width", width),
    Row("Front thickness", "Module Thickness", limit_here, thickness_there(0)),
    Row("Back thickness", "Module Thickness", limit_here, thickness_there(1)),
    Row("Reference raw card", "Module Reference Card",
        lambda text: first_word(text) if text.startswith("ZZ") else text, same),
    Row("Rank 1 address mapping", "Rank 1 Mapping", lower, types=UNBUFFERED),
    Row("Registers", "# Registers", same, types=REGISTERED),
    Row("Rows of DRAM", "# DRAM Rows", same, types=REGISTERED | LOAD_REDUCED),
    Row("Heat spreader", "Heat spreader", lower, types=REGISTERED | LOAD_REDUCED),
    Row("Register maker", "Register manufacturer", maker_here, lower, REGISTERED, same_maker),
    Row("Register revision", "Register revision", same, types=REGISTERED),
    Row("Register type", "Register device type", name_or_code, types=REGISTERED),
    Row("Rank mirroring", "Mirroring", lower, types=LOAD_REDUCED),
    Row("Rank numbering", "Rank Numbering", lower, types=LOAD_REDUCED),
    Row("Buffer orientation", "Buffer Orientation", lower, types=LOAD_REDUCED),
    Row("Buffer maker", "Register manufacturer", maker_here, lower, LOAD_REDUCED, same_maker),
    Row("Buffer revision", "Buffer Revision", same, types=LOAD_REDUCED),
    Row("Module maker", "Module Manufacturer", maker_here, lower, agree=same_maker),
    Row("DRAM maker", "DRAM Manufacturer", maker_here, lower, agree=same_maker),
    Row("Location", "Manufacturing Location Code", lower, location_there),
    Row("Date", "Manufacturing Date", week),
    Row("Serial number", "Assembly Serial Number", lower),
    Row("Part number", "Part Number", str.rstrip),
    Row("Revision", "Revision Code", lower),
    Row("CRC coverage", "CRC coverage", numbers),
    Row("CRC", "EEPROM CRC", crc_here, crc_there),
]
# What only one of the two prints.
ONLY_HERE = {
    "Device density", "Medium time base (MTB)", "Fine time base (FTB)", "Signal loading",
    "Maximum activate window", "Control words RC0-RC15", "Bytes 63-116", "Bytes 67-116",
}
ONLY_THERE = re.compile(r"tCL-tRCD-tRP-tRAS as DDR3-\d+")


def clocks_are_unlike(here, there):
    """The two cases in which the clocks at full speed are no matter of agreement."""
    # decode-dimms takes the clocks of tAA for the CAS latency, whether or not the module
    # supports that latency; JEDEC has the next one that it does.
    latency = int(there["tCL-tRCD-tRP-tRAS"].split("-")[0])
    if latency not in numbers(there["Supported CAS Latencies (tCL)"]):
        return True
    # Of a time that is a whole number of clocks decode-dimms may have one clock more, as
    # with 10.8 ns and 1.2 ns, where its quotient comes out above 9. Not so with the grades.
    clock = tenths_of_a_picosecond(here["tCKmin"])
    return "no standard grade" in here["Maximum speed"] and any(
        tenths_of_a_picosecond(here[name]) % clock == 0
        for name in ("tAAmin", "tRCDmin", "tRPmin", "tRASmin"))
