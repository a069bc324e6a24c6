// The I2C multiplexers and switches of the PCA954x family: how many channels
// each has and how its one control register selects them (NXP data sheets
// PCA9540B, PCA9542A, PCA9543A, PCA9544A, PCA9545A, PCA9546A, PCA9547, PCA9548A).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

enum EMuxKind : uint8_t {
    MUX_ENABLE_BIT,  // one channel at most: its number below an enable bit
    MUX_BIT_MASK,    // any set of channels: one bit each
};

struct mux_part_t {
    const char* name;
    uint8_t channels;
    EMuxKind kind;
    bool interrupts;  // bits 4 and up of the register tell which channels interrupt

    // The channels that a value of the control register opens, one bit each.
    uint32_t OpenChannels(uint8_t control) const;
    // The control register that opens exactly `channels`; empty when the part
    // cannot open them together.
    std::optional<uint8_t> ControlFor(uint32_t open) const;
    // The channels that interrupt, one bit each.
    uint32_t Interrupting(uint8_t control) const;
    uint32_t AllChannels() const { return (1U << channels) - 1; }
};

// "pca9540" to "pca9548".
std::span<const mux_part_t> MuxParts();
// The part of that name, or null.
const mux_part_t* FindMuxPart(std::string_view name);
