#include "host/shell/input/word_at_cursor.h"

#include <cctype>
#include <optional>
#include <utility>

#include "host/printable.h"

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

bool IsSeparator(char c) {
    return c == ';' || c == '&';
}

bool IsBeyondAscii(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

class CScanner {
  public:
    explicit CScanner(std::string_view line) : m_line(line) {}

    CWordAtCursor Scan() {
        while (true) {
            while (!AtEnd() && IsBlank(m_line[m_pos])) {
                ++m_pos;
            }
            m_found.begin = m_pos;
            if (AtEnd()) {
                return m_found;
            }
            if (m_line[m_pos] == '#') {
                m_found.in_comment = true;
                return m_found;
            }
            if (IsSeparator(m_line[m_pos])) {
                ++m_pos;
                m_found.before.clear();
                continue;
            }
            Word();
            if (AtEnd()) {
                return m_found;
            }
            m_found.before.push_back(std::exchange(m_found.word, {}));
        }
    }

  private:
    bool AtEnd() const { return m_pos == m_line.size(); }

    void Word() {
        char& quote = m_found.quote;
        for (; !AtEnd(); ++m_pos) {
            const char c = m_line[m_pos];
            if (quote == '\0' && (IsBlank(c) || IsSeparator(c))) {
                return;
            }
            if (quote == '\0' && (c == '\'' || c == '"')) {
                quote = c;
            } else if (quote != '\0' && c == quote) {
                quote = '\0';
            } else if (c == '\\' && quote != '\'' && m_pos + 1 < m_line.size()) {
                Escape();
            } else {
                m_found.word += c;
            }
        }
    }

    // Ends on the last byte of the escape.
    void Escape() {
        const char c = m_line[++m_pos];
        switch (c) {
            case 'n':
                m_found.word += '\n';
                break;
            case 't':
                m_found.word += '\t';
                break;
            case 'r':
                m_found.word += '\r';
                break;
            case '0':
                m_found.word += '\0';
                break;
            case 'x':
                if (const auto byte = HexByte(m_line.substr(m_pos + 1, 2))) {
                    m_found.word += *byte;
                    m_pos += 2;
                    break;
                }
                [[fallthrough]];
            default:
                m_found.word += c;
        }
    }

    static std::optional<char> HexByte(std::string_view digits) {
        if (digits.size() < 2 || std::isxdigit(static_cast<unsigned char>(digits[0])) == 0 ||
            std::isxdigit(static_cast<unsigned char>(digits[1])) == 0) {
            return std::nullopt;
        }
        return static_cast<char>(std::stoi(std::string(digits), nullptr, 16));
    }

    const std::string_view m_line;
    size_t m_pos = 0;
    CWordAtCursor m_found;
};

// Whether a bare word takes this character only behind a backslash.
bool IsSpecial(char c, bool first) {
    return IsBlank(c) || IsSeparator(c) || c == '\\' || c == '"' || c == '\'' ||
           (first && c == '#');
}

}  // namespace

CWordAtCursor WordAtCursor(std::string_view line, size_t cursor) {
    return CScanner(line.substr(0, cursor)).Scan();
}

std::string Quoted(std::string_view word, char quote, bool closed) {
    const size_t quotes = quote == '\0' ? 0 : 1;
    if (quote == '\'') {
        if (Printable(word) != word || word.find('\'') != std::string_view::npos) {
            return Quoted(word, '\0', closed);
        }
        return quote + std::string(word) + std::string(closed ? 1 : 0, quote);
    }
    std::string text(quotes, quote);
    while (!word.empty()) {
        const char c = word.front();
        const bool escaped = quote == '\0' ? IsSpecial(c, text.empty()) : c == quote || c == '\\';
        if (escaped && c != '\t') {
            text += '\\';
        }
        // Characters beyond ASCII are told from stray bytes only as a whole.
        size_t length = 1;
        while (IsBeyondAscii(c) && length < word.size() && IsBeyondAscii(word[length])) {
            ++length;
        }
        text += Printable(word.substr(0, length));
        word.remove_prefix(length);
    }
    return text + std::string(closed ? quotes : 0, quote);
}
