// An open /dev/i2c-N: what the requests on it do, as the kernel's i2c-dev does it
// (kernel documentation, "Implementing I2C device drivers in userspace").
#pragma once

#include <linux/i2c.h>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "boards/i2c_sim/adapter.h"
#include "boards/i2c_sim/packet.h"
#include "boards/i2c_sim/sim_protocol.h"

class CI2cDevFile {
  public:
    // Whether a driver of the kernel has that address of that adapter.
    using CIsOwned = std::function<bool(const CAdapter&, uint8_t)>;

    // The adapter must outlive the file.
    CI2cDevFile(CAdapter& adapter, CIsOwned is_owned)
        : m_adapter(adapter), m_is_owned(std::move(is_owned)) {}

    // The answer to a request; both are packets. Throws CPacketFault for what is none.
    std::vector<uint8_t> Answer(std::span<const uint8_t> packet);

  private:
    int64_t Handle(const sim_request_t& request, CPacketReader& rest);
    int64_t SelectSlave(uint64_t addr, bool force);
    int64_t Transfer(uint32_t count, CPacketReader& rest);
    int64_t Smbus(CPacketReader& rest);
    int64_t ReadPlain(uint64_t size);
    int64_t WritePlain(std::span<const uint8_t> bytes);
    int64_t MovePlain(const CI2cMsg& msg);

    CAdapter& m_adapter;
    const CIsOwned m_is_owned;
    uint8_t m_addr = 0;
    bool m_ten_bits = false;
    bool m_pec = false;
    std::vector<uint8_t> m_bytes;  // of the messages of the request at hand
    std::vector<uint8_t> m_tail;   // what stands behind the answer to it
    uint64_t m_value = 0;
};
