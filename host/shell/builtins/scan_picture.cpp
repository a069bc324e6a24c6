#include "host/shell/builtins/scan_picture.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <utility>

#include "framework/fmt_output.h"

namespace {

constexpr size_t COLUMNS = 16;
constexpr size_t WIDTH = 76;
constexpr const char* INDENT = "     ";

std::string Hex(const char* format, size_t addr) {
    CFmtString text;
    text.printf(format, static_cast<unsigned int>(addr));
    return text.c_str();
}

std::string MarkOf(const CScanCell& cell, size_t addr) {
    switch (cell.mark) {
        case EScanMark::NOT_ASKED:
            break;
        case EScanMark::SILENT:
            return "--";
        case EScanMark::ANSWERS:
            return Hex("%02x", addr);
        case EScanMark::ABOVE:
            return "^^";
        case EScanMark::OWNED:
            return "UU";
        case EScanMark::FAILED:
            return "!!";
    }
    return "  ";
}

bool IsOnTheWire(const CScanCell& cell) {
    return cell.mark == EScanMark::ANSWERS || cell.mark == EScanMark::OWNED ||
           cell.mark == EScanMark::FAILED;
}

std::string Row(const CScannedWire& wire, size_t first) {
    std::string row = Hex("%02x:", first);
    for (size_t addr = first; addr < first + COLUMNS; ++addr) {
        row += " " + MarkOf(wire.cells[addr], addr);
    }
    return row.substr(0, row.find_last_not_of(' ') + 1) + "\n";
}

// Behind a multiplexer, where most boards have many wires with little on each, rows
// without an answer are left out.
std::string Grid(const CScannedWire& wire) {
    std::string grid = INDENT;
    for (size_t column = 0; column < COLUMNS; ++column) {
        grid += Hex(column == 0 ? "%x" : "  %x", column);
    }
    grid += "\n";
    for (size_t first = 0; first < wire.cells.size(); first += COLUMNS) {
        const auto begin = wire.cells.begin() + static_cast<std::ptrdiff_t>(first);
        if (!wire.is_behind || std::any_of(begin, begin + COLUMNS, IsOnTheWire)) {
            grid += Row(wire, first);
        }
    }
    return grid;
}

// Entries one behind the other, in rows that fit a screen.
class CParagraph {
  public:
    void Add(const std::string& entry) {
        if (m_row.empty()) {
            m_row = INDENT + entry;
        } else if (m_row.size() + 2 + entry.size() <= WIDTH) {
            m_row += ", " + entry;
        } else {
            m_text += m_row + ",\n";
            m_row = INDENT + entry;
        }
    }
    std::string Text() const { return m_row.empty() ? "" : m_text + m_row + "\n"; }

