#include "i2c/param_eeprom_check_cmd.h"

#include "framework/diag_command.h"
#include "framework/diag_param.h"
#include "i2c/diag_param_eeprom.h"

CParamEepromCmdCheck::CParamEepromCmdCheck(const std::string& name, const std::string& description,
                                           bool isSWAL, CDiagParamEepromDevice* dev)
    : CParamEepromCmd(name, description, isSWAL, dev) {
    AddChild(new CDiagParam(VT_STRING, "xml_filename", "xml file name containing Dimm table",
                            PT_IN | PT_OPTIONAL),
             NO_SORT);
    AddChild(new CDiagParam(VT_UINT32, "version", "XML Version", PT_OUT), NO_SORT);
    AddChild(new CDiagParam(VT_UINT32 | VF_HEX | VF_PAD, "crc32", "Computed CRC value", PT_OUT),
             NO_SORT);
}

void CParamEepromCmdCheck::Invoke(CInMsg& in, COutMsg& out) {
    const EEnd end = RunSteps(out, [&] {
        SendLog(LW_SW_TRACE, "Starting Parameter EEPROM Check...\n");
        m_print_check = std::make_unique<DimmCheck>();
        getInput(in);
        init();
        SendLog(LW_SW_TRACE, "Checking DimmVersionNum... \n");
        checkDimmVersionNum();
        SendLog(LW_SW_TRACE, "Checking DimmTableLength... \n");
        note(m_print_check->table_len_chk, checkDimmTableLength() == m_dimmtable->dimmtable_size);
        SendLog(LW_SW_TRACE, "Checking Signature... \n");
        checkSignature();
        SendLog(LW_SW_TRACE, "Checking NumEntriesHeader... \n");
        checkNumEntriesHeader();
        SendLog(LW_PRINT, "Supported DIMMs in XML file version %d:\n", m_dimmtable->dimm_version);
        for (uint32_t i = 0; i < m_dimmtable->num_Entries; ++i) {
            checkEntry(i);
        }
        const uint32_t crc = checkCRC();
        hex_dump(&m_dimmtbl_arr[DIMM_VERSION_AT], m_dimmtable->dimmtable_size - DIMM_VERSION_AT);
        SendLog(LW_PRINT, "XML Version : %d\n", m_dimmtable->dimm_version);
        SendLog(LW_PRINT, "CRC         : 0x%08X\n", crc);
        printResults();
        const bool passed = m_print_check->chk_result == EEPROM_MATCH;
        if (!passed) {
            SendLog(LW_PRINT, "Parameter EEPROM Check ended with failures.\n");
        }
        AnswerResult(out, passed);
        out << m_dimmtable->dimm_version << crc;
    });
    if (end == EEnd::STOPPED) {
        SendLog(LW_WARN, "Checking stopped before its end, the EEPROM is as it was\n");
    }
}

void CParamEepromCmdCheck::note(int& field, bool match) {
    field = match ? EEPROM_MATCH : EEPROM_MISMATCH;
    if (!match) {
        m_print_check->chk_result = EEPROM_MISMATCH;
    }
}

void CParamEepromCmdCheck::checkDimmVersionNum() {
    Step("checkDimmVersionNum", [this] {
        m_offset = DIMM_VERSION_AT;
        const uint32_t read = readWord();
        SendLog(LW_SW_TRACE, "Check Dimm Version 0x%08x\n", read);
        if (read != m_dimmtable->dimm_version) {
            SendLog(LW_ERR_TEST, "Dimm Version does not match! expected: 0x%08X, read: 0x%08X\n",
                    m_dimmtable->dimm_version, read);
        }
        note(m_print_check->version_num_chk, read == m_dimmtable->dimm_version);
    });
}

void CParamEepromCmdCheck::checkSignature() {
    Step("checkSignature", [this] {
        m_offset = DIMM_SIGNATURE_AT;
        const uint32_t read = readWord();
        if (read != m_dimmtable->signature) {
            SendLog(LW_ERR_TEST, "Signature does not match! expected: 0x%08X, read: 0x%08X\n",
                    m_dimmtable->signature, read);
        }
        note(m_print_check->signature_chk, read == m_dimmtable->signature);
    });
}

