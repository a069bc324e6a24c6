// Hex dumps, as xxd, hexdump -C, od, i2cdump, ethtool and the shell's own read print them,
// or bytes that are written down one by one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Bytes of an image and of a file at the most: far above every EEPROM, and an endless
// file ends there.
constexpr size_t MAX_IMAGE_SIZE = size_t{1} << 20;

// Whether contents can be a dump: text alone, which no chip here holds.
bool IsText(std::string_view contents);

// Whether contents are text of two bytes for each character, as some terminals write what
// they redirect: a byte order mark, and every other byte 0.
bool IsWideText(std::string_view contents);

// The bytes of a dump, MAX_IMAGE_SIZE at the most. Throws CUsageError that names the
// line and says what was expected there: "NAME:3: ...".
std::vector<uint8_t> BytesOfDump(std::string_view text, const std::string& name);
