// What is measured: a 24C64 that moves 32 bytes at once, and a register chip,
// behind two multiplexers of a simulated bus; and the host's log as diagsh
// starts with it, on a terminal that nobody sees.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "bench/bench_bus.h"
#include "boards/chips/board_eeprom.h"
#include "boards/chips/mux_chip.h"
#include "host/terminal.h"
#include "i2c/DiagI2cSlaveAccess.h"
#include "tests/support/temp_folder.h"

class CEepromBoard {
  public:
    static constexpr uint32_t BUS_HZ = 100'000;
    static constexpr uint8_t EEPROM_ADDR = 0x50;
    static constexpr uint8_t REGISTER_ADDR = 0x51;
    static constexpr uint16_t SIZE = 8192;
    static constexpr uint8_t XFER_SIZE = 32;

    // The chip that stands for the 24C64.
    enum EMemory : uint8_t { SIMULATED, QUICK };

    explicit CEepromBoard(EMemory memory = SIMULATED);

    CBenchBus& Bus() { return m_bus; }
    CBoardEeprom& Eeprom() { return *m_eeprom; }
    CDiagI2cSlaveAccess& Registers() { return *m_registers; }

    // Opens the path, reads `length` bytes from address 0 on, closes the path.
    bool ReadMemory(byte_t* to, uint16_t length = SIZE);

  private:
    struct CFileCloser {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    CMuxChip& AddMux(CDiagMenu& menu, CSimSegment*& wire, const char* part, uint8_t addr,
                     int8_t upstream_ch, uint8_t ch);
    void AddMemory(CSimSegment& wire, const char* part, uint8_t addr);

    const CTempFolder m_folder;
    const std::unique_ptr<std::FILE, CFileCloser> m_nowhere{std::fopen("/dev/null", "we")};
    CTerminal m_terminal{m_nowhere.get(), m_nowhere.get()};
    CLogFilter m_log_filter;
    CTerminalLog m_log{m_terminal, m_log_filter};
    const CLogSinkScope m_sink{m_log};
    CBenchBus m_bus{"i2c-0", "simulated bus", BUS_HZ};
    CBoardEeprom* m_eeprom;  // a child
    std::unique_ptr<CDiagI2cSlaveAccess> m_registers;
};
