#include "boards/chips/port_expander.h"

#include "framework/diag_log_word.h"

namespace {

constexpr uint8_t PORT_WIDTH = 8;

uint8_t Merged(uint8_t old, uint8_t val, uint8_t msk) {
    return static_cast<uint8_t>((old & ~msk) | (val & msk));
}

void TellPorts(const CDiagDevice& chip, int ports) {
    chip.SendLog(LW_ERR_SW, "ports are 0 to %d\n", ports - 1);
}

}  // namespace

CPortExpander::CPortExpander(const register_part_t& part, const std::string& name,
                             const std::string& description, const board_place_t& place)
    : CRegisterChipOf(part, name, description, place) {
    m_num_ports = static_cast<uint8_t>(getRegEntry("input")->num_regs);
    m_port_width = PORT_WIDTH;
}

bool CPortExpander::HasPort(int port) const {
    const bool has = port >= 0 && port < m_num_ports;
    if (!has) {
        TellPorts(*this, m_num_ports);
    }
    return has;
}

uint32_t CPortExpander::ReadIoPort(int port, uint8_t* val) {
    diag_regdata_t pins = 0;
    if (!HasPort(port) || !readRegEntry(&pins, getRegEntry("input"), static_cast<uint32_t>(port))) {
        return 0;
    }
    *val = static_cast<uint8_t>(pins);
    return 1;
}

uint32_t CPortExpander::WriteIoPort(int port, uint8_t val, uint8_t msk) {
    if (!HasPort(port)) {
        return 0;
    }
    const auto index = static_cast<uint32_t>(port);
    diag_reg_st* output = getRegEntry("output");
    const CGuard<CMutex> guard(m_write_lock);
    diag_regdata_t latch = 0;
    if (!readRegEntry(&latch, output, index)) {
        return 0;
    }
    latch = Merged(static_cast<uint8_t>(latch), val, msk);
    return writeRegEntry(&latch, output, index) ? 1 : 0;
}

CQuasiPortExpander::CQuasiPortExpander(const register_part_t& part, const std::string& name,
                                       const std::string& description, const board_place_t& place)
    : CRegisterChipOf(part, name, description, place) {
    m_num_ports = 1;
    m_port_width = PORT_WIDTH;
}

uint32_t CQuasiPortExpander::ReadIoPort(int port, uint8_t* val) {
    if (port != 0) {
        TellPorts(*this, m_num_ports);
        return 0;
    }
    diag_regdata_t pins = 0;
    if (!readRegEntry(&pins, getRegEntry("input"), 0)) {
        return 0;
    }
    *val = static_cast<uint8_t>(pins);
    return 1;
}

uint32_t CQuasiPortExpander::WriteIoPort(int port, uint8_t val, uint8_t msk) {
    if (port != 0) {
        TellPorts(*this, m_num_ports);
        return 0;
    }
    const CGuard<CMutex> guard(m_write_lock);
    diag_regdata_t latch = Merged(m_latch, val, msk);
    return writeRegEntry(&latch, getRegEntry("output"), 0) ? 1 : 0;
}

bool CQuasiPortExpander::readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) {
    if (reg != getRegEntry("output")) {
        return CRegisterChipOf::readRegEntry(data, reg, index);
    }
    *data = m_latch;
    return true;
}

bool CQuasiPortExpander::writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) {
    const bool ok = CRegisterChipOf::writeRegEntry(data, reg, index);
    if (ok) {
        m_latch = static_cast<uint8_t>(*data);
    }
    return ok;
}
