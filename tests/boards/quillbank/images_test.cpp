// What the board's images hold, and their checksums, computed here anew.
#include <numeric>
#include <span>

#include "tests/boards/quillbank/quillbank_test.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t CRC16_POLYNOMIAL = 0x11021;

// The remainder of the bits of `message`, followed by sixteen zeros, divided by
// the polynomial; `initial` is added to the first sixteen bits.
uint16_t Crc16(std::span<const uint8_t> message, uint16_t initial) {
    std::vector<bool> bits;
    for (const uint8_t byte : message) {
        for (int bit = 7; bit >= 0; --bit) {
            bits.push_back((byte >> bit & 1) != 0);
        }
    }
    bits.resize(bits.size() + 16);
    for (size_t i = 0; i < 16; ++i) {
        bits[i] = bits[i] != ((initial >> (15 - i) & 1) != 0);
    }
    uint32_t rest = 0;
    for (const bool bit : bits) {
        rest = rest << 1 | (bit ? 1U : 0U);
        if ((rest & 0x10000) != 0) {
            rest ^= CRC16_POLYNOMIAL;
        }
    }
    return static_cast<uint16_t>(rest);
}

uint8_t Sum8(std::span<const uint8_t> bytes) {
    return static_cast<uint8_t>(std::accumulate(bytes.begin(), bytes.end(), 0U));
}

Bytes Image(const std::string& file) {
    return BytesOf(std::filesystem::path(QUILLBANK_DTB).parent_path() / "images" / file);
}

std::span<const uint8_t> Part(const Bytes& image, size_t offset, size_t width) {
    return std::span(image).subspan(offset, width);
}

std::string Text(const Bytes& image, size_t offset, size_t width) {
    const auto part = Part(image, offset, width);
    return {part.begin(), part.end()};
}

void ExpectGoodSpd(const Bytes& image) {
    ASSERT_EQ(image.size(), 256U);
    EXPECT_EQ(image[0], 0x92);  // so the CRC covers bytes 0 to 116
    EXPECT_EQ(image[2], 0x0B);  // DDR3
    EXPECT_EQ(image[126] | image[127] << 8, Crc16(Part(image, 0, 117), 0));
}

void ExpectGoodSerialId(const Bytes& image) {
    ASSERT_EQ(image.size(), 256U);
    EXPECT_EQ(image[0], 3);  // SFP
    EXPECT_EQ(image[63], Sum8(Part(image, 0, 63)));
    EXPECT_EQ(image[95], Sum8(Part(image, 64, 31)));
    EXPECT_EQ(Text(image, 20, 16), "QUILL OPTICS    ");
    EXPECT_EQ(image[60] << 8 | image[61], 850);
}

}  // namespace

TEST(QuillbankChecksum, OfThisTestIsTheOneThatIsMeant) {
    const Bytes digits = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    EXPECT_EQ(Crc16(digits, 0x0000), 0x31C3);
    EXPECT_EQ(Crc16(digits, 0xFFFF) ^ 0xFFFF, 0xD64E);
}

TEST(QuillbankImage, OfTheManufacturingEepromIsAWholeRecord) {
    const Bytes image = Image("i2c-0/0x50.bin");
    ASSERT_EQ(image.size(), 8192U);
    EXPECT_EQ(image[94] << 8 | image[95], Crc16(Part(image, 0, 94), 0xFFFF) ^ 0xFFFF);
    EXPECT_EQ(image[84], Sum8(Part(image, 80, 4)));
    EXPECT_EQ(image[2], 96 / 32);
    EXPECT_EQ(Text(image, 3, 13), "QB22350000417");
    EXPECT_EQ(Text(image, 16, 22), "QUILLBANK-T2080-8G    ");
    EXPECT_EQ(Text(image, 65, 7), "R1A    ");
    EXPECT_EQ(Text(image, 72, 8), "20220831");
    EXPECT_EQ(image[86] & 0x03, 0x02);  // a locally administered address of one station
    EXPECT_EQ(image[92] << 8 | image[93], 16);
    EXPECT_EQ(Bytes(image.begin() + 96, image.end()), Bytes(8192 - 96, 0xFF));
}

TEST(QuillbankImage, OfTheFirstMemoryModuleIsARegisteredOne) {
    const Bytes image = Image("i2c-0/0x77/ch0/0x51.bin");
    ExpectGoodSpd(image);
    EXPECT_EQ(image[3], 1);
    EXPECT_EQ(Text(image, 128, 18), "QBR-4G72-2R8-1600 ");
}

TEST(QuillbankImage, OfTheSecondMemoryModuleIsAnUnbufferedOne) {
    const Bytes image = Image("i2c-0/0x77/ch0/0x53.bin");
    ExpectGoodSpd(image);
    EXPECT_EQ(image[3], 2);
    EXPECT_EQ(Text(image, 128, 18), "QBU-4G72-1R8-1600 ");
}

TEST(QuillbankImage, OfTheSlowModuleIsOneGigabit) {
    const Bytes image = Image("i2c-1/0x70/ch0/0x50.bin");
    ExpectGoodSerialId(image);
    EXPECT_EQ(image[3], 0x00);
    EXPECT_EQ(image[6], 0x01);  // 1000BASE-SX
}

TEST(QuillbankImage, OfTheFastModuleIsTenGigabit) {
    const Bytes image = Image("i2c-1/0x70/ch1/0x71/ch3/0x50.bin");
    ExpectGoodSerialId(image);
    EXPECT_EQ(image[3], 0x10);  // 10GBASE-SR
}

TEST(QuillbankImage, OfTheParameterEepromIsBlank) {
    EXPECT_EQ(Image("i2c-0/0x77/ch1/0x70/ch2/0x51.bin"), Bytes(8192, 0xFF));
}
