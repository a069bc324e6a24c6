#include "i2c/slave_path.h"

#include "framework/diag_device.h"
#include "framework/diag_log_word.h"
#include "i2c/diag_i2c_switch.h"

namespace {

bool NeedsPath(const CI2cDevice* bus, int8_t ch) {
    return ch != -1 && !bus->m_is_master;
}

}  // namespace

bool EnableSlavePath(const CDiagDevice& slave, CI2cDevice* bus, int8_t ch) {
    if (!NeedsPath(bus, ch)) {
        return true;
    }
    slave.SendLog(LW_SW_TRACE, "(%s): enable upstream switch %s channel = %d\n", slave.GetName(),
                  bus->GetName(), ch);
    return static_cast<CDiagI2cSwitch*>(bus)->EnablePath(ch);
}

bool ClearSlavePath(const CDiagDevice& slave, CI2cDevice* bus, int8_t ch) {
    if (!NeedsPath(bus, ch)) {
        return true;
    }
    slave.SendLog(LW_SW_TRACE, "(%s): clear upstream switch %s channel = %d\n", slave.GetName(),
                  bus->GetName(), ch);
    return static_cast<CDiagI2cSwitch*>(bus)->ClearPath();
}
