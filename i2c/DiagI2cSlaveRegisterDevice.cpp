#include "i2c/DiagI2cSlaveRegisterDevice.h"

#include "framework/diag_log_word.h"
#include "i2c/diag_i2c_device.h"
#include "i2c/i2c_register_commands.h"
#include "i2c/slave_path.h"

CDiagI2cSlaveRegisterDevice::CDiagI2cSlaveRegisterDevice(const std::string& n, const std::string& d,
                                                         diag_regtable_st* regt, CI2cDevice* i2cDev)
    : CDiagRegisterDevice(n, d, regt), m_i2cDev(i2cDev) {
    // Those of the register device know no path.
    for (const char* name : {"regpeek", "regpoke", "regset", "regclr"}) {
        if (const CDiagObj* child = FindChild(name)) {
            RemoveChild(child->GetId());
        }
    }
    AddChild(new CI2cSalvePeekRegCmd(this, "regpeek", "Peek Register Value"), NO_SORT);
    AddChild(new CI2cSalvePokeRegCmd(this, "regpoke", "Poke Register Value"), NO_SORT);
    AddChild(new CI2cSalveSetBitsRegCmd(this, "regset", "Set Bits in a Register"), NO_SORT);
    AddChild(new CI2cSalveClrBitsRegCmd(this, "regclr", "Clear Bits in a Register"), NO_SORT);
    AddPathCommands(*this, m_i2cDev->m_is_master);
}

bool CDiagI2cSlaveRegisterDevice::EnablePath() {
    return EnableSlavePath(*this, m_i2cDev, m_i2c_ch);
}

bool CDiagI2cSlaveRegisterDevice::ClearPath() {
    return ClearSlavePath(*this, m_i2cDev, m_i2c_ch);
}

bool CDiagI2cSlaveRegisterDevice::dumpRegs(uint32_t logType, std::string name) {
    if (!EnablePath()) {
        SendLog(LW_ERR_SW, "  Error when enabling I2C path!\n");
        return false;
    }
    const bool dumped = CDiagRegisterDevice::dumpRegs(logType, std::move(name));
    if (!ClearPath()) {
        SendLog(LW_ERR_SW, "  Error when clearing I2C path!\n");
        return false;
    }
    return dumped;
}
