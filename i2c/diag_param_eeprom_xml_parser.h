// Reads a DIMM table from its XML document. Nesting does not count: the k-th
// occurrence of an element belongs to the k-th module, and registers belong to
// the "register_set" that they follow.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "i2c/diag_param_eeprom_xml_parser_tag.h"
#include "i2c/dimm_table.h"
#include "i2c/dimm_table_assigner.h"
#include "i2c/dimm_table_document.h"
#include "i2c/xml_exceptions.h"

// A fault that one step of the parser found.
class ParserException {
  public:
    ParserException(const char* text, uint32_t length) : m_errorMsg(text, length) {}
    const char* what() const { return m_errorMsg.c_str(); }

  private:
    std::string m_errorMsg;
};

// For one document and one table, to be used for one `parse`.
class Parser {
  public:
    // Neither is owned; `table` must be empty.
    Parser(const char* filename, DimmTable* table);

    // Fills the table and returns it as text, in pieces. Throws Xml_Exceptions;
    // what was wrong stands in the log, for NO_XML_FILE_FOUND in getReadFault().
    std::vector<std::string> parse();

    DimmTable* getDimmTable() const { return m_dimmtable; }
    // Why the document could not be read, with file and line; empty when it could.
    const std::string& getReadFault() const { return m_document.Fault(); }

  private:
    void init();
    void getXmlDoc();
    void extract_data(const xmlNode* node, unsigned int entities);
    void countInEntity(const xmlNode& node);
    void extract_entity(const xmlNode* reference, unsigned int entities);
    void checkForErrors();
    void countTagOccurance();
    void checkTagsNonZero() const;
    void checkHeaderTagsEq() const;
    void placeTextNodesinTags();
    void placeTextNode(Tag& tag, size_t text_at);
    std::vector<std::string> printDimmTable() const;

    // A name or a text of the flattened document.
    struct CItem {
        const xmlChar* text = BAD_CAST "";
        Tag* tag = nullptr;   // where it is the name of a known element
        uint64_t number = 0;  // behind such a name
    };
    void append(const xmlChar* text);

    MTag m_TagContainer;
    DimmTableTags m_dimmTableTags;
    const char* const m_filename;
    CDimmTableDocument m_document;
    DataAssigner m_Assigner;
    // Element names and texts in document order; the document owns them.
    std::vector<CItem> m_doc_strippedDown;
    size_t m_entity_nodes = 0;
    size_t m_entity_bytes = 0;
    std::vector<TextNode> m_text_nodes;
    DimmTable* const m_dimmtable;
};
