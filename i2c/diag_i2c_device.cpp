#include "i2c/diag_i2c_device.h"

#include <algorithm>

#include "framework/diag_command.h"
#include "framework/diag_func.h"
#include "framework/diag_param.h"
#include "i2c/diag_i2c_switch.h"
#include "i2c/i2c_probe_read.h"
#include "i2c/i2c_trans_cmd.h"

namespace {

// Where multiplexers live; they are the devices a probe must not disturb.
constexpr uint8_t FIRST_SWITCH_ADDR = 0x70;
constexpr uint8_t LAST_SWITCH_ADDR = 0x77;

template <class Action>
void ForEachSwitch(const CDiagObj& node, Action action) {
    for (CDiagObj* child : node.GetChildren()) {
        if (auto* i2c_switch = dynamic_cast<CDiagI2cSwitch*>(child)) {
            action(*i2c_switch);
        }
    }
}

class CCheckDevCmd : public CDiagFunc {
  public:
    CCheckDevCmd(const std::string& name, const std::string& description)
        : CDiagFunc(name, description, SHARES_DEVICE) {
        AddChild(new CDiagParam(VT_UINT8, "addr", "device address", PT_IN), NO_SORT);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        uint8_t addr = 0;
        try {
            in >> addr;
        } catch (const CDiagException& e) {
            SendLog(LW_ERR_SW, "%s", e.what());
            AnswerResult(out, false);
            return;
        }
        auto& bus = ParentDeviceOf<CI2cDevice>(*this);
        AnswerWorkOf(*this, out, [&] {
            const bool found = bus.check_dev(addr);
            if (!found) {
                SendLog(LW_PRINT, "   check device error!\n");
            }
            return found;
        });
    }
};

class CProbeCmd : public CDiagFunc {
  public:
    CProbeCmd(const std::string& name, const std::string& description)
        : CDiagFunc(name, description, SHARES_DEVICE) {}

    void Invoke(CInMsg&, COutMsg& out) override {
        auto& bus = ParentDeviceOf<CI2cDevice>(*this);
        AnswerWorkOf(*this, out, [&] {
            bus.ClearAllDeviceAddrList();
            if (!bus.DisableAllSwitches()) {
                SendLog(LW_PRINT, "   disabling switches error!\n");
                return false;
            }
            const bool ok = bus.probe(0);
            if (!ok) {
                SendLog(LW_PRINT, "   probe devices error!\n");
            }
            return ok;
        });
    }
};

class CI2cSetSwModeCmd : public CDiagFunc {
  public:
    static constexpr uint8_t LAST_MODE = 3;

    CI2cSetSwModeCmd(const std::string& name, const std::string& description)
        : CDiagFunc(name, description, SHARES_DEVICE) {
        AddChild(new CDiagParam(VT_UINT8, "mode", "0-3", PT_IN | PT_OPTIONAL), NO_SORT);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        auto& bus = ParentDeviceOf<CI2cDevice>(*this);
        AnswerWorkOf(*this, out, [&] {
            if (in.GetLen() == 0) {
                bus.ShowSwMode();
                return true;
            }
            uint8_t mode = 0;
            in >> mode;
            SendLog(LW_PRINT, "I2C: switch mode = %d\n", mode);
            if (mode > LAST_MODE) {
                SendLog(LW_ERR_SW, "ERROR: mode arg must be less than 3!\n");
                return false;
            }
            bus.SetSwMode(mode);
            return true;
        });
    }
};

}  // namespace

CI2cDevice::CI2cDevice(const std::string& name, const std::string& description)
    : CDiagDevice(name, description, TDEVICE) {
    AddChild(new CCheckDevCmd("chk-dev", "check an I2c device"), NO_SORT);
    AddChild(new CProbeCmd("probe", "probe I2c devices"), NO_SORT);
    AddChild(new CI2cTransCmd("trans", "transfer an I2c command"), NO_SORT);
    AddChild(new CI2cSetSwModeCmd("set-sw-mode", "Set I2c Switch mode"), NO_SORT);
}

bool CI2cDevice::check_dev(uint8_t addr) {
    CI2cProbeRead read;
    SendLog(LW_PRINT, "%s: Check device with address = 0x%x\n", "check_dev", addr);
    const bool found = read.Answers(*this, addr);
    if (found) {
        SendLog(LW_PRINT, "         device with addr = 0x%x found \n", addr);
    } else {
        SendLog(LW_PRINT, "         device with addr = 0x%x not found \n", addr);
    }
    SendLog(LW_PRINT, "%s: exit\n", "check_dev");
    return found;
}

