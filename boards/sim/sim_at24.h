// A serial EEPROM of the AT24 family: pages, address latch, write cycle, write
// protection.
#pragma once

#include <array>
#include <atomic>
#include <bitset>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "boards/sim/sim_chip.h"
#include "boards/sim/sim_clock.h"
#include "boards/sim/sim_memory.h"

struct sim_at24_part_t {
    const char* name;
    uint32_t size;         // bytes
    uint16_t page;         // bytes
    uint8_t addr_bytes;    // memory address bytes: 1 or 2
    uint8_t addresses;     // slave addresses, a power of two; their low bits are address bits
    bool write_protected;  // at power-on
};

// "24c01" to "24c1024", and "spd".
std::span<const sim_at24_part_t> SimAt24Parts();
// The part of that name, or null.
const sim_at24_part_t* FindSimAt24Part(std::string_view name);

class CSimAt24 : public ISimChip {
  public:
    static constexpr uint64_t WRITE_CYCLE_NS = 5'000'000;

    // The memory must have the part's size; the clock, that of the bus, must
    // outlive the chip.
    CSimAt24(const sim_at24_part_t& part, uint8_t addr, std::unique_ptr<CSimMemory> memory,
             const CSimClock& clock);

    // The level of the WP pin.
    void SetWriteProtect(bool on) { m_write_protected = on; }
    CSimMemory& Memory() { return *m_memory; }

    bool Start(uint8_t addr, bool read) override;
    bool WriteByte(uint8_t value) override;
    uint8_t ReadByte() override;
    void Stop() override;

  private:
    enum EState : uint8_t { IDLE, ADDRESS, DATA, READ };
    static constexpr uint16_t MAX_PAGE = 256;

    bool Selects(uint8_t addr) const;
    void CommitPage();

    const sim_at24_part_t m_part;
    const uint8_t m_addr;
    const std::unique_ptr<CSimMemory> m_memory;
    const CSimClock& m_clock;
    std::atomic<bool> m_write_protected;

    EState m_state = IDLE;
    uint64_t m_busy_until_ns = 0;
    uint32_t m_pointer = 0;   // the address latch
    uint32_t m_incoming = 0;  // address bits received so far
    uint8_t m_incoming_bytes = 0;
    std::vector<uint8_t> m_image;  // the memory as it was when the read began
    // The page being written: its first address and the bytes that have come.
    uint32_t m_page_base = 0;
    std::array<uint8_t, MAX_PAGE> m_page{};
    std::bitset<MAX_PAGE> m_page_loaded;
};
