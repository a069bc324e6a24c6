// The search for devices behind a switch, and the address lists it goes by.
#include <algorithm>

#include "framework/diag_log_word.h"
#include "i2c/diag_i2c_switch.h"
#include "i2c/i2c_probe_read.h"

namespace {

bool Contains(const std::list<uint8_t>& addrs, uint8_t addr) {
    return std::find(addrs.begin(), addrs.end(), addr) != addrs.end();
}

}  // namespace

bool CDiagI2cSwitch::probe(int level) {
    m_is_probing = true;
    if (level == 0 && !ProbeUpstream()) {
        m_is_probing = false;
        return false;
    }
    for (int ch = 0; ch < getNumberofChannels(); ++ch) {
        ProbeChannel(static_cast<uint8_t>(ch), level);
    }
    DisableChannels();
    m_is_probing = false;
    return true;
}

// What is seen without any channel of this switch must not be listed as found
// behind one.
bool CDiagI2cSwitch::ProbeUpstream() {
    m_pDev = PlainParent();
    if (!FindUpstream()) {
        return false;
    }
    if (auto* upstream = dynamic_cast<CDiagI2cSwitch*>(m_pDev)) {
        SendLog(LW_PRINT, "(%s): enable upstream switch %s channel = %d\n", GetName(),
                upstream->GetName(), m_upstream_ch);
        upstream->m_is_probing = true;
        upstream->SelChannel(static_cast<uint8_t>(m_upstream_ch));
    }
    m_upstream_device_addr.clear();
    CI2cProbeRead read;
    for (uint8_t addr = FIRST_PROBE_ADDR; addr <= LAST_PROBE_ADDR; ++addr) {
        if (read.Answers(*this, addr)) {
            AddUpstreamDeviceAddr(addr);
        } else if (read.AnswersToCommand(*this, addr)) {
            SendLog(LW_PRINT, "         device with addr = 0x%x found via send_data command\n",
                    addr);
            AddUpstreamDeviceAddr(addr);
        }
    }
    SendLog(LW_PRINT, "%s (lvl=%d):: devices from  parents: ", GetName(), 0);
    for (const uint8_t addr : m_upstream_device_addr) {
        SendLog(LW_PRINT, "0x%x ", addr);
    }
    SendLog(LW_PRINT, "\n");
    return true;
}

void CDiagI2cSwitch::ProbeChannel(uint8_t ch, int level) {
    SelChannel(ch);
    SendLog(LW_PRINT, "%s (lvl=%d): search devices from channel %d\n", "probe", level, ch);
    CI2cProbeRead read;
    bool found = false;
    for (uint8_t addr = FIRST_PROBE_ADDR; addr <= LAST_PROBE_ADDR; ++addr) {
        found |= ProbeAddress(read, ch, addr, level);
    }
    if (!found) {
        SendLog(LW_PRINT, "         no device found\n");
    }
    ForEachSwitchOf(ch, [&](CDiagI2cSwitch& downstream) {
        SendLog(LW_PRINT, "CDiagI2cSwitch::%s: probe devices %s channal %d\n", "probe",
                downstream.GetName(), ch);
        downstream.m_is_probing = true;
        downstream.probe(level + 1);
        downstream.m_is_probing = false;
    });
}

// True when the address was recorded as a device of the channel.
bool CDiagI2cSwitch::ProbeAddress(CI2cProbeRead& read, uint8_t ch, uint8_t addr, int level) {
    const bool plain = read.Answers(*this, addr);
    if (!plain && !read.AnswersToCommand(*this, addr)) {
        return false;
    }
    // A bus that was not probed itself lists nothing, but what it showed when
    // this probe began does not hang on a channel either.
    if (isOnParentBus(addr, static_cast<uint8_t>(level)) || (level == 0 && isOnUpstreamBus(addr))) {
        return false;
    }
    if (plain) {
        SendLog(LW_PRINT, "         (%s): device with addr = 0x%x found \n", GetName(), addr);
    } else {
        SendLog(LW_PRINT, "         (%s): device with addr = 0x%x found via send_data command\n",
                GetName(), addr);
    }
    AddMyDeviceAddr(ch, addr);
    return true;
}

bool CDiagI2cSwitch::isOnUpstreamBus(uint8_t addr) const {
    return Contains(m_upstream_device_addr, addr);
}

bool CDiagI2cSwitch::isOnParentBus(uint8_t addr, uint8_t level) {
    CI2cDevice* bus = PlainParent();
    if (auto* upstream = dynamic_cast<CDiagI2cSwitch*>(bus); upstream != nullptr && level == 0) {
        return isOnUpstreamBus(addr);
    }
    bool found = false;
    for (uint8_t i = 1; bus != nullptr; ++i) {
        auto* upstream = dynamic_cast<CDiagI2cSwitch*>(bus);
        if (upstream == nullptr) {
            return found || bus->isOnMyDeviceList(addr);
        }
        if (level == i) {
            return upstream->isOnUpstreamBus(addr);
        }
        // Channels are numbered from this switch's point of view at every step.
        found = found ||
                Contains(upstream->GetMyDeviceAddrList(static_cast<uint8_t>(m_upstream_ch)), addr);
        if (i >= level) {
            return found;
        }
        bus = upstream->PlainParent();
    }
    return found;
}

void CDiagI2cSwitch::ClearAllDeviceAddrList() {
    ClearMyDeviceAddrList();
    ForEachSwitch([](uint8_t, CDiagI2cSwitch& downstream) { downstream.ClearAllDeviceAddrList(); });
}
