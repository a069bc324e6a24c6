#include "boards/chips/mux_part.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {

constexpr unsigned int FIRST_INTERRUPT_BIT = 4;

constexpr std::array PARTS = {
    mux_part_t{"pca9540", 2, MUX_ENABLE_BIT, false}, mux_part_t{"pca9542", 2, MUX_ENABLE_BIT, true},
    mux_part_t{"pca9543", 2, MUX_BIT_MASK, true},    mux_part_t{"pca9544", 4, MUX_ENABLE_BIT, true},
    mux_part_t{"pca9545", 4, MUX_BIT_MASK, true},    mux_part_t{"pca9546", 4, MUX_BIT_MASK, false},
    mux_part_t{"pca9547", 8, MUX_ENABLE_BIT, false}, mux_part_t{"pca9548", 8, MUX_BIT_MASK, false},
};

// The enable bit stands above the channel number: bit 2 for up to four
// channels, bit 3 for eight.
constexpr uint8_t EnableBit(const mux_part_t& part) {
    return part.channels > 4 ? 0x08 : 0x04;
}

}  // namespace

uint32_t mux_part_t::OpenChannels(uint8_t control) const {
    if (kind == MUX_BIT_MASK) {
        return control & AllChannels();
    }
    const auto channel = static_cast<unsigned int>(control & (channels - 1));
    return (control & EnableBit(*this)) != 0 ? 1U << channel : 0;
}

std::optional<uint8_t> mux_part_t::ControlFor(uint32_t open) const {
    if ((open & ~AllChannels()) != 0) {
        return std::nullopt;
    }
    if (kind == MUX_BIT_MASK || open == 0) {
        return static_cast<uint8_t>(open);
    }
    if (!std::has_single_bit(open)) {
        return std::nullopt;
    }
    return static_cast<uint8_t>(EnableBit(*this) | std::countr_zero(open));
}

uint32_t mux_part_t::Interrupting(uint8_t control) const {
    return interrupts ? (control >> FIRST_INTERRUPT_BIT) & AllChannels() : 0;
}

std::span<const mux_part_t> MuxParts() {
    return PARTS;
}

const mux_part_t* FindMuxPart(std::string_view name) {
    const auto* found = std::find_if(PARTS.begin(), PARTS.end(),
                                     [name](const mux_part_t& part) { return name == part.name; });
    return found == PARTS.end() ? nullptr : found;
}
