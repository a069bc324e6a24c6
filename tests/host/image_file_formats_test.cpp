// Hex dumps of every kind give the bytes that were dumped.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <random>

#include "host/image_file.h"
#include "tests/support/dump_text.h"

namespace {

using CBytes = std::vector<uint8_t>;

CBytes Read(const std::string& text) {
    return ImageOf(text, "dump");
}

// Every byte, a row that is repeated in the middle, and an end within a row.
CBytes AnyImage() {
    CBytes image(256);
    for (size_t i = 0; i < image.size(); ++i) {
        image[i] = static_cast<uint8_t>(i);
    }
    image.insert(image.end(), 64, 0xFF);
    image.insert(image.end(), {'S', 'p', 'a', 'c', 'e', ' ', ' ', 'd'});
    return image;
}

// The same ones each time.
class CRandomImages {
  public:
    explicit CRandomImages(uint32_t seed) : m_random(seed) {}

    CBytes Next() {
        CBytes image(256);
        std::generate(image.begin(), image.end(),
                      [this] { return static_cast<uint8_t>(m_random()); });
        return image;
    }

  private:
    std::mt19937 m_random;
};

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

std::string WithCarriageReturns(const std::string& text) {
    std::string lines;
    for (const char c : text) {
        lines += c == '\n' ? "\r\n" : std::string(1, c);
    }
    return lines;
}

}  // namespace

TEST(ImageFormats, ReadsRowsOfWordsWithTextAndColon) {
    EXPECT_EQ(Read("00000000: 9211 0b01 4142 4344  ....ABCD\n"
                   "00000008: 2020 3132            12\n"),
              (CBytes{0x92, 0x11, 0x0B, 0x01, 'A', 'B', 'C', 'D', ' ', ' ', '1', '2'}));
}

TEST(ImageFormats, ReadsWordsWithTextFurtherAway) {
    EXPECT_EQ(Read("00000000: 92110b01 41424344    ....ABCD\n"),
              (CBytes{0x92, 0x11, 0x0B, 0x01, 'A', 'B', 'C', 'D'}));
}

TEST(ImageFormats, ReadsGroupsOfAnySize) {
    const CBytes image = AnyImage();
    for (const size_t group : {1, 2, 3, 4, 8, 16}) {
        for (const size_t row : {8, 16, 20, 256}) {
            EXPECT_EQ(Read(ColonDump(image, row, group)), image) << group << " of " << row;
        }
    }
}

TEST(ImageFormats, ReadsRowsWithTextBetweenBars) {
    EXPECT_EQ(
        Read("00000000  92 11 0b 01 03 04 00 19  02 09 03 11 01 01 04 08  |................|\n"
             "00000010  7c 20 23 0a                                       || #.|\n"
             "00000014\n"),
        (CBytes{0x92, 0x11, 0x0B, 0x01, 0x03, 0x04, 0x00, 0x19, 0x02, 0x09,
                0x03, 0x11, 0x01, 0x01, 0x04, 0x08, '|',  ' ',  '#',  '\n'}));
    EXPECT_EQ(Read(BarDump(AnyImage())), AnyImage());
}

TEST(ImageFormats, ReadsRowsWithTextBetweenAngles) {
    EXPECT_EQ(Read("000000 92 3e 41 42  >.>AB<\n000004\n"), (CBytes{0x92, 0x3E, 'A', 'B'}));
}

TEST(ImageFormats, ReadsOffsetsOfThreeRadices) {
    const std::string row = " 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f\n";
    CBytes image = Read("000000" + row);
    image.insert(image.end(), image.begin(), image.end());
    EXPECT_EQ(Read("000000" + row + "000010" + row + "000020\n"), image);
    EXPECT_EQ(Read("0000000" + row + "0000020" + row + "0000040\n"), image);
    EXPECT_EQ(Read("0000000" + row + "0000016" + row + "0000032\n"), image);
}

TEST(ImageFormats, RepeatsTheRowAboveAStar) {
    const std::string nulls = " 00 00 00 00\n";
    EXPECT_EQ(Read("00000000: 41 42 43 44  ABCD\n*\n00000010: 00\n"),
              (CBytes{'A', 'B', 'C', 'D', 'A', 'B', 'C', 'D', 'A', 'B', 'C', 'D', 'A', 'B', 'C',
                      'D', 0}));
    EXPECT_EQ(Read("000000" + nulls + "000004" + nulls + "*\n000020\n"), CBytes(0x20));
    // Octal: the second row settles it.
    EXPECT_EQ(Read("0000000" + nulls + "0000004" + nulls + "0000010" + nulls + "*\n0000040\n"),
              CBytes(040));
    // Nothing but its form tells.
    EXPECT_EQ(Read("000000" + nulls + "*\n000020\n"), CBytes(0x20));
    EXPECT_EQ(Read("00000000 " + nulls.substr(0, nulls.size() - 1) + "  |....|\n*\n00000020\n"),
              CBytes(0x20));
}

