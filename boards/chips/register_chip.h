// A register-mapped chip of the board: one of the parts at its place, as any of the
// library's register devices.
#pragma once

#include <string>
#include <vector>

#include "boards/chips/board_place.h"
#include "boards/chips/register_access.h"
#include "boards/chips/register_part.h"
#include "i2c/DiagI2cSlaveRegisterDevice.h"

// The device's own copy of a table, there before the device is.
class CRegisterTable {
  protected:
    explicit CRegisterTable(const register_part_t& part)
        : m_registers(part.registers.begin(), part.registers.end()),
          m_regt{m_registers.data(), static_cast<uint32_t>(m_registers.size())} {}

    std::vector<diag_reg_st> m_registers;
    diag_regtable_st m_regt;
};

// `Device` is made from name, description, table and bus.
template <class Device>
class CRegisterChipOf : private CRegisterTable, public Device {
  public:
    CRegisterChipOf(const register_part_t& part, const std::string& name,
                    const std::string& description, const board_place_t& place)
        : CRegisterTable(part),
          Device(name, description, &m_regt, place.bus),
          m_access(*this, place) {
        this->m_i2c_ch = place.channel;
        this->m_i2c_addr = place.addr;
    }

    bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        return m_access.Read(*reg, index, *data);
    }
    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        return m_access.Write(*reg, index, *data);
    }

  private:
    const CRegisterAccess m_access;
};

using CRegisterChip = CRegisterChipOf<CDiagI2cSlaveRegisterDevice>;
