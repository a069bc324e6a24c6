#include "boards/chips/board_eeprom.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "boards/chips/board_eeprom_memory.h"
#include "boards/chips/board_eeprom_read.h"
#include "boards/chips/board_eeprom_rw_test.h"
#include "boards/chips/board_node_path.h"
#include "boards/chips/board_path.h"

namespace {

// The reach of a 16-bit memory address.
constexpr uint32_t LARGEST_SIZE = 0x10000;
// What the library moves in one call: a length has 16 bits.
constexpr size_t LARGEST_MOVE = 0x8000;

// Puts `fresh` where the child of its name was.
void ReplaceChild(CDiagObj& node, std::unique_ptr<CDiagObj> fresh) {
    const std::vector<CDiagObj*> children = node.GetChildren();
    const std::string name = fresh->GetName();
    const auto at = std::find_if(children.begin(), children.end(), [&name](const CDiagObj* child) {
        return name == child->GetName();
    });
    DIAG_ASSERT(at != children.end());
    node.RemoveChild((*at)->GetId());
    node.AddChild(fresh.release(), CDiagObj::NO_SORT);
    // Those behind it go behind it again.
    std::for_each(at + 1, children.end(), [&node](const CDiagObj* child) {
        node.AddChild(node.RemoveChild(child->GetId()).release(), CDiagObj::NO_SORT);
    });
}

}  // namespace

CBoardEeprom::CBoardEeprom(const std::string& name, const std::string& description,
                           const board_place_t& place, i2c_eeprom_attr_t attr, bool read_only)
    : CDiagI2cEepromDevice(name, description, place.bus, &attr, read_only, place.addr),
      m_read_only(read_only) {
    DIAG_ASSERT(attr.mem_size > 0 && attr.mem_size <= LARGEST_SIZE);
    m_i2c_ch = place.channel;
    m_i2c_addr = place.addr;
    ReplaceChild(*this, std::make_unique<CBoardEepromMemory>(this, attr.mem_size, read_only,
                                                             attr.mem_addr_size == 1));
    ReplaceChild(*this, std::make_unique<CBoardEepromRwTest>(m_attr, m_xfer_size, read_only));
    ReplaceChild(*this, std::make_unique<CBoardEepromRead>("read", "read EEPROM", attr.mem_size));
}

template <class Byte, class Move>
void CBoardEeprom::MoveRaw(const char* what, uint32_t offset, std::span<Byte> bytes, Move move) {
    if (bytes.empty()) {
        return;
    }
    const uint64_t last = uint64_t{offset} + bytes.size() - 1;
    const auto refuse = [&, first = offset](const char* why) -> CDiagException {
        return CDiagException("%s: cannot %s 0x%04x to 0x%04llx: %s", NodePath(*this).c_str(), what,
                              first, static_cast<unsigned long long>(last), why);
    };
    if (last >= m_attr.mem_size) {
        throw refuse("outside the memory");
    }
    try {
        OnOpenPath(*this, [&] {
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

void CBoardEeprom::ReadRaw(uint32_t offset, std::span<byte_t> to) {
    MoveRaw("read", offset, to, [this](uint16_t addr, byte_t* data, uint16_t size) {
        return ReadMemory(addr, data, size);
    });
}

void CBoardEeprom::WriteRaw(uint32_t offset, std::span<const byte_t> from) {
    if (m_read_only) {
        throw CDiagException("%s: is read-only", NodePath(*this).c_str());
    }
    MoveRaw("write", offset, from, [this](uint16_t addr, const byte_t* data, uint16_t size) {
        return WriteMemory(addr, data, size);
    });
}
