// The way to a chip, opened and closed with a log line when that fails.
#pragma once

#include "framework/diag_log_word.h"
#include "framework/diag_menu.h"

// `sender`: the command or test that wants it.
template <class Device>
bool OpenPathOrTell(const CDiagMenu& sender, Device& device) {
    const bool ok = device.EnablePath();
    if (!ok) {
        sender.SendLog(LW_ERR_SW, "  Error when enabling I2C path!\n");
    }
    return ok;
}

template <class Device>
bool ClosePathOrTell(const CDiagMenu& sender, Device& device) {
    const bool ok = device.ClearPath();
    if (!ok) {
        sender.SendLog(LW_ERR_SW, "  Error when disabling I2C path!\n");
    }
    return ok;
}
