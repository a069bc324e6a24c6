// DIMM tables as the tests of the parameter EEPROM write them down, and what
// becomes of them: the XML file, and the image by the tests' own reckoning.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

struct CModule {
    uint64_t id = 0x1234;
    std::string part = "PN-EXAMPLE-01";
    uint32_t rev_start = 0x00;
    uint32_t rev_end = 0xFF;
    std::vector<std::pair<uint32_t, uint32_t>> regs{};  // offset, value
};

struct CTable {
    static constexpr uint32_t EXTENDED = 0x56454C44;
    static constexpr uint32_t COMPACT = 0xA5A50001;

    uint32_t version = 3;
    uint32_t signature = COMPACT;
    std::vector<CModule> modules{};

    bool IsExtended() const { return signature == EXTENDED; }
};

// The table as an XML file.
std::string XmlOf(const CTable& table);

// The image without a line of the library's code in it. It is itself compared
// with images written down byte by byte.
std::vector<uint8_t> ImageOf(const CTable& table);

// The offsets of an image's words in the order in which they are written.
std::vector<unsigned int> WordOrderOf(const CTable& table);
// The bytes before the first register pair of each module.
std::vector<unsigned int> RegisterBlocksOf(const CTable& table);

// The image's checksum, bit by bit.
uint32_t BitwiseCrc(std::span<const uint8_t> bytes, uint32_t crc = 0);

// Big-endian words in images.
uint32_t WordAt(std::span<const uint8_t> image, size_t offset);
void SetWordAt(std::span<uint8_t> image, size_t offset, uint32_t word);

// The tables that most tests use: two modules, of which one has two register
// pairs and the other one; 132 and 116 bytes of image.
CTable CompactTable();
CTable ExtendedTable();
