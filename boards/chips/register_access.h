// How the registers of a chip move over its bus: each as one transfer under the bus's
// lock. What a register does not allow is refused with its reason.
#pragma once

#include <cstddef>
#include <cstdint>

#include "boards/chips/board_place.h"
#include "framework/diag_device.h"
#include "framework/diag_reg_table.h"

class CRegisterAccess {
  public:
    // Log texts go out in the name of `chip`. The way to it must be open for an access.
    CRegisterAccess(const CDiagDevice& chip, const board_place_t& place)
        : m_chip(chip), m_place(place) {}

    bool Read(const diag_reg_st& reg, uint32_t index, diag_regdata_t& data) const;
    bool Write(const diag_reg_st& reg, uint32_t index, diag_regdata_t data) const;

  private:
    bool Transfer(const diag_reg_st& reg, uint8_t pointer, bool read, byte_t* bytes,
                  size_t count) const;

    const CDiagDevice& m_chip;
    const board_place_t m_place;
};
