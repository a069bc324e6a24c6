#include "tests/i2c/param_eeprom_test.h"

#include "framework/fmt_output.h"

namespace {

std::string Span(unsigned int offset) {
    return std::to_string(offset) + "+4";
}

// A number as it stands in the table's text.
std::string Wide(uint32_t value) {
    CFmtString text;
    text.printf(" 0x%08X", value);
    return text.c_str();
}

}  // namespace

CCalls ReadCalls(const std::vector<unsigned int>& offsets) {
    CCalls calls;
    for (const unsigned int offset : offsets) {
        calls.push_back("RD " + Span(offset));
    }
    return calls;
}

CCalls WriteCalls(const std::vector<unsigned int>& offsets) {
    CCalls calls;
    for (const unsigned int offset : offsets) {
        calls.push_back("WR " + Span(offset));
    }
    return calls;
}

CCalls VerifiedCalls(const std::vector<unsigned int>& offsets) {
    CCalls calls;
    for (const unsigned int offset : offsets) {
        calls.insert(calls.end(), {"WR " + Span(offset), "sleep 5", "RD " + Span(offset)});
    }
    return calls;
}

CStory& CStory::Calls(const CCalls& calls) {
    for (const std::string& call : calls) {
        Add(CJournal::CALL, call);
    }
    return *this;
}

CStory& CStory::Verifies(const std::vector<unsigned int>& offsets) {
    return Calls(VerifiedCalls(offsets));
}

CStory& CStory::Writes(const std::vector<unsigned int>& offsets) {
    return Calls(WriteCalls(offsets));
}

CStory& CStory::Reads(const std::vector<unsigned int>& offsets) {
    return Calls(ReadCalls(offsets));
}

CStory& CStory::Loads(const CTable& table, const std::string& file) {
    Says("XML file is : " + file + "\n");
    Says("Parsing XML... \n");
    Says("Starting init()...\n\n");
    Says("finished getXmlDoc()\n\n");
    Says("finished xmlDocGetRootElement()\n\n");
    Says("finished extract_data()\n\n");
    Says("starting checkForErrors()...\n\n");
    Says("finished countTagOccurance()\n\n");
    Says("finished checkTagsNonZero()\n\n");
    Says("finished checkHeaderTagsEq()\n\n");
    Says("finished checkForErrors()\n\n");
    Says("finished placeTextNodesinTags()\n\n");
    const std::string count = std::to_string(table.modules.size());
    for (const CModule& module : table.modules) {
        Says("convert_n_store[partNum=" + std::to_string(module.part.size()) + "]:..." +
             module.part + "\n");
    }
    Says("finished m_Assigner.assignData()\n\n");
    for (size_t i = 0; i < table.modules.size(); ++i) {
        Says("printDimmTable()[" + std::to_string(i) + "]...\n\n");
    }
    Says("Done Parsing XML! \n");
    for (const CModule& module : table.modules) {
        Says("Dimm Table Header: \nEntry " + count +
             "\nDimm version = " + std::to_string(table.version) + "\njedec_manufacturer_id = " +
             Wide(static_cast<uint32_t>(module.id >> 32)) + Wide(static_cast<uint32_t>(module.id)) +
             "\nDimm Table Sz = 0\nsignature = " + Wide(table.signature) +
             "\ndimm_part_num = " + module.part + "\nrevision_start = " + Wide(module.rev_start) +
             "\nrevision_end = " + Wide(module.rev_end) + "\nnum_reg = 0\nRegister Array:\n");
        for (const auto& [offset, value] : module.regs) {
            Says("\noffset = " + Wide(offset) + "\nvalue = " + Wide(value));
        }
        Says("\n\n");
    }
    Says("Done Setting Dimmtable structure! \n");
    Says("Num of entries = " + count + "\n");
    for (const CModule& module : table.modules) {
        Says("num of Reg offsets = " + std::to_string(module.regs.size()) + "\n");
    }
    const std::string size = std::to_string(ImageOf(table).size());
    Says("size of dimmtable = " + size + "\n");
    return Says("m_dimmtable->dimmtable_size = " + size + "\n");
}

void CParamEepromTest::MountParam(i2c_eeprom_attr_t attr) {
    m_device = new CTestParamEeprom(m_bus, &attr, -1);
    m_bus.AddChild(m_device, CDiagObj::NO_SORT);
}

void CParamEepromTest::MountParamBehindSwitch(i2c_eeprom_attr_t attr) {
    m_switch = new CJournalSwitch(m_journal, "mux", 0, 0x70, CHANNEL + 1);
    m_bus.AddChild(m_switch, CDiagObj::NO_SORT);
    m_device = new CTestParamEeprom(*m_switch, &attr, CHANNEL);
    m_switch->getChannelMenu(CHANNEL)->AddChild(m_device, CDiagObj::NO_SORT);
}

std::string CParamEepromTest::File(const std::string& xml, const std::string& name) {
    return m_folder.Write(name, Bytes(xml.begin(), xml.end())).string();
}

CEepromTest::Bytes CParamEepromTest::Memory(size_t addr, size_t count) {
    Bytes bytes;
    for (size_t i = 0; i < count; ++i) {
        bytes.push_back(m_bus.At(addr + i));
    }
    return bytes;
}

void CParamEepromTest::Store(const Bytes& image, size_t addr) {
    for (const uint8_t byte : image) {
        m_bus.At(addr++) = byte;
    }
}

void CParamEepromTest::StoreWord(size_t addr, uint32_t word) {
    Bytes bytes(4);
    SetWordAt(bytes, 0, word);
    Store(bytes, addr);
}

std::vector<CStory::Entry> CParamEepromTest::Story() const {
    std::vector<CStory::Entry> entries;
    for (const CStory::Entry& entry : m_journal.Entries()) {
        if (entry.first != LW_HW_TRACE) {
            entries.push_back(entry);
        }
    }
    return entries;
}

void CParamEepromTest::Forget() {
    m_log.Clear();
    m_journal.Clear();
}

CLines CParamEepromTest::Log() const {
    CLines lines;
    for (const CLogCapture::Line& line : m_log.Lines()) {
        if (line.first != LW_HW_TRACE) {
            lines.push_back(line);
        }
    }
    return lines;
}

CLines CParamEepromTest::LogWithoutDebug() const {
    CLines lines;
    for (const CLogCapture::Line& line : m_log.Lines()) {
        const ELogTypes type = LogTypeOf(line.first);
        if (type != LOG_LT_HW_DEBUG_BASE && type != LOG_LT_SW_DEBUG_BASE) {
            lines.push_back(line);
        }
    }
    return lines;
}

CEepromTest::Texts CParamEepromTest::LinesWith(const std::string& begin) const {
    Texts texts;
    for (const auto& [word, text] : m_log.Lines()) {
        if (text.starts_with(begin)) {
            texts.push_back(text);
        }
    }
    return texts;
}

CCalls CParamEepromTest::Transfers() const {
    CCalls transfers;
    for (const std::string& call : Calls()) {
        if (call.starts_with("RD ") || call.starts_with("WR ")) {
            transfers.push_back(call);
        }
    }
    return transfers;
}

CCalls CParamEepromTest::VerifiedPathCalls(const std::vector<unsigned int>& offsets) {
    CCalls calls;
    for (const unsigned int offset : offsets) {
        calls.insert(calls.end(), {SELECT, "WR " + Span(offset), CLOSE, "sleep 5", SELECT,
                                   "RD " + Span(offset), CLOSE});
    }
    return calls;
}
