#include "host/shell/input/line_layout.h"

#include <cwchar>
#include <cwctype>

namespace {

constexpr size_t TAB_STOP = 8;
constexpr wchar_t HIGHEST_ASCII = 0x7F;
constexpr wchar_t HIGHEST_OF_4_DIGITS = 0xFFFF;

// Characters go to the next row where they do not fit.
class CRows {
  public:
    explicit CRows(size_t columns) : m_columns(columns) {}

    void Put(size_t width) {
        if (m_column + width > m_columns) {
            EndRow();
        }
        m_column += width;
        if (m_column >= m_columns) {
            EndRow();
        }
    }
    void EndRow() {
        ++m_row;
        m_column = 0;
    }
    size_t Row() const { return m_row; }
    size_t Column() const { return m_column; }

  private:
    const size_t m_columns;
    size_t m_row = 0;
    size_t m_column = 0;
};

// As the editor shows what has no picture of its own: ^C, \U+200B.
size_t WidthOfCode(wchar_t character) {
    if (character <= HIGHEST_ASCII) {
        return 2;
    }
    return character <= HIGHEST_OF_4_DIGITS ? 7 : 8;
}

void Put(CRows& rows, wchar_t character) {
    if (character == L'\n') {
        rows.EndRow();
    } else if (character == L'\t') {
        do {
            rows.Put(1);
        } while (rows.Column() % TAB_STOP != 0);
    } else if (std::iswprint(static_cast<std::wint_t>(character)) != 0) {
        const int width = ::wcwidth(character);
        rows.Put(width > 0 ? static_cast<size_t>(width) : 0);
    } else {
        for (size_t i = 0; i < WidthOfCode(character); ++i) {
            rows.Put(1);
        }
    }
}

}  // namespace

size_t RowOfCursor(std::wstring_view prompt, std::wstring_view before, unsigned int columns) {
    CRows rows(columns);
    for (const std::wstring_view part : {prompt, before}) {
        for (const wchar_t character : part) {
            Put(rows, character);
        }
    }
    return rows.Row();
}
