// An I/O port expander of the board. Ports are the chip's groups of eight pins.
#pragma once

#include <atomic>
#include <string>

#include "boards/chips/register_chip.h"
#include "framework/diag_mutex.h"
#include "io/diag_i2c_io_device.h"

// PCA9534, PCA9535, PCA9555: registers "input", "output", "polarity" and "config", one of
// each for a port. A port is read at its pins, and written into its output latch, which
// shows at the pins that "config" makes outputs.
class CPortExpander : public CRegisterChipOf<CDiagI2cIoDevice> {
  public:
    CPortExpander(const register_part_t& part, const std::string& name,
                  const std::string& description, const board_place_t& place);

    uint32_t ReadIoPort(int port, uint8_t* val) override;
    uint32_t WriteIoPort(int port, uint8_t val, uint8_t msk) override;

  private:
    bool HasPort(int port) const;

    CMutex m_write_lock;  // from reading a latch to writing it back
};

// PCF8574: one port, its registers "input" and "output" at the one place. The chip does not
// give its latch back, so "output" reads as what was last written from here; at first as
// after power-on.
class CQuasiPortExpander : public CRegisterChipOf<CDiagI2cIoDevice> {
  public:
    CQuasiPortExpander(const register_part_t& part, const std::string& name,
                       const std::string& description, const board_place_t& place);

    uint32_t ReadIoPort(int port, uint8_t* val) override;
    uint32_t WriteIoPort(int port, uint8_t val, uint8_t msk) override;
    bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override;
    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override;

  private:
    CMutex m_write_lock;
    std::atomic<uint8_t> m_latch = 0xFF;
};
