// A DIMM table as text.
#pragma once

#include <string>
#include <vector>

#include "i2c/dimm_table.h"

// Appends one module as pieces: the header with the module's own fields, one
// piece for each register, and an end.
void AppendEntryText(std::vector<std::string>& pieces, const DimmTable& table,
                     const Entries& entry);
