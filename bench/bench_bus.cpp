#include "bench/bench_bus.h"

namespace {

constexpr uint64_t BYTE_BITS = 9;

}  // namespace

bool CBenchBus::I2cTrans(CI2cXfrReq& req) {
    if (m_into != nullptr) {
        m_into->push_back({req, {req.data, req.data + req.tsize}});
    }
    return CSimBus::I2cTrans(req);
}

CI2cResult CBenchBus::Transfer(std::span<const CI2cMsg> msgs, bool again) {
    CI2cResult result = CSimBus::Transfer(msgs, again);
    if (result.IsOk() && msgs.front().addr == m_watched) {
        for (const CI2cMsg& msg : msgs) {
            m_chip_bits += BYTE_BITS * (1 + msg.data.size());
        }
    }
    return result;
}
