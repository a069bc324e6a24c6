#include "host/shell/input/candidates.h"

#include <algorithm>

#include "host/printable.h"
#include "host/shell/screen_text.h"

namespace {

constexpr size_t GAP = 2;

bool GoesOnACharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

void ShortenToCommon(std::string& common, std::string_view name) {
    const auto differ = std::mismatch(common.begin(), common.end(), name.begin(), name.end());
    auto length = static_cast<size_t>(differ.first - common.begin());
    while (length != 0 && length < common.size() && GoesOnACharacter(common[length])) {
        --length;
    }
    common.resize(length);
}

}  // namespace

void CCandidates::Offer(std::string_view name, std::string_view mark, std::string_view link) {
    if (!name.starts_with(m_typed)) {
        return;
    }
    ++m_count;
    m_goes_on = !link.empty();
    if (m_count == 1) {
        m_common = std::string(name) + std::string(link);
    } else {
        ShortenToCommon(m_common, name);
    }
    if (m_listed.size() < LISTED) {
        m_listed.push_back(Printable(name) + std::string(mark));
    }
}

std::string InColumns(const std::vector<std::string>& entries, size_t more, unsigned int columns) {
    size_t width = 0;
    for (const std::string& entry : entries) {
        width = std::max(width, ColumnsOf(entry));
    }
    // The last column is left free: some terminals go to the next row behind it.
    const size_t across = std::max<size_t>(1, (columns - 1 + GAP) / (width + GAP));
    const size_t down = (entries.size() + across - 1) / across;
    std::string text;
    for (size_t row = 0; row < down; ++row) {
        size_t blanks = 0;
        for (size_t i = row; i < entries.size(); i += down) {
            text += std::string(blanks, ' ') + entries[i];
            blanks = width + GAP - ColumnsOf(entries[i]);
        }
        text += '\n';
    }
    if (more != 0) {
        text += "... and " + std::to_string(more) + " more\n";
    }
    return text;
}
