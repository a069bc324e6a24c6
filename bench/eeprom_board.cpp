#include "bench/eeprom_board.h"

#include <algorithm>

#include "bench/quick_memory.h"
#include "boards/sim/sim_at24.h"
#include "boards/sim/sim_mux.h"

CEepromBoard::CEepromBoard(EMemory memory) {
    CSimSegment* wire = &m_bus.Segment();
    CMuxChip& top = AddMux(m_bus, wire, "pca9547", 0x70, -1, 1);
    CMuxChip& low = AddMux(*top.getChannelMenu(1), wire, "pca9548", 0x71, 1, 2);
    if (memory == QUICK) {
        wire->Add(std::make_unique<CQuickMemory>(EEPROM_ADDR));
    } else {
        AddMemory(*wire, "24c64", EEPROM_ADDR);
    }
    AddMemory(*wire, "24c02", REGISTER_ADDR);
    m_bus.DeclareEeprom({EEPROM_ADDR, 1, 2, 32});

    i2c_eeprom_attr_t attr;
    attr.mem_size = SIZE;
    attr.xfer_size = XFER_SIZE;
    m_eeprom =
        new CBoardEeprom("eeprom", "a 24C64", board_place_t{&low, 2, EEPROM_ADDR}, attr, false);
    low.getChannelMenu(2)->AddChild(m_eeprom, CDiagObj::NO_SORT);
    m_registers = std::make_unique<CDiagI2cSlaveAccess>(&low, &low);
    m_registers->Configure(2, REGISTER_ADDR);
}

bool CEepromBoard::ReadMemory(byte_t* to, uint16_t length) {
    return m_eeprom->EnablePath() && m_eeprom->ReadMemory(0, to, length) && m_eeprom->ClearPath();
}

// Goes on to the wire behind channel `ch`.
CMuxChip& CEepromBoard::AddMux(CDiagMenu& menu, CSimSegment*& wire, const char* part, uint8_t addr,
                               int8_t upstream_ch, uint8_t ch) {
    auto* driver = new CMuxChip(*FindMuxPart(part), part, "multiplexer", addr, addr, upstream_ch);
    menu.AddChild(driver, CDiagObj::NO_SORT);
    CSimMux& chip = wire->Add(std::make_unique<CSimMux>(*FindSimMuxPart(part), addr));
    wire = &chip.Channel(ch);
    return *driver;
}

void CEepromBoard::AddMemory(CSimSegment& wire, const char* part_name, uint8_t addr) {
    const sim_at24_part_t& part = *FindSimAt24Part(part_name);
    wire.Add(std::make_unique<CSimAt24>(
        part, addr, std::make_unique<CSimMemory>(m_folder / part_name, part.size), m_bus.Clock()));
}
