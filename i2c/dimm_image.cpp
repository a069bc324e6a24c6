#include "i2c/dimm_image.h"

#include <string_view>

namespace {

constexpr uint8_t BLANK = ' ';

}  // namespace

CDimmLayout CDimmLayout::Of(const DimmTable& table) {
    return table.signature == EXTENDED_SIGNATURE
               ? CDimmLayout{.extended = true, .entry_words = 9, .part_number_size = 19}
               : CDimmLayout{.extended = false, .entry_words = 11, .part_number_size = 32};
}

std::vector<uint32_t> ManufacturerWords(const CDimmLayout& layout, const Entries& entry) {
    if (layout.extended) {
        return {entry.man_id_h, entry.man_id_l};
    }
    return {entry.man_id_l << 16};
}

std::vector<uint32_t> PartNumberWords(const CDimmLayout& layout, const Entries& entry) {
    const std::string_view text = entry.PartNumText();
    std::vector<uint32_t> words((layout.part_number_size + DIMM_WORD - 1) / DIMM_WORD);
    for (uint32_t k = 0; k < layout.part_number_size; ++k) {
        const uint32_t byte = k < text.size() ? static_cast<uint8_t>(text[k]) : BLANK;
        words[k / DIMM_WORD] |= byte << (8 * (DIMM_WORD - 1 - k % DIMM_WORD));
    }
    return words;
}

uint32_t RevisionWord(const Entries& entry) {
    return (entry.rev_Start << 16) | entry.rev_End;
}
