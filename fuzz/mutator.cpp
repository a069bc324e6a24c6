#include "fuzz/mutator.h"

#include <algorithm>

std::string CMutator::Next() {
    std::string text = AnyInput();
    for (size_t changes = 1 + Below(6); changes != 0; --changes) {
        Change(text);
    }
    return text.substr(0, LONGEST);
}

std::string CMutator::PieceOf(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    const size_t from = Below(text.size());
    return text.substr(from, 1 + Below(std::min<size_t>(text.size() - from, 16)));
}

void CMutator::Change(std::string& text) {
    const size_t at = Below(text.size() + 1);
    switch (Below(6)) {
        case 0:
            text.insert(at, 1, static_cast<char>(m_random()));
            break;
        case 1:
            text.insert(at, PieceOf(AnyInput()));
            break;
        case 2:
            text.insert(at, PieceOf(text));
            break;
        case 3:
            text.erase(at, 1 + Below(8));
            break;
        case 4:
            text.resize(at);
            break;
        default:
            if (at < text.size()) {
                text[at] = static_cast<char>(text[at] ^ (1 << Below(8)));
            }
    }
}
