#include "boards/i2c_sim/channel_adapter.h"

#include <cerrno>

namespace {

// As the kernel's drivers of multiplexers name theirs.
std::string NameOf(const CAdapter& parent, unsigned int channel) {
    return "i2c-" + std::to_string(parent.Number()) + "-mux (chan_id " + std::to_string(channel) +
           ")";
}

}  // namespace

CChannelAdapter::CChannelAdapter(unsigned int number, unsigned int channel, CAdapter& parent,
                                 const mux_control_t& control)
    : CAdapter(number, NameOf(parent, channel), parent.Traits()),
      m_parent(parent),
      m_control(control) {}

int CChannelAdapter::Transfer(std::span<const CI2cMsg> msgs) {
    int result = Set(m_parent, m_control.addr, m_control.select);
    if (result >= 0) {
        result = m_parent.Transfer(msgs);
    }
    if (m_control.closed) {
        Set(m_parent, m_control.addr, *m_control.closed);
    }
    return result;
}

int CChannelAdapter::Set(CAdapter& parent, uint8_t addr, uint8_t value) {
    const CI2cMsg msg{addr, false, {&value, 1}};
    const int result = parent.Transfer({&msg, 1});
    return result == 0 ? -EIO : result;
}
