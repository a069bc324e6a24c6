#include "boards/i2c_sim/bus_adapter.h"

CBusAdapter::CBusAdapter(unsigned int number, const adapter_traits_t& traits, CSimBus& bus)
    : CAdapter(number, bus.GetDescription(), traits), m_bus(bus), m_passed(CClock::now()) {}

int CBusAdapter::Transfer(std::span<const CI2cMsg> msgs) {
    const auto ms = std::chrono::floor<std::chrono::milliseconds>(CClock::now() - m_passed);
    if (ms.count() > 0) {
        m_bus.WaitMs(static_cast<unsigned int>(ms.count()));
        m_passed += ms;
    }
    return ResultOf(m_bus.Transfer(msgs, false), msgs.size());
}
