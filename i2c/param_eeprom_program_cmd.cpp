#include "i2c/param_eeprom_program_cmd.h"

#include <algorithm>
#include <cstring>

#include "framework/diag_command.h"
#include "framework/diag_param.h"
#include "i2c/diag_param_eeprom.h"

namespace {

bool IsPrintable(uint8_t character) {
    return character >= 0x20 && character <= 0x7E;
}

}  // namespace

CParamEepromCmdWrite::CParamEepromCmdWrite(const std::string& name, const std::string& description,
                                           bool isSWAL, CDiagParamEepromDevice* dev)
    : CParamEepromCmd(name, description, isSWAL, dev) {
    AddChild(new CDiagParam(VT_STRING, "xml_filename", "xml file name containing Dimm table",
                            PT_IN | PT_OPTIONAL),
             NO_SORT);
}

void CParamEepromCmdWrite::Invoke(CInMsg& in, COutMsg& out) {
    const EEnd end = RunSteps(out, [&] {
        SendLog(LW_SW_TRACE, "Starting Parameter EEPROM Program...\n");
        getInput(in);
        init();
        SendLog(LW_SW_TRACE, "Starting writeDimmVersionNum()... \n");
        writeDimmVersionNum();
        SendLog(LW_SW_TRACE, "Starting setDimmTableLength()... \n");
        setDimmTableLength();
        SendLog(LW_SW_TRACE, "Starting writeSignature()... \n");
        writeSignature();
        SendLog(LW_SW_TRACE, "Starting setNumEntriesHeader()... \n");
        setNumEntriesHeader();
        for (uint32_t i = 0; i < m_dimmtable->num_Entries; ++i) {
            writeManufacturerId(i);
            writeDimmPartNum(i);
            writeRevisions(i);
            writeNumRegisters(i);
            writeAddrValues(i);
        }
        writeCRC();
        AnswerResult(out, true);
    });
    if (end != EEnd::DONE) {
        reportIncomplete(end);
    }
}

void CParamEepromCmdWrite::writeDimmVersionNum() {
    Step("writeDimmVersionNum", [this] {
        m_offset = DIMM_VERSION_AT;
        eeprom_write32_verify(m_offset, m_dimmtable->dimm_version);
        SendLog(LW_SW_TRACE, "Dimm version : 0x%08X\n", m_dimmtable->dimm_version);
        SendLog(LW_SW_TRACE, "Setting Dimm version in header : DONE\n");
        m_offset += DIMM_WORD;
    });
}

void CParamEepromCmdWrite::writeSignature() {
    Step("writeSignature", [this] {
        m_offset = DIMM_SIGNATURE_AT;
        eeprom_write32_verify(m_offset, m_dimmtable->signature);
        SendLog(LW_SW_TRACE, "signature : 0x%08X\n", m_dimmtable->signature);
        SendLog(LW_SW_TRACE, "Writing signature : DONE\n");
    });
}

void CParamEepromCmdWrite::writeManufacturerId(uint32_t i) {
    Step("writeManufacturerId", [this, i] {
        // The registers of the module before left it behind this one's first word.
        if (i > 0) {
            m_offset -= DIMM_WORD;
        }
        for (const uint32_t word : ManufacturerWords(Layout(), m_dimmtable->entry[i])) {
            eeprom_write32_verify(m_offset, word);
            m_offset += DIMM_WORD;
        }
        SendLog(LW_SW_TRACE, "Writing manufacturer ID : DONE\n");
    });
}

void CParamEepromCmdWrite::writeDimmPartNum(uint32_t i) {
    Step("writeDimmPartNum", [this, i] {
        const Entries& entry = m_dimmtable->entry[i];
        const uint32_t size = Layout().part_number_size;
        SendLog(LW_SW_TRACE, "Part Number size : %d\n", size);
        uint32_t k = 0;
        for (const uint32_t word : PartNumberWords(Layout(), entry)) {
            reportIllegal(entry.PartNumText(), k, std::min(k + DIMM_WORD, size));
            eeprom_write32_verify(m_offset, word);
            m_offset += DIMM_WORD;
            k += DIMM_WORD;
        }
        SendLog(LW_SW_TRACE, "Dimm part number : %s\n", entry.PartNumText());
        SendLog(LW_SW_TRACE, "Setting Dimm part number in header : DONE\n");
    });
}

