#include "i2c/diag_param_eeprom_xml_parser.h"

#include <algorithm>
#include <string_view>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "i2c/dimm_table_text.h"

namespace {

// Of entities within entities a few lines can make any number of nodes.
constexpr size_t MAX_ENTITY_NODES = 10'000;
constexpr unsigned int MAX_ENTITY_DEPTH = 32;

std::string_view View(const xmlChar* text) {
    // xmlChar is UTF-8 in an unsigned char.
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
        throw XML_FORMAT_ERROR;
    }
    return printDimmTable();
}

void Parser::getXmlDoc() {
    switch (m_document.Read(m_filename)) {
        case CDimmTableDocument::EResult::READ:
            return;
        case CDimmTableDocument::EResult::NO_DOCUMENT:
            throw NO_XML_FILE_FOUND;
        case CDimmTableDocument::EResult::TOO_LARGE:
            Refuse(m_document.Fault());
    }
}

// `entities`: how deep within entities the nodes stand.
void Parser::extract_data(const xmlNode* node, unsigned int entities) {
    for (; node != nullptr; node = node->next) {
        if (entities > 0 && ++m_entity_nodes > MAX_ENTITY_NODES) {
            Refuse(m_filename + std::string(": more than 10000 nodes within entities"));
        }
        if (node->type == XML_ELEMENT_NODE) {
            m_doc_strippedDown.push_back(node->name);
        } else if (node->type == XML_TEXT_NODE && node->content != nullptr &&
                   !IsLayout(node->content)) {
            m_doc_strippedDown.push_back(node->content);
        }
        if (node->type == XML_ENTITY_REF_NODE) {
            extract_entity(node, entities + 1);
        } else {
            extract_data(node->children, entities);
        }
    }
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
    diag_pf_send_log(LW_SW_TRACE, "finished countTagOccurance()\n\n");
    checkTagsNonZero();
    diag_pf_send_log(LW_SW_TRACE, "finished checkTagsNonZero()\n\n");
    checkHeaderTagsEq();
    diag_pf_send_log(LW_SW_TRACE, "finished checkHeaderTagsEq()\n\n");
}

void Parser::countTagOccurance() {
    for (size_t at = 0; at < m_doc_strippedDown.size(); ++at) {
        if (Tag* tag = m_TagContainer.find(View(m_doc_strippedDown[at]))) {
            tag->incInstance();
            m_found.push_back({tag, at});
        }
    }
}

void Parser::checkTagsNonZero() const {
    const std::vector<Tag*> rarest = m_TagContainer.find_Min_instance_tag();
    if (rarest.empty()) {
        diag_pf_send_log(LW_ERR_TEST, "error : No Tags in m_TagContainer.\n");
        throw XML_NO_TAGS;
    }
    if (rarest.front()->getInstance() != 0) {
        return;
    }
    for (const Tag* tag : rarest) {
        if (!MayBeAbsent(tag->getTagname())) {
            diag_pf_send_log(LW_ERR_TEST, "error : \"%s\"\n", tag->getTagname());
            throw XML_MISSING_TAGS;
        }
        diag_pf_send_log(LW_SW_TRACE, "Warning : \"%s\" not found but ignored.", tag->getTagname());
    }
}

void Parser::checkHeaderTagsEq() const {
    if (!MTag::checkHeaderTagsEq()) {
        diag_pf_send_log(LW_ERR_TEST, "error: dimm table header format is incorrect %s\n",
                         m_filename);
        throw XML_FORMAT_ERROR;
    }
}

// The text of an element is what follows its name. An offset or value belongs to
// the latest "register_set", and before any to the first module.
void Parser::placeTextNodesinTags() {
    for (const CFound& found : m_found) {
        Tag& tag = *found.tag;
        if (found.at + 1 == m_doc_strippedDown.size()) {
            Refuse("\"" + std::string(tag.getTagname()) + "\" is the last item and has no text");
        }
        const bool in_set = tag.getTagID() == OFFSET || tag.getTagID() == VALUE;
        if (!in_set) {
            tag.incEntryCount();
        }
        if (tag.getTagID() == REGISTER_SET) {
            m_dimmTableTags.offset.incEntryCount();
            m_dimmTableTags.value.incEntryCount();
        }
        m_text_nodes.push_back({std::string(View(m_doc_strippedDown[found.at + 1])),
                                std::max(tag.getEntryCount(), uint32_t{1})});
        tag.insertaTextNode(&m_text_nodes.back());
    }
}

std::vector<std::string> Parser::printDimmTable() const {
    std::vector<std::string> pieces;
    for (uint32_t k = 0; k < m_dimmtable->num_Entries; ++k) {
        diag_pf_send_log(LW_SW_TRACE, "printDimmTable()[%d]...\n\n", k);
        AppendEntryText(pieces, *m_dimmtable, m_dimmtable->entry[k]);
    }
    return pieces;
}
