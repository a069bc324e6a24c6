// The elements that a DIMM table document is made of, and what was found of each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

enum tag_types : uint32_t {
    DIMM_VERSION = 0,
    JEDEC_MANUFACTURER_ID = 1,
    SIGNATURE = 2,
    DIMM_PART_NUM = 3,
    REVISION_START = 4,
    REVISION_END = 5,
    REGISTER_SET = 6,
    OFFSET = 7,
    VALUE = 8,
    GENERIC = 9,  // no element yet
    ERROR = 10,
};

// The text of one occurrence of an element.
struct TextNode {
    const char* textString = "";  // the document's own
    uint64_t number = 0;          // what the text is as a hexadecimal number
    uint32_t entry = 0;           // the module that it belongs to, from 1
};

// One known element.
class Tag {
  public:
    Tag() = default;
    Tag(const char* tagname, tag_types tagID) : m_tagname(tagname), m_tagID(tagID) {}
    // The texts that were found stay with the one that found them.
    Tag(const Tag& other)
        : m_tagname(other.m_tagname),
          m_tagID(other.m_tagID),
          m_instance(other.m_instance),
          m_entryCount(other.m_entryCount) {}
    virtual ~Tag();
    // NOLINTNEXTLINE(misc-unconventional-assign-operator): a kind of tag may keep more.
    virtual Tag& operator=(const Tag& other);

    tag_types getTagID() const { return m_tagID; }
    const char* getTagname() const { return m_tagname.c_str(); }
    // How often the element occurs in the document.
    uint32_t getInstance() const { return m_instance; }
    // The module that the occurrences belong to which are numbered now.
    uint32_t getEntryCount() const { return m_entryCount; }
    void incInstance() { ++m_instance; }
    void incEntryCount() { ++m_entryCount; }

    // Appends; `node` must live as long as this tag is asked for it.
    void insertaTextNode(TextNode* node) { m_text_nodes.push_back(node); }
    void reserveTextNodes() { m_text_nodes.reserve(m_instance); }
    std::vector<TextNode*> getTextnodes() const { return m_text_nodes; }
    size_t getTextNodeCount() const { return m_text_nodes.size(); }
    // Throws std::out_of_range.
    TextNode* getaTextNode(uint32_t index) const { return m_text_nodes.at(index); }
    // How many of the texts belong to module `entry`.
    uint32_t getTextNodeCountwith(uint32_t entry) const;

  private:
    std::string m_tagname = "N/A";
    tag_types m_tagID = GENERIC;
    uint32_t m_instance = 0;
    uint32_t m_entryCount = 0;
    std::vector<TextNode*> m_text_nodes;
};

// The tags by identifier and by name; owns none of them.
class MTag {
  public:
    using CTags = std::map<tag_types, Tag*>;

    // False when one of that identifier or that name is there already.
    bool insert(Tag* tag);
    // Null when there is none.
    Tag* find(tag_types id) const;
    Tag* find(std::string_view name) const;
    // By identifier.
    CTags::const_iterator begin() const { return m_tagMap.begin(); }
    CTags::const_iterator end() const { return m_tagMap.end(); }

    // All tags that occur least often, or most often, by identifier.
    std::vector<Tag*> find_Min_instance_tag() const;
    std::vector<Tag*> find_Max_instance_tag() const;

    // Whether each module has one.
    static bool isEntryTag(tag_types id);
    // Whether the table has one.
    static bool isDimmHeaderTag(tag_types id);
    // Whether the elements of the header fit together. They always do: of several
    // the first one counts.
    static bool checkHeaderTagsEq() { return true; }

  private:
    CTags m_tagMap;
    // By the first byte of the name, which tells nearly all names and texts apart.
    std::array<std::vector<Tag*>, 256> m_tags_by_initial;
};

// One tag for each known element.
struct DimmTableTags {
    Tag dimm_version_num;
    Tag jedec_manufacturer_id;
    Tag signature;
    Tag dimm_part_num;
    Tag revision_start;
    Tag revision_end;
    Tag register_set;
    Tag offset;
    Tag value;
};
