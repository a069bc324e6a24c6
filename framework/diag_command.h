// What command classes share.
#pragma once

#include <utility>

#include "framework/diag_device.h"
#include "framework/diag_exception.h"
#include "framework/diag_log_word.h"
#include "framework/diag_msg.h"

// Appends the answer byte.
inline void AnswerResult(COutMsg& out, bool ok) {
    out << static_cast<uint8_t>(ok ? MSG_SUCCESS : MSG_ERR_FAIL);
}

// Appends the answer that `work` returns. A CDiagException on the way, such as
// a missing argument, is logged and answered as a failure.
template <class Work>
void AnswerWorkOf(const CDiagMenu& command, COutMsg& out, Work&& work) {
    bool ok = false;
    try {
        ok = std::forward<Work>(work)();
    } catch (const CDiagException& e) {
        command.SendLog(LW_ERR_SW, "%s", e.what());
    }
    AnswerResult(out, ok);
}

// The device that a command belongs to. A command that hangs below no device of
// that kind is a programming error; the assertion names where it was asked for.
template <class Device>
Device& ParentDeviceOf(const CDiagMenu& command, const char* file = __builtin_FILE(),
                       int line = __builtin_LINE()) {
    auto* device = dynamic_cast<Device*>(command.GetParentDevice());
    if (device == nullptr) {
        throw CDiagException("%s:%d Assert failed (%s)", file, line, "pDev != NULL");
    }
    return *device;
}
