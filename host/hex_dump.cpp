#include "host/hex_dump.h"

#include <algorithm>
#include <optional>

#include "host/c_initializer.h"
#include "host/hex_dump_offsets.h"
#include "host/hex_dump_row.h"
#include "host/printable.h"
#include "host/usage_error.h"

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

// What i2cdump heads its columns with, and ethtool.
constexpr std::string_view HEADERS[] = {"0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f",
                                        "Offset\t\tValues", "------\t\t------"};

// Takes the next line off the front of `text`, without its end.
std::string_view TakeLine(std::string_view& text) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

// Words are read when the text beside them shows in some row that their first byte
// comes first, and in no row the contrary.
void CheckWordOrder(const std::vector<CNumberedRow>& rows) {
    const auto first = [&rows](EWordOrder order) {
        return std::find_if(rows.begin(), rows.end(),
                            [order](const CNumberedRow& row) { return row.row.order == order; });
    };
    if (const auto row = first(EWordOrder::BACKWARD); row != rows.end()) {
        throw CDumpFault(row->line,
                         "the text at the end shows that the words are little-endian; xxd "
                         "without -e gives a dump that can be read");
    }
    const auto row = first(EWordOrder::UNKNOWN);
    if (row != rows.end() && first(EWordOrder::FORWARD) == rows.end()) {
        throw CDumpFault(row->line,
                         "no text at the end shows the order of the bytes in a word; xxd -g 1 "
                         "gives a dump that can be read");
    }
}

// A line of many digits may be a line of one word.
void CheckPlainWidth(const CNumberedRow& first) {
    const size_t bytes = first.row.bytes.size();
    if (bytes == 2 || bytes == 4 || bytes == 8) {
        throw CDumpFault(first.line, "words of " + std::to_string(2 * bytes) +
                                         " digits, and the order of their bytes is not known; "
                                         "expected two digits, or a longer line");
    }
}

bool IsHeader(std::string_view row) {
    return std::any_of(std::begin(HEADERS), std::end(HEADERS),
                       [row](std::string_view header) { return row.starts_with(header); });
}

std::vector<uint8_t> Listed(const std::vector<CNumberedRow>& rows) {
    std::vector<uint8_t> bytes;
    for (const CNumberedRow& row : rows) {
        bytes.insert(bytes.end(), row.row.bytes.begin(), row.row.bytes.end());
    }
    return bytes;
}

class CDump {
  public:
    void Add(size_t line, std::string_view text) {
        const std::string_view row =
            text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
        // A second dump below the first has one too.
        const bool may_be_header = !m_style.has_value() || m_style == EDumpStyle::COLON;
        if (row.empty() || row.front() == '#' || (may_be_header && IsHeader(row))) {
            return;
        }
        if (!m_style.has_value()) {
            m_style = StyleOf(row);
        }
        try {
            m_rows.push_back({line, Parsed(row)});
        } catch (const CUsageError& e) {
            throw CDumpFault(line, e.what());
        }
    }

    std::vector<uint8_t> Bytes() const {
        if (m_style == EDumpStyle::COLON || m_style == EDumpStyle::BARE) {
            CheckWordOrder(m_rows);
            return PutTogether(m_rows, *m_style);
        }
        if (m_style == EDumpStyle::PLAIN) {
            CheckPlainWidth(m_rows.front());
        }
        if (m_style == EDumpStyle::C && !m_initializer.IsClosed()) {
            throw CDumpFault(m_rows.back().line, "expected bytes and } behind the {");
        }
        return Listed(m_rows);
    }

  private:
    CDumpRow Parsed(std::string_view row) {
        if (m_style != EDumpStyle::C) {
            return ParseRow(*m_style, row);
        }
        CDumpRow parsed;
        parsed.bytes = m_initializer.BytesOf(row);
        return parsed;
    }

    std::optional<EDumpStyle> m_style;
    std::vector<CNumberedRow> m_rows;
    CInitializer m_initializer;
};

}  // namespace

bool IsText(std::string_view contents) {
    while (!contents.empty()) {
        std::string line(TakeLine(contents));
        std::replace(line.begin(), line.end(), '\t', ' ');
        if (Printable(line) != line) {
            return false;
        }
    }
    return true;
}

bool IsWideText(std::string_view contents) {
    const bool is_little_endian = contents.starts_with("\xFF\xFE");
    const bool has_mark = is_little_endian || contents.starts_with("\xFE\xFF");
    if (!has_mark || contents.size() <= 2 || contents.size() % 2 != 0) {
        return false;
    }
    for (size_t i = 2; i < contents.size(); i += 2) {
        const char high = contents[is_little_endian ? i + 1 : i];
        const auto low = static_cast<unsigned char>(contents[is_little_endian ? i : i + 1]);
        if (high != '\0' || (low < ' ' && low != '\t' && low != '\r' && low != '\n')) {
            return false;
        }
    }
    return true;
}

std::vector<uint8_t> BytesOfDump(std::string_view text, const std::string& name) {
    if (text.starts_with(BYTE_ORDER_MARK)) {
        text.remove_prefix(BYTE_ORDER_MARK.size());
    }
    CDump dump;
    std::vector<uint8_t> bytes;
    try {
        for (size_t line = 1; !text.empty(); ++line) {
            dump.Add(line, TakeLine(text));
        }
        bytes = dump.Bytes();
    } catch (const CDumpFault& e) {
        throw CUsageError(name + ":" + std::to_string(e.Line()) + ": " + e.what());
    }
    if (bytes.empty()) {
        throw CUsageError(name + " is text without any bytes, no image and no hex dump");
    }
    return bytes;
}
