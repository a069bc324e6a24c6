#include "boards/chips/board_eeprom_read.h"

#include <algorithm>

#include "framework/diag_command.h"
#include "i2c/diag_i2c_eeprom_device.h"

void CBoardEepromRead::Invoke(CInMsg& in, COutMsg& out) {
    const uint32_t length = LengthOf(in);
    if (length > LONGEST) {
        SendLog(LW_ERR_SW, "ERROR: cannot read %u bytes at once, give a length of at most %u\n",
                length, LONGEST);
        AnswerCode(out, MSG_ERR_FAIL);
        return;
    }
    try {
        CDiagI2cEepromReadCmd::Invoke(in, out);
    } catch (...) {
        ParentDeviceOf<CDiagI2cEepromDevice>(*this).ClearPath();
        throw;
    }
}

// How much the command would read; 0 for arguments that it refuses itself. Its
// own copy of the request is read, so the command finds all arguments unread.
uint32_t CBoardEepromRead::LengthOf(CInMsg in) const {
    try {
        uint32_t addr = 0;
        in >> addr;
        if (addr >= m_mem_size) {
            return 0;
        }
        uint32_t length = m_mem_size - addr;
        if (in.GetLen() > 0) {
            uint32_t wanted = 0;
            in >> wanted;
            length = static_cast<int32_t>(wanted) < 0 ? 0 : std::min(length, wanted);
        }
        return length;
    } catch (const CDiagException&) {
        return 0;
    }
}
