// What is no image, and what is said about it.
#include <gtest/gtest.h>

#include "host/hex_dump.h"
#include "host/image_file.h"
#include "host/usage_error.h"
#include "tests/support/dump_text.h"

namespace {

constexpr const char* READABLE = "; xxd, hexdump -C and od -A x -t x1 give dumps that can be read";

std::string Refusal(const std::string& text) {
    try {
        ImageOf(text, "x.txt");
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "taken";
}

std::string NoByte(const std::string& place, const std::string& word) {
    return "x.txt:" + place + ": \"" + word + "\": expected a byte of two hexadecimal digits" +
           READABLE;
}

std::string Word(const std::string& place, const std::string& word) {
    return "x.txt:" + place + ": \"" + word + "\" is a word of " + std::to_string(word.size()) +
           " digits, and the order of its bytes is not known" + READABLE;
}

}  // namespace

TEST(ImageRefusal, NamesAFileWithoutBytes) {
    EXPECT_EQ(Refusal(""), "x.txt is empty");
    for (const char* text : {"\n", "# nothing\n", " \t\r\n", "\xEF\xBB\xBF", "000000:\n"}) {
        EXPECT_EQ(Refusal(text), "x.txt is text without any bytes, no image and no hex dump")
            << text;
    }
}

TEST(ImageRefusal, NamesWhatIsNoByte) {
    EXPECT_EQ(Refusal("92 11\n\n92 1g\n"), NoByte("3", "1g"));
    EXPECT_EQ(Refusal("92 1\n"), NoByte("1", "1"));
    EXPECT_EQ(Refusal("0x92 0x111\n"), NoByte("1", "0x111"));
    EXPECT_EQ(Refusal("0x\n"), NoByte("1", "0x"));
    EXPECT_EQ(Refusal("0x00: 92 11 | ..\n"), NoByte("1", "|"));
    EXPECT_EQ(Refusal("This is a letter.\n"), NoByte("1", "This"));
    EXPECT_EQ(Refusal("unsigned char spd[256];\n"), NoByte("1", "unsigned"));
    EXPECT_EQ(Refusal("0000000 222 021 013\n"), NoByte("1", "222"));
}

TEST(ImageRefusal, NamesWordsOfWhichTheByteOrderIsNotKnown) {
    EXPECT_EQ(Refusal("0000000 1192 010b\n0000004\n"), Word("1", "1192"));
    EXPECT_EQ(Refusal("9211 0b01\n"), Word("1", "9211"));
    EXPECT_EQ(Refusal("00: 1192 010b\n"), Word("1", "1192"));
    EXPECT_EQ(Refusal("0x0000000: 1192 010b\n"), Word("1", "1192"));
    EXPECT_EQ(Refusal("92110b01\n01020304\n"),
              "x.txt:1: words of 8 digits, and the order of their bytes is not known; expected "
              "two digits, or a longer line");
    EXPECT_EQ(Refusal("00000000: 1192 010b\n"),
              "x.txt:1: no text at the end shows the order of the bytes in a word; xxd -g 1 gives "
              "a dump that can be read");
    EXPECT_EQ(Refusal("00000000: 0011 0203  ....\n00000004: 4241 4443  ABCD\n"),
              "x.txt:2: the text at the end shows that the words are little-endian; xxd without "
              "-e gives a dump that can be read");
}

TEST(ImageRefusal, NamesBytesThatTheChipDidNotGive) {
    EXPECT_EQ(Refusal("00: 92 11\n02: 0b XX\n"),
              "x.txt:2: byte 1 of row 02 is XX, which the chip did not give; dump it again");
}

TEST(ImageRefusal, NamesADumpThatDoesNotBeginAtZero) {
    EXPECT_EQ(Refusal("00000100: 92 11\n"),
              "x.txt:1: offset 00000100, expected 00000000: a dump begins with the first byte of "
              "the chip");
}

TEST(ImageRefusal, NamesASecondDumpBehindNoWholeAddress) {
    const std::string page = ColonDump(std::vector<uint8_t>(256, 0x11), 16, 1);
    EXPECT_EQ(Refusal(ColonDump(std::vector<uint8_t>(128, 0x11), 16, 1) + page),
              "x.txt:9: offset 00000000, expected 00000080");
    EXPECT_EQ(Refusal(ColonDump(std::vector<uint8_t>(512, 0x11), 16, 1) + page),
              "x.txt:33: offset 00000000, expected 00000200");
    EXPECT_EQ(Refusal(page + page + page), "x.txt:33: offset 00000000, expected 00000100");
    EXPECT_EQ(Refusal(page + "00000100: 11\n" + page),
              "x.txt:18: offset 00000000, expected 00000101");
}

TEST(ImageRefusal, NamesTextOfTwoBytesForEachCharacter) {
    const std::string text = "# f\xFCr\t\r\n00: 92 11\r\n";
    for (const bool little_endian : {true, false}) {
        std::string wide = little_endian ? "\xFF\xFE" : "\xFE\xFF";
        for (const char c : text) {
            wide += little_endian ? std::string{c, '\0'} : std::string{'\0', c};
        }
        EXPECT_EQ(Refusal(wide), "x.txt is UTF-16 text; save it as UTF-8 or ASCII");
        // One character that is none makes it bytes.
        wide[2] = wide[3] = '\0';
        EXPECT_EQ(Refusal(wide), "taken");
    }
    EXPECT_EQ(Refusal("\xFF\xFE"), "taken");
}

TEST(ImageRefusal, NamesOffsetsThatDoNotGoOn) {
    EXPECT_EQ(Refusal("00: 92 11\n04: 92 11\n"), "x.txt:2: offset 04, expected 02");
    EXPECT_EQ(Refusal("00: 92 11\n00: 92 11\n"), "x.txt:2: offset 00, expected 02");
    EXPECT_EQ(Refusal("000000 92 11\n000002 92 11\n000005\n"),
              "x.txt:3: offset 000005, expected 000004");
    // In octal it fits longest.
    EXPECT_EQ(Refusal("000000 00 00 00 00 00 00 00 00\n000010 00 00 00 00 00 00 00 00\n000030\n"),
              "x.txt:3: offset 000030, expected 000020");
    EXPECT_EQ(Refusal("fffffffffffffffffffff: 92\n"),
              "x.txt:1: offset fffffffffffffffffffff is beyond 1 MiB, no image of an EEPROM");
    EXPECT_EQ(Refusal("00: 92\n*\nfffffff0: 92\n"),
              "x.txt:3: offset fffffff0 is beyond 1 MiB, no image of an EEPROM");
}

TEST(ImageRefusal, NamesALastRowThatIsTooLong) {
    EXPECT_EQ(Refusal("00: 92 11\n02: 92 11 0b\n"),
              "x.txt:2: 3 bytes, expected at most 2, as in the first row");
}

TEST(ImageRefusal, NamesAStarThatStandsForNothing) {
    EXPECT_EQ(Refusal("00: 92 11\n*\n"),
              "x.txt:2: expected an offset below *, to tell how often the row is repeated");
    EXPECT_EQ(Refusal("00: 92 11\n*\n05: 92\n"),
              "x.txt:3: offset 05, expected 02 and whole rows of 2 bytes, for which * stands");
    EXPECT_EQ(Refusal("00: 92 11\n*\n02: 92\n"),
              "x.txt:3: offset 02, expected 02 and whole rows of 2 bytes, for which * stands");
    EXPECT_EQ(Refusal("92 11\n*\n"), NoByte("2", "*"));
    EXPECT_EQ(Refusal("*\n00: 92\n"), NoByte("1", "*"));
}

TEST(ImageRefusal, NamesAStarThatMayStandForDifferentRows) {
    EXPECT_EQ(Refusal("0000000 ff ff ff ff ff ff ff ff\n*\n0000400\n"),
              "x.txt:2: how many rows * stands for is not sure, since the offsets may be "
              "hexadecimal, octal or decimal; od -v writes all rows");
}

TEST(ImageRefusal, NamesRowsUnlikeThoseAbove) {
    EXPECT_EQ(Refusal("00: 92\n92 11\n"),
              "x.txt:2: expected an offset and a colon, as in the rows above");
    EXPECT_EQ(Refusal("000000 92 11\n92 11\n"),
              "x.txt:2: \"92\": expected an offset, as in the rows above");
    EXPECT_EQ(Refusal("9211010203\n92 11\n"),
              "x.txt:2: \"92 11\": expected hexadecimal digits alone, as in the line above");
    EXPECT_EQ(Refusal("9211010203\n921\n"), "x.txt:2: 3 digits: expected two for each byte");
}

TEST(ImageRefusal, NamesTextOfMoreBytesThanThereAre) {
    EXPECT_EQ(Refusal("00: 92 11  0b 01\n"),
              "x.txt:1: the text at the end is of 5 bytes, but 2 stand before it");
    EXPECT_EQ(Refusal("00000000  92 11  |...|\n"),
              "x.txt:1: the text at the end is of 3 bytes, but 2 stand before it");
}

TEST(ImageRefusal, NamesACommaWithoutAByte) {
    EXPECT_EQ(Refusal("92,,11\n"), "x.txt:1: expected a byte before the comma");
    EXPECT_EQ(Refusal(",92\n"), "x.txt:1: expected a byte before the comma");
}
