// The checksum of the image, against values published for this polynomial and
// against a reckoning bit by bit.
#include "i2c/crc32_posix.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "framework/diag_functions.h"
#include "tests/i2c/param_eeprom_table.h"

namespace {

const std::string DIGITS = "123456789";

uint32_t Crc(const std::string& text, uint32_t crc = 0) {
    return crc32_posix(crc, text.data(), static_cast<uint32_t>(text.size()));
}

TEST(Crc32Posix, HasTheCheckValueOfTheNineDigits) {
    EXPECT_EQ(Crc(DIGITS), 0x89A1897FU);
    // CRC-32/CKSUM is this one inverted at the end.
    EXPECT_EQ(~Crc(DIGITS), 0x765E7680U);
}

TEST(Crc32Posix, HasTheCheckValuesOfItsKinWhenItBeginsWithOnes) {
    // CRC-32/MPEG-2, and CRC-32/BZIP2, which is inverted at the end.
    EXPECT_EQ(Crc(DIGITS, 0xFFFFFFFF), 0x0376E6E7U);
    EXPECT_EQ(~Crc(DIGITS, 0xFFFFFFFF), 0xFC891918U);
}

TEST(Crc32Posix, BeginsItsTableWithThePolynomial) {
    const std::array<uint8_t, 2> bytes = {0, 1};
    EXPECT_EQ(crc32_posix(0, bytes.data(), 1), 0U);
    EXPECT_EQ(crc32_posix(0, &bytes[1], 1), 0x04C11DB7U);
}

TEST(Crc32Posix, AgreesWithTheBitwiseReckoningForEveryByte) {
    for (unsigned int value = 0; value < 256; ++value) {
        const auto byte = static_cast<uint8_t>(value);
        for (const uint32_t before : {0U, 0x80000000U, 0x12345678U, 0xFFFFFFFFU}) {
            EXPECT_EQ(crc32_posix(before, &byte, 1), BitwiseCrc({&byte, 1}, before))
                << value << " after " << before;
        }
    }
}

TEST(Crc32Posix, AgreesWithTheBitwiseReckoningForEveryLength) {
    unsigned int state = 5;
    std::vector<uint8_t> bytes;
    for (uint32_t length = 0; length <= 300; ++length) {
        EXPECT_EQ(crc32_posix(0, bytes.data(), length), BitwiseCrc(bytes)) << length;
        bytes.push_back(static_cast<uint8_t>(DiagRand_R(&state) >> 24));
    }
}

TEST(Crc32Posix, GoesOnWhereItWasLeft) {
    for (size_t cut = 0; cut <= DIGITS.size(); ++cut) {
        EXPECT_EQ(Crc(DIGITS.substr(cut), Crc(DIGITS.substr(0, cut))), 0x89A1897FU) << cut;
    }
}

TEST(Crc32Posix, ReturnsWhatItIsGivenForNoBytes) {
    EXPECT_EQ(Crc(""), 0U);
    EXPECT_EQ(Crc("", 0x89A1897F), 0x89A1897FU);
    EXPECT_EQ(crc32_posix(0x04C11DB7, nullptr, 0), 0x04C11DB7U);
}

TEST(Crc32Posix, DoesNotMindWhereTheBytesLie) {
    const std::string shifted = "xyz" + DIGITS;
    for (const size_t gap : {1U, 2U, 3U}) {
        const std::string text = shifted.substr(3 - gap);
        EXPECT_EQ(crc32_posix(0, text.data() + gap, 9), 0x89A1897FU);
    }
}

}  // namespace
