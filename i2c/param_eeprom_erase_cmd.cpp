#include "i2c/param_eeprom_erase_cmd.h"

#include <algorithm>

#include "framework/diag_command.h"
#include "i2c/diag_param_eeprom.h"

namespace {

constexpr uint32_t ERASED = 0xFFFFFFFF;
// No table is longer; what is stored there is no length.
constexpr uint32_t LONGEST_TABLE = 16383;

}  // namespace

CParamEepromCmdErase::CParamEepromCmdErase(const std::string& name, const std::string& description,
                                           bool isSWAL, CDiagParamEepromDevice* dev)
    : CParamEepromCmd(name, description, isSWAL, dev) {}

void CParamEepromCmdErase::Invoke(CInMsg&, COutMsg& out) {
    const EEnd end = RunSteps(out, [&] {
        SendLog(LW_SW_TRACE, "Starting Parameter EEPROM Erase...\n");
        m_offset = DIMM_LENGTH_AT;
        const uint32_t length = eeprom_read32(m_offset);
        if (length == 0 || length > std::min(LONGEST_TABLE, m_pDev->GetMemSize())) {
            SendLog(LW_WARN, "Parameter EEPROM Erase rejected, bad table length...\n");
        } else {
            SendLog(LW_SW_TRACE, "Parameter EEPROM Erase finds table length %d...\n", length);
            eraseEeprom(length);
        }
        AnswerResult(out, true);
    });
    if (end == EEnd::STOPPED) {
        reportStopped();
    }
}

void CParamEepromCmdErase::reportStopped() const {
    if (m_words_moved == 0) {
        SendLog(LW_WARN, "Erasing stopped before the first word, the EEPROM is as it was\n");
    } else {
        SendLog(LW_WARN,
                "Erasing stopped after %u words: what is left is no table, a check will fail\n",
                m_words_moved);
    }
}

void CParamEepromCmdErase::eraseEeprom(uint32_t length) {
    Step("eraseEeprom", [this, length] {
        for (m_offset = 0; m_offset < length; m_offset += DIMM_WORD) {
            countWords(m_words_moved, (length + DIMM_WORD - 1) / DIMM_WORD);
            eeprom_write32(m_offset, ERASED);
            ++m_words_moved;
        }
    });
}
