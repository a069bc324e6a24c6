#include "host/shell/input/word_splitter.h"

#include <cctype>

#include "host/shell/printable.h"
#include "host/shell/usage_error.h"

namespace {

class CSplitter {
  public:
    explicit CSplitter(std::string_view line) : m_line(line) {}

    CSplitLine Line() {
        CSplitLine line;
        while (SkipBlanks()) {
            line.words.push_back(Word());
        }
        line.background = m_ampersand;
        if (m_ampersand) {
            line.words.back().pop_back();
            if (line.words.back().empty()) {
                line.words.pop_back();
            }
        }
        return line;
    }

  private:
    static bool IsBlank(char c) { return c == ' ' || c == '\t'; }
    bool AtEnd() const { return m_pos == m_line.size(); }

    // False at the end of what counts: of the line, or at a comment.
    bool SkipBlanks() {
        while (!AtEnd() && IsBlank(m_line[m_pos])) {
            ++m_pos;
        }
        return !AtEnd() && m_line[m_pos] != '#';
    }

    std::string Word() {
        std::string word;
        while (!AtEnd() && !IsBlank(m_line[m_pos])) {
            const char c = m_line[m_pos];
            m_ampersand = c == '&';
            if (c == '\'' || c == '"') {
                Quoted(word, c);
            } else if (c == '\\') {
                word += Escape(true);
            } else {
                word += Plain();
            }
        }
        return word;
    }

    void Quoted(std::string& word, char quote) {
        const size_t open = m_pos++;
        while (!AtEnd() && m_line[m_pos] != quote) {
            if (m_line[m_pos] == '\\' && quote == '"') {
                word += Escape(false);
            } else {
                word += Plain();
            }
        }
        if (AtEnd()) {
            throw CUsageError(std::string("the quote ") + quote + " at column " +
                              std::to_string(open + 1) + " is never closed");
        }
        ++m_pos;
    }

    char Plain() {
        const char c = m_line[m_pos];
        if (std::iscntrl(static_cast<unsigned char>(c)) != 0 && c != '\t') {
            throw CUsageError("control character " + Printable(std::string(1, c)) + " at column " +
                              std::to_string(m_pos + 1) + "; write it as an escape, \\xHH");
        }
        ++m_pos;
        return c;
    }

    char Escape(bool bare) {
        const size_t start = m_pos++;
        const char c = AtEnd() ? '\0' : m_line[m_pos++];
        switch (c) {
            case '\\':
            case '"':
            case '\'':
                return c;
            case 'n':
                return '\n';
            case 't':
                return '\t';
            case 'r':
                return '\r';
            case '0':
                return '\0';
            case 'x':
                return HexByte(start);
            default:
                if (bare && (IsBlank(c) || c == '#' || c == '&')) {
                    return c;
                }
        }
        throw CUsageError("unknown escape at column " + std::to_string(start + 1) +
                          R"(; there are \\ \" \' \n \t \r \0 \xHH)");
    }

    char HexByte(size_t start) {
        const std::string digits(m_line.substr(m_pos, 2));
        if (digits.size() < 2 || std::isxdigit(static_cast<unsigned char>(digits[0])) == 0 ||
            std::isxdigit(static_cast<unsigned char>(digits[1])) == 0) {
            throw CUsageError("\\x at column " + std::to_string(start + 1) +
                              " needs two hexadecimal digits");
        }
        m_pos += 2;
        return static_cast<char>(std::stoi(digits, nullptr, 16));
    }

    const std::string_view m_line;
    size_t m_pos = 0;
    bool m_ampersand = false;  // the last thing of the last word was a bare &
};

}  // namespace

CSplitLine SplitLine(std::string_view line) {
    return CSplitter(line).Line();
}
