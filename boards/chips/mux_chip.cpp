#include "boards/chips/mux_chip.h"

#include <algorithm>

#include "framework/diag_log_word.h"

namespace {

// The numbers of the bits that are set: "0 2", or "none".
std::string ChannelText(uint32_t mask) {
    std::string text;
    for (unsigned int ch = 0; mask >> ch != 0; ++ch) {
        if ((mask >> ch & 1U) != 0) {
            text += (text.empty() ? "" : " ") + std::to_string(ch);
        }
    }
    return text.empty() ? "none" : text;
}

}  // namespace

CMuxChip::CMuxChip(const mux_part_t& part, const std::string& name, const std::string& description,
                   uint32_t devId, uint8_t addr, int8_t upstream_ch)
    : CDiagI2cSwitch(name, description, devId, upstream_ch), m_part(part), m_addr(addr) {
    for (unsigned int ch = 0; ch < m_part.channels; ++ch) {
        const std::string number = std::to_string(ch);
        m_channels.push_back({new CDiagMenu(TMENU, "ch" + number, "channel " + number), {}, {}});
        AddChild(m_channels.back().menu, NO_SORT);
    }
}

uint32_t CMuxChip::GetMaxTransSize() {
    CI2cDevice* upstream = GetI2cParentDevice();
    return upstream == nullptr ? 0 : upstream->GetMaxTransSize();
}

bool CMuxChip::probe(int level) {
    if (level != 0) {
        return CDiagI2cSwitch::probe(level);
    }
    ClearAllDeviceAddrList();  // what an earlier probe found may be gone
    // What is behind an open channel of this chip is not upstream of it.
    if (!OpenWay() || DisableChannels() == 0) {
        return false;
    }
    const bool ok = CDiagI2cSwitch::probe(level);
    // A probe that begins here marks the switch above as probing and leaves it
    // so; that switch would open no path any more.
    if (CMuxChip* upstream = Upstream()) {
        upstream->m_is_probing = false;
    }
    return ok;
}

CMuxChip* CMuxChip::Upstream() const {
    return dynamic_cast<CMuxChip*>(GetParentDevice());
}

// From the root bus to this chip, whatever the path mode.
bool CMuxChip::OpenWay() {
    CMuxChip* upstream = Upstream();
    return upstream == nullptr ||
           (upstream->OpenWay() && upstream->SelChannel(static_cast<uint8_t>(m_upstream_ch)) != 0);
}

int CMuxChip::ShowChannels() {
    const std::optional<uint8_t> control = ReadControl();
    if (!control) {
        return 0;
    }
    SendLog(LW_PRINT, "%s(0x%x): control register 0x%02x, open channels: %s\n", GetName(), m_addr,
            *control, ChannelText(m_part.OpenChannels(*control)).c_str());
    if (m_part.interrupts) {
        SendLog(LW_PRINT, "%s(0x%x): interrupting channels: %s\n", GetName(), m_addr,
                ChannelText(m_part.Interrupting(*control)).c_str());
    }
    return 1;
}

int CMuxChip::SetChannel(uint8_t ch) {
    return HasChannel(ch) ? SetChannels(1U << ch) : 0;
}

int CMuxChip::ClearChannel(uint8_t ch) {
    return HasChannel(ch) ? ClearChannels(1U << ch) : 0;
}

int CMuxChip::SetChannels(uint32_t mask) {
    if (!HasChannels(mask)) {
        return 0;
    }
    const std::optional<uint8_t> control = ReadControl();
    return control ? Open(m_part.OpenChannels(*control) | mask) : 0;
}

int CMuxChip::ClearChannels(uint32_t mask) {
    if (!HasChannels(mask)) {
        return 0;
    }
    const std::optional<uint8_t> control = ReadControl();
    return control ? Open(m_part.OpenChannels(*control) & ~mask) : 0;
}

int CMuxChip::SelChannel(uint8_t ch) {
    if (!HasChannel(ch)) {
        return 0;
    }
    const bool alone = GetParent() == nullptr || CloseOthers(*GetParent());
    return alone && Open(1U << ch) != 0 && CloseOthers(*m_channels[ch].menu) ? 1 : 0;
}

int CMuxChip::DisableChannels() {
    return Open(0);
}

bool CMuxChip::HasChannel(uint8_t ch) {
    if (ch >= m_part.channels) {
        SendLog(LW_ERR_SW, "%s(0x%x): no channel %d, a %s has channels 0 to %d\n", GetName(),
                m_addr, ch, m_part.name, m_part.channels - 1);
        return false;
    }
    return true;
}

