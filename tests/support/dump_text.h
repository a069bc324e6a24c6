// Bytes as the tools dump them.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

inline std::string HexDigits(uint64_t number, size_t digits) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%0*llx", static_cast<int>(digits),
                  static_cast<unsigned long long>(number));
    return text.data();
}

inline std::string TextBeside(std::span<const uint8_t> bytes) {
    std::string text;
    for (const uint8_t byte : bytes) {
        text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    return text;
}

// As xxd: "00000000: 9211 0b01  ....".
inline std::string ColonDump(std::span<const uint8_t> bytes, size_t row_size, size_t group,
                             bool little_endian = false) {
    std::string dump;
    const size_t groups = (row_size + group - 1) / group;
    for (size_t at = 0; at < bytes.size(); at += row_size) {
        const auto row = bytes.subspan(at, std::min(row_size, bytes.size() - at));
        std::string digits;
        for (size_t i = 0; i < row.size(); ++i) {
            const std::string byte = HexDigits(row[i], 2);
            const size_t in_group = i % group;
            digits += i != 0 && in_group == 0 ? " " : "";
            digits.insert(digits.size() - (little_endian ? 2 * in_group : 0), byte);
        }
        digits.resize(2 * row_size + groups - 1, ' ');
        dump += HexDigits(at, 8) + ": " + digits + "  " + TextBeside(row) + "\n";
    }
    return dump;
}

// As hexdump -C, rows that repeat left out.
inline std::string BarDump(std::span<const uint8_t> bytes) {
    constexpr size_t ROW = 16;
    std::string dump;
    std::span<const uint8_t> last;
    bool has_star = false;
    for (size_t at = 0; at < bytes.size(); at += ROW) {
        const auto row = bytes.subspan(at, std::min(ROW, bytes.size() - at));
        if (std::ranges::equal(row, last)) {
            dump += has_star ? "" : "*\n";
            has_star = true;
            continue;
        }
        last = row;
        has_star = false;
        std::string digits;
        for (size_t i = 0; i < row.size(); ++i) {
            digits += (i == ROW / 2 ? "  " : " ") + HexDigits(row[i], 2);
        }
        digits.resize(3 * ROW + 1, ' ');
        dump += HexDigits(at, 8) + " " + digits + "  |" + TextBeside(row) + "|\n";
    }
    return dump + HexDigits(bytes.size(), 8) + "\n";
}

// As xxd -p.
inline std::string PlainDump(std::span<const uint8_t> bytes) {
    constexpr size_t ROW = 30;
    std::string dump;
    for (size_t i = 0; i < bytes.size(); ++i) {
        dump += HexDigits(bytes[i], 2) + (i % ROW == ROW - 1 || i + 1 == bytes.size() ? "\n" : "");
    }
    return dump;
}
