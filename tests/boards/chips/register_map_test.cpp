// The register tables against the register maps of the data sheets, told here once more:
// a chip and its simulation agree on a wrong pointer, but not with this.
#include <cstdio>
#include <ostream>

#include "tests/boards/chips/register_test.h"

namespace {

constexpr int AS_READ = -1;
constexpr int NO_POINTER = -2;

struct CEntry {
    std::string name;
    unsigned int pointer;
    EValueType type;
    diag_regacc_et access;
    int written_at = AS_READ;  // a pointer, or one of the above
    unsigned int count = 1;

    bool operator==(const CEntry&) const = default;
};

// For messages.
std::ostream& operator<<(std::ostream& out, const CEntry& entry) {
    return out << entry.name << " at 0x" << std::hex << entry.pointer << std::dec << ", type "
               << entry.type << ", access " << entry.access << ", written at " << entry.written_at
               << ", " << entry.count << " of them";
}

using CMap = std::vector<CEntry>;

constexpr auto RO = DIAG_REGACC_RO;
constexpr auto RW = DIAG_REGACC_RW;
constexpr auto WO = DIAG_REGACC_WO;
constexpr auto RC = DIAG_REGACC_RC;

const CMap ADT7461_MAP = {
    {"local-temp", 0x00, VT_UINT8, RO},       {"remote-temp", 0x01, VT_UINT8, RO},
    {"status", 0x02, VT_UINT8, RC},           {"config", 0x03, VT_UINT8, RW, 0x09},
    {"rate", 0x04, VT_UINT8, RW, 0x0A},       {"local-high", 0x05, VT_UINT8, RW, 0x0B},
    {"local-low", 0x06, VT_UINT8, RW, 0x0C},  {"remote-high", 0x07, VT_UINT8, RW, 0x0D},
    {"remote-low", 0x08, VT_UINT8, RW, 0x0E}, {"one-shot", 0x0F, VT_UINT8, WO},
    {"remote-temp-low", 0x10, VT_UINT8, RO},  {"offset", 0x11, VT_INT8, RW},
    {"offset-low", 0x12, VT_UINT8, RW},       {"remote-high-low", 0x13, VT_UINT8, RW},
    {"remote-low-low", 0x14, VT_UINT8, RW},   {"remote-therm", 0x19, VT_UINT8, RW},
    {"local-therm", 0x20, VT_UINT8, RW},      {"therm-hyst", 0x21, VT_UINT8, RW},
    {"alert-after", 0x22, VT_UINT8, RW},      {"manufacturer", 0xFE, VT_UINT8, RO},
    {"revision", 0xFF, VT_UINT8, RO},
};

const CMap DS3232_MAP = {
    {"seconds", 0x00, VT_UINT8, RW},
    {"minutes", 0x01, VT_UINT8, RW},
    {"hours", 0x02, VT_UINT8, RW},
    {"day", 0x03, VT_UINT8, RW},
    {"date", 0x04, VT_UINT8, RW},
    {"month", 0x05, VT_UINT8, RW},
    {"year", 0x06, VT_UINT8, RW},
    {"alarm1-seconds", 0x07, VT_UINT8, RW},
    {"alarm1-minutes", 0x08, VT_UINT8, RW},
    {"alarm1-hours", 0x09, VT_UINT8, RW},
    {"alarm1-day", 0x0A, VT_UINT8, RW},
    {"alarm2-minutes", 0x0B, VT_UINT8, RW},
    {"alarm2-hours", 0x0C, VT_UINT8, RW},
    {"alarm2-day", 0x0D, VT_UINT8, RW},
    {"control", 0x0E, VT_UINT8, RW},
    {"status", 0x0F, VT_UINT8, RW},
    {"aging-offset", 0x10, VT_INT8, RW},
    {"temp", 0x11, VT_UINT16, RO},
    {"sram", 0x14, VT_UINT8, RW, AS_READ, 236},
};

const CMap INA220_MAP = {
    {"config", 0x00, VT_UINT16, RW},      {"shunt-voltage", 0x01, VT_INT16, RO},
    {"bus-voltage", 0x02, VT_UINT16, RO}, {"power", 0x03, VT_UINT16, RO},
    {"current", 0x04, VT_INT16, RO},      {"calibration", 0x05, VT_UINT16, RW},
};

const CMap LM75_MAP = {
    {"temp", 0x00, VT_UINT16, RO},
    {"conf", 0x01, VT_UINT8, RW},
    {"thyst", 0x02, VT_UINT16, RW},
    {"tos", 0x03, VT_UINT16, RW},
};

const CMap TMP75_MAP = {
    {"temp", 0x00, VT_UINT16, RO},
    {"conf", 0x01, VT_UINT8, RW},
    {"tlow", 0x02, VT_UINT16, RW},
    {"thigh", 0x03, VT_UINT16, RW},
};

const CMap PCA9534_MAP = {
    {"input", 0x00, VT_UINT8, RO},
    {"output", 0x01, VT_UINT8, RW},
    {"polarity", 0x02, VT_UINT8, RW},
    {"config", 0x03, VT_UINT8, RW},
};

const CMap PCA9555_MAP = {
    {"input", 0x00, VT_UINT8, RO, AS_READ, 2},
    {"output", 0x02, VT_UINT8, RW, AS_READ, 2},
    {"polarity", 0x04, VT_UINT8, RW, AS_READ, 2},
    {"config", 0x06, VT_UINT8, RW, AS_READ, 2},
};

const CMap PCF8574_MAP = {
    {"input", 0, VT_UINT8, RO, NO_POINTER},
    {"output", 0, VT_UINT8, RW, NO_POINTER},
};

const CMap QUILLBANK_CPLD_MAP = {
    {"id", 0x00, VT_UINT16, RO},
    {"version", 0x02, VT_UINT8, RO},
    {"scratch", 0x03, VT_UINT8, RW},
    {"events", 0x04, VT_UINT8, RC},
    {"event-mask", 0x05, VT_UINT8, RW},
    {"reset", 0x06, VT_UINT8, WO},
    {"led", 0x10, VT_UINT8, RW, AS_READ, 8},
    {"lane", 0x20, VT_UINT16, RW, AS_READ, 4},
};

struct CPart {
    const char* name;
    const CMap& map;

