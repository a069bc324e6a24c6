// How the fields of a record are put into words: the same rules for every kind.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// A text of the chip. It may hold any byte: what is not printable ASCII is shown as
// "\xNN". Padding at its end (blanks, zeros, erased bytes) is dropped; a text of
// nothing else is "(none)".
std::string TextOf(std::span<const uint8_t> field);

// "0x2c", with that many digits or more.
std::string Hex(uint64_t value, int digits = 2);

// Every byte in two digits: "00:1a:10" with ':' between them.
std::string HexBytes(std::span<const uint8_t> bytes, char separator);

// "-12.50": with that many decimals, in every locale. Infinities are "inf" and "-inf",
// and what is no number is "nan".
std::string Fixed(double value, int decimals);

// "13.125", "-12.5", "12": with that many decimals at most.
std::string Decimal(double value, int decimals);

// "2022-05-03" of the eight digits "20220503"; empty when they are no day of the calendar.
std::string DateOf(std::string_view digits);

// "0x1234, right", or "0x1234, wrong: calculated 0x5678".
std::string CheckText(uint32_t stored, uint32_t calculated, int digits);

// "one, two, three"
std::string Listed(const std::vector<std::string>& items);
