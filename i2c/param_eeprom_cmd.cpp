#include "i2c/param_eeprom_cmd.h"

#include <algorithm>
#include <array>
#include <exception>

#include "i2c/diag_param_eeprom.h"
#include "i2c/diag_param_eeprom_xml_parser.h"

namespace {

// No card has all these names at once, so every card passes.
constexpr std::array<const char*, 9> CARDS = {"Orvalis", "Damaskel", "Frostwhale",
                                              "Mirel",   "Gantrell", "Borrick",
                                              "Wexley",  "Sandpike", "Copperjaw"};

const char* NameOf(Xml_Exceptions fault) {
    switch (fault) {
        case NO_XML_FILE_FOUND:
            return "NO_XML_FILE_FOUND";
        case XML_FORMAT_ERROR:
            return "XML_FORMAT_ERROR";
        case XML_MISSING_TAGS:
            return "XML_MISSING_TAGS";
        case XML_NO_TAGS:
            return "XML_NO_TAGS";
    }
    return "unknown";
}

// The text of what is being handled.
std::string CurrentText() {
    try {
        throw;
    } catch (const CDiagException& e) {
        return e.what();
    } catch (const Xml_Exceptions fault) {
        return NameOf(fault);
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "an exception of an unknown kind";
    }
}

}  // namespace

CParamEepromCmd::CParamEepromCmd(const std::string& name, const std::string& description,
                                 bool isSWAL, CDiagParamEepromDevice* dev)
    : CDiagFunc(name, description, 0), m_isSWAL(isSWAL), m_pDev(dev) {}

CParamEepromCmd::~CParamEepromCmd() = default;

void CParamEepromCmd::countWords(uint32_t done, uint32_t total) {
    if (!ProgressCb(done, total)) {
        throw CStopped();
    }
}

void CParamEepromCmd::getInput(CInMsg& in) {
    m_param_xml_filename.clear();
    m_xmlfile_specified = false;
    try {
        if (in.GetLen() != 0) {
            in >> m_param_xml_filename;
        }
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_TEST, "Params exception: %s", e.what());
        throw CDiagException("%s", e.what());
    }
    if (!m_param_xml_filename.empty()) {
        SendLog(LW_SW_TRACE, "XML file is : %s\n", m_param_xml_filename.c_str());
        m_xmlfile_specified = true;
    }
}

void CParamEepromCmd::init() {
    try {
        checkifCardSupported();
        m_dimmtable = std::make_unique<DimmTable>();
        if (m_xmlfile_specified) {
            getDimmTableFrom(m_param_xml_filename);
        } else {
            getDefDimmTable();
        }
        requireStorable();
        SendLog(LW_SW_TRACE, "m_dimmtable->dimmtable_size = %d\n", m_dimmtable->dimmtable_size);
        m_dimmtbl_arr.assign(m_dimmtable->dimmtable_size, 0);
    } catch (const CStopped&) {
        throw;
    } catch (...) {
        const std::string text = CurrentText();
        SendLog(LW_ERR_TEST, "init function failed: %s %s", "init", text.c_str());
        throw CDiagException("%s", text.c_str());
    }
}

bool CParamEepromCmd::checkifCardA(const char* name) const {
    const std::string type = getCardType();
    if (type != name) {
        return false;
    }
    SendLog(LW_SW_TRACE, "Card Type = %s\n", type.c_str());
    return true;
}

void CParamEepromCmd::checkifCardSupported() const {
    const std::string type = getCardType();
    if (std::any_of(CARDS.begin(), CARDS.end(), [&](const char* card) { return type != card; })) {
        return;
    }
    SendLog(LW_ERR_TEST, "CMBE_CARD_TYPE register doesn't match any supported cardtypes %s failed",
            "checkifCardSupported");
    throw CDiagException("CMBE_CARD_TYPE register doesn't match any supported cardtype %s failed",
                         "checkifCardSupported");
}

void CParamEepromCmd::getDefDimmTable() {
    getDimmTableFrom(DEFAULT_FILE);
}

