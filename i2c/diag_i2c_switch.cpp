#include "i2c/diag_i2c_switch.h"

CDiagI2cSwitch::CDiagI2cSwitch(const std::string& name, const std::string& description)
    : CI2cDevice(name, description) {
    m_is_master = false;
}
