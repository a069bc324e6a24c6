// Register tables: filled in by board code, read by the register devices.
#pragma once

#include <cstdint>

#include "framework/diag_types.h"

struct diag_reg_st {
    const char* name;
    const char* desc;
    EValueType dtype;  // an integer type
    uint8_t format;    // VF_ flags: how a value is shown
    uint64_t offset;   // address of the first instance
    diag_regacc_et access;
    uint32_t flags;            // board code's own
    uint32_t num_regs;         // instances: 1 of a plain register, more of an indexed one
    uint32_t addr_stride;      // address step between instances
    diag_regdata_t mask;       // the bits that exist
    diag_regdata_t init_data;  // value after reset
    void* p_reginfo;           // board code's own
};

struct diag_regtable_st {
    diag_reg_st* reg_entries;
    uint32_t num_regs;  // entries, not instances
};
