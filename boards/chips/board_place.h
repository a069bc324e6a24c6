// Where a chip of the board sits.
#pragma once

#include <cstdint>

class CI2cDevice;

struct board_place_t {
    CI2cDevice* bus;  // the root bus or the switch that it hangs on, not owned
    int8_t channel;   // of the switch; -1 on a root bus
    uint8_t addr;     // 7 bits
};
