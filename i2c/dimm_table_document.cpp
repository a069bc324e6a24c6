#include "i2c/dimm_table_document.h"

#include <fcntl.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlversion.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

#include "framework/file_descriptor.h"

namespace {

// The headers that the tables of the field were first read with: 2.7.7.
constexpr int XML_HEADERS = 20707;

constexpr const char* TOO_MANY_BYTES = "more than 67108864 bytes";

// The process-wide tables of libxml2, for as long as this library is loaded.
// Cleaning up while any thread has still to use them, or only to end, is
// undefined; so it is done once, not after every document.
struct CXmlTables {
    CXmlTables() { xmlCheckVersion(XML_HEADERS); }
    ~CXmlTables() { xmlCleanupParser(); }
    CXmlTables(const CXmlTables&) = delete;
    CXmlTables& operator=(const CXmlTables&) = delete;
};

struct CFreeContext {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

// What one reading has met so far. It is found again through the parser's context.
struct CReading {
    CReading(const char* name, int file) : filename(name), fd(file) {}

    const char* const filename;
    const int fd;
    size_t bytes = 0;
    size_t markup = 0;  // bytes since the latest node
    size_t nodes = 0;   // white space included
    size_t attributes = 0;
    size_t namespaces = 0;
    size_t names = 0;  // different ones, of elements and all else that libxml2 keeps once
    size_t references = 0;
    size_t depth = 0;
    bool looped = false;
    const char* passed = nullptr;  // the bound that was
    int line = 0;                  // where
    int read_error = 0;            // of the operating system
    std::string fault;             // the first one of the XML
};

struct CBound {
    size_t CReading::*count;
    size_t most;
    const char* text;
};

// A table comes nowhere near them. Where libxml2 compares each with each, or
// looks through all, they are what keeps the time within seconds.
constexpr CBound BOUNDS[] = {
    {&CReading::bytes, CDimmTableDocument::MAX_BYTES, TOO_MANY_BYTES},
    // In one tag, or in all declarations together.
    {&CReading::markup, 65536, "more than 65536 bytes of markup in one piece"},
    {&CReading::nodes, 4194304, "more than 4194304 nodes"},
    {&CReading::attributes, 10000, "more than 10000 attributes"},
    {&CReading::namespaces, 100, "more than 100 declarations of namespaces"},
    {&CReading::names, 65536, "more than 65536 different names"},
    {&CReading::references, 10000, "more than 10000 references to entities"},
    {&CReading::depth, CDimmTableDocument::MAX_DEPTH, "elements nested deeper than 64"},
};

xmlParserCtxt* ContextOf(void* context) {
    return static_cast<xmlParserCtxt*>(context);
}

CReading& ReadingOf(void* context) {
    return *static_cast<CReading*>(ContextOf(context)->_private);
}

// Notes the first bound that is passed.
void CheckBounds(CReading& reading) {
    for (const CBound& bound : BOUNDS) {
        if (reading.passed == nullptr && reading.*bound.count > bound.most) {
            reading.passed = bound.text;
        }
    }
}

// Gives the parser the next piece, and the end of the file too early once a
// bound was passed.
int ReadPiece(void* context, char* to, int size) {
    CReading& reading = *static_cast<CReading*>(context);
    ssize_t count = 0;
    do {
        count = ::read(reading.fd, to, static_cast<size_t>(size));
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        reading.read_error = errno;
        return 0;
    }
    reading.bytes += static_cast<size_t>(count);
    reading.markup += static_cast<size_t>(count);
    CheckBounds(reading);
    return reading.passed == nullptr ? static_cast<int>(count) : 0;
}

// Counts a node; false once a bound was passed. An entity's text is parsed by a
// context of its own, so the outer one has to be stopped too.
bool MayGoOn(void* context, size_t nodes) {
    CReading& reading = ReadingOf(context);
    reading.nodes += nodes;
    reading.names = static_cast<size_t>(xmlDictSize(ContextOf(context)->dict));
    if (ContextOf(context)->inSubset == 0) {  // a comment between declarations is no node
        reading.markup = 0;
    }
    CheckBounds(reading);
    if (reading.passed != nullptr) {
        reading.line = reading.line == 0 ? xmlSAX2GetLineNumber(context) : reading.line;
        xmlStopParser(ContextOf(context));
    }
    return reading.passed == nullptr;
}

void StartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int spaces, const xmlChar** space_list, int attributes, int defaulted,
                  const xmlChar** attribute_list) {
    ++ReadingOf(context).depth;
    ReadingOf(context).attributes += static_cast<size_t>(attributes);
    ReadingOf(context).namespaces += static_cast<size_t>(spaces);
    if (MayGoOn(context, 1)) {
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

// Of entities within entities a few lines make any number of references.
xmlEntity* Entity(void* context, const xmlChar* name) {
    ++ReadingOf(context).references;
    return MayGoOn(context, 0) ? xmlSAX2GetEntity(context, name) : nullptr;
}

// Its declarations are parsed anew at every reference, and count as often.
xmlEntity* ParameterEntity(void* context, const xmlChar* name) {
    xmlEntity* entity = xmlSAX2GetParameterEntity(context, name);
    ++ReadingOf(context).references;
    ReadingOf(context).markup += entity != nullptr ? static_cast<size_t>(entity->length) : 0;
    return MayGoOn(context, 0) ? entity : nullptr;
}

// Nothing beside the document itself is ever read.
xmlParserInput* ResolveNothing(void*, const xmlChar*, const xmlChar*) {
    return nullptr;
}

// Faults inside an entity have no file: lines are counted in the entity then.
std::string TextOf(const xmlError& error, const char* filename) {
    std::string text = error.message != nullptr ? error.message : "not well-formed";
    text.erase(text.find_last_not_of(" \n") + 1);
    const std::string line = error.file != nullptr ? ":" + std::to_string(error.line) : "";
    return filename + line + ": " + text;
}

void KeepFault(CReading& reading, const xmlError& error) {
    reading.looped = reading.looped || error.code == XML_ERR_ENTITY_LOOP;
    if (!reading.fault.empty() || error.level < XML_ERR_ERROR) {
        return;
    }
    try {
        reading.fault = TextOf(error, reading.filename);
    } catch (const std::bad_alloc&) {
        reading.fault.clear();  // libxml2 is C: nothing may be thrown through it
    }
}

void KeepFirstFault(void* context, xmlErrorPtr error) {
    KeepFault(ReadingOf(context), *error);
}

void KeepFaultOfThread(void* reading, xmlErrorPtr error) {
    KeepFault(*static_cast<CReading*>(reading), *error);
}

// Has the faults that libxml2 finds without knowing the document, as in its
// encoding, kept for a scope; it would print them.
class CThreadFaults {
  public:
    explicit CThreadFaults(CReading& reading)
        : m_context(xmlStructuredErrorContext), m_handler(xmlStructuredError) {
        xmlSetStructuredErrorFunc(&reading, KeepFaultOfThread);
    }
    ~CThreadFaults() { xmlSetStructuredErrorFunc(m_context, m_handler); }
    CThreadFaults(const CThreadFaults&) = delete;
    CThreadFaults& operator=(const CThreadFaults&) = delete;

  private:
    void* const m_context;
    const xmlStructuredErrorFunc m_handler;
};

void SetHandlers(xmlSAXHandler& sax) {
    sax.startElementNs = StartElement;
    sax.endElementNs = EndElement;
    sax.characters = Characters;
    sax.ignorableWhitespace = Characters;
    sax.cdataBlock = CdataBlock;
    sax.comment = Comment;
    sax.processingInstruction = Instruction;
    sax.reference = Reference;
    sax.getEntity = Entity;
    sax.getParameterEntity = ParameterEntity;
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
    const CFileDescriptor file(::open(filename, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat info {};
    if (!file.IsOpen() || ::fstat(file.Get(), &info) != 0) {
        return Refuse(EResult::NO_DOCUMENT, name + ": " + ReasonOf(errno));
    }
    if (!S_ISREG(info.st_mode)) {
        return Refuse(EResult::NO_DOCUMENT, name + ": is not a plain file");
    }
    if (static_cast<uint64_t>(info.st_size) > MAX_BYTES) {
        return Refuse(EResult::TOO_LARGE, name + ": " + TOO_MANY_BYTES);
    }

    const std::unique_ptr<xmlParserCtxt, CFreeContext> context(xmlNewParserCtxt());
    if (context == nullptr) {
        return Refuse(EResult::NO_DOCUMENT, name + ": " + ReasonOf(ENOMEM));
    }
    CReading reading(filename, file.Get());
    context->_private = &reading;
    SetHandlers(*context->sax);
    const CThreadFaults faults(reading);
    m_doc.reset(xmlCtxtReadIO(context.get(), ReadPiece, nullptr, &reading, filename, nullptr,
                              XML_PARSE_NONET));
    if (reading.read_error != 0) {
        return Refuse(EResult::NO_DOCUMENT, name + ": " + ReasonOf(reading.read_error));
    }
    if (reading.passed != nullptr) {
        const std::string line = reading.line != 0 ? ":" + std::to_string(reading.line) : "";
        return Refuse(EResult::TOO_LARGE, name + line + ": " + reading.passed);
    }
    if (m_doc != nullptr) {
        m_nodes = reading.nodes;
        return EResult::READ;
    }
    return Refuse(reading.looped ? EResult::TOO_LARGE : EResult::NO_DOCUMENT,
                  reading.fault.empty() ? name + ": is not well-formed XML" : reading.fault);
}

xmlNode* CDimmTableDocument::Root() const {
    return xmlDocGetRootElement(m_doc.get());
}