void CParamEepromCmdCheck::checkNumEntriesHeader() {
    Step("checkNumEntriesHeader", [this] {
        m_offset = DIMM_ENTRIES_AT;
        const uint32_t read = readWord();
        SendLog(LW_SW_TRACE, "Number of entries : 0x%08X\n", read);
        SendLog(LW_SW_TRACE, "Getting number of entries in header : DONE\n");
        note(m_print_check->num_entry_chk, read == m_dimmtable->num_Entries);
        m_offset += DIMM_WORD;
    });
}

void CParamEepromCmdCheck::checkEntry(uint32_t i) {
    SendLog(LW_PRINT, " %2d: \"%s\"\n", i, m_dimmtable->entry[i].PartNumText());
    AddCheck& check = m_print_check->dim_check.emplace_back();
    const auto step = [this](const char* name, int& field, auto&& work) {
        note(field, Step(name, work));
    };
    step("checkManufacturerId", check.manufacture_chk, [&] { return checkManufacturerId(i); });
    step("checkDimmPartNum", check.part_num_chk, [&] { return checkDimmPartNum(i); });
    step("checkRevisions", check.revision_chk, [&] { return checkRevisions(i); });
    step("checkNumRegisters", check.num_reg_chk, [&] { return checkNumRegisters(i); });
    step("checkAddrValues", check.addr_values_chk, [&] { return checkAddrValues(i); });
}

uint32_t CParamEepromCmdCheck::checkCRC() {
    return Step("checkCRC", [this] {
        const uint32_t computed = computeCRC();
        SendLog(LW_SW_TRACE, "Calculated CRC : 0x%08x\n", computed);
        m_offset = DIMM_CRC_AT;
        const uint32_t read = readWord();
        if (read != computed) {
            SendLog(LW_ERR_TEST, "CRC32 does not match! expected: 0x%08X, read: 0x%08X\n", computed,
                    read);
        }
        note(m_print_check->crc_chk, read == computed);
        return computed;
    });
}

void CParamEepromCmdCheck::printResults() const {
    const DimmCheck& check = *m_print_check;
    if (check.chk_result == EEPROM_MATCH) {
        SendLog(LW_PRINT, "EEPROM Parameters Verification PASSED\n");
        return;
    }
    SendLog(LW_PRINT, check.version_num_chk == EEPROM_MATCH ? "DimmVersionNum Match: TRUE\n"
                                                            : "DimmVersionNum Match: FALSE\n");
    SendLog(LW_PRINT, check.table_len_chk == EEPROM_MATCH ? "DimmTableLen Match: TRUE\n"
                                                          : "DimmTableLen Match: FALSE\n");
    SendLog(LW_PRINT, check.signature_chk == EEPROM_MATCH ? "Signature Match: TRUE\n"
                                                          : "Signature Match: FALSE\n");
    SendLog(LW_PRINT, check.num_entry_chk == EEPROM_MATCH ? "NumEntries Match: TRUE\n"
                                                          : "NumEntries Match: FALSE\n");
    int i = 0;
    for (const AddCheck& entry : check.dim_check) {
        printEntryResults(i++, entry);
    }
    SendLog(LW_PRINT, "EEPROM Parameters Verification FAILED!\n");
}

void CParamEepromCmdCheck::printEntryResults(int i, const AddCheck& check) const {
    SendLog(LW_INFO,
            check.manufacture_chk == EEPROM_MATCH ? "Dimm[%d]: ManufacturerID Match: TRUE\n"
                                                  : "Dimm[%d]: ManufacturerID Match: FALSE\n",
            i);
    SendLog(LW_INFO,
            check.part_num_chk == EEPROM_MATCH ? "Dimm[%d]: DimmPartNum Match: TRUE\n"
                                               : "Dimm[%d]: DimmPartNum Match: FALSE\n",
            i);
    SendLog(LW_INFO,
            check.revision_chk == EEPROM_MATCH ? "Dimm[%d]: DimmRevision Match: TRUE\n"
                                               : "Dimm[%d]: DimmRevision Match: FALSE\n",
            i);
    SendLog(LW_INFO,
            check.num_reg_chk == EEPROM_MATCH ? "Dimm[%d]: NumRegisters Match: TRUE\n"
                                              : "Dimm[%d]: NumRegisters Match: FALSE\n",
            i);
    SendLog(LW_INFO,
            check.addr_values_chk == EEPROM_MATCH ? "Dimm[%d]: DimmRegisterValues Match: TRUE\n"
                                                  : "Dimm[%d]: DimmRegisterValues Match: FALSE\n",
            i);
}
