"""SPD images of DDR3 modules that could exist, always the same ones."""
import random

SEED = 20231

# Module types by the layout of their module section.
REGISTERED = {1, 5, 9}
UNBUFFERED = {2, 3, 4, 6, 8, 12, 13}
CLOCKED = {7, 10}
LOAD_REDUCED = {11}
ALL = REGISTERED | UNBUFFERED | CLOCKED | LOAD_REDUCED

# JEP-106 makers, as (bank, code without parity).
MAKERS = [
    (1, 0x01), (1, 0x04), (1, 0x07), (1, 0x10), (1, 0x1C), (1, 0x1F), (1, 0x20), (1, 0x29),
    (1, 0x2C), (1, 0x40), (1, 0x52), (1, 0x54), (1, 0x09), (1, 0x17), (1, 0x18), (1, 0x24),
    (1, 0x2D), (1, 0x33), (1, 0x41), (1, 0x4E), (1, 0x55), (1, 0x5A), (2, 0x32), (2, 0x40),
    (2, 0x4F), (2, 0x61), (2, 0x7A), (2, 0x11), (2, 0x14), (2, 0x18), (2, 0x1D), (2, 0x28),
    (2, 0x3A), (2, 0x4E), (2, 0x5A), (2, 0x5F), (3, 0x1E), (3, 0x35), (3, 0x7E), (4, 0x0B),
    (4, 0x13), (4, 0x16), (4, 0x19), (4, 0x25), (4, 0x03), (4, 0x14), (4, 0x5A), (4, 0x78),
    (5, 0x43), (5, 0x46), (5, 0x1E), (5, 0x30), (5, 0x33), (5, 0x48), (5, 0x4B), (5, 0x4D),
    (5, 0x6F), (5, 0x71), (6, 0x02), (6, 0x51), (6, 0x57), (6, 0x1B), (6, 0x3A), (6, 0x77),
    (7, 0x16), (7, 0x32), (7, 0x34), (7, 0x5E), (7, 0x6D), (7, 0x1D), (7, 0x41), (7, 0x53),
    (7, 0x63), (7, 0x71), (8, 0x26), (8, 0x52), (8, 0x70), (8, 0x1E), (8, 0x6F), (9, 0x01),
    (9, 0x1A), (9, 0x18), (9, 0x53), (9, 0x55), (10, 0x68), (10, 0x4D), (11, 0x31), (11, 0x11),
]

# Clock periods in picoseconds: those of the grades, and others.
GRADES = [2500, 1875, 1500, 1250, 1071, 938]
CLOCKS = GRADES + [909, 1000, 1110, 1200, 1429, 1666, 2000, 2222]
# Binary fractions: with others decode-dimms misses a grade by its own rounding, as with
# 1.2 ns and 50 ps, where it has 1599 MT/s.
MEDIUM_BASES = [(1, 8), (1, 8), (1, 8), (1, 16), (1, 4), (2, 16)]
FINE_BASES = [(1, 1), (1, 1), (5, 2), (5, 1), (2, 1), (1, 2), (1, 4)]


def odd_parity(value):
    return value if value.bit_count() % 2 else value | 0x80


def crc16(data):
    """CRC-16/XMODEM, bit by bit."""
    crc = 0
    for byte in data:
        for bit in range(7, -1, -1):
            carry = (crc >> 15) ^ (byte >> bit & 1)
            crc = crc << 1 & 0xFFFF
            if carry:
                crc ^= 0x1021
    return crc


