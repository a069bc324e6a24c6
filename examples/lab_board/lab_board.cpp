// A board of one page: a bus of its own, a multiplexer on it, and an EEPROM behind channel 2
// of that.
//
//     cmake -S . -B build && cmake --build build
//     diagsh --board build/lab-board.so -c i2c/pca9548-0/ch2/eeprom/rw-test
//
// The chips are played by the bus, so that the board runs at any desk. A bus of real
// hardware hands the messages to its controller instead, and is done with that.
#include <array>
#include <memory>

#include "boards/chips/board_eeprom.h"
#include "boards/chips/mux_chip.h"
#include "boards/root_bus/root_bus.h"
#include "framework/diag_board.h"
#include "framework/diag_exception.h"

namespace {

constexpr uint8_t MUX_ADDR = 0x70;
constexpr uint8_t EEPROM_ADDR = 0x50;
constexpr int8_t EEPROM_CHANNEL = 2;
constexpr uint16_t EEPROM_PAGE = 16;

class CLabBus : public CRootBus {
  public:
    CLabBus() : CRootBus("i2c", "the lab's bus") { m_eeprom.fill(0xFF); }

    // In one message, address bytes included.
    uint32_t GetMaxTransSize() override { return 255; }

  protected:
    CI2cResult Transfer(std::span<const CI2cMsg> msgs, bool) override {
        for (size_t n = 0; n < msgs.size(); ++n) {
            if (msgs[n].addr == MUX_ADDR) {
                MoveMux(msgs[n]);
            } else if (msgs[n].addr == EEPROM_ADDR && (m_channels >> EEPROM_CHANNEL & 1) != 0) {
                MoveEeprom(msgs[n]);
            } else {
                return CI2cResult::NoAddrAck(n);
            }
        }
        return CI2cResult::Ok();
    }

  private:
    void MoveMux(const CI2cMsg& msg) {
        for (uint8_t& byte : msg.data) {
            if (msg.read) {
                byte = m_channels;
            } else {
                m_channels = byte;
            }
        }
    }

    // The first byte written is the address of those that follow.
    void MoveEeprom(const CI2cMsg& msg) {
        bool is_address = !msg.read;
        for (uint8_t& byte : msg.data) {
            if (is_address) {
                m_next = byte;
                is_address = false;
            } else if (msg.read) {
                byte = m_eeprom[m_next++];
            } else {
                m_eeprom[m_next++] = byte;
            }
        }
    }

    uint8_t m_channels = 0;  // of the multiplexer, one bit each
    std::array<uint8_t, 256> m_eeprom{};
    uint8_t m_next = 0;  // in the EEPROM
};

// The parent owns what is added.
template <class Node>
Node& Add(CDiagMenu& parent, std::unique_ptr<Node> node) {
    Node& added = *node;
    parent.AddChild(node.release(), CDiagObj::NO_SORT);
    return added;
}

}  // namespace

CDiagMenu* morva_board_create(int argc, const char* const* argv) {
    if (argc > 1) {
        throw CDiagException("%s: unexpected argument %s, this board takes none", argv[0], argv[1]);
    }
    auto root = std::make_unique<CDiagMenu>(TMENU, "lab", "a bus, a multiplexer and an EEPROM");
    auto& bus = Add(*root, std::make_unique<CLabBus>());
    auto& mux = Add(bus, std::make_unique<CMuxChip>(*FindMuxPart("pca9548"), "pca9548",
                                                    "multiplexer", 0, MUX_ADDR, -1));
    bus.DeclareEeprom({.addr = EEPROM_ADDR, .addresses = 1, .addr_bytes = 1, .page = EEPROM_PAGE});
    const i2c_eeprom_attr_t attr = {
        .mem_size = 256, .mem_addr_size = 1, .wr_pg_size = EEPROM_PAGE, .xfer_size = EEPROM_PAGE};
    const board_place_t place = {.bus = &mux, .channel = EEPROM_CHANNEL, .addr = EEPROM_ADDR};
    Add(*mux.getChannelMenu(EEPROM_CHANNEL),
        std::make_unique<CBoardEeprom>("eeprom", "256 bytes", place, attr, false));
    return root.release();
}
