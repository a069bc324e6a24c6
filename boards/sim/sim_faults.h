// The faults injected into one simulated bus. All last until Clear, except the
// failing transfer, which happens once.
#pragma once

#include <bitset>
#include <compare>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "framework/diag_mutex.h"

// How a single transfer fails.
enum ESimFailure : uint8_t {
    SIM_NO_FAILURE = 0,
    SIM_ARB_LOST = 1,  // another master wins
    SIM_NO_ACK = 2,    // the first byte behind the address is not acknowledged; of a
                       // transfer that writes none, the address
};

class CSimFaults {
  public:
    // Nobody acknowledges `addr`.
    void Nack(uint8_t addr);
    // A line is held low: no transfer gets anywhere.
    void Stick();
    // Bit `bit` of byte `byte` (from 0) of every read from `addr` arrives wrong.
    void Flip(uint8_t addr, uint8_t byte, uint8_t bit);
    // The `nth` transfer from now on (1: the next one) fails in that way.
    void FailNth(uint32_t nth, ESimFailure how = SIM_ARB_LOST);
    void Clear();
    // One line of text per fault.
    std::vector<std::string> Describe() const;

    // What the bus asks. CountTransfer tells how this transfer has to fail.
    ESimFailure CountTransfer();
    bool IsStuck() const;
    bool Nacks(uint8_t addr) const;
    void FlipBits(uint8_t addr, std::span<uint8_t> data) const;

  private:
    struct CFlip {
        uint8_t addr;
        uint8_t byte;
        uint8_t bit;

        // clang-tidy takes the 0 that this is compared with for a null pointer.
        // NOLINTNEXTLINE(modernize-use-nullptr)
        auto operator<=>(const CFlip&) const = default;
    };

    mutable CMutex m_lock;
    std::bitset<128> m_nacked;
    bool m_stuck = false;
    uint32_t m_fail_in = 0;  // 0: none
    ESimFailure m_fail_how = SIM_NO_FAILURE;
    std::set<CFlip> m_flips;  // the same flip twice is one
};
