// A simulated chip that is a table of registers behind a pointer byte, and the world
// outside of it. What it holds is lost with the power.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

#include "boards/sim/sim_chip.h"

struct sim_register_t {
    uint8_t pointer;  // by which it is read
    uint8_t bytes;    // 1 or 2; the most significant goes first
    uint16_t reset;   // value after power-on
    uint16_t writable = 0;
    uint16_t clearable = 0;   // a zero written there clears the bit, a one leaves it
    int write_pointer = -1;   // by which it is written; -1 = the same
    bool clears = false;      // by being read
    bool write_only = false;  // reads as zero
};

// What the pointer does when a register's last byte has gone over the wire.
enum ESimPointer : uint8_t {
    SIM_POINTER_STAYS,     // the same register comes again
    SIM_POINTER_ADVANCES,  // by one; of a chip whose registers have one byte each
    SIM_POINTER_TOGGLES,   // the other register of a pair comes
    SIM_POINTER_NONE,      // there is no pointer byte, it is always 0
};

// What the world around the chip gives it, or sees of it: registers from `pointer` on,
// as many as the value's type takes.
struct sim_outside_t {
    const char* name;
    const char* desc;
    uint8_t vt;  // VT_UINT8, VT_UINT16 or VT_INT16, and how it is shown
    uint8_t pointer;
};

class CSimRegisters;

struct sim_register_part_t {
    using CreateChip = std::unique_ptr<CSimRegisters> (*)(const sim_register_part_t&, uint8_t addr);

    std::string_view name;  // as in the compatible, without the vendor
    ESimPointer pointer;
    std::span<const sim_register_t> registers;
    std::span<const sim_outside_t> outside;
    CreateChip create;
};

std::span<const sim_register_part_t> SimRegisterParts();
// The part of that name, or null.
const sim_register_part_t* FindSimRegisterPart(std::string_view name);

class CSimRegisters : public ISimChip {
  public:
    // `part` must outlive the chip.
    CSimRegisters(const sim_register_part_t& part, uint8_t addr);

    std::string_view PartName() const { return m_part.name; }
    std::span<const sim_outside_t> Outside() const { return m_part.outside; }
    // Past the bus. `what` must be one of Outside(). Safe to use from several threads.
    uint16_t GetOutside(const sim_outside_t& what);
    void SetOutside(const sim_outside_t& what, uint16_t value);

    bool Start(uint8_t addr, bool read) override;
    bool WriteByte(uint8_t value) override;
    uint8_t ReadByte() override;
    void Stop() override {}

  protected:
    // All of these are called with the values locked.

    // Brings the registers up to date before they are read or written.
    virtual void Refresh() {}
    // What a read of the register at that pointer does besides, and what a whole write.
    virtual void HaveRead(uint8_t) {}
    virtual void HaveWritten(uint8_t) {}
    virtual uint16_t Seen(const sim_outside_t& what) const;
    virtual void Give(const sim_outside_t& what, uint16_t value);

    uint16_t Value(uint8_t pointer) const { return m_values[m_by_pointer[pointer]]; }
    void SetValue(uint8_t pointer, uint16_t value) { m_values[m_by_pointer[pointer]] = value; }
    void Reset(uint8_t pointer);

  private:
    static constexpr uint16_t NONE = UINT16_MAX;
    static constexpr size_t POINTERS = 256;

    void Advance();

    const sim_register_part_t& m_part;
    const uint8_t m_addr;
    std::vector<uint16_t> m_by_pointer;       // the register that a pointer reads, or NONE
    std::vector<uint16_t> m_written_pointer;  // the one that it writes
    std::mutex m_lock;                        // of the values
    std::vector<uint16_t> m_values;
    uint8_t m_pointer = 0;
    bool m_has_pointer = false;  // since the last start
    uint8_t m_byte = 0;          // of the register, on the wire next
    uint16_t m_shift = 0;        // the bytes of a write that have come, or of a read to go
};

// What a part names as its `create`.
template <class Chip>
std::unique_ptr<CSimRegisters> CreateSimRegisterChip(const sim_register_part_t& part,
                                                     uint8_t addr) {
    return std::make_unique<Chip>(part, addr);
}
