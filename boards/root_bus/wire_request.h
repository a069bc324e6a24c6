// One transfer record as the messages that go over the wire, packet error code
// included. Holds their bytes, so that a transfer needs no memory of its own.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "boards/root_bus/i2c_msg.h"
#include "i2c/i2c_xfr_req.h"

class CWireRequest {
  public:
    // `req` must outlive this object and be one that the bus accepts.
    explicit CWireRequest(const CI2cXfrReq& req);
    CWireRequest(const CWireRequest&) = delete;
    CWireRequest& operator=(const CWireRequest&) = delete;

    std::span<const CI2cMsg> Messages() const { return {m_msgs.data(), m_count}; }
    // Whether the slave gets data bytes, not only a command.
    bool WritesData() const { return m_req.dir == 0 && m_req.tsize > 0; }

    // After the transfer: what the slave should have sent as packet error code,
    // and what it sent. Equal when nothing was to be checked.
    struct CPec {
        uint8_t expected;
        uint8_t got;
    };
    CPec CheckPec() const;
    // Copies the bytes read to the caller.
    void Deliver() const;

  private:
    static constexpr size_t MAX_COMMAND = 2;
    static constexpr size_t MAX_DATA = 255;

    bool ReadsWithPec() const { return m_req.dir != 0 && m_req.tsize > 0 && m_req.rpec_en != 0; }
    void AddMsg(bool read, std::span<uint8_t> data);

    const CI2cXfrReq& m_req;
    std::array<uint8_t, MAX_COMMAND + MAX_DATA + 1> m_out{};
    std::array<uint8_t, MAX_DATA + 1> m_in{};
    std::array<CI2cMsg, 2> m_msgs{};
    size_t m_count = 0;
};
