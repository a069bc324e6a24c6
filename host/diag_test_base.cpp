#include "framework/diag_test_base.h"

CDiagTestBase::CDiagTestBase(const std::string& name, const std::string& description)
    : CDiagMenu(TPROC, name, description) {}

CDiagTestBase::~CDiagTestBase() = default;

void CDiagTestBase::Reset() {
    if (!m_running) {
        m_status = DS_UNTESTED;
        m_progress_done = 0;
        m_progress_total = 0;
    }
    CDiagMenu::Reset();
}

void CDiagTestBase::SendLog(unsigned int logword, const char* fmt, ...) const {
    va_list args;
    va_start(args, fmt);
    static_cast<const CDiagMenu*>(this)->SendLog(logword, fmt, args);
    va_end(args);
}

bool CDiagTestBase::ProgressCb() {
    return !m_stop_requested;
}
