#include "host/shell/table.h"

#include <gtest/gtest.h>

#include <clocale>

namespace {

constexpr unsigned int NO_SCREEN = 0;

TEST(Table, AlignsItsColumns) {
    CTable table;
    table.Add({"a", "bb", "first"});
    table.Add({"ccc", "", "second"});
    EXPECT_EQ(table.Text(NO_SCREEN),
              "a    bb  first\n"
              "ccc      second\n");
    EXPECT_EQ(CTable().Text(NO_SCREEN), "");
}

TEST(Table, LeavesEmptyColumnsAndTrailingBlanksOut) {
    CTable table;
    table.Add({"", "name", "", "text"});
    table.Add({"", "x", "", ""});
    EXPECT_EQ(table.Text(NO_SCREEN), "name  text\nx\n");
}

TEST(Table, CountsColumnsNotBytes) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    CTable table;
    table.Add({"gr\xc3\xbc\xc3\x9f", "x"});
    table.Add({"plain", "y"});
    EXPECT_EQ(table.Text(NO_SCREEN), "gr\xc3\xbc\xc3\x9f   x\nplain  y\n");
    std::setlocale(LC_CTYPE, "C");
}

TEST(Table, CutsTheLastColumnToTheScreen) {
    CTable table;
    table.Add({"name", "a description of thirty-five letters"});
    table.Add({"other", "a short one"});
    EXPECT_EQ(table.Text(40),
              "name   a description of thirty-five l...\n"
              "other  a short one\n");
    EXPECT_EQ(table.Text(43), table.Text(NO_SCREEN));
}

TEST(Table, KeepsSomethingOfTheLastColumnOnANarrowScreen) {
    CTable table;
    table.Add({"a name as wide as the screen", "a description of some length"});
    EXPECT_EQ(table.Text(20), "a name as wide as the screen  a description...\n");
}

}  // namespace
