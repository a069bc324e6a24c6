// The commands "enable-path" and "clr-path" of a device behind a switch.
#pragma once

#include <string>

#include "framework/diag_command.h"
#include "framework/diag_func.h"

template <class Device>
class CEnablePathCmdOf : public CDiagFunc {
  public:
    CEnablePathCmdOf(const std::string& name, const std::string& description)
        : CDiagFunc(name, description, SHARES_DEVICE) {}

    void Invoke(CInMsg&, COutMsg& out) override {
        auto& device = ParentDeviceOf<Device>(*this);
        AnswerWorkOf(*this, out, [&] {
            const bool ok = device.EnablePath();
            if (!ok) {
                SendLog(LW_PRINT, "  Error when enabling I2C path!\n");
            }
            return ok;
        });
    }
};

template <class Device>
class CClearPathCmdOf : public CDiagFunc {
  public:
    CClearPathCmdOf(const std::string& name, const std::string& description)
        : CDiagFunc(name, description, SHARES_DEVICE) {}

    void Invoke(CInMsg&, COutMsg& out) override {
        auto& device = ParentDeviceOf<Device>(*this);
        AnswerWorkOf(*this, out, [&] {
            const bool ok = device.ClearPath();
            if (!ok) {
                SendLog(LW_PRINT, "  Error when clearing I2C path!\n");
            }
            return ok;
        });
    }
};

// Adds both to a device behind a switch; on a root bus there is no path.
template <class Device>
void AddPathCommands(Device& device, bool on_root_bus) {
    if (on_root_bus) {
        return;
    }
    device.AddChild(
        new CEnablePathCmdOf<Device>("enable-path", "enable I2c switch path for the device"),
        CDiagObj::NO_SORT);
    device.AddChild(new CClearPathCmdOf<Device>("clr-path", "clear I2c switch path for the device"),
                    CDiagObj::NO_SORT);
}
