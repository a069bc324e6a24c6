#include "host/shell/line_reader.h"

ELine CStreamReader::Read(const std::string&, std::string& line) {
    line.clear();
    bool too_long = false;
    int c = std::getc(m_in);
    if (c == EOF) {
        return std::ferror(m_in) != 0 ? ELine::FAILED : ELine::END;
    }
    for (; c != EOF && c != '\n'; c = std::getc(m_in)) {
        too_long = too_long || line.size() == MAX_LINE;
        if (!too_long) {
            line += static_cast<char>(c);
        }
    }
    // Scripts from other systems end their lines with a carriage return too.
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return too_long ? ELine::TOO_LONG : ELine::READ;
}
