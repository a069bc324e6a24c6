#include "host/shell/builtins/raw_ranges.h"

#include <gtest/gtest.h>

namespace {

using CBytes = std::vector<byte_t>;

std::vector<CRawRange> Differences(uint32_t offset, const CBytes& before, const CBytes& after,
                                   uint32_t page) {
    return FindDifferences({offset, {"old", before}, {"new", after}}, page);
}

// Each range as "FIRST+SIZE:DIFFERING".
std::string Text(const std::vector<CRawRange>& ranges) {
    std::string text;
    for (const CRawRange& range : ranges) {
        text += (text.empty() ? "" : " ") + std::to_string(range.first) + "+" +
                std::to_string(range.size) + ":" + std::to_string(range.differing);
    }
    return text;
}

TEST(RawRanges, EqualContentsHaveNoDifferences) {
    EXPECT_EQ(Text(Differences(0, {1, 2, 3}, {1, 2, 3}, 16)), "");
}

TEST(RawRanges, AreWholePages) {
    EXPECT_EQ(Text(Differences(8, CBytes(16), {0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 8)),
              "8+8:2");
    EXPECT_EQ(Text(Differences(0, CBytes(24), CBytes(24, 1), 8)), "0+8:8 8+8:8 16+8:8");
}

TEST(RawRanges, EndWhereTheContentsEnd) {
    EXPECT_EQ(Text(Differences(6, CBytes(12), CBytes(12, 1), 8)), "6+2:2 8+8:8 16+2:2");
    EXPECT_EQ(Text(Differences(9, CBytes(2), {0, 1}, 8)), "9+2:1");
    EXPECT_EQ(Text(Differences(9, CBytes(2), {0, 1}, 1)), "10+1:1");
    EXPECT_EQ(Text(Differences(0xFFFFFFFE, {0, 0}, {0, 1}, 32)), "4294967294+2:1");
}

TEST(RawRanges, AddUpAndJoinWhereTheyTouch) {
    const std::vector<CRawRange> ranges = {{0x0E, 2, 2}, {0x10, 16, 1}, {0x21, 1, 1}, {0x30, 1, 1}};
    EXPECT_EQ(SizeOf(ranges), 20U);
    EXPECT_EQ(JoinRanges(ranges), "0xe..0x1f, 0x21, 0x30");
    EXPECT_EQ(JoinRanges({}), "");
}

std::string Shown(uint32_t offset, const CBytes& before, const CBytes& after, uint32_t page) {
    const CRawPair pair = {offset, {"old", before}, {"new", after}};
    return ShowDifferences(pair, FindDifferences(pair, page));
}

TEST(RawRanges, ShowBothContents) {
    EXPECT_EQ(Shown(0x100, {0xAA, 0xBB, 0xCC}, {0xAA, 0x01, 0x02}, 16),
              "  0x100..0x102: 2 of 3 bytes\n"
              "    old 0x100:  aa bb cc\n"
              "    new 0x100:  aa 01 02\n");
    EXPECT_EQ(Shown(0, {1}, {2}, 16),
              "  0x0: 1 of 1 byte\n"
              "    old 0x0:  01\n"
              "    new 0x0:  02\n");
}

TEST(RawRanges, ShowTheRowsThatDiffer) {
    CBytes after(64);
    after[0x20] = 0xFF;
    EXPECT_EQ(Shown(0, CBytes(64), after, 64),
              "  0x0..0x3f: 1 of 64 bytes\n"
              "    old 0x20:  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n"
              "    new 0x20:  ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n");
}

TEST(RawRanges, ShowTwoRowsOfALongRange) {
    const std::string old_row = ":  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n";
    const std::string new_row = ":  ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n";
    const std::string rows = "    old 0x0" + old_row + "    new 0x0" + new_row + "    old 0x10" +
                             old_row + "    new 0x10" + new_row;
    EXPECT_EQ(Shown(0, CBytes(32), CBytes(32, 0xFF), 32), "  0x0..0x1f: 32 of 32 bytes\n" + rows);
    EXPECT_EQ(Shown(0, CBytes(256), CBytes(256, 0xFF), 256),
              "  0x0..0xff: 256 of 256 bytes\n" + rows + "    ... 14 more rows\n");
}

TEST(RawRanges, ShowTheFirstFourOfMany) {
    EXPECT_TRUE(Shown(0, CBytes(4), CBytes(4, 1), 1).ends_with("new 0x3:  01\n"));
    EXPECT_TRUE(
        Shown(0, CBytes(5), CBytes(5, 1), 1).ends_with("new 0x3:  01\n  ... 1 more range: 0x4\n"));
    EXPECT_TRUE(Shown(0, CBytes(9), CBytes(9, 1), 1)
                    .ends_with("new 0x3:  01\n  ... 5 more ranges: 0x4..0x8\n"));
}

}  // namespace
