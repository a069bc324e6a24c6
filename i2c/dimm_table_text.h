// A DIMM table as text.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "i2c/dimm_table.h"

// How many pieces the text of all modules has.
size_t CountPieces(const DimmTable& table);

// Appends one module as pieces: the header with the module's own fields, one
// piece for each register, and an end.
void AppendEntryText(std::vector<std::string>& pieces, const DimmTable& table,
                     const Entries& entry);
