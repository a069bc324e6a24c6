// The XML document of a DIMM table, read with bounds: whoever writes it decides
// neither what else is read nor how much memory or time that takes.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>

class CDimmTableDocument {
  public:
    // A plain file is not read at all when it is larger.
    static constexpr size_t MAX_BYTES = 64UL << 20;
    static constexpr size_t MAX_DEPTH = 64;

    enum class EResult {
        READ,
        NO_DOCUMENT,  // no such plain file, or not well-formed
        TOO_LARGE,    // a bound was passed
    };

    CDimmTableDocument();
    ~CDimmTableDocument();
    CDimmTableDocument(const CDimmTableDocument&) = delete;
    CDimmTableDocument& operator=(const CDimmTableDocument&) = delete;

    // Reads that file alone: neither the network nor what it names elsewhere.
    EResult Read(const char* filename);
    // Null when nothing was read.
    xmlNode* Root() const;
    // No fewer nodes than there are, attributes not counted.
    size_t NodeCount() const { return m_nodes; }
    // What was wrong, with file and line; empty while nothing was.
    const std::string& Fault() const { return m_fault; }

  private:
    struct CFreeDoc {
        void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
    };

    EResult Refuse(EResult result, std::string fault);

    std::unique_ptr<xmlDoc, CFreeDoc> m_doc;
    size_t m_nodes = 0;
    std::string m_fault;
};
