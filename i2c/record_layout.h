// Holds a record to its layout at compile time: every field at its offset, of its
// width in bytes.
#pragma once

#include <cstddef>

#define MORVA_ASSERT_FIELD(record, field, at, width)                                   \
    static_assert(offsetof(record, field) == (at) && sizeof(record::field) == (width), \
                  "the field " #field " of " #record " is not where the chip has it")