TEST(ImageFormats, ReadsTheTableOfAChipOnABus) {
    EXPECT_EQ(Read("     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f    0123456789abcdef\n"
                   "00: 92 11 0b 01 03 04 00 19 02 09 03 11 01 01 04 08    ????????????????\n"
                   "10: 41 42 20 ff                                        AB ."
                   "            \n"),
              (CBytes{0x92, 0x11, 0x0B, 0x01, 0x03, 0x04, 0x00, 0x19, 0x02, 0x09,
                      0x03, 0x11, 0x01, 0x01, 0x04, 0x08, 'A',  'B',  ' ',  0xFF}));
}

TEST(ImageFormats, ReadsWhatEthtoolPrints) {
    EXPECT_EQ(Read("Offset\t\tValues\n"
                   "------\t\t------\n"
                   "0x0000:\t\t03 04 07 00 00 00 01 20 \n"
                   "0x0008:\t\t40 0c \n"),
              (CBytes{0x03, 0x04, 0x07, 0x00, 0x00, 0x00, 0x01, 0x20, 0x40, 0x0C}));
}

TEST(ImageFormats, ReadsTwoDumpsOf256BytesAsOne) {
    CRandomImages images(20261122);
    const CBytes first = images.Next();
    CBytes second(256, 0xFF);
    second[0] = 0x12;
    CBytes both = first;
    both.insert(both.end(), second.begin(), second.end());
    EXPECT_EQ(Read(ColonDump(first, 16, 1) + ColonDump(second, 16, 1)), both);
    EXPECT_EQ(Read(ColonDump(first, 8, 1) + "\n# 0x51\n" + ColonDump(second, 32, 1)), both);
    EXPECT_EQ(Read(BarDump(first) + BarDump(second)), both);
    EXPECT_EQ(Read(BarDump(second) + BarDump(second)).size(), 512U);
    const std::string table =
        "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f    0123456789abcdef\n";
    EXPECT_EQ(Read(table + ColonDump(first, 16, 1) + table + ColonDump(second, 16, 1)), both);
}

TEST(ImageFormats, ReadsWhatReadAndPeekPrint) {
    EXPECT_EQ(Read("\n0x0000:   92 11 0b 01\n0x0004:   03\n"),
              (CBytes{0x92, 0x11, 0x0B, 0x01, 0x03}));
    EXPECT_EQ(Read("  0x0:  92 11\n  0x2:  0b\n"), (CBytes{0x92, 0x11, 0x0B}));
}

TEST(ImageFormats, ReadsDigitsAlone) {
    EXPECT_EQ(Read("92110b0103\n04001902ff\nab\n"),
              (CBytes{0x92, 0x11, 0x0B, 0x01, 0x03, 0x04, 0x00, 0x19, 0x02, 0xFF, 0xAB}));
    EXPECT_EQ(Read(PlainDump(AnyImage())), AnyImage());
}

TEST(ImageFormats, ReadsListsOfBytes) {
    const CBytes bytes{0x92, 0x11, 0x0B, 0x01};
    for (const char* list :
         {"92 11 0b 01", " 92\t11\n0B 01\n", "92\n11\n0b\n01\n", "92,11,0b,01",
          "0x92, 0x11,\n0xb, 0X01,\n", "92\n0x11\n0b 01\n", "92 , 11 0x0b\n\n01"}) {
        EXPECT_EQ(Read(list), bytes) << list;
    }
}

TEST(ImageFormats, SkipsCommentsAndEmptyLines) {
    EXPECT_EQ(Read("# Modul für Platz 2\n\n  # 00\n0x00: 92\n#\n0x01: 11\n   \n"),
              (CBytes{0x92, 0x11}));
    EXPECT_EQ(Read("\xEF\xBB\xBF# with a mark\n92\n"), (CBytes{0x92}));
}

TEST(ImageFormats, TakesLowerAndUpperCaseAndAnyLineEnd) {
    const CBytes image = AnyImage();
    for (const std::string& dump : {ColonDump(image, 16, 2), BarDump(image), PlainDump(image)}) {
        EXPECT_EQ(Read(WithCarriageReturns(dump)), image) << dump;
        EXPECT_EQ(Read(dump.substr(0, dump.size() - 1)), image) << dump;
    }
    EXPECT_EQ(Read(Upper(PlainDump(image))), image);
}

TEST(ImageFormats, TakesAByteThatWasChangedBesideItsText) {
    EXPECT_EQ(Read("00000000: 4142 4344 4546  ABCDEF\n00000006: 4142 0044  ABCD\n"),
              (CBytes{'A', 'B', 'C', 'D', 'E', 'F', 'A', 'B', 0, 'D'}));
}

TEST(ImageFormats, TakesAFileThatIsNoTextAsItIs) {
    CRandomImages images(20261121);
    for (int i = 0; i < 200; ++i) {
        const CBytes image = images.Next();
        EXPECT_EQ(Read(std::string(image.begin(), image.end())), image);
    }
    for (const uint8_t blank : CBytes{0x00, 0xFF}) {
        EXPECT_EQ(Read(std::string(256, static_cast<char>(blank))), CBytes(256, blank));
    }
}
