// The packets of boards/i2c_sim/sim_protocol.h, as the process with the adapters reads and
// makes them.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <vector>

// What a packet must not be; the connection that it came on is useless.
class CPacketFault : public std::runtime_error {
  public:
    CPacketFault() : std::runtime_error("a packet that is no request") {}
};

class CPacketReader {
  public:
    explicit CPacketReader(std::span<const uint8_t> packet) : m_rest(packet) {}

    // All three throw CPacketFault when the packet has less, End when it has more.
    template <class T>
    T Take() {
        static_assert(std::is_trivially_copyable_v<T>);
        T value;
        std::memcpy(&value, Take(sizeof value).data(), sizeof value);
        return value;
    }
    std::span<const uint8_t> Take(size_t size) {
        if (size > m_rest.size()) {
            throw CPacketFault();
        }
        const std::span<const uint8_t> bytes = m_rest.first(size);
        m_rest = m_rest.subspan(size);
        return bytes;
    }
    std::span<const uint8_t> TakeRest() { return Take(m_rest.size()); }
    void End() const {
        if (!m_rest.empty()) {
            throw CPacketFault();
        }
    }

  private:
    std::span<const uint8_t> m_rest;
};

template <class T>
void Append(std::vector<uint8_t>& packet, const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    const auto* bytes = reinterpret_cast<const uint8_t*>(&value);
    packet.insert(packet.end(), bytes, bytes + sizeof value);
}