void CParamEepromCmd::getDimmTableFrom(const std::string& file) {
    SendLog(LW_SW_TRACE, "Parsing XML... \n");
    parse(file.c_str());
    SendLog(LW_SW_TRACE, "Done Setting Dimmtable structure! \n");
    if (m_dimmtable->num_Entries == 0) {
        SendLog(LW_ERR_TEST, "Error: Parser returned empty dimm table \n");
        throw CDiagException("Parser failed.");
    }
    setDimmTableSz(m_dimmtable.get());
}

void CParamEepromCmd::parse(const char* file) {
    try {
        Parser parser(file, m_dimmtable.get());
        try {
            const std::vector<std::string> pieces = parser.parse();
            SendLog(LW_SW_TRACE, "Done Parsing XML! \n");
            for (const std::string& piece : pieces) {
                countWords(0, 0);
                SendLog(LW_SW_TRACE, "%s", piece.c_str());
            }
        } catch (const Xml_Exceptions fault) {
            reportXmlFault(fault, file, parser.getReadFault().c_str());
            throw;
        }
    } catch (const ParserException& e) {
        SendLog(LW_ERR_TEST, "Parser exception thrown: %s %s", "getDimmTableFrom", e.what());
        throw CDiagException("Parser failed ");
    }
}

// `read_fault`: why there is no document, where that is the fault.
void CParamEepromCmd::reportXmlFault(Xml_Exceptions fault, const char* file,
                                     const char* read_fault) const {
    SendLog(LW_ERR_TEST, "HEREEE_ERRORR!!\n");
    switch (fault) {
        case XML_FORMAT_ERROR:
            SendLog(LW_ERR_TEST,
                    "Error: Xml Parsing failed. XML file \"%s\" format is incorrect.Exception "
                    "caught in : %s",
                    file, "getDimmTableFrom");
            break;
        case NO_XML_FILE_FOUND:
            SendLog(LW_ERR_TEST,
                    "Error: Xml Parsing failed. Xml file \"%s\" can not be found.\nException "
                    "caught in : %s",
                    file, "getDimmTableFrom");
            // A file that is there may still be no XML.
            SendLog(LW_ERR_TEST, "%s\n", read_fault);
            break;
        case XML_MISSING_TAGS:
            SendLog(LW_ERR_TEST,
                    "Error: Xml Parsing failed. XML file \"%s\" format is incorrect. Missing "
                    "tag(s)\n",
                    file);
            break;
        case XML_NO_TAGS:
            SendLog(LW_ERR_TEST,
                    "Error: Xml Parsing failed. XML file \"%s\" format is incorrect. No Tags "
                    "were found.\n",
                    file);
            break;
    }
}

void CParamEepromCmd::setDimmTableSz(DimmTable* table) const {
    const uint32_t entry_words = CDimmLayout::Of(*table).entry_words;
    uint32_t pos = DIMM_FIRST_ENTRY_AT + DIMM_WORD * entry_words;
    table->Regs_offsets.push_back(pos);
    SendLog(LW_SW_TRACE, "Num of entries = %d\n", table->num_Entries);
    uint32_t pairs = 0;
    for (uint32_t i = 0; i < table->num_Entries; ++i) {
        Entries& entry = table->entry[i];
        entry.num_Reg = static_cast<uint32_t>(entry.Register_Array.reg_offset.size());
        pairs += entry.num_Reg;
        pos += DIMM_PAIR * entry.num_Reg + DIMM_WORD * entry_words;
        table->Regs_offsets.push_back(pos);
        SendLog(LW_SW_TRACE, "num of Reg offsets = %d\n", entry.num_Reg);
    }
    table->dimmtable_size =
        DIMM_FIRST_ENTRY_AT + DIMM_WORD * table->num_Entries * entry_words + DIMM_PAIR * pairs;
    SendLog(LW_SW_TRACE, "size of dimmtable = %d\n", table->dimmtable_size);
}