bool CMuxChip::HasChannels(uint32_t mask) {
    if ((mask & ~m_part.AllChannels()) != 0) {
        SendLog(LW_ERR_SW, "%s(0x%x): no channels 0x%x, a %s has the channels of mask 0x%x\n",
                GetName(), m_addr, mask & ~m_part.AllChannels(), m_part.name, m_part.AllChannels());
        return false;
    }
    return true;
}

// Makes these the open channels.
int CMuxChip::Open(uint32_t mask) {
    const std::optional<uint8_t> control = m_part.ControlFor(mask);
    if (!control) {
        SendLog(LW_ERR_SW,
                "%s(0x%x): a %s opens one channel at a time, not %s together; sel-channel closes "
                "the others\n",
                GetName(), m_addr, m_part.name, ChannelText(mask).c_str());
        return 0;
    }
    return WriteControl(*control) ? 1 : 0;
}

bool CMuxChip::CloseOthers(const CDiagObj& wire) const {
    bool closed = true;
    for (CDiagObj* child : wire.GetChildren()) {
        auto* other = dynamic_cast<CMuxChip*>(child);
        if (other != nullptr && other != this && other->m_may_be_open) {
            closed = other->CloseOrMiss() && closed;
        }
    }
    return closed;
}

// True also when the chip does not answer at all: it may not be fitted, which is
// no reason to do without the others.
bool CMuxChip::CloseOrMiss() {
    byte_t control = 0;
    CI2cXfrReq req;
    m_may_be_open = !TransferControl(req, control);
    if (!m_may_be_open) {
        return true;
    }
    CI2cXfrReq again;
    again.dir = 1;
    if (!TransferControl(again, control)) {
        return true;
    }
    SendLog(LW_ERR_TEST, "%s(0x%x): cannot close the channels: %s\n", GetName(), m_addr,
            req.errmsg);
    return false;
}

std::optional<uint8_t> CMuxChip::ReadControl() {
    byte_t control = 0;
    CI2cXfrReq req;
    req.dir = 1;
    if (!TransferControl(req, control)) {
        SendLog(LW_ERR_TEST, "%s(0x%x): cannot read the control register: %s\n", GetName(), m_addr,
                req.errmsg);
        return std::nullopt;
    }
    return control;
}

bool CMuxChip::WriteControl(uint8_t control) {
    CI2cXfrReq req;
    const bool ok = TransferControl(req, control);
    m_may_be_open = !ok || m_part.OpenChannels(control) != 0;
    if (!ok) {
        SendLog(LW_ERR_TEST, "%s(0x%x): cannot write 0x%02x to the control register: %s\n",
                GetName(), m_addr, control, req.errmsg);
    }
    return ok;
}

bool CMuxChip::TransferControl(CI2cXfrReq& req, byte_t& control) {
    req.saddr = m_addr;
    req.data = &control;
    req.tsize = 1;
    req.switch_ch = NO_CHANNEL;
    return I2cTrans(req);
}

CDiagMenu* CMuxChip::getChannelMenu(int ch) {
    const auto index = static_cast<size_t>(ch);
    return index < m_channels.size() ? m_channels[index].menu : nullptr;
}

std::list<uint8_t> CMuxChip::GetMyDeviceAddrList(uint8_t ch) {
    return ch < m_channels.size() ? m_channels[ch].found : std::list<uint8_t>{};
}

void CMuxChip::ShowMyDeviceAddrList(uint8_t ch) {
    SendLog(LW_PRINT, "devices connected to channel %d: ", ch);
    for (const uint8_t addr : GetMyDeviceAddrList(ch)) {
        SendLog(LW_PRINT, "0x%02x ", addr);
    }
    SendLog(LW_PRINT, "\n");
}

void CMuxChip::AddMyDeviceAddr(uint8_t ch, uint8_t addr) {
    if (ch >= m_channels.size()) {
        return;
    }
    std::list<uint8_t>& found = m_channels[ch].found;
    if (std::find(found.begin(), found.end(), addr) == found.end()) {
        found.push_back(addr);
    }
}

void CMuxChip::ClearMyDeviceAddrList() {
    for (CChannel& channel : m_channels) {
        channel.found.clear();
    }
}

const CDiagDevice* CMuxChip::PathTo(const CDiagDevice&) const {
    const CDiagDevice* bus = this;
    for (const CDiagDevice* above = bus->GetParentDevice(); above != nullptr;
         above = above->GetParentDevice()) {
        if (dynamic_cast<const CI2cDevice*>(above) != nullptr) {
            bus = above;
        }
    }
    return bus;
}
