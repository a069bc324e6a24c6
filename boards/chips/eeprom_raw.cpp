#include "boards/chips/eeprom_raw.h"

#include <algorithm>

#include "boards/chips/board_node_path.h"
#include "boards/chips/board_path.h"

namespace {

// What the library moves in one call: a length has 16 bits.
constexpr size_t LARGEST_MOVE = 0x8000;

}  // namespace

template <class Byte, class Move>
void CEepromRaw::MoveRaw(const char* what, uint32_t offset, std::span<Byte> bytes, Move move) {
    if (bytes.empty()) {
        return;
    }
    const uint64_t last = uint64_t{offset} + bytes.size() - 1;
    const auto refuse = [&, first = offset](const char* why) -> CDiagException {
        return CDiagException("%s: cannot %s 0x%04x to 0x%04llx: %s", NodePath(m_eeprom).c_str(),
                              what, first, static_cast<unsigned long long>(last), why);
    };
    if (last >= m_eeprom.GetMemSize()) {
        throw refuse("outside the memory");
    }
    try {
        OnOpenPath(m_eeprom, [&] {
            while (!bytes.empty()) {
                const std::span<Byte> piece = bytes.first(std::min(bytes.size(), LARGEST_MOVE));
                if (!move(static_cast<uint16_t>(offset), piece.data(),
                          static_cast<uint16_t>(piece.size()))) {
                    throw CDiagException("a transfer failed");
                }
                offset += static_cast<uint32_t>(piece.size());
                bytes = bytes.subspan(piece.size());
            }
        });
    } catch (const CDiagException& e) {
        throw refuse(e.what());
    }
}

void CEepromRaw::ReadRaw(uint32_t offset, std::span<byte_t> to) {
    MoveRaw("read", offset, to, [this](uint16_t addr, byte_t* data, uint16_t size) {
        return m_eeprom.ReadMemory(addr, data, size);
    });
}

void CEepromRaw::WriteRaw(uint32_t offset, std::span<const byte_t> from) {
    if (m_read_only) {
        throw CDiagException("%s: is read-only", NodePath(m_eeprom).c_str());
    }
    MoveRaw("write", offset, from, [this](uint16_t addr, const byte_t* data, uint16_t size) {
        return m_eeprom.WriteMemory(addr, data, size);
    });
}
