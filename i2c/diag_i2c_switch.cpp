#include "i2c/diag_i2c_switch.h"

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "i2c/i2c_switch_commands.h"

CDiagI2cSwitch::CDiagI2cSwitch(const std::string& name, const std::string& description,
                               uint32_t devId)
    : CDiagI2cSwitch(name, description, devId, NO_CHANNEL) {}

CDiagI2cSwitch::CDiagI2cSwitch(const std::string& name, const std::string& description,
                               uint32_t devId, int8_t upstream_ch)
    : CI2cDevice(name + "-" + toString(devId, 0), description + " " + toString(devId, 0)),
      m_devId(devId),
      m_upstream_ch(upstream_ch) {
    m_is_master = false;
    if (const CDiagObj* command = FindChild("set-sw-mode")) {
        RemoveChild(command->GetId());
    }
    AddI2cSwitchCommands(*this);
}

void CDiagI2cSwitch::ForEachSwitchOf(int ch, const std::function<void(CDiagI2cSwitch&)>& action) {
    const CDiagMenu* menu = getChannelMenu(ch);
    if (menu == nullptr) {
        return;
    }
    for (CDiagObj* child : menu->GetChildren()) {
        if (auto* downstream = dynamic_cast<CDiagI2cSwitch*>(child)) {
            action(*downstream);
        }
    }
}

void CDiagI2cSwitch::ForEachSwitch(const std::function<void(uint8_t, CDiagI2cSwitch&)>& action) {
    for (int ch = 0; ch < getNumberofChannels(); ++ch) {
        ForEachSwitchOf(
            ch, [&](CDiagI2cSwitch& downstream) { action(static_cast<uint8_t>(ch), downstream); });
    }
}

CI2cDevice* CDiagI2cSwitch::PlainParent() const {
    return dynamic_cast<CI2cDevice*>(GetParentDevice());
}

CI2cDevice* CDiagI2cSwitch::GetI2cParentDevice() {
    CDiagDevice* parent = GetParentDevice();
    if (auto* bus = dynamic_cast<CI2cDevice*>(parent)) {
        return bus;
    }
    if (parent == nullptr) {
        SendLog(LW_ERR_SW, "(%s): Inproper parent object for switch!\n", GetName());
        return nullptr;
    }
    // A channel node may be a device of the board's own.
    if (auto* upstream = dynamic_cast<CDiagI2cSwitch*>(parent->GetParentDevice())) {
        return upstream;
    }
    SendLog(LW_ERR_SW, "(%s): Inproper parent object for switch channel!\n", GetName());
    return nullptr;
}

bool CDiagI2cSwitch::FindUpstream() {
    if (m_pDev == nullptr) {
        m_pDev = GetI2cParentDevice();
    }
    return m_pDev != nullptr;
}

// Paths.

void CDiagI2cSwitch::SetPathConfigMode(uint8_t mode) {
    SendLog(LW_SW_TRACE, "%s(0x%x): SetPathConfigMode\n", GetName(), getI2cAddr());
    m_sw_mode = mode == PATH_PER_TRANSFER;
    m_auto_path = m_sw_mode ? uint8_t{PATH_BY_HAND} : mode;
    switch (mode) {
        case PATH_BY_HAND:
            SendLog(LW_SW_TRACE, "no path configuration automatically.\n");
            break;
        case PATH_PER_COMMAND:
            SendLog(LW_SW_TRACE, "Set and clear path per I2c commands.\n");
            break;
        case PATH_LEFT_OPEN:
            SendLog(LW_SW_TRACE, "Set path per I2c commands. will not clear the path.\n");
            break;
        case PATH_PER_TRANSFER:
            SendLog(LW_SW_TRACE, "Set path per every I2c transation.\n");
            break;
        default:
            break;
    }
}

void CDiagI2cSwitch::ShowPathConfigMode() {
    SendLog(LW_PRINT, "%s(0x%x): ShowPathConfigMode\n", GetName(), getI2cAddr());
    if (m_sw_mode) {
        SendLog(LW_PRINT, "3: Set path per every I2c transation.\n");
        return;
    }
    switch (m_auto_path) {
        case PATH_BY_HAND:
            SendLog(LW_PRINT, "0: no path configuration automatically.\n");
            break;
        case PATH_PER_COMMAND:
            SendLog(LW_PRINT, "1: Set and clear path per command.\n");
            break;
        case PATH_LEFT_OPEN:
            SendLog(LW_PRINT, "2: Set path per command. will not clear the path.\n");
            break;
        default:
            SendLog(LW_PRINT, "ERROR: invalid mode.\n");
    }
}

