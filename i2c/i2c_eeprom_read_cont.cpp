#include "i2c/i2c_eeprom_read_cont.h"

#include "framework/diag_command.h"
#include "i2c/diag_i2c_eeprom_device.h"
#include "i2c/told_path.h"

CDiagI2cEepromReadCont::CDiagI2cEepromReadCont(uint32_t mem_size)
    : CTimedTest("read-cont", "Read EEPROM continuously for specified amount of time", "", true),
      m_mem_size(mem_size) {
    AddDeviceAccess("..", DEV_LOCK_ACCESS, true);
}

bool CDiagI2cEepromReadCont::TestSetupEx(CInMsg&) {
    m_pDev = &ParentDeviceOf<CDiagI2cEepromDevice>(*this);
    m_offset = 0;
    return true;
}

bool CDiagI2cEepromReadCont::TestExecute() {
    if (!OpenPathOrTell(*this, *m_pDev)) {
        return false;
    }
    const auto size = static_cast<uint16_t>(m_buf.size());
    const bool ok = m_pDev->ReadMemory(m_offset, m_buf.data(), size);
    if (!ok) {
        SendLog(LW_ERR_TEST, "ERROR: Failed to read %u bytes at offset %u", size, m_offset);
    }
    m_offset = static_cast<uint16_t>(m_offset + size);
    if (m_offset >= m_mem_size) {
        m_offset = 0;
    }
    if (!ClosePathOrTell(*this, *m_pDev)) {
        return false;
    }
    return ok;
}
