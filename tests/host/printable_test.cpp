#include "host/printable.h"

#include <gtest/gtest.h>

namespace {

TEST(Printable, LeavesTextAlone) {
    EXPECT_EQ(Printable("plain text ~"), "plain text ~");
    EXPECT_EQ(Printable("gr\xc3\xbc\xc3\x9f \xe2\x82\xac \xf0\x9f\x94\xa7"),
              "gr\xc3\xbc\xc3\x9f \xe2\x82\xac \xf0\x9f\x94\xa7");
}

TEST(Printable, ShowsControlCharacters) {
    EXPECT_EQ(Printable(std::string_view("a\n\t\x1b[0m\x7f\0", 9)), "a\\n\\t\\x1b[0m\\x7f\\x00");
    // U+009B is a control sequence introducer to many terminals.
    EXPECT_EQ(Printable("\xc2\x9b"), "\\xc2\\x9b");
}

TEST(Printable, ShowsBytesThatAreNoUtf8) {
    EXPECT_EQ(Printable("\xff"), "\\xff");
    EXPECT_EQ(Printable("\xc3"), "\\xc3");
    EXPECT_EQ(Printable("\xc0\xaf"), "\\xc0\\xaf");           // overlong
    EXPECT_EQ(Printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");  // surrogate
    EXPECT_EQ(Printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
    EXPECT_EQ(Printable("\xe2\x82z"), "\\xe2\\x82z");
}

}  // namespace