void CDiagI2cSwitch::SetSwMode(uint8_t mode) {
    SendLog(LW_SW_TRACE, "%s(0x%x): SetSwMode\n", GetName(), getI2cAddr());
    SetPathConfigMode(mode);
    ForEachSwitch([&](uint8_t, CDiagI2cSwitch& downstream) {
        SendLog(LW_SW_TRACE, "(%s:%s): set switch %s mode to %d\n", GetName(), "SetSwMode",
                downstream.GetName(), mode);
        downstream.SetSwMode(mode);
    });
}

void CDiagI2cSwitch::ShowSwMode() {
    SendLog(LW_SW_TRACE, "%s(0x%x): ShowSwMode\n", GetName(), getI2cAddr());
    ShowPathConfigMode();
    ForEachSwitch([&](uint8_t, CDiagI2cSwitch& downstream) {
        SendLog(LW_SW_TRACE, "(%s:%s): show switch %s mode \n", GetName(), "ShowSwMode",
                downstream.GetName());
        downstream.ShowSwMode();
    });
}

bool CDiagI2cSwitch::EnablePath(int ch) {
    if (m_auto_path == PATH_BY_HAND) {
        SendLog(LW_SW_TRACE, "(%s): I2C path configuraiton skipped!\n", GetName());
        return true;
    }
    if (!FindUpstream()) {
        return false;
    }
    if (m_is_probing) {
        return true;
    }
    if (!m_pDev->m_is_master) {
        SendLog(LW_SW_TRACE, "(%s): enable upstream switch %s channel = %d\n", GetName(),
                m_pDev->GetName(), m_upstream_ch);
        auto* upstream = dynamic_cast<CDiagI2cSwitch*>(m_pDev);
        if (upstream == nullptr || !upstream->EnablePath(m_upstream_ch)) {
            return false;
        }
    }
    SendLog(LW_SW_TRACE, "(%s): select channel", GetName());
    return SelChannel(static_cast<uint8_t>(ch)) != 0;
}

bool CDiagI2cSwitch::ClearPath() {
    if (m_auto_path == PATH_BY_HAND || m_auto_path == PATH_LEFT_OPEN) {
        SendLog(LW_SW_TRACE, "(%s): I2C path clear skipped!\n", GetName());
        return true;
    }
    if (!FindUpstream()) {
        return false;
    }
    if (m_is_probing) {
        return true;
    }
    SendLog(LW_SW_TRACE, "(%s): disable all channels", GetName());
    if (DisableChannels() == 0) {
        SendLog(LW_ERR_SYS, "(%s): Error when disabling upstrem channels!\n", GetName());
        return false;
    }
    if (m_pDev->m_is_master) {
        return true;
    }
    SendLog(LW_SW_TRACE, "(%s): disable upstream switch %s", GetName(), m_pDev->GetName());
    auto* upstream = dynamic_cast<CDiagI2cSwitch*>(m_pDev);
    return upstream != nullptr && upstream->ClearPath();
}

bool CDiagI2cSwitch::DisableAllSwitches() {
    ForEachSwitch([this](uint8_t ch, CDiagI2cSwitch& downstream) {
        SelChannel(ch);  // the way to the downstream switch itself
        downstream.DisableAllSwitches();
        DisableChannels();
    });
    return true;
}

// Transfers.

bool CDiagI2cSwitch::I2cTrans(CI2cXfrReq& req) {
    if (FindUpstream() && m_sw_mode && !m_is_probing) {
        AnnouncePath(req);
    }
    return Forward(req);
}

bool CDiagI2cSwitch::DirectI2cTrans(CI2cXfrReq& req) {
    m_pDev = PlainParent();
    return Forward(req);
}

bool CDiagI2cSwitch::Forward(CI2cXfrReq& req) {
    if (auto* upstream = dynamic_cast<CDiagI2cSwitch*>(m_pDev)) {
        return upstream->DirectI2cTrans(req);
    }
    if (m_pDev == nullptr) {
        req.SetErrMsg("the switch hangs on no I2C bus");
        return false;
    }
    return m_pDev->I2cTrans(req);
}

// PATH_PER_TRANSFER leaves automatic paths off, so EnablePath reports only that
// it did nothing.
void CDiagI2cSwitch::AnnouncePath(const CI2cXfrReq& req) {
    if (req.switch_ch != NO_CHANNEL) {
        SendLog(LW_INFO, "Setting up I2C path for deivce. end channel=%d\n", req.switch_ch);
        EnablePath(req.switch_ch);
    } else if (m_upstream_ch != NO_CHANNEL) {
        SendLog(LW_INFO, "Setting up I2C path for switch. on channel=%d\n", m_upstream_ch);
        EnablePath(m_upstream_ch);
    } else {
        SendLog(LW_INFO, "current switch on root bus\n");
    }
}
