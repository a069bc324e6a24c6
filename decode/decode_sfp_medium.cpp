#include "decode/decode_sfp_medium.h"

#include <algorithm>
#include <span>

namespace {

// Bits of byte 6, Ethernet.
constexpr uint8_t BASE_1000_T = 0x08;
constexpr uint8_t BASE_1000_CX = 0x04;

// Bits of byte 8, the cable technology.
constexpr uint8_t ACTIVE = 0x08;
constexpr uint8_t PASSIVE = 0x04;

// Codes of SFF-8024.
constexpr uint8_t COPPER_CONNECTORS[] = {
    0x02, 0x03, 0x05,  // Fibre Channel's copper
    0x04,              // BNC/TNC
    0x20,              // HSSDC II
    0x21,              // copper pigtail
    0x22,              // RJ45
};
constexpr uint8_t PASSIVE_CABLES[] = {
    0x0B, 0x0C, 0x0D,  // 25GBASE-CR
    0x3F, 0x40,        // 100GBASE-CR1, 50GBASE-CR
};
constexpr uint8_t ACTIVE_CABLES[] = {
    0x01, 0x18, 0x31, 0x33,  // optical
    0x08, 0x19, 0x30, 0x32,  // of copper
};
constexpr uint8_t TWISTED_PAIRS[] = {
    0x0E,        // 10 Mbit/s on a single pair
    0x16, 0x1C,  // 10GBASE-T
    0x1D, 0x1E,  // 5GBASE-T, 2.5GBASE-T
};

bool IsOneOf(uint8_t code, std::span<const uint8_t> codes) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

// By its place in the record.
uint8_t ComplianceByte(const sfp_serial_id_t& id, size_t at) {
    return id.Transceiver[at - offsetof(sfp_serial_id_t, Transceiver)];
}

}  // namespace

bool HasSfpCableCompliance(const sfp_serial_id_t& id) {
    return (ComplianceByte(id, 8) & (ACTIVE | PASSIVE)) != 0;
}

bool IsSfpPassiveCable(const sfp_serial_id_t& id) {
    return (ComplianceByte(id, 8) & PASSIVE) != 0 || IsOneOf(id.Transciever, PASSIVE_CABLES);
}

bool IsSfpCopperOrCable(const sfp_serial_id_t& id) {
    return HasSfpCableCompliance(id) || IsSfpPassiveCable(id) ||
           IsOneOf(id.Transciever, ACTIVE_CABLES) || IsOneOf(id.Transciever, TWISTED_PAIRS) ||
           (ComplianceByte(id, 6) & (BASE_1000_T | BASE_1000_CX)) != 0 ||
           IsOneOf(id.Connector, COPPER_CONNECTORS);
}