void CParamEepromCmdWrite::reportIllegal(const char* part_number, uint32_t first,
                                         uint32_t end) const {
    const auto length = static_cast<uint32_t>(std::strlen(part_number));
    for (uint32_t k = first; k < std::min(end, length); ++k) {
        const auto character = static_cast<uint8_t>(part_number[k]);
        if (!IsPrintable(character)) {
            SendLog(LW_WARN, "Illegal ASCII offset %d=0x%x\n", k, character);
        }
    }
}

void CParamEepromCmdWrite::writeRevisions(uint32_t i) {
    Step("writeRevisions", [this, i] {
        const uint32_t word = RevisionWord(m_dimmtable->entry[i]);
        SendLog(LW_SW_TRACE, "Rev Pattern : 0x%08X\n", word);
        eeprom_write32_verify(m_offset, word);
        m_offset += DIMM_WORD;
        SendLog(LW_SW_TRACE, "Writing Revisions : DONE\n");
    });
}

void CParamEepromCmdWrite::writeNumRegisters(uint32_t i) {
    Step("writeNumRegisters", [this, i] {
        const uint32_t count = m_dimmtable->entry[i].num_Reg;
        eeprom_write32_verify(m_offset, count);
        m_offset += DIMM_WORD;
        SendLog(LW_SW_TRACE, "Writing number of registers [%d] : DONE\n", count);
    });
}

void CParamEepromCmdWrite::writeAddrValues(uint32_t i) {
    Step("writeAddrValues", [this, i] {
        SendLog(LW_SW_TRACE, "Starting writeAddrValues... \n");
        const Entries& entry = m_dimmtable->entry[i];
        m_offset = static_cast<uint16_t>(m_dimmtable->Regs_offsets[i]);
        for (uint32_t k = 0; k < entry.num_Reg; ++k) {
            const uint32_t offset = entry.Register_Array.reg_offset[k];
            SendLog(LW_SW_TRACE, "Writing Reg_offset = 0x%08X\n", offset);
            eeprom_write32_verify(m_offset, offset);
            SendLog(LW_SW_TRACE, "SUCCESS wrote Reg_offset : 0x%08X\n", offset);
            m_offset += DIMM_PAIR;
        }
        m_offset = static_cast<uint16_t>(m_dimmtable->Regs_offsets[i] + DIMM_WORD);
        for (uint32_t k = 0; k < entry.num_Reg; ++k) {
            const uint32_t value = entry.Register_Array.reg_val[k];
            SendLog(LW_SW_TRACE, "Writing Reg_value = 0x%08X\n", value);
            eeprom_write32_verify(m_offset, value);
            SendLog(LW_SW_TRACE, "SUCCESS wrote Reg_value : 0x%08X\n", value);
            m_offset += DIMM_PAIR;
        }
    });
}

// Last of all: an image that was left half-way has no valid checksum.
void CParamEepromCmdWrite::writeCRC() {
    Step("writeCRC", [this] {
        const uint32_t crc = computeCRC();
        SendLog(LW_SW_TRACE, "Calculated CRC : 0x%08x\n", crc);
        m_offset = DIMM_CRC_AT;
        eeprom_write32_verify(m_offset, crc);
        SendLog(LW_PRINT, "CRC : 0x%08X\n", crc);
        SendLog(LW_SW_TRACE, "Writing signature : DONE\n");
    });
}

void CParamEepromCmdWrite::reportIncomplete(EEnd end) const {
    if (m_words_moved != 0) {
        SendLog(LW_WARN,
                "Programming %s word %u of %u: the image is incomplete and a check will fail, "
                "unless the EEPROM held this very table before. Program it again.\n",
                end == EEnd::STOPPED ? "stopped after" : "failed at", m_words_moved, m_image_words);
    } else if (end == EEnd::STOPPED) {
        SendLog(LW_WARN, "Programming stopped before the first word, the EEPROM is as it was\n");
    }
}
