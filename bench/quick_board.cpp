// A board with one EEPROM on a simulated bus, whose chip costs next to nothing:
//   i2c-0/eeprom/memory
#include <memory>

#include "bench/quick_memory.h"
#include "boards/chips/board_eeprom.h"
#include "boards/sim/sim_bus.h"
#include "framework/diag_board.h"

extern "C" CDiagMenu* morva_board_create(int, const char* const*) {
    constexpr uint8_t ADDR = 0x50;
    constexpr uint16_t SIZE = 8192;
    constexpr uint8_t XFER_SIZE = 32;

    auto* root = new CDiagMenu(TMENU, "quick", "a board with a quick memory");
    auto* bus = new CSimBus("i2c-0", "simulated bus", 100'000);
    root->AddChild(bus, CDiagObj::NO_SORT);
    bus->Segment().Add(std::make_unique<CQuickMemory>(ADDR));
    bus->DeclareEeprom({ADDR, 1, 2, XFER_SIZE});

    i2c_eeprom_attr_t attr;
    attr.mem_size = SIZE;
    attr.xfer_size = XFER_SIZE;
    bus->AddChild(new CBoardEeprom("eeprom", "a 24C64", board_place_t{bus, -1, ADDR}, attr, false),
                  CDiagObj::NO_SORT);
    return root;
}
