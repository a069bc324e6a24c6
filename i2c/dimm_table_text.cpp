#include "i2c/dimm_table_text.h"

namespace {

// 'd': as a signed decimal number; 'x': as " 0x%08X".
std::string convertToString(uint32_t value, char format) {
    if (format == 'd') {
        return std::to_string(static_cast<int32_t>(value));
    }
    std::string text = " 0x";
    for (unsigned int shift = 32; shift != 0;) {
        shift -= 4;
        text += "0123456789ABCDEF"[(value >> shift) & 0xF];
    }
    return text;
}

}  // namespace

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
    const Registers& registers = entry.Register_Array;
    for (size_t j = 0; j < registers.reg_val.size(); ++j) {
        // Values without an offset stand at the end.
        const bool paired = j < registers.reg_offset.size();
        pieces.push_back(
            (paired ? "\noffset = " + convertToString(registers.reg_offset[j], 'x') : "") +
            "\nvalue = " + convertToString(registers.reg_val[j], 'x'));
    }
    pieces.emplace_back("\n\n");
}
