// The checksum of records, against published check values and a long division.
#include "i2c/crc16.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/i2c/crc16_by_division.h"

namespace {

constexpr std::array<uint8_t, 9> DIGITS = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};

// At compile time as well.
static_assert(Crc16(DIGITS, 0) == 0x31C3);

TEST(Crc16, HasTheCheckValueOfXmodem) {
    EXPECT_EQ(Crc16(DIGITS, 0), 0x31C3);
}

TEST(Crc16, HasTheCheckValueOfGenibusWhenComplemented) {
    EXPECT_EQ(static_cast<uint16_t>(~Crc16(DIGITS, 0xFFFF)), 0xD64E);
}

TEST(Crc16, IsTheInitialValueOfNothing) {
    EXPECT_EQ(Crc16({}, 0), 0);
    EXPECT_EQ(Crc16({}, 0xFFFF), 0xFFFF);
}

TEST(Crc16, CountsLeadingZerosOnlyFromAnInitialValueOtherThan0) {
    const std::array<uint8_t, 3> zeros{};
    EXPECT_EQ(Crc16(zeros, 0), 0);
    EXPECT_NE(Crc16(zeros, 0xFFFF), 0xFFFF);
    EXPECT_NE(Crc16(zeros, 0xFFFF), Crc16(std::span(zeros).first(2), 0xFFFF));
}

TEST(Crc16ByDivision, HasTheSameCheckValues) {
    const std::vector<uint8_t> digits(DIGITS.begin(), DIGITS.end());
    EXPECT_EQ(Crc16ByDivision(digits, 0), 0x31C3);
    EXPECT_EQ(GenibusByDivision(digits), 0xD64E);
}

TEST(Crc16, IsTheRemainderOfALongDivision) {
    std::vector<uint8_t> message;
    for (int length = 0; length <= 256; ++length) {
        for (const uint16_t initial : std::array<uint16_t, 3>{0x0000, 0xFFFF, 0x1D0F}) {
            ASSERT_EQ(Crc16(message, initial), Crc16ByDivision(message, initial))
                << length << " bytes from " << initial;
        }
        message.push_back(static_cast<uint8_t>(length * length + 37 * length + 11));
    }
}

TEST(Crc16, IsTheRemainderForEveryByte) {
    for (int byte = 0; byte <= 255; ++byte) {
        const std::vector<uint8_t> message = {static_cast<uint8_t>(byte)};
        ASSERT_EQ(Crc16(message, 0xFFFF), Crc16ByDivision(message, 0xFFFF)) << byte;
    }
}

}  // namespace
