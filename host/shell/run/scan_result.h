// What a scan found out about one wire.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

enum class EScanMark : uint8_t {
    NOT_ASKED,
    SILENT,
    ANSWERS,
    ABOVE,   // has it nearer to the root bus, not asked
    OWNED,   // by a driver of the kernel, not asked
    FAILED,  // the bus did
};

struct CScanCell {
    EScanMark mark = EScanMark::NOT_ASKED;
    std::string text;  // the driver, or the reason of a failure
    std::string name;  // of what the board's description has here
};

struct CScannedWire {
    static constexpr size_t ADDRESSES = 128;

    std::string path;
    std::array<CScanCell, ADDRESSES> cells;
    bool is_behind = false;  // a multiplexer, as a channel of it is
    bool is_reached = false;
    std::string error;  // why it was not reached, or not asked to the end
    std::string note;   // why some addresses were not asked on purpose

    bool Has(EScanMark mark) const {
        for (const CScanCell& cell : cells) {
            if (cell.mark == mark) {
                return true;
            }
        }
        return false;
    }
};
