#include "i2c/DiagI2cSlaveDevice.h"

#include "i2c/diag_i2c_device.h"
#include "i2c/slave_path.h"

CDiagI2cSlaveDevice::CDiagI2cSlaveDevice(const std::string& n, const std::string& d,
                                         CI2cDevice* i2cDev)
    : CDiagDevice(n, d, TDEVICE), m_i2cDev(i2cDev) {
    AddPathCommands(*this, m_i2cDev->m_is_master);
}

bool CDiagI2cSlaveDevice::EnablePath() {
    return EnableSlavePath(*this, m_i2cDev, m_i2c_ch);
}

bool CDiagI2cSlaveDevice::ClearPath() {
    return ClearSlavePath(*this, m_i2cDev, m_i2c_ch);
}
