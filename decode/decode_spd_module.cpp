// What the module is: type, capacity, organization, voltages.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "decode/decode_spd_codes.h"
#include "decode/decode_spd_sections.h"

namespace {

using Spd = ddr3_spd_eeprom_t;
using Number = std::optional<uint64_t>;

constexpr std::string_view MEMORY_TYPES[] = {
    "",
    "fast page mode DRAM",
    "EDO DRAM",
    "pipelined nibble DRAM",
    "SDRAM",
    "ROM",
    "DDR SGRAM",
    "DDR SDRAM",
    "DDR2 SDRAM",
    "DDR2 SDRAM FB-DIMM",
    "DDR2 SDRAM FB-DIMM probe",
    "DDR3 SDRAM",
    "DDR4 SDRAM",
    "",
    "DDR4E SDRAM",
    "LPDDR3 SDRAM",
    "LPDDR4 SDRAM",
    "LPDDR4X SDRAM",
    "DDR5 SDRAM",
    "LPDDR5 SDRAM",
};

constexpr std::string_view MODULE_TYPES[] = {
    "",
    "RDIMM",
    "UDIMM",
    "SO-DIMM",
    "Micro-DIMM",
    "Mini-RDIMM",
    "Mini-UDIMM",
    "Mini-CDIMM",
    "72b-SO-UDIMM",
    "72b-SO-RDIMM",
    "72b-SO-CDIMM",
    "LRDIMM",
    "16b-SO-DIMM",
    "32b-SO-DIMM",
};

// `first` for code 0, twice as much for each further one up to `last_code`.
Number Doubling(unsigned code, uint64_t first, unsigned last_code) {
    return code <= last_code ? Number(first << code) : std::nullopt;
}

// `first` for code 0, one more for each further one up to `last_code`.
Number Counting(unsigned code, uint64_t first, unsigned last_code) {
    return code <= last_code ? Number(first + code) : std::nullopt;
}

unsigned DensityCode(const Spd& spd) {
    return Bits(spd.density_banks, 3, 0);
}

unsigned BankCode(const Spd& spd) {
    return Bits(spd.density_banks, 6, 4);
}

unsigned RowCode(const Spd& spd) {
    return Bits(spd.addressing, 5, 3);
}

unsigned ColumnCode(const Spd& spd) {
    return Bits(spd.addressing, 2, 0);
}

unsigned RankCode(const Spd& spd) {
    return Bits(spd.organization, 5, 3);
}

unsigned DeviceWidthCode(const Spd& spd) {
    return Bits(spd.organization, 2, 0);
}

unsigned BusWidthCode(const Spd& spd) {
    return Bits(spd.bus_width, 2, 0);
}

unsigned EccCode(const Spd& spd) {
    return Bits(spd.bus_width, 5, 3);
}

Number DensityInMbit(const Spd& spd) {
    return Doubling(DensityCode(spd), 256, 6);
}

Number Banks(const Spd& spd) {
    return Doubling(BankCode(spd), 8, 3);
}

Number RowBits(const Spd& spd) {
    return Counting(RowCode(spd), 12, 4);
}

Number ColumnBits(const Spd& spd) {
    return Counting(ColumnCode(spd), 9, 3);
}

Number Ranks(const Spd& spd) {
    return Counting(RankCode(spd), 1, 3);
}

Number DeviceWidth(const Spd& spd) {
    return Doubling(DeviceWidthCode(spd), 4, 3);
}

std::string NumberText(const Number& number, unsigned code, std::string_view unit = "") {
    return number.has_value() ? std::to_string(*number) + std::string(unit) : Hex(code, 1);
}

// In the larger unit where that divides the amount.
std::string AmountText(uint64_t amount, std::string_view unit, std::string_view larger_unit) {
    const bool large = amount % 1024 == 0;
    return std::to_string(large ? amount / 1024 : amount) + " " +
           std::string(large ? larger_unit : unit);
}

std::string Capacity(const Spd& spd) {
    const Number density = DensityInMbit(spd);
    const Number ranks = Ranks(spd);
    const Number width = DeviceWidth(spd);
    const Number bus = BusWidth(spd);
    if (!density.has_value() || !ranks.has_value() || !width.has_value() || !bus.has_value()) {
        return "unknown";
    }
    if (*bus < *width) {
        return "unknown: the bus is narrower than a device";
    }
    return AmountText(*density / 8 * (*bus / *width) * *ranks, "MiB", "GiB");
}

// A density that the address bits contradict makes a controller lose memory, or wrap
// round in it.
std::string Density(const Spd& spd) {
    const Number density = DensityInMbit(spd);
    if (!density.has_value()) {
        return Hex(DensityCode(spd), 1);
    }
    std::string text = AmountText(*density, "Mbit", "Gbit");
    const Number banks = Banks(spd);
    const Number rows = RowBits(spd);
    const Number columns = ColumnBits(spd);
    const Number width = DeviceWidth(spd);
    if (banks.has_value() && rows.has_value() && columns.has_value() && width.has_value()) {
        const uint64_t reached = (*banks * *width << (*rows + *columns)) >> 20;
        if (reached != *density) {
            text += ", but the address bits reach " + AmountText(reached, "Mbit", "Gbit");
        }
    }
    return text;
}

std::string Ecc(const Spd& spd) {
    constexpr std::string_view WIDTHS[] = {"none", "8 bits"};
    return NameOf(EccCode(spd), WIDTHS);
}

std::string Voltages(const Spd& spd) {
    std::vector<std::string> operable;
    if (!Bit(spd.module_vdd, 0)) {  // the only one that is told by a clear bit
        operable.emplace_back("1.5 V");
    }
    if (Bit(spd.module_vdd, 1)) {
        operable.emplace_back("1.35 V");
    }
    if (Bit(spd.module_vdd, 2)) {
        operable.emplace_back("1.25 V");
    }
    return operable.empty() ? Hex(spd.module_vdd) : Listed(operable);
}

std::string BytesUsed(const Spd& spd) {
    constexpr std::string_view AMOUNTS[] = {"", "128", "176", "256"};
    return NameOf(Bits(spd.info_size_crc, 3, 0), AMOUNTS);
}

std::string BytesTotal(const Spd& spd) {
    constexpr std::string_view AMOUNTS[] = {"", "256"};
    return NameOf(Bits(spd.info_size_crc, 6, 4), AMOUNTS);
}

std::string Revision(const Spd& spd) {
    if (spd.spd_rev == 0xFF) {
        return Hex(spd.spd_rev);
    }
    return std::to_string(Bits(spd.spd_rev, 7, 4)) + "." + std::to_string(Bits(spd.spd_rev, 3, 0));
}

constexpr CFieldDecoder<Spd> FIELDS[] = {
    {"Module", "Memory type", [](const Spd& spd) { return NameOf(spd.mem_type, MEMORY_TYPES, 2); }},
    {"Module", "Module type",
     [](const Spd& spd) { return NameOf(spd.module_type, MODULE_TYPES, 2); }},
    {"Module", "SPD revision", Revision},
    {"Module", "SPD bytes used", BytesUsed},
    {"Module", "SPD bytes total", BytesTotal},
    {"Module", "Capacity", Capacity},
    {"Module", "Ranks", [](const Spd& spd) { return NumberText(Ranks(spd), RankCode(spd)); }},
    {"Module", "Bus width",
     [](const Spd& spd) { return NumberText(BusWidth(spd), BusWidthCode(spd), " bits"); }},
    {"Module", "ECC", Ecc},
    {"Module", "Device width",
     [](const Spd& spd) { return NumberText(DeviceWidth(spd), DeviceWidthCode(spd), " bits"); }},
    {"Module", "Device density", Density},
    {"Module", "Banks", [](const Spd& spd) { return NumberText(Banks(spd), BankCode(spd)); }},
    {"Module", "Row address bits",
     [](const Spd& spd) { return NumberText(RowBits(spd), RowCode(spd)); }},
    {"Module", "Column address bits",
     [](const Spd& spd) { return NumberText(ColumnBits(spd), ColumnCode(spd)); }},
    {"Module", "Voltages", Voltages},
};

}  // namespace

CSpdFields SpdModuleFields() {
    return FIELDS;
}
