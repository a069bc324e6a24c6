#include <array>
#include <cerrno>

#include "host/shell/input/line_reader.h"

ELine CStreamReader::Read(const std::string&, std::string& line) {
    SkipByteOrderMark();
    line.clear();
    bool too_long = false;
    // Ctrl-C may have come while the mark was looked for.
    int c = std::ferror(m_in) != 0 ? EOF : std::getc(m_in);
    const bool at_end = c == EOF;
    for (; c != EOF && c != '\n'; c = std::getc(m_in)) {
        too_long = too_long || line.size() == MAX_LINE;
        if (!too_long) {
            line += static_cast<char>(c);
        }
    }
    if (std::ferror(m_in) != 0) {
        const bool interrupted = errno == EINTR;
        std::clearerr(m_in);
        return interrupted ? ELine::INTERRUPTED : ELine::FAILED;
    }
    if (at_end) {
        return ELine::END;
    }
    // Scripts from other systems end their lines with a carriage return too.
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return too_long ? ELine::TOO_LONG : ELine::READ;
}

// Some editors begin a file with U+FEFF, which nobody sees.
void CStreamReader::SkipByteOrderMark() {
    if (m_begun) {
        return;
    }
    m_begun = true;
    constexpr std::array<int, 3> MARK = {0xEF, 0xBB, 0xBF};
    const int first = std::getc(m_in);
    if (first != MARK[0]) {
        std::ungetc(first, m_in);
        return;
    }
    // No command begins with this byte, so what follows it need not be kept.
    for (size_t i = 1; i < MARK.size(); ++i) {
        const int c = std::getc(m_in);
        if (c != MARK[i]) {
            std::ungetc(c, m_in);
            return;
        }
    }
}
