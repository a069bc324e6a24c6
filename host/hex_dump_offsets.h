// Where the rows of a hex dump belong, by their offsets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/hex_dump_row.h"

struct CNumberedRow {
    size_t line;
    CDumpRow row;
};

// What is wrong with a dump, and where.
class CDumpFault : public std::runtime_error {
  public:
    CDumpFault(size_t line, const std::string& text) : std::runtime_error(text), m_line(line) {}
    size_t Line() const { return m_line; }

  private:
    const size_t m_line;
};

// The bytes of rows that begin with offsets. Those of BARE may be hexadecimal, octal or
// decimal: what fits is taken, and refused where more than one fits and gives something
// else. A second dump may follow one of 256 bytes: what a module has at two addresses.
// Throws CDumpFault.
std::vector<uint8_t> PutTogether(const std::vector<CNumberedRow>& rows, EDumpStyle style);
