#include "i2c/i2c_eeprom_commands.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <vector>

#include "framework/diag_command.h"
#include "framework/diag_param.h"
#include "i2c/diag_i2c_eeprom_device.h"
#include "i2c/told_path.h"

namespace {

constexpr uint32_t ROW = 16;

std::vector<byte_t> AllocateDump(int32_t length) {
    try {
        return std::vector<byte_t>(static_cast<size_t>(length));
    } catch (const std::bad_alloc&) {
        throw CDiagException("malloc(%d) failed", length);
    } catch (const std::length_error&) {  // a length below 0
        throw CDiagException("malloc(%d) failed", length);
    }
}

// Closes the path and answers, as both commands end.
void ClearAndAnswer(const CDiagMenu& command, CDiagI2cEepromDevice& eeprom, COutMsg& out, bool ok) {
    const bool closed = ClosePathOrTell(command, eeprom);
    AnswerResult(out, ok && closed);
}

}  // namespace

CDiagI2cEepromReadCmd::CDiagI2cEepromReadCmd(const std::string& name,
                                             const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {
    AddChild(new CDiagParam(VT_UINT32, "addr", "EEPROM read address", PT_IN), NO_SORT);
    AddChild(new CDiagParam(VT_INT32, "length", "Byte size", PT_IN | PT_OPTIONAL), NO_SORT);
}

void CDiagI2cEepromReadCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& eeprom = ParentDeviceOf<CDiagI2cEepromDevice>(*this);
    uint32_t addr = 0;
    int32_t length = 0;
    try {
        in >> addr;
        constexpr int64_t MAX_LENGTH = std::numeric_limits<int32_t>::max();
        const int64_t rest =
            std::clamp(int64_t{eeprom.GetMemSize()} - addr, -MAX_LENGTH, MAX_LENGTH);
        length = static_cast<int32_t>(rest);
        if (in.GetLen() != 0) {
            uint32_t wanted = 0;
            in >> wanted;
            if (static_cast<int32_t>(wanted) <= rest) {
                length = static_cast<int32_t>(wanted);
            }
        }
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_SW, "Param exception: %s\n", e.what());
        return;
    }
    if (!OpenPathOrTell(*this, eeprom)) {
        AnswerResult(out, false);
        return;
    }
    std::vector<byte_t> dump = AllocateDump(length);
    const bool ok = eeprom.ReadMemory(static_cast<uint16_t>(addr), dump.data(),
                                      static_cast<uint16_t>(dump.size()));
    if (ok) {
        for (uint32_t i = 0; i < dump.size(); ++i) {
            if (i % ROW == 0) {
                SendLog(LW_PRINT, "\n0x%04x:  ", addr + i);
            }
            SendLog(LW_PRINT, " %02x", dump[i]);
        }
    }
    SendLog(LW_PRINT, "\n");
    ClearAndAnswer(*this, eeprom, out, ok);
}

CDiagI2cEepromWriteCmd::CDiagI2cEepromWriteCmd(const std::string& name,
                                               const std::string& description)
    : CDiagFunc(name, description, SHARES_DEVICE) {
    AddChild(new CDiagParam(VT_UINT32, "addr", "EEPROM write address", PT_IN), NO_SORT);
    AddChild(new CDiagParam(VT_UINT8, "data", "Data value", PT_IN), NO_SORT);
}

void CDiagI2cEepromWriteCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& eeprom = ParentDeviceOf<CDiagI2cEepromDevice>(*this);
    uint32_t addr = 0;
    uint8_t data = 0;
    try {
        in >> addr >> data;
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_SW, "Param exception: %s\n", e.what());
        return;
    }
    if (addr >= eeprom.GetMemSize()) {
        SendLog(LW_ERR_SW, "Invalid EEPROM offset. Offsetis between 0 - %d\n", eeprom.GetMemSize());
        return;
    }
    if (!OpenPathOrTell(*this, eeprom)) {
        AnswerResult(out, false);
        return;
    }
    SendLog(LW_PRINT,
            "This EEPROM has to be manually enable the write function on the hardware\n"
            " by jumpping the manufacturing connector pins\n");
    const bool ok = eeprom.WriteMemory(static_cast<uint16_t>(addr), &data, 1);
    ClearAndAnswer(*this, eeprom, out, ok);
}
