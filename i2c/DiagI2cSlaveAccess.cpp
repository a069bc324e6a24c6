#include "i2c/DiagI2cSlaveAccess.h"

#include "framework/diag_log_word.h"
#include "i2c/diag_i2c_switch.h"

CDiagI2cSlaveAccess::CDiagI2cSlaveAccess(CDiagMenu* papa, CI2cDevice* i2cDev)
    : m_papa(papa), m_i2cDev(i2cDev) {}

void CDiagI2cSlaveAccess::Configure(int8_t ch, int8_t addr) {
    m_i2c_ch = ch;
    m_i2c_addr = static_cast<uint8_t>(addr);
}

bool CDiagI2cSlaveAccess::EnablePath() {
    if (m_i2c_ch == -1 || m_i2cDev->m_is_master) {
        return true;
    }
    m_papa->SendLog(LW_SW_TRACE, "Slave Access: enable upstream switch %s channel = %d\n",
                    m_i2cDev->GetName(), m_i2c_ch);
    return static_cast<CDiagI2cSwitch*>(m_i2cDev)->EnablePath(m_i2c_ch);
}

bool CDiagI2cSlaveAccess::ClearPath() {
    if (m_i2c_ch == -1 || m_i2cDev->m_is_master) {
        return true;
    }
    m_papa->SendLog(LW_SW_TRACE, "Slave Access: clear upstream switch %s channel = %d\n",
                    m_i2cDev->GetName(), m_i2c_ch);
    return static_cast<CDiagI2cSwitch*>(m_i2cDev)->ClearPath();
}

bool CDiagI2cSlaveAccess::ReadReg(uint8_t rn, uint8_t* pData) {
    return I2cXfer(rn, false, pData);
}

bool CDiagI2cSlaveAccess::WriteReg(uint8_t rn, uint8_t data) {
    byte_t copy = data;
    return I2cXfer(rn, true, &copy);
}

bool CDiagI2cSlaveAccess::I2cXfer(uint8_t rn, bool wr, byte_t* pData) {
    CI2cXfrReq req;
    req.saddr = m_i2c_addr;
    req.cmd_sel = 1;
    req.cmd = rn;
    req.data = pData;
    req.tsize = 1;
    req.switch_ch = m_i2c_ch;
    req.dir = wr ? 0 : 1;

    const CGuard<CMutex> guard(m_i2cDev->m_lock);
    const bool ok = m_i2cDev->I2cTrans(req);
    if (!ok) {
        // Operators' scripts look for this wording, after a write too.
        m_papa->SendLog(LW_ERR_TEST, "Failed to read reg.0x%02x: %s", rn, req.errmsg);
    }
    return ok;
}
