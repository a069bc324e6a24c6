#include "host/shell/table.h"

#include <algorithm>

#include "host/shell/screen_text.h"

namespace {

constexpr size_t GAP = 2;
// What remains of a last cell at least, however narrow the screen.
constexpr size_t SHORTEST_CUT = 16;

}  // namespace

std::string CTable::Text(unsigned int columns) const {
    if (m_lines.empty()) {
        return "";
    }
    const size_t last = m_lines.front().size() - 1;
    std::vector<size_t> begins(last + 1);
    for (size_t i = 0; i < last; ++i) {
        size_t width = 0;
        for (const auto& cells : m_lines) {
            width = std::max(width, ColumnsOf(cells[i]));
        }
        begins[i + 1] = begins[i] + (width == 0 ? 0 : width + GAP);
    }
    const size_t room = columns > begins[last] ? columns - begins[last] : 0;
    std::string text;
    for (const auto& cells : m_lines) {
        std::string line;
        for (size_t i = 0; i < last; ++i) {
            line += cells[i];
            line.append(begins[i + 1] - begins[i] - ColumnsOf(cells[i]), ' ');
        }
        line += columns == 0 ? cells[last] : Shortened(cells[last], std::max(room, SHORTEST_CUT));
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}
