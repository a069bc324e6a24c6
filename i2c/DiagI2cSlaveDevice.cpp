#include "i2c/DiagI2cSlaveDevice.h"

#include "framework/diag_command.h"
#include "i2c/diag_i2c_switch.h"

CDiagI2cSlaveDevice::CDiagI2cSlaveDevice(const std::string& n, const std::string& d,
                                         CI2cDevice* i2cDev)
    : CDiagDevice(n, d, TDEVICE), m_i2cDev(i2cDev) {
    if (!m_i2cDev->m_is_master) {
        AddChild(new CEnablePathCmd("enable-path", "enable I2c switch path for the device"),
                 NO_SORT);
        AddChild(new CClearPathCmd("clr-path", "clear I2c switch path for the device"), NO_SORT);
    }
}

bool CDiagI2cSlaveDevice::EnablePath() {
    if (m_i2c_ch == -1 || m_i2cDev->m_is_master) {
        return true;
    }
    SendLog(LW_SW_TRACE, "(%s): enable upstream switch %s channel = %d\n", GetName(),
            m_i2cDev->GetName(), m_i2c_ch);
    return static_cast<CDiagI2cSwitch*>(m_i2cDev)->EnablePath(m_i2c_ch);
}

bool CDiagI2cSlaveDevice::ClearPath() {
    if (m_i2c_ch == -1 || m_i2cDev->m_is_master) {
        return true;
    }
    SendLog(LW_SW_TRACE, "(%s): clear upstream switch %s channel = %d\n", GetName(),
            m_i2cDev->GetName(), m_i2c_ch);
    return static_cast<CDiagI2cSwitch*>(m_i2cDev)->ClearPath();
}

CEnablePathCmd::CEnablePathCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {}

void CEnablePathCmd::Invoke(CInMsg&, COutMsg& out) {
    auto& slave = ParentDeviceOf<CDiagI2cSlaveDevice>(*this);
    AnswerWorkOf(*this, out, [&] {
        const bool ok = slave.EnablePath();
        if (!ok) {
            SendLog(LW_PRINT, "  Error when enabling I2C path!\n");
        }
        return ok;
    });
}

CClearPathCmd::CClearPathCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {}

void CClearPathCmd::Invoke(CInMsg&, COutMsg& out) {
    auto& slave = ParentDeviceOf<CDiagI2cSlaveDevice>(*this);
    AnswerWorkOf(*this, out, [&] {
        const bool ok = slave.ClearPath();
        if (!ok) {
            SendLog(LW_PRINT, "  Error when clearing I2C path!\n");
        }
        return ok;
    });
}
