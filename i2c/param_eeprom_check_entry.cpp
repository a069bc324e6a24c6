// How "check-param-eeprom" compares one module.
#include "framework/diag_log_word.h"
#include "i2c/param_eeprom_check_cmd.h"

namespace {

// Both halves of an identifier, of which the compact layout stores one word.
struct CIdentifier {
    uint32_t high;
    uint32_t low;

    static CIdentifier Of(const std::vector<uint32_t>& words) {
        return {words.size() == 2 ? words.front() : 0, words.back()};
    }
};

}  // namespace

bool CParamEepromCmdCheck::checkManufacturerId(uint32_t i) {
    // The registers of the module before left it behind this one's first word.
    if (i > 0) {
        m_offset -= DIMM_WORD;
    }
    SendLog(LW_SW_TRACE, "Check Manufacturer Id m_offset=%d\n", m_offset);
    const std::vector<uint32_t> expected = ManufacturerWords(Layout(), m_dimmtable->entry[i]);
    std::vector<uint32_t> read;
    for (size_t word = 0; word < expected.size(); ++word) {
        read.push_back(readWord());
        m_offset += DIMM_WORD;
    }
    if (read != expected) {
        const CIdentifier wanted = CIdentifier::Of(expected);
        const CIdentifier found = CIdentifier::Of(read);
        SendLog(LW_ERR_TEST,
                "Dimm[%d]:ManufacturerID does not match! expected: 0x%08X%08X , read: "
                "0x%08X%08X\n",
                i, wanted.high, wanted.low, found.high, found.low);
    }
    return read == expected;
}

bool CParamEepromCmdCheck::checkDimmPartNum(uint32_t i) {
    bool match = true;
    int number = 0;
    for (const uint32_t expected : PartNumberWords(Layout(), m_dimmtable->entry[i])) {
        const uint32_t read = readWord();
        m_offset += DIMM_WORD;
        if (read != expected) {
            SendLog(LW_ERR_TEST,
                    "(%d)Dimm[%d]:Part Number does not match! expected: 0x%08X, read: 0x%08X\n",
                    number, i, expected, read);
            match = false;
        }
        ++number;
    }
    return match;
}

bool CParamEepromCmdCheck::checkRevisions(uint32_t i) {
    SendLog(LW_SW_TRACE, "Check Revisions m_offset=%d\n", m_offset);
    return checkWord(i, RevisionWord(m_dimmtable->entry[i]));
}

bool CParamEepromCmdCheck::checkNumRegisters(uint32_t i) {
    SendLog(LW_SW_TRACE, "Check Num Registers m_offset=%d\n", m_offset);
    return checkWord(i, m_dimmtable->entry[i].num_Reg);
}

// Test stations know the line for a wrong number of registers too, though it
// names the revision.
bool CParamEepromCmdCheck::checkWord(uint32_t i, uint32_t expected) {
    const uint32_t read = readWord();
    m_offset += DIMM_WORD;
    if (read != expected) {
        SendLog(LW_ERR_TEST,
                "Dimm[%d]:Revision Pattern does not match! expected: 0x%08X, read: 0x%08X\n", i,
                expected, read);
    }
    return read == expected;
}

bool CParamEepromCmdCheck::checkAddrValues(uint32_t i) {
    SendLog(LW_SW_TRACE, "Check Addr & Values m_offset=%d\n", m_offset);
    const uint32_t pairs = m_dimmtable->entry[i].num_Reg;
    bool match = true;
    m_offset = static_cast<uint16_t>(m_dimmtable->Regs_offsets[i]);
    for (uint32_t k = 0; k < pairs; ++k) {
        match = checkRegisterOffset(i, k) && match;
    }
    m_offset = static_cast<uint16_t>(m_dimmtable->Regs_offsets[i] + DIMM_WORD);
    for (uint32_t k = 0; k < pairs; ++k) {
        match = checkRegisterValue(i, k) && match;
    }
    return match;
}

uint32_t CParamEepromCmdCheck::readRegisterWord() {
    SendLog(LW_SW_TRACE, "Read Addr m_offset=%d\n", m_offset);
    const uint32_t read = readWord();
    SendLog(LW_SW_TRACE, "Store Addr m_offset=%d\n", m_offset);
    m_offset += DIMM_PAIR;
    return read;
}

bool CParamEepromCmdCheck::checkRegisterOffset(uint32_t i, uint32_t k) {
    const uint32_t expected = m_dimmtable->entry[i].Register_Array.reg_offset[k];
    const uint32_t read = readRegisterWord();
    if (read != expected) {
        SendLog(LW_SW_TRACE,
                "Dimm[%d]:Register Offset %d does not match! expected: 0x%08X, read: 0x%08X\n", i,
                k, expected, read);
    }
    return read == expected;
}

bool CParamEepromCmdCheck::checkRegisterValue(uint32_t i, uint32_t k) {
    const uint32_t expected = m_dimmtable->entry[i].Register_Array.reg_val[k];
    const uint32_t read = readRegisterWord();
    if (read != expected) {
        SendLog(LW_SW_TRACE,
                "Dimm[%d]:Register Value %d does not match! expected: 0x%08X, read: 0x%08X\n", i, k,
                expected, read);
    }
    return read == expected;
}
