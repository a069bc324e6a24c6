// What differs between two contents of a memory: found page by page, and shown.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "framework/diag_types.h"

// A page in which something differs, or as much of it as the contents cover.
// Written whole: a device writes from the start of a page in one go.
struct CRawRange {
    uint32_t first;  // offset in the memory
    uint32_t size;
    uint32_t differing;  // bytes in it

    uint32_t Last() const { return first + size - 1; }
};

// Two contents of equal size, of the part of a memory that begins at `offset`,
// with the words that show them, of equal length.
struct CRawPair {
    struct CSide {
        const char* word;
        std::span<const byte_t> bytes;
    };
    uint32_t offset;
    CSide before;
    CSide after;
};

// The pages in which they differ.
std::vector<CRawRange> FindDifferences(const CRawPair& pair, uint32_t page);
// Lines that show the first of the ranges, rows that differ only, and how many
// more there are.
std::string ShowDifferences(const CRawPair& pair, const std::vector<CRawRange>& ranges);

// The bytes of a range in contents that begin at `offset`.
template <class Byte>
std::span<Byte> BytesOf(const CRawRange& range, uint32_t offset, std::span<Byte> contents) {
    return contents.subspan(range.first - offset, range.size);
}
// Bytes in all of them.
uint64_t SizeOf(const std::vector<CRawRange>& ranges);
// "0x10..0x1f, 0x40", ranges that touch joined.
std::string JoinRanges(const std::vector<CRawRange>& ranges);
// "1 byte", "2 bytes".
std::string Count(uint64_t number, const std::string& thing);
