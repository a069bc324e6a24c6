#include "i2c/diag_param_eeprom_xml_parser_tag.h"

#include <algorithm>
#include <limits>

namespace {

std::vector<Tag*> TagsOccurring(const MTag& tags, uint32_t instances) {
    std::vector<Tag*> found;
    for (const auto& [id, tag] : tags) {
        if (tag->getInstance() == instances) {
            found.push_back(tag);
        }
    }
    return found;
}

uint8_t InitialOf(std::string_view name) {
    return name.empty() ? uint8_t{0} : static_cast<uint8_t>(name.front());
}

}  // namespace

Tag::~Tag() = default;

// NOLINTNEXTLINE(misc-unconventional-assign-operator): as in the header.
Tag& Tag::operator=(const Tag& other) {
    if (this != &other) {
        m_tagname = other.m_tagname;
        m_entryCount = other.m_entryCount;
        m_tagID = other.m_tagID;
        m_instance = other.m_instance;
    }
    return *this;
}

uint32_t Tag::getTextNodeCountwith(uint32_t entry) const {
    return static_cast<uint32_t>(
        std::count_if(m_text_nodes.begin(), m_text_nodes.end(),
                      [entry](const TextNode* node) { return node->entry == entry; }));
}

bool MTag::insert(Tag* tag) {
    const bool by_id = m_tagMap.emplace(tag->getTagID(), tag).second;
    const bool by_name = find(tag->getTagname()) == nullptr;
    if (by_name) {
        m_tags_by_initial[InitialOf(tag->getTagname())].push_back(tag);
    }
    return by_id && by_name;
}

Tag* MTag::find(tag_types id) const {
    const auto found = m_tagMap.find(id);
    return found == m_tagMap.end() ? nullptr : found->second;
}

Tag* MTag::find(std::string_view name) const {
    for (Tag* tag : m_tags_by_initial[InitialOf(name)]) {
        if (name == tag->getTagname()) {
            return tag;
        }
    }
    return nullptr;
}

std::vector<Tag*> MTag::find_Min_instance_tag() const {
    uint32_t least = std::numeric_limits<uint32_t>::max();
    for (const auto& [id, tag] : m_tagMap) {
        least = std::min(least, tag->getInstance());
    }
    return TagsOccurring(*this, least);
}

std::vector<Tag*> MTag::find_Max_instance_tag() const {
    uint32_t most = 0;
    for (const auto& [id, tag] : m_tagMap) {
        most = std::max(most, tag->getInstance());
    }
    return TagsOccurring(*this, most);
}

bool MTag::isEntryTag(tag_types id) {
    return id == JEDEC_MANUFACTURER_ID || id == DIMM_PART_NUM || id == REVISION_START ||
           id == REVISION_END;
}

bool MTag::isDimmHeaderTag(tag_types id) {
    return id == DIMM_VERSION || id == SIGNATURE;
}
