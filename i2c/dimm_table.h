// The DIMM table in memory: which memory modules a board may carry and what
// each of them wants written to which registers.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

// Offset k belongs to value k.
struct Registers {
    std::vector<unsigned int> reg_offset;
    std::vector<unsigned int> reg_val;
};

// One module.
struct Entries {
    uint32_t man_id_h = 0;  // JEDEC manufacturer identifier, high half
    uint32_t man_id_l = 0;
    uint32_t rev_Start = 0;
    uint32_t rev_End = 0;
    uint32_t num_Reg = 0;  // register pairs; known when the image is laid out
    Registers Register_Array;
    std::unique_ptr<char[]> partNum;  // null where the document has none for this module

    const char* PartNumText() const { return partNum != nullptr ? partNum.get() : ""; }
};

struct DimmTable {
    uint32_t num_Entries = 0;
    uint32_t signature = 0;
    uint32_t dimmtable_size = 0;  // bytes of the image; known when it is laid out
    uint32_t dimm_version = 0;
    std::vector<Entries> entry;  // the first num_Entries of them count
    // Where in the image each module's register pairs begin, in bytes; one
    // element more than there are modules.
    std::vector<unsigned int> Regs_offsets;
};
