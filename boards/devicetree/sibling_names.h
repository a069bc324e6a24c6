// The names that are taken among siblings. Finds a free one in constant time,
// however many have asked for the same.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "framework/diag_obj.h"

class CSiblingNames {
  public:
    // False when the name is taken already.
    bool Take(const std::string& name) { return m_taken.insert(name).second; }
    // Takes `name`, or the first free one of "name-2", "name-3", ...
    std::string TakeUnique(const std::string& name);
    // Takes "base-number", or the first free one of "base-0", "base-1", ...;
    // returns the number.
    uint32_t TakeNumbered(const std::string& base, uint32_t number);

  private:
    uint32_t TakeFrom(const std::string& base, uint32_t first);

    std::unordered_set<std::string> m_taken;
    std::unordered_map<std::string, uint32_t> m_next;  // the first number that may be free
};

// The names below each node of a tree that is being built.
class CTreeNames {
  public:
    // Knows the children that `parent` has when it is first asked for; all
    // later ones must take their names here.
    CSiblingNames& Below(const CDiagObj& parent);

  private:
    std::unordered_map<const CDiagObj*, CSiblingNames> m_names;
};
