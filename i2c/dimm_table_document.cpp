#include "i2c/dimm_table_document.h"

#include <fcntl.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlversion.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace {

// The headers that the tables of the field were first read with: 2.7.7.
constexpr int XML_HEADERS = 20707;

// The process-wide tables of libxml2, for as long as this library is loaded.
// Cleaning up while any thread has still to use them, or only to end, is
// undefined; so it is done once, not after every document.
struct CXmlTables {
    CXmlTables() { xmlCheckVersion(XML_HEADERS); }
    ~CXmlTables() { xmlCleanupParser(); }
    CXmlTables(const CXmlTables&) = delete;
    CXmlTables& operator=(const CXmlTables&) = delete;
};

class CDescriptor {
  public:
    explicit CDescriptor(int fd) : m_fd(fd) {}
    ~CDescriptor() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    int Get() const { return m_fd; }

  private:
    const int m_fd;
};

struct CFreeContext {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

// What one reading has met so far. It is found again through the parser's context.
struct CReading {
    size_t nodes = 0;
    unsigned int depth = 0;
    bool looped = false;
    const char* passed = nullptr;  // the bound that was
    int line = 0;                  // where
    std::string fault;             // the first one of the XML
};

xmlParserCtxt* ContextOf(void* context) {
    return static_cast<xmlParserCtxt*>(context);
}

CReading& ReadingOf(void* context) {
    return *static_cast<CReading*>(ContextOf(context)->_private);
}

// False once a bound was passed. An entity's text is parsed by a context of its
// own, so the outer one has to be stopped too.
bool MayGoOn(void* context, size_t nodes) {
    CReading& reading = ReadingOf(context);
    reading.nodes += nodes;
    if (reading.passed == nullptr) {
        if (reading.nodes > CDimmTableDocument::MAX_NODES) {
            reading.passed = "more than 4194304 nodes";
        } else if (reading.depth > CDimmTableDocument::MAX_DEPTH) {
            reading.passed = "elements nested deeper than 64";
        }
        reading.line = xmlSAX2GetLineNumber(context);
    }
    if (reading.passed != nullptr) {
        xmlStopParser(ContextOf(context));
    }
    return reading.passed == nullptr;
}

void StartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int spaces, const xmlChar** space_list, int attributes, int defaulted,
                  const xmlChar** attribute_list) {
    ++ReadingOf(context).depth;
    if (MayGoOn(context, 1 + static_cast<size_t>(spaces + attributes))) {
        xmlSAX2StartElementNs(context, name, prefix, uri, spaces, space_list, attributes, defaulted,
                              attribute_list);
    }
}

void EndElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri) {
    --ReadingOf(context).depth;
    if (MayGoOn(context, 0)) {
        xmlSAX2EndElementNs(context, name, prefix, uri);
    }
}

void Characters(void* context, const xmlChar* text, int length) {
    if (MayGoOn(context, 1)) {
        xmlSAX2Characters(context, text, length);
    }
}

void CdataBlock(void* context, const xmlChar* text, int length) {
    if (MayGoOn(context, 1)) {
        xmlSAX2CDataBlock(context, text, length);
    }
}

void Comment(void* context, const xmlChar* text) {
    if (MayGoOn(context, 1)) {
        xmlSAX2Comment(context, text);
    }
}

void Instruction(void* context, const xmlChar* target, const xmlChar* text) {
    if (MayGoOn(context, 1)) {
        xmlSAX2ProcessingInstruction(context, target, text);
    }
}

void Reference(void* context, const xmlChar* name) {
    if (MayGoOn(context, 1)) {
        xmlSAX2Reference(context, name);
    }
}

// Nothing beside the document itself is ever read.
xmlParserInput* ResolveNothing(void*, const xmlChar*, const xmlChar*) {
    return nullptr;
}

std::string TextOf(const xmlError& error, const char* filename) {
    std::string text = error.message != nullptr ? error.message : "not well-formed";
    text.erase(text.find_last_not_of(" \n") + 1);
    return (error.file != nullptr ? error.file : filename) + std::string(":") +
           std::to_string(error.line) + ": " + text;
}

void KeepFirstFault(void* context, xmlErrorPtr error) {
    CReading& reading = ReadingOf(context);
    reading.looped = reading.looped || error->code == XML_ERR_ENTITY_LOOP;
    if (reading.fault.empty() && error->level >= XML_ERR_ERROR) {
        reading.fault = TextOf(*error, ContextOf(context)->input != nullptr
                                           ? ContextOf(context)->input->filename
                                           : nullptr);
    }
}

void SetHandlers(xmlSAXHandler& sax) {
    sax.startElementNs = StartElement;
    sax.endElementNs = EndElement;
    sax.characters = Characters;
    sax.ignorableWhitespace = Characters;
    sax.cdataBlock = CdataBlock;
    sax.comment = Comment;
    sax.processingInstruction = Instruction;
    sax.reference = Reference;
    sax.resolveEntity = ResolveNothing;
    sax.serror = KeepFirstFault;
}

std::string ReasonOf(int error) {
    return std::generic_category().message(error);
}

}  // namespace

CDimmTableDocument::CDimmTableDocument() {
    static const CXmlTables tables;
}

CDimmTableDocument::~CDimmTableDocument() = default;

CDimmTableDocument::EResult CDimmTableDocument::Refuse(EResult result, std::string fault) {
    m_doc.reset();
    m_fault = std::move(fault);
    return result;
}

CDimmTableDocument::EResult CDimmTableDocument::Read(const char* filename) {
    const std::string name = filename;
    // A pipe or a device would be waited for, or never end.
    const CDescriptor file(::open(filename, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat info {};
    if (file.Get() < 0 || ::fstat(file.Get(), &info) != 0) {
        return Refuse(EResult::NO_DOCUMENT, name + ": " + ReasonOf(errno));
    }
    if (!S_ISREG(info.st_mode)) {
        return Refuse(EResult::NO_DOCUMENT, name + ": is not a plain file");
    }
    if (static_cast<uint64_t>(info.st_size) > MAX_BYTES) {
        return Refuse(EResult::TOO_LARGE, name + ": more than 67108864 bytes");
    }

    const std::unique_ptr<xmlParserCtxt, CFreeContext> context(xmlNewParserCtxt());
    if (context == nullptr) {
        return Refuse(EResult::NO_DOCUMENT, name + ": " + ReasonOf(ENOMEM));
    }
    CReading reading;
    context->_private = &reading;
    SetHandlers(*context->sax);
    m_doc.reset(xmlCtxtReadFd(context.get(), file.Get(), filename, nullptr, XML_PARSE_NONET));
    if (reading.passed != nullptr) {
        return Refuse(EResult::TOO_LARGE,
                      name + ":" + std::to_string(reading.line) + ": " + reading.passed);
    }
    if (m_doc != nullptr) {
        return EResult::READ;
    }
    return Refuse(reading.looped ? EResult::TOO_LARGE : EResult::NO_DOCUMENT,
                  reading.fault.empty() ? name + ": is not well-formed XML" : reading.fault);
}

xmlNode* CDimmTableDocument::Root() const {
    return xmlDocGetRootElement(m_doc.get());
}