bool CI2cDevice::probe(int) {
    CI2cProbeRead read;
    for (uint8_t addr = FIRST_PROBE_ADDR; addr <= LAST_PROBE_ADDR; ++addr) {
        if (read.Answers(*this, addr)) {
            SendLog(LW_PRINT, "         device with addr = 0x%x found \n", addr);
            AddMyDeviceAddr(addr);
        }
    }
    ForEachSwitch(*this, [this](CDiagI2cSwitch& i2c_switch) {
        SendLog(LW_PRINT, "%s: probe devices from switch %s (addr=0x%x) \n", GetName(),
                i2c_switch.GetName(), i2c_switch.getI2cAddr());
        i2c_switch.probe(1);
    });
    return true;
}

bool CI2cDevice::DisableAllSwitches() {
    ForEachSwitch(*this, [this](CDiagI2cSwitch& i2c_switch) {
        SendLog(LW_PRINT, "(%s:%s): turn off all downstream channels for immediate switch %s \n",
                GetName(), "DisableAllSwitches", i2c_switch.GetName());
        i2c_switch.DisableChannels();
        // A known switch shall not be reported as an unknown device below.
        AddMyDeviceAddr(i2c_switch.getI2cAddr());
    });

    CI2cProbeRead read;
    for (uint8_t addr = FIRST_PROBE_ADDR; addr <= LAST_PROBE_ADDR; ++addr) {
        if (read.Answers(*this, addr) && addr >= FIRST_SWITCH_ADDR && addr <= LAST_SWITCH_ADDR &&
            !isOnMyDeviceList(addr)) {
            SendLog(LW_PRINT, "%s: possible switch device with addr = 0x%x\n", GetName(), addr);
            SendLog(LW_PRINT,
                    "WARNING (%s) : TAV don't know how to operate this Device! Please make sure "
                    "that the downstream channels are turned off!\n",
                    GetName());
            ShowMyDeviceAddrList();
        }
    }

    ForEachSwitch(*this, [this](CDiagI2cSwitch& i2c_switch) {
        SendLog(LW_PRINT, "(%s:%s): turn off downstream switches for switch %s\n", GetName(),
                "DisableAllSwitches", i2c_switch.GetName());
        i2c_switch.DisableAllSwitches();
    });
    return true;
}

void CI2cDevice::SetSwMode(uint8_t mode) {
    SendLog(LW_PRINT, "(%s): SetSwMode\n", GetName());
    ForEachSwitch(*this, [this, mode](CDiagI2cSwitch& i2c_switch) {
        SendLog(LW_PRINT, "(%s:%s): set switch %s(0x%x) mode to %d\n", GetName(), "SetSwMode",
                i2c_switch.GetName(), i2c_switch.getI2cAddr(), mode);
        i2c_switch.SetSwMode(mode);
    });
}

void CI2cDevice::ShowSwMode() {
    SendLog(LW_PRINT, "(%s): ShowSwMode\n", GetName());
    ForEachSwitch(*this, [this](CDiagI2cSwitch& i2c_switch) {
        SendLog(LW_PRINT, "(%s:%s): show switch %s(0x%x) mode \n", GetName(), "ShowSwMode",
                i2c_switch.GetName(), i2c_switch.getI2cAddr());
        i2c_switch.ShowSwMode();
    });
}

void CI2cDevice::AddMyDeviceAddr(uint8_t addr) {
    if (!isOnMyDeviceList(addr)) {
        m_my_device_addr.push_back(addr);
    }
}

bool CI2cDevice::isOnMyDeviceList(uint8_t addr) const {
    return std::find(m_my_device_addr.begin(), m_my_device_addr.end(), addr) !=
           m_my_device_addr.end();
}

void CI2cDevice::ShowMyDeviceAddrList() const {
    SendLog(LW_PRINT, "devices connected: ");
    for (const uint8_t addr : m_my_device_addr) {
        SendLog(LW_PRINT, "0x%2x ", addr);
    }
    SendLog(LW_PRINT, "\n");
}

void CI2cDevice::ClearAllDeviceAddrList() {
    ClearMyDeviceAddrList();
    ForEachSwitch(*this, [](CDiagI2cSwitch& i2c_switch) {
        i2c_switch.getI2cAddr();
        i2c_switch.ClearAllDeviceAddrList();
    });
}
