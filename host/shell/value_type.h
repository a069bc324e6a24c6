// Values on the command line and in messages: what fits a type, how it is
// packed, how it is shown.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "framework/diag_msg.h"

// One value that was read.
struct CValue {
    std::string text;  // as it is shown
    std::variant<std::string, int64_t, uint64_t> data;
};

// A value-type byte as the nodes declare it.
class CValueType {
  public:
    explicit CValueType(uint8_t vt) : m_vt(vt) {}

    bool IsText() const;
    // Of what the operator may type: "0 to 255", "text".
    std::string Range() const;
    // Of the type alone: "uint8", "string".
    std::string Name() const;

    // Appends what `word` stands for; throws CUsageError when it does not fit.
    void Pack(COutMsg& request, const std::string& word) const;
    // Reads one value.
    CValue Unpack(CInMsg& response) const;

  private:
    uint8_t m_vt;
};
