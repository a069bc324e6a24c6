#include "host/shell/input/line_layout.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace {

class LineLayout : public testing::Test {
  protected:
    LineLayout() : m_saved(std::setlocale(LC_CTYPE, nullptr)) {
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
    ~LineLayout() override { std::setlocale(LC_CTYPE, m_saved.c_str()); }

  private:
    const std::string m_saved;
};

TEST_F(LineLayout, BeginsInTheRowOfThePrompt) {
    EXPECT_EQ(RowOfCursor(L"/> ", L"", 20), 0U);
    EXPECT_EQ(RowOfCursor(L"/> ", L"0123456789012345", 20), 0U);
}

TEST_F(LineLayout, GoesToTheNextRowBehindAFullOne) {
    EXPECT_EQ(RowOfCursor(L"/> ", L"01234567890123456", 20), 1U);
    EXPECT_EQ(RowOfCursor(L"/> ", std::wstring(37, L'x'), 20), 2U);
    EXPECT_EQ(RowOfCursor(std::wstring(45, L'p'), L"", 20), 2U);
}

TEST_F(LineLayout, KnowsWideAndCombiningCharacters) {
    EXPECT_EQ(RowOfCursor(L"", L"\u6f22\u5b57\u6f22", 7), 0U);
    // The last one does not fit into the fifth column.
    EXPECT_EQ(RowOfCursor(L"", L"\u6f22\u5b57\u6f22", 5), 1U);
    EXPECT_EQ(RowOfCursor(L"", L"a\u0301\u0302\u0303", 2), 0U);
}

TEST_F(LineLayout, KnowsHowTheEditorShowsControlCharacters) {
    EXPECT_EQ(RowOfCursor(L"", std::wstring(3, L'\x01'), 7), 0U);  // ^A^A^A
    EXPECT_EQ(RowOfCursor(L"", std::wstring(3, L'\x01'), 6), 1U);
    EXPECT_EQ(RowOfCursor(L"", L"\t", 9), 0U);
    EXPECT_EQ(RowOfCursor(L"", L"\t", 8), 1U);
    EXPECT_EQ(RowOfCursor(L"", L"a\nb", 80), 1U);
}

}  // namespace
