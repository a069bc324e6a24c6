#include "host/shell/builtins/raw_ranges.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "framework/diag_functions.h"

namespace {

constexpr size_t RANGES_SHOWN = 4;
constexpr size_t ROW = 16;
constexpr size_t ROWS_SHOWN = 2;  // of each range

std::string Position(uint64_t position) {
    return toString(position, VF_HEX);
}

std::string RangeText(uint32_t first, uint32_t last) {
    return Position(first) + (last == first ? "" : ".." + Position(last));
}

std::string Row(const char* word, uint32_t position, std::span<const byte_t> bytes) {
    std::string text = "    " + std::string(word) + " " + Position(position) + ": ";
    for (const byte_t byte : bytes) {
        std::array<char, 4> hex{};
        std::snprintf(hex.data(), hex.size(), " %02x", byte);
        text += hex.data();
    }
    return text + "\n";
}

std::string ShowRange(const CRawPair& pair, const CRawRange& range) {
    std::string text = "  " + RangeText(range.first, range.Last()) + ": " +
                       std::to_string(range.differing) + " of " + Count(range.size, "byte") + "\n";
    size_t rows = 0;
    for (size_t row = 0; row < range.size; row += ROW) {
        const auto position = static_cast<uint32_t>(range.first + row);
        const size_t size = std::min(ROW, range.size - row);
        const auto before = pair.before.bytes.subspan(position - pair.offset, size);
        const auto after = pair.after.bytes.subspan(position - pair.offset, size);
        if (std::equal(before.begin(), before.end(), after.begin()) || ++rows > ROWS_SHOWN) {
            continue;
        }
        text += Row(pair.before.word, position, before) + Row(pair.after.word, position, after);
    }
    if (rows > ROWS_SHOWN) {
        text += "    ... " + Count(rows - ROWS_SHOWN, "more row") + "\n";
    }
    return text;
}

}  // namespace

std::vector<CRawRange> FindDifferences(const CRawPair& pair, uint32_t page) {
    std::vector<CRawRange> ranges;
    const size_t total = pair.before.bytes.size();
    for (size_t at = 0; at < total;) {
        const auto first = static_cast<uint32_t>(pair.offset + at);
        const auto size = static_cast<uint32_t>(std::min<size_t>(page - first % page, total - at));
        uint32_t differing = 0;
        for (size_t i = at; i < at + size; ++i) {
            differing += pair.before.bytes[i] != pair.after.bytes[i] ? 1 : 0;
        }
        if (differing != 0) {
            ranges.push_back({first, size, differing});
        }
        at += size;
    }
    return ranges;
}

std::string ShowDifferences(const CRawPair& pair, const std::vector<CRawRange>& ranges) {
    std::string text;
    const size_t shown = std::min(ranges.size(), RANGES_SHOWN);
    for (size_t i = 0; i < shown; ++i) {
        text += ShowRange(pair, ranges[i]);
    }
    if (shown < ranges.size()) {
        const std::vector<CRawRange> rest(ranges.begin() + RANGES_SHOWN, ranges.end());
        text += "  ... " + Count(rest.size(), "more range") + ": " + JoinRanges(rest) + "\n";
    }
    return text;
}

uint64_t SizeOf(const std::vector<CRawRange>& ranges) {
    uint64_t size = 0;
    for (const CRawRange& range : ranges) {
        size += range.size;
    }
    return size;
}

std::string JoinRanges(const std::vector<CRawRange>& ranges) {
    std::string text;
    for (size_t i = 0; i < ranges.size(); ++i) {
        const uint32_t first = ranges[i].first;
        while (i + 1 < ranges.size() && ranges[i + 1].first == ranges[i].Last() + 1) {
            ++i;
        }
        text += (text.empty() ? "" : ", ") + RangeText(first, ranges[i].Last());
    }
    return text;
}

std::string Count(uint64_t number, const std::string& thing) {
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}
