#include "host/shell/input/candidates.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::SizeIs;

TEST(Candidates, AreThoseThatBeginAsTyped) {
    CCandidates candidates("ch");
    for (const char* name : {"ch0", "probe", "ch1", "CH2", "c"}) {
        candidates.Offer(name);
    }
    EXPECT_EQ(candidates.Count(), 2U);
    EXPECT_EQ(candidates.Common(), "ch");
    EXPECT_THAT(candidates.TakeListed(), ElementsAre("ch0", "ch1"));
}

TEST(Candidates, HaveTheirBeginningInCommon) {
    CCandidates candidates("");
    candidates.Offer("pca9547-0", "/", "/");
    candidates.Offer("pca9548-0", "/", "/");
    EXPECT_EQ(candidates.Common(), "pca954");
    EXPECT_FALSE(candidates.EndsWord());
    candidates.Offer("pca");
    EXPECT_EQ(candidates.Common(), "pca");
    candidates.Offer("probe");
    candidates.Offer("trans");
    EXPECT_EQ(candidates.Common(), "");
}

TEST(Candidates, HaveWholeCharactersInCommon) {
    CCandidates candidates("");
    candidates.Offer("gr\u00fcn");
    candidates.Offer("gr\u00f6n");
    EXPECT_EQ(candidates.Common(), "gr");
}

TEST(Candidates, EndTheirWordWhenThereIsOneThatDoesNotGoOn) {
    CCandidates command("pro");
    command.Offer("probe");
    EXPECT_EQ(command.Common(), "probe");
    EXPECT_TRUE(command.EndsWord());
    CCandidates menu("i2c");
    menu.Offer("i2c-0", "/", "/");
    EXPECT_EQ(menu.Common(), "i2c-0/");
    EXPECT_FALSE(menu.EndsWord());
    CCandidates array("ct");
    array.Offer("ctrl", "[0..3]", "[");
    EXPECT_EQ(array.Common(), "ctrl[");
    EXPECT_FALSE(array.EndsWord());
    EXPECT_THAT(array.TakeListed(), ElementsAre("ctrl[0..3]"));
}

TEST(Candidates, AreCountedBeyondThoseListed) {
    CCandidates candidates("n");
    for (int i = 0; i < 10'000; ++i) {
        candidates.Offer("n" + std::to_string(i));
    }
    EXPECT_EQ(candidates.Count(), 10'000U);
    EXPECT_THAT(candidates.TakeListed(), SizeIs(CCandidates::LISTED));
}

TEST(Candidates, AreListedWithTheirMarkAndPrintable) {
    CCandidates candidates("");
    candidates.Offer("list", "[]");
    candidates.Offer("a\x1b[A");
    EXPECT_THAT(candidates.TakeListed(), ElementsAre("list[]", "a\\x1b[A"));
}

TEST(Columns, GoDownAndThenAcross) {
    EXPECT_EQ(InColumns({"a", "bb", "ccc", "d", "e"}, 0, 12), "a    d\nbb   e\nccc\n");
    EXPECT_EQ(InColumns({"a", "bb", "ccc", "d", "e"}, 0, 80), "a    bb   ccc  d    e\n");
}

TEST(Columns, AreOneOnANarrowScreen) {
    EXPECT_EQ(InColumns({"wide-name", "b"}, 0, 5), "wide-name\nb\n");
    EXPECT_EQ(InColumns({"wide-name", "b"}, 0, 1), "wide-name\nb\n");
}

TEST(Columns, LeaveTheLastColumnOfTheScreenFree) {
    EXPECT_EQ(InColumns({"abc", "def"}, 0, 9), "abc  def\n");
    EXPECT_EQ(InColumns({"abc", "def"}, 0, 8), "abc\ndef\n");
}

TEST(Columns, TellHowManyMoreThereAre) {
    EXPECT_EQ(InColumns({"a"}, 7, 80), "a\n... and 7 more\n");
}

}  // namespace