  private:
    std::string m_text;
    std::string m_row;
};

// "0x50 mfg-eeprom", with the driver of those that have one.
std::string Present(const CScannedWire& wire) {
    CParagraph names;
    for (size_t addr = 0; addr < wire.cells.size(); ++addr) {
        const CScanCell& cell = wire.cells[addr];
        const bool owned = cell.mark == EScanMark::OWNED;
        if (owned || (cell.mark == EScanMark::ANSWERS && !cell.name.empty())) {
            names.Add(Hex("0x%02x", addr) + (cell.name.empty() ? "" : " " + cell.name) +
                      (owned ? " (driver " + cell.text + ")" : ""));
        }
    }
    return names.Text();
}

std::string LineOf(const std::string& what, const std::string& text) {
    return text.empty() ? "" : INDENT + what + text + "\n";
}

// What the description has and nobody answers for: "0x51 spd-1, 0x53 spd-2".
std::string Missing(const CScannedWire& wire) {
    std::string text;
    for (size_t addr = 0; addr < wire.cells.size(); ++addr) {
        const CScanCell& cell = wire.cells[addr];
        if (cell.mark == EScanMark::SILENT && !cell.name.empty()) {
            text += (text.empty() ? "" : ", ") + Hex("0x%02x ", addr) + cell.name;
        }
    }
    return text;
}

// Rising addresses as "0x08, 0x10 to 0x17".
std::string Ranges(const std::vector<size_t>& addresses) {
    std::string text;
    for (size_t i = 0; i < addresses.size(); ++i) {
        const size_t first = i;
        while (i + 1 < addresses.size() && addresses[i + 1] == addresses[i] + 1) {
            ++i;
        }
        text += (text.empty() ? "" : ", ") + Hex("0x%02x", addresses[first]) +
                (i == first ? "" : Hex(" to 0x%02x", addresses[i]));
    }
    return text;
}

// "failed at 0x08, 0x10 to 0x17: bus stuck low", a line for each reason.
std::string Failures(const CScannedWire& wire) {
    std::map<std::string, std::vector<size_t>> by_reason;
    for (size_t addr = 0; addr < wire.cells.size(); ++addr) {
        const CScanCell& cell = wire.cells[addr];
        if (cell.mark == EScanMark::FAILED) {
            by_reason[cell.text].push_back(addr);
        }
    }
    std::string text;
    for (const auto& [reason, addresses] : by_reason) {
        text += LineOf("failed at ", Ranges(addresses) + ": " + reason);
    }
    return text;
}

bool HasGrid(const CScannedWire& wire) {
    return std::any_of(wire.cells.begin(), wire.cells.end(), IsOnTheWire);
}

std::string WithGrid(const CScannedWire& wire) {
    return wire.path + "\n" + Grid(wire) + Present(wire) +
           LineOf("no answer from ", Missing(wire)) + Failures(wire) + LineOf("", wire.error) +
           LineOf("", wire.note);
}

// What there is to be said of a wire that has no grid.
std::string Remark(const CScannedWire& wire) {
    if (!wire.error.empty()) {
        return wire.error;
    }
    const std::string missing = Missing(wire);
    const std::string text = "nothing answers" + (missing.empty() ? "" : ", not even " + missing);
    return wire.note.empty() ? text : text + ", where it could be asked; " + wire.note;
}

bool AreAlike(const CScannedWire& one, const CScannedWire& other) {
    const auto above = [](const CScannedWire& wire) {
        return wire.path.substr(0, wire.path.rfind('/'));
    };
    return !HasGrid(other) && above(one) == above(other) && Remark(one) == Remark(other);
}

std::string Legend(const std::vector<CScannedWire>& wires) {
    struct CEntry {
        EScanMark mark;
        const char* text;
    };
    static const std::vector<CEntry> entries = {
        {EScanMark::ABOVE, "^^ answers nearer to the root bus already, not asked here\n"},
        {EScanMark::OWNED, "UU a driver of the kernel works with it, not asked\n"},
        {EScanMark::FAILED, "!! the bus failed, whether it answers is not known\n"},
    };
    std::string legend;
    for (const CEntry& entry : entries) {
        const bool shows = std::any_of(
            wires.begin(), wires.end(),
            [&entry](const CScannedWire& wire) { return HasGrid(wire) && wire.Has(entry.mark); });
        legend += shows ? entry.text : "";
    }
    return legend.empty() ? "" : "\n" + legend;
}

}  // namespace

std::string ScanPicture(const std::vector<CScannedWire>& wires) {
    std::string picture;
    bool after_grid = false;
    for (auto wire = wires.begin(); wire != wires.end(); ++wire) {
        const bool grid = HasGrid(*wire);
        if (!picture.empty() && (grid || after_grid)) {
            picture += "\n";
        }
        after_grid = grid;
        if (grid) {
            picture += WithGrid(*wire);
            continue;
        }
        // Several beside each other, of which the same is to be said: "/i2c-0/mux/ch2 to ch7".
        const auto first = wire;
        while (std::next(wire) != wires.end() && AreAlike(*first, *std::next(wire))) {
            ++wire;
        }
        picture += first->path;
        if (wire != first) {
            picture += " to " + wire->path.substr(wire->path.rfind('/') + 1);
        }
        picture += ": " + Remark(*first) + "\n";
    }
    return picture + Legend(wires);
}