    friend std::ostream& operator<<(std::ostream& out, const CPart& part) {
        return out << part.name;
    }
};

unsigned int WidthOf(EValueType type) {
    return type == VT_UINT16 || type == VT_INT16 ? 2 : 1;
}

CEntry EntryOf(const diag_reg_st& reg) {
    CEntry entry = {.name = reg.name,
                    .pointer = static_cast<unsigned int>(reg.offset),
                    .type = reg.dtype,
                    .access = static_cast<diag_regacc_et>(reg.access),
                    .count = reg.num_regs};
    if ((reg.flags & HAS_WRITE_POINTER) != 0) {
        entry.written_at = static_cast<int>(reg.flags & 0xFF);
    } else if ((reg.flags & HAS_NO_POINTER) != 0) {
        entry.written_at = NO_POINTER;
    }
    return entry;
}

class RegisterMap : public CRegisterTest, public testing::WithParamInterface<CPart> {};

TEST_P(RegisterMap, IsThatOfTheDataSheet) {
    CMap have;
    for (const diag_reg_st& reg : FindRegisterPart(GetParam().name)->registers) {
        have.push_back(EntryOf(reg));
        if (reg.num_regs > 1) {
            EXPECT_EQ(reg.addr_stride, WidthOf(reg.dtype)) << reg.name;
        }
    }
    EXPECT_EQ(have, GetParam().map);
}

// The one that knows no pointer tells its latch from memory: QuasiPortExpander tests it.
TEST_P(RegisterMap, IsDumpedButForWhatAReadWouldChangeOrCannotTell) {
    Names want;
    for (const CEntry& entry : GetParam().map) {
        for (unsigned int i = 0; (entry.access == RO || entry.access == RW) && i < entry.count;
             ++i) {
            char begin[32];
            std::snprintf(begin, sizeof begin, "30 w %02x 30 r",
                          entry.pointer + i * WidthOf(entry.type));
            want.emplace_back(entry.written_at == NO_POINTER ? "30 r" : begin);
        }
    }
    EXPECT_TRUE(AddChip(GetParam().name, 0x30).dumpRegs(LW_PRINT, ""));
    Names have = Tape();
    for (std::string& entry : have) {
        entry.erase(entry.find(" r") + 2);
    }
    EXPECT_EQ(have, want);
}

INSTANTIATE_TEST_SUITE_P(
    Parts, RegisterMap,
    testing::Values(CPart{"adt7461", ADT7461_MAP}, CPart{"ds3232", DS3232_MAP},
                    CPart{"ina220", INA220_MAP}, CPart{"lm75", LM75_MAP},
                    CPart{"pca9534", PCA9534_MAP}, CPart{"pca9535", PCA9555_MAP},
                    CPart{"pca9555", PCA9555_MAP}, CPart{"pcf8574", PCF8574_MAP},
                    CPart{"quillbank-cpld", QUILLBANK_CPLD_MAP}, CPart{"tmp75", TMP75_MAP}),
    [](const auto& part) {
        std::string name = part.param.name;
        std::erase(name, '-');
        return name;
    });

}  // namespace
