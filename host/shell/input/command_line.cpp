#include "host/shell/input/command_line.h"

#include <cctype>
#include <utility>

#include "host/printable.h"
#include "host/usage_error.h"

namespace {

enum class ESeparator { NONE, SEMICOLON, AND, AMPERSAND };

const char* TextOf(ESeparator separator) {
    switch (separator) {
        case ESeparator::SEMICOLON:
            return ";";
        case ESeparator::AND:
            return "&&";
        case ESeparator::AMPERSAND:
            return "&";
        default:
            return "";
    }
}

class CLineParser {
  public:
    explicit CLineParser(std::string_view line) : m_line(line) {}

    std::vector<CCommand> Commands() {
        std::vector<CCommand> commands;
        ESeparator before = ESeparator::NONE;
        size_t before_column = 0;
        while (true) {
            CCommand command;
            command.after_success = before == ESeparator::AND;
            while (SkipBlanks()) {
                command.words.push_back(Word());
            }
            const size_t column = m_pos + 1;
            const ESeparator behind = Separator();
            if (command.words.empty()) {
                RefuseNothing(before, before_column, behind, column);
                return commands;
            }
            command.background = behind == ESeparator::AMPERSAND;
            commands.push_back(std::move(command));
            if (behind == ESeparator::NONE) {
                return commands;
            }
            before = behind;
            before_column = column;
        }
    }

  private:
    static bool IsBlank(char c) { return c == ' ' || c == '\t'; }
    static bool IsSeparator(char c) { return c == ';' || c == '&'; }
    bool AtEnd() const { return m_pos == m_line.size(); }

    // No command stands between two separators, or at an end of the line: right
    // only for an empty line, or behind what may end one.
    static void RefuseNothing(ESeparator before, size_t before_column, ESeparator behind,
                              size_t column) {
        if (behind != ESeparator::NONE) {
            throw CUsageError(std::string(TextOf(behind)) + " at column " + std::to_string(column) +
                              " needs a command before it");
        }
        if (before == ESeparator::AND) {
            throw CUsageError("&& at column " + std::to_string(before_column) +
                              " needs a command behind it");
        }
    }

    // False at the end of a command: of the line, at a comment or a separator.
    bool SkipBlanks() {
        while (!AtEnd() && IsBlank(m_line[m_pos])) {
            ++m_pos;
        }
        return !AtEnd() && m_line[m_pos] != '#' && !IsSeparator(m_line[m_pos]);
    }

    // Takes the separator that stands here.
    ESeparator Separator() {
        if (AtEnd() || !IsSeparator(m_line[m_pos])) {
            return ESeparator::NONE;
        }
        if (m_line[m_pos++] == ';') {
            return ESeparator::SEMICOLON;
        }
        if (AtEnd() || m_line[m_pos] != '&') {
            return ESeparator::AMPERSAND;
        }
        ++m_pos;
        return ESeparator::AND;
    }

    std::string Word() {
        std::string word;
        while (!AtEnd() && !IsBlank(m_line[m_pos]) && !IsSeparator(m_line[m_pos])) {
            const char c = m_line[m_pos];
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
                if (bare && (IsBlank(c) || IsSeparator(c) || c == '#')) {
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
};

}  // namespace

std::vector<CCommand> ParseLine(std::string_view line) {
    return CLineParser(line).Commands();
}
