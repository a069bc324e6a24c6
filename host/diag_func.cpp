#include "framework/diag_func.h"

#include <memory>

#include "framework/diag_log_word.h"
#include "framework/long_work.h"
#include "host/device_lock.h"
#include "host/exception_text.h"
#include "host/run_stop.h"

CDiagFunc::CDiagFunc(const std::string& name, const std::string& description, unsigned int flags)
    : CDiagMenu(TFUNC, name, description), m_flags(flags) {}

CDiagFunc::~CDiagFunc() = default;

void CDiagFunc::HandleMsg(CInMsg& in, COutMsg& out) {
    if (in.GetType() == MSG_STOP && dynamic_cast<CLongWork*>(this) != nullptr) {
        // The request itself was left where the command looks for it.
        AnswerCode(out, MSG_SUCCESS);
        return;
    }
    if (in.GetType() != MSG_CALL) {
        CDiagMenu::HandleMsg(in, out);
        return;
    }
    try {
        std::unique_ptr<CDeviceHold> hold;
        const CDiagDevice* device = GetParentDevice();
        if (device != nullptr) {
            const EDevLockType type =
                (m_flags & SHARES_DEVICE) != 0 ? DEV_LOCK_PROTECT : DEV_LOCK_ACCESS;
            hold = CDeviceHold::Acquire({{device, type}}, CRunStop::IsRequestedHere);
            if (hold == nullptr) {
                out << static_cast<uint8_t>(MSG_ERR_ABORTED);
                return;
            }
        }
        Invoke(in, out);
    } catch (...) {
        SendLog(LW_ERR_SW, "%s", CurrentExceptionText().c_str());
        // What was written so far is no answer.
        out.Clear();
        out << static_cast<uint8_t>(MSG_ERR_FAIL);
    }
}

void CDiagFunc::SendLog(unsigned int logword, const char* fmt, ...) const {
    va_list args;
    va_start(args, fmt);
    static_cast<const CDiagMenu*>(this)->SendLog(logword, fmt, args);
    va_end(args);
}
