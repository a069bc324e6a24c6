#include "boards/devicetree/sibling_names.h"

#include <algorithm>

std::string CSiblingNames::TakeUnique(const std::string& name) {
    constexpr uint32_t FIRST_COPY = 2;
    return Take(name) ? name : name + "-" + std::to_string(TakeFrom(name, FIRST_COPY));
}

uint32_t CSiblingNames::TakeNumbered(const std::string& base, uint32_t number) {
    return Take(base + "-" + std::to_string(number)) ? number : TakeFrom(base, 0);
}

uint32_t CSiblingNames::TakeFrom(const std::string& base, uint32_t first) {
    uint32_t& next = m_next[base];
    uint32_t number = std::max(next, first);
    while (!Take(base + "-" + std::to_string(number))) {
        ++number;
    }
    next = number + 1;
    return number;
}

CSiblingNames& CTreeNames::Below(const CDiagObj& parent) {
    const auto [names, fresh] = m_names.try_emplace(&parent);
    if (fresh) {
        for (const CDiagObj* child : parent.GetChildren()) {
            names->second.Take(child->GetName());
        }
    }
    return names->second;
}
