// A multiplexer as who scans its channels sees it.
#include "boards/chips/mux_chip.h"
#include "framework/diag_exception.h"

std::vector<const CDiagMenu*> CMuxChip::GetWires() const {
    std::vector<const CDiagMenu*> wires;
    for (const CChannel& channel : m_channels) {
        wires.push_back(channel.menu);
    }
    return wires;
}

void CMuxChip::OpenWire(size_t wire) {
    if (!OpenTo(static_cast<uint8_t>(wire))) {
        throw CDiagException("the I2C path could not be opened");
    }
}

// From the root bus to a channel, or nothing is left open. What is behind a chip that
// cannot be reached is not written to: another one might take it.
bool CMuxChip::OpenTo(uint8_t ch) {
    CMuxChip* upstream = Upstream();
    if (upstream != nullptr && !upstream->OpenTo(static_cast<uint8_t>(m_upstream_ch))) {
        return false;
    }
    if (SelChannel(ch) == 0) {
        CloseWay();
        return false;
    }
    return true;
}

bool CMuxChip::CloseWay() {
    const bool closed = !m_may_be_open || CloseOrMiss();
    CMuxChip* upstream = Upstream();
    return (upstream == nullptr || upstream->CloseWay()) && closed;
}

bool CMuxChip::CanAsk(EScanAccess access) {
    return BusAbove().CanAsk(access);
}

CScanAnswer CMuxChip::Ask(uint8_t addr, EScanAccess access) {
    return BusAbove().Ask(addr, access);
}

std::string CMuxChip::OwnerOf(uint8_t addr) {
    return BusAbove().OwnerOf(addr);
}

bool CMuxChip::HasOwned(uint8_t addr) {
    return BusAbove().HasOwned(addr);
}

std::string CMuxChip::NameAt(size_t wire, uint8_t addr) const {
    const std::map<uint8_t, std::string>& names = m_channels.at(wire).names;
    const auto name = names.find(addr);
    return name != names.end() ? name->second : std::string();
}

void CMuxChip::SetNameAt(uint8_t ch, uint8_t addr, const std::string& name) {
    m_channels.at(ch).names[addr] = name;
}

IBusScan& CMuxChip::BusAbove() {
    auto* bus = dynamic_cast<IBusScan*>(GetI2cParentDevice());
    if (bus == nullptr) {
        throw CDiagException("%s hangs on no bus that can be scanned", GetName());
    }
    return *bus;
}
