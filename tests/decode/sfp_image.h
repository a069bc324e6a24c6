// An SFP's image to write fields into: zeros at first.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "decode/decode_sfp.h"
#include "tests/decode/decoded.h"

struct CSfpImage {
    // Where the bytes of address A2h begin.
    static constexpr size_t A2H = 256;

    std::vector<uint8_t> bytes = std::vector<uint8_t>(SFP_SIZE, 0);

    CSfpImage& Set(size_t at, uint8_t value) {
        bytes.at(at) = value;
        return *this;
    }
    CSfpImage& Put(size_t at, std::string_view text) {
        std::copy(text.begin(), text.end(), bytes.begin() + static_cast<ptrdiff_t>(at));
        return *this;
    }
    // Of A2h, big-endian.
    CSfpImage& Word(size_t at, uint16_t value) {
        return Set(A2H + at, static_cast<uint8_t>(value >> 8))
            .Set(A2H + at + 1, static_cast<uint8_t>(value));
    }
    // Both addresses; the diagnostics are of that type.
    CSfpImage& WithDiagnostics(uint8_t type) {
        bytes.resize(2 * A2H, 0);
        return Set(92, type);
    }
    // Makes the check codes right.
    CSfpImage& Seal() {
        Set(63, Sum(0, 63)).Set(95, Sum(64, 95));
        return bytes.size() < 2 * A2H ? *this : Set(A2H + 95, Sum(A2H, A2H + 95));
    }
    std::string In(std::string_view name) const { return ValueOf(DecodeSfp(bytes), name); }

  private:
    uint8_t Sum(ptrdiff_t begin, ptrdiff_t end) const {
        return std::accumulate(bytes.begin() + begin, bytes.begin() + end, uint8_t{0});
    }
};
