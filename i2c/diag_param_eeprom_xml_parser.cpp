#include "i2c/diag_param_eeprom_xml_parser.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <system_error>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "i2c/dimm_table_text.h"

namespace {

// The largest EEPROM holds two thousand.
constexpr uint32_t MAX_MODULES = 100'000;
// Of entities within entities a few lines can make any number of nodes.
constexpr size_t MAX_ENTITY_NODES = 10'000;
constexpr size_t MAX_ENTITY_BYTES = 1UL << 20;
constexpr unsigned int MAX_ENTITY_DEPTH = 32;
constexpr int HEX_BASE = 16;

// As strtoull reads it in base 16, which takes most of the time of a large table:
// plain digits, as nearly all numbers are, are read here.
uint64_t HexValue(const char* text) {
    const bool prefixed = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* digits = prefixed ? text + 2 : text;
    const char* end = digits + std::strspn(digits, "0123456789ABCDEFabcdef");
    uint64_t value = 0;
    if (std::from_chars(digits, end, value, HEX_BASE).ec == std::errc()) {
        return value;
    }
    return std::strtoull(text, nullptr, HEX_BASE);
}

// xmlChar is a byte of UTF-8.
const char* Text(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

// White space that only lays the document out begins a line or is indented.
bool IsLayout(const xmlChar* text) {
    return *text == '\t' || *text == '\n';
}

[[noreturn]] void Refuse(const std::string& fault) {
    diag_pf_send_log(LW_ERR_TEST, "error : %s\n", fault.c_str());
    throw ParserException(fault.data(), static_cast<uint32_t>(fault.size()));
}

bool MayBeAbsent(std::string_view name) {
    return name == "offset" || name == "value" || name == "register_set";
}

}  // namespace

Parser::Parser(const char* filename, DimmTable* table)
    : m_filename(filename), m_Assigner(table, &m_TagContainer), m_dimmtable(table) {
    diag_pf_send_log(LW_SW_TRACE, "Starting init()...\n\n");
    init();
}

void Parser::init() {
    DimmTableTags& tags = m_dimmTableTags;
    tags.dimm_version_num = Tag("dimm_table_version", DIMM_VERSION);
    tags.jedec_manufacturer_id = Tag("jedec_manufacturer_id", JEDEC_MANUFACTURER_ID);
    tags.signature = Tag("signature", SIGNATURE);
    tags.dimm_part_num = Tag("dimm_part_num", DIMM_PART_NUM);
    tags.register_set = Tag("register_set", REGISTER_SET);
    tags.revision_start = Tag("revision_start", REVISION_START);
    tags.revision_end = Tag("revision_end", REVISION_END);
    tags.offset = Tag("offset", OFFSET);
    tags.value = Tag("value", VALUE);
    for (Tag* tag : {&tags.register_set, &tags.dimm_version_num, &tags.jedec_manufacturer_id,
                     &tags.signature, &tags.dimm_part_num, &tags.revision_start, &tags.revision_end,
                     &tags.offset, &tags.value}) {
        m_TagContainer.insert(tag);
    }
    m_dimmtable->num_Entries = 1;
}

std::vector<std::string> Parser::parse() {
    try {
        getXmlDoc();
        diag_pf_send_log(LW_SW_TRACE, "finished getXmlDoc()\n\n");
        const xmlNode* root = m_document.Root();
        m_doc_strippedDown.reserve(m_document.NodeCount());
        diag_pf_send_log(LW_SW_TRACE, "finished xmlDocGetRootElement()\n\n");
        extract_data(root, 0);
        diag_pf_send_log(LW_SW_TRACE, "finished extract_data()\n\n");
        checkForErrors();
        diag_pf_send_log(LW_SW_TRACE, "finished checkForErrors()\n\n");
        placeTextNodesinTags();
        diag_pf_send_log(LW_SW_TRACE, "finished placeTextNodesinTags()\n\n");
        m_Assigner.assignData();
        diag_pf_send_log(LW_SW_TRACE, "finished m_Assigner.assignData()\n\n");
    } catch (const ParserException&) {
        diag_pf_send_log(LW_ERR_TEST, "Error in Parsing. Check Xml file.\n");
        throw Xml_Exceptions(XML_FORMAT_ERROR);
    }
    return printDimmTable();
}

void Parser::getXmlDoc() {
    switch (m_document.Read(m_filename)) {
        case CDimmTableDocument::EResult::READ:
            return;
        case CDimmTableDocument::EResult::NO_DOCUMENT:
            throw Xml_Exceptions(NO_XML_FILE_FOUND);
        case CDimmTableDocument::EResult::TOO_LARGE:
            Refuse(m_document.Fault());
    }
}

// `entities`: how deep within entities the nodes stand.
void Parser::extract_data(const xmlNode* node, unsigned int entities) {
    for (; node != nullptr; node = node->next) {
        if (entities > 0) {
            countInEntity(*node);
        }
        if (node->type == XML_ELEMENT_NODE) {
            append(node->name);
        } else if (node->type == XML_TEXT_NODE && node->content != nullptr &&
                   !IsLayout(node->content)) {
            append(node->content);
        }
        if (node->type == XML_ENTITY_REF_NODE) {
            extract_entity(node, entities + 1);
        } else if (node->type != XML_TEXT_NODE) {
            extract_data(node->children, entities);
        }
    }
}

// What stands once in the document is used as often as an entity is referred to.
void Parser::countInEntity(const xmlNode& node) {
    if (++m_entity_nodes > MAX_ENTITY_NODES) {
        Refuse(m_filename + std::string(": more than 10000 nodes within entities"));
    }
    if (node.type == XML_TEXT_NODE && node.content != nullptr) {
        m_entity_bytes += std::strlen(Text(node.content));
    }
    if (m_entity_bytes > MAX_ENTITY_BYTES) {
        Refuse(m_filename + std::string(": more than 1048576 bytes of text within entities"));
    }
}

// All that the text can mean is found out while it is at hand: later, in a large
// document, it would have to be fetched again.
void Parser::append(const xmlChar* text) {
    const bool after_name = !m_doc_strippedDown.empty() && m_doc_strippedDown.back().tag != nullptr;
    m_doc_strippedDown.push_back(
        {text, m_TagContainer.find(Text(text)), after_name ? HexValue(Text(text)) : uint64_t{0}});
}

// What a reference stands for is below the entity's declaration; behind that
// come the declarations of others.
void Parser::extract_entity(const xmlNode* reference, unsigned int entities) {
    if (entities > MAX_ENTITY_DEPTH) {
        Refuse(m_filename + std::string(": entities nested deeper than 32"));
    }
    if (reference->children != nullptr) {
        extract_data(reference->children->children, entities);
    }
}

void Parser::checkForErrors() {
    diag_pf_send_log(LW_SW_TRACE, "starting checkForErrors()...\n\n");
    countTagOccurance();
    if (m_dimmTableTags.jedec_manufacturer_id.getInstance() > MAX_MODULES) {
        Refuse(m_filename + std::string(": more than 100000 modules"));
    }
    diag_pf_send_log(LW_SW_TRACE, "finished countTagOccurance()\n\n");
    checkTagsNonZero();
    diag_pf_send_log(LW_SW_TRACE, "finished checkTagsNonZero()\n\n");
    checkHeaderTagsEq();
    diag_pf_send_log(LW_SW_TRACE, "finished checkHeaderTagsEq()\n\n");
}

void Parser::countTagOccurance() {
    for (const CItem& item : m_doc_strippedDown) {
        if (item.tag != nullptr) {
            item.tag->incInstance();
        }
    }
}

void Parser::checkTagsNonZero() const {
    const std::vector<Tag*> rarest = m_TagContainer.find_Min_instance_tag();
    if (rarest.empty()) {
        diag_pf_send_log(LW_ERR_TEST, "error : No Tags in m_TagContainer.\n");
        throw Xml_Exceptions(XML_NO_TAGS);
    }
    if (rarest.front()->getInstance() != 0) {
        return;
    }
    for (const Tag* tag : rarest) {
        if (!MayBeAbsent(tag->getTagname())) {
            diag_pf_send_log(LW_ERR_TEST, "error : \"%s\"\n", tag->getTagname());
            throw Xml_Exceptions(XML_MISSING_TAGS);
        }
        diag_pf_send_log(LW_SW_TRACE, "Warning : \"%s\" not found but ignored.", tag->getTagname());
    }
}

void Parser::checkHeaderTagsEq() const {
    if (!MTag::checkHeaderTagsEq()) {
        diag_pf_send_log(LW_ERR_TEST, "error: dimm table header format is incorrect %s\n",
                         m_filename);
        throw Xml_Exceptions(XML_FORMAT_ERROR);
    }
}

// The text of an element is what follows its name. An offset or value belongs to
// the latest "register_set", and before any to the first module.
void Parser::placeTextNodesinTags() {
    size_t found = 0;
    for (const auto& [id, tag] : m_TagContainer) {
        tag->reserveTextNodes();
        found += tag->getInstance();
    }
    m_text_nodes.reserve(found);  // the tags point into it
    for (size_t at = 0; at < m_doc_strippedDown.size(); ++at) {
        if (Tag* tag = m_doc_strippedDown[at].tag) {
            placeTextNode(*tag, at + 1);
        }
    }
}

void Parser::placeTextNode(Tag& tag, size_t text_at) {
    const bool has_text = text_at < m_doc_strippedDown.size();
    // A module without registers ends in one that is empty.
    if (!has_text && tag.getTagID() != REGISTER_SET) {
        Refuse("\"" + std::string(tag.getTagname()) + "\" is the last item and has no text");
    }
    if (tag.getTagID() != OFFSET && tag.getTagID() != VALUE) {
        tag.incEntryCount();
    }
    if (tag.getTagID() == REGISTER_SET) {
        m_dimmTableTags.offset.incEntryCount();
        m_dimmTableTags.value.incEntryCount();
    }
    const CItem item = has_text ? m_doc_strippedDown[text_at] : CItem();
    m_text_nodes.push_back({.textString = Text(item.text),
                            .number = item.number,
                            .entry = std::max(tag.getEntryCount(), uint32_t{1})});
    tag.insertaTextNode(&m_text_nodes.back());
}

std::vector<std::string> Parser::printDimmTable() const {
    std::vector<std::string> pieces;
    pieces.reserve(CountPieces(*m_dimmtable));
    for (uint32_t k = 0; k < m_dimmtable->num_Entries; ++k) {
        diag_pf_send_log(LW_SW_TRACE, "printDimmTable()[%d]...\n\n", k);
        AppendEntryText(pieces, *m_dimmtable, m_dimmtable->entry[k]);
    }
    return pieces;
}
