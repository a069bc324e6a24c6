#include "i2c/dimm_table_text.h"

#include <string_view>

namespace {

// Of a header and of an end.
constexpr size_t PIECES_BESIDE_REGISTERS = 2;

void PutHex(char* to, uint32_t value) {
    for (unsigned int shift = 32; shift != 0;) {
        shift -= 4;
        *to++ = "0123456789ABCDEF"[(value >> shift) & 0xF];
    }
}

// 'd': as a signed decimal number; 'x': as " 0x%08X".
std::string convertToString(uint32_t value, char format) {
    if (format == 'd') {
        return std::to_string(static_cast<int32_t>(value));
    }
    std::string text = " 0x00000000";
    PutHex(&text[3], value);
    return text;
}

// There are many of these, so they are not put together from parts. Values
// without an offset stand at the end.
std::string RegisterText(const Registers& registers, size_t j) {
    constexpr std::string_view PAIR = "\noffset =  0x00000000\nvalue =  0x00000000";
    constexpr size_t OFFSET_AT = PAIR.find("0x") + 2;
    constexpr size_t VALUE_AT = PAIR.rfind("0x") + 2;
    constexpr size_t SECOND_LINE = PAIR.rfind('\n');
    std::string text(PAIR);
    PutHex(&text[VALUE_AT], registers.reg_val[j]);
    if (j >= registers.reg_offset.size()) {
        return text.substr(SECOND_LINE);
    }
    PutHex(&text[OFFSET_AT], registers.reg_offset[j]);
    return text;
}

}  // namespace

size_t CountPieces(const DimmTable& table) {
    size_t count = table.num_Entries * PIECES_BESIDE_REGISTERS;
    for (uint32_t k = 0; k < table.num_Entries; ++k) {
        count += table.entry[k].Register_Array.reg_val.size();
    }
    return count;
}

void AppendEntryText(std::vector<std::string>& pieces, const DimmTable& table,
                     const Entries& entry) {
    pieces.push_back("Dimm Table Header: \nEntry " + convertToString(table.num_Entries, 'd') +
                     "\nDimm version = " + convertToString(table.dimm_version, 'd') +
                     "\njedec_manufacturer_id = " + convertToString(entry.man_id_h, 'x') +
                     convertToString(entry.man_id_l, 'x') +
                     "\nDimm Table Sz = " + convertToString(table.dimmtable_size, 'd') +
                     "\nsignature = " + convertToString(table.signature, 'x') +
                     "\ndimm_part_num = " + entry.PartNumText() +
                     "\nrevision_start = " + convertToString(entry.rev_Start, 'x') +
                     "\nrevision_end = " + convertToString(entry.rev_End, 'x') +
                     "\nnum_reg = " + convertToString(entry.num_Reg, 'd') + "\nRegister Array:\n");
    for (size_t j = 0; j < entry.Register_Array.reg_val.size(); ++j) {
        pieces.push_back(RegisterText(entry.Register_Array, j));
    }
    pieces.emplace_back("\n\n");
}
