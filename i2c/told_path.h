// The way to a chip, opened and closed with a log line when that fails.
#pragma once

#include "framework/diag_log_word.h"
#include "i2c/DiagI2cSlaveDevice.h"

// `sender`: the command or test that wants it.
inline bool OpenPathOrTell(const CDiagMenu& sender, CDiagI2cSlaveDevice& device) {
    const bool ok = device.EnablePath();
    if (!ok) {
        sender.SendLog(LW_ERR_SW, "  Error when enabling I2C path!\n");
    }
    return ok;
}

inline bool ClosePathOrTell(const CDiagMenu& sender, CDiagI2cSlaveDevice& device) {
    const bool ok = device.ClearPath();
    if (!ok) {
        sender.SendLog(LW_ERR_SW, "  Error when disabling I2C path!\n");
    }
    return ok;
}