class ImageMaker:
    """Makes one image after the other."""

    def __init__(self):
        self.random = random.Random(SEED)
        self.makers_used = 0

    def maker(self):
        bank, code = MAKERS[self.makers_used % len(MAKERS)]
        self.makers_used += 1
        return odd_parity(bank - 1), odd_parity(code)

    def units(self, picoseconds, medium, fine, bits=8):
        """A time as units of the medium base and an offset in units of the fine one."""
        base = 1000 * medium[0] / medium[1]
        step = fine[0] / fine[1]
        coarse = min(max(1, round(picoseconds / base)), (1 << bits) - 1)
        offset = min(max(-128, round((picoseconds - coarse * base) / step)), 127)
        return coarse, offset & 0xFF

    def geometry(self, image):
        """Address bits that make a density there is, and a bus that takes the devices."""
        while True:
            banks, rows, columns = (self.random.randrange(n) for n in (4, 5, 4))
            width, bus = self.random.randrange(4), self.random.randrange(4)
            megabits = (8 << banks) * (4 << width) << (12 + rows + 9 + columns) >> 20
            if 256 <= megabits <= 16384 and 8 << bus >= 4 << width:
                break
        density = (megabits // 256).bit_length() - 1
        image[4] = banks << 4 | density
        image[5] = rows << 3 | columns
        image[7] = self.random.randrange(4) << 3 | width
        image[8] = self.random.randrange(2) << 3 | bus

    def timing(self, image):
        choice = self.random
        medium, fine = choice.choice(MEDIUM_BASES), choice.choice(FINE_BASES)
        image[9] = fine[0] << 4 | fine[1]
        image[10], image[11] = medium
        image[12], image[34] = self.units(choice.choice(CLOCKS), medium, fine)
        for at, offset_at, low, high in ((16, 35, 10000, 15000), (18, 36, 10000, 15000),
                                         (20, 37, 10000, 15000)):
            image[at], image[offset_at] = self.units(choice.randint(low, high), medium, fine)
        for at, low, high in ((17, 5000, 15000), (19, 4000, 10000), (26, 4000, 7500),
                              (27, 4000, 7500)):
            image[at], _ = self.units(choice.randint(low, high), medium, fine)
        tras, _ = self.units(choice.randint(32000, 38000), medium, fine, 12)
        trc, image[38] = self.units(choice.randint(43000, 53000), medium, fine, 12)
        trfc, _ = self.units(choice.randint(90000, 350000), medium, fine, 16)
        tfaw, _ = self.units(choice.randint(20000, 50000), medium, fine, 12)
        image[21] = trc >> 8 << 4 | tras >> 8
        image[22], image[23] = tras & 0xFF, trc & 0xFF
        image[24], image[25] = trfc & 0xFF, trfc >> 8
        image[28], image[29] = tfaw >> 8, tfaw & 0xFF
        latencies = choice.choice([0x7FFF, 0x7FFF, 0x07FC, choice.randrange(1, 0x8000)])
        image[14], image[15] = latencies & 0xFF, latencies >> 8

    def module_section(self, image, module_type):
        choice = self.random
        # Bits 5-7 stay zero: decode-dimms takes the extension of the raw card's revision
        # in place of the revision; it begins where the revision's two bits end.
        image[60] = choice.randrange(32)
        image[61] = choice.randrange(256)
        # Neither codes 20-30 nor bit 7: there JEDEC goes on with AA, decode-dimms with BA.
        card = choice.randrange(21)
        image[62] = choice.randrange(4) << 5 | (card if card < 20 else 31)
        if module_type in REGISTERED:
            image[63] = choice.randint(1, 3) << 2 | choice.randint(1, 3)
            image[64] = choice.choice([0x00, 0x80])
            image[65], image[66] = self.maker()
            image[67] = choice.randrange(16) << 4 | choice.randrange(10)
            image[68] = choice.choice([0, 0, 0, 1])
            image[69:77] = choice.randbytes(8)
        elif module_type in UNBUFFERED:
            image[63] = choice.randrange(2)
        elif module_type in LOAD_REDUCED:
            image[63] = (choice.randrange(2) << 7 | choice.randrange(4) << 4
                         | choice.randint(1, 2) << 2 | choice.randrange(2))
            image[64] = choice.randrange(16) << 4 | choice.randrange(10)
            image[65], image[66] = self.maker()
            image[67:117] = choice.randbytes(50)
        else:
            image[63:117] = choice.randbytes(54)

    def image(self, module_type):
        choice = self.random
        image = bytearray(256)
        # 176 bytes used of 256, as all DDR3 SPDs have it. (Of other values decode-dimms
        # takes the two halves of the byte for each other.)
        image[0] = choice.choice([0x12, 0x92])
        image[1] = choice.choice([0x10, 0x11, 0x12, 0x13])
        image[2] = 0x0B
        image[3] = module_type
        self.geometry(image)
        image[6] = choice.choice([0, 2, 3, 4, 5, 6, 7])
        self.timing(image)
        image[30] = choice.randrange(256) & 0x83
        image[31] = choice.randrange(256) & 0x8F
        image[32] = choice.choice([0x00, 0x80])
        image[33] = choice.choice([0x00, 0x10, 0x91, 0xA2, 0xB1, 0xC2])
        image[41] = choice.choice([0, 1, 2, 3, 4, 5, 6, 8])
        self.module_section(image, module_type)
        image[117], image[118] = self.maker()
        image[119] = choice.randint(1, 254)
        year, week = choice.randint(7, 24), choice.randint(1, 53)
        image[120], image[121] = int(f"{year}", 16), int(f"{week}", 16)
        image[122:126] = choice.randint(1, 0xFFFFFFFE).to_bytes(4, "big")
        part = "".join(choice.choices("ABCXYZ0123456789-_./", k=choice.randint(1, 18)))
        image[128:146] = part.ljust(18, choice.choice(" \0")).encode()
        image[146:148] = choice.randint(1, 0xFFFE).to_bytes(2, "big")
        image[148], image[149] = self.maker()
        image[126:128] = crc16(image[:117 if image[0] & 0x80 else 126]).to_bytes(2, "little")
        return bytes(image)
