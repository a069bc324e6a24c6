#include "boards/chips/board_eeprom_memory.h"

#include "boards/chips/board_path.h"
#include "framework/diag_log_word.h"
#include "i2c/diag_i2c_eeprom_device.h"

void CBoardEepromMemory::HandleMsg(CInMsg& in, COutMsg& out) {
    const bool peek = in.GetType() == MSG_PEEKV;
    const bool poke = in.GetType() == MSG_POKEV && !IsReadOnly();
    if (!peek && !poke) {
        CI2cEepromMemory::HandleMsg(in, out);
        return;
    }
    try {
        OnOpenPath(*m_pDev, [&] { CI2cEepromMemory::HandleMsg(in, out); });
    } catch (const CDiagException& e) {
        out.Clear();
        SendLog(LW_ERR_TEST, "%s (%s)\n", peek ? "peek" : "poke", e.what());
        AnswerCode(out, MSG_ERR_FAIL);
    }
}
