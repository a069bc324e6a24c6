#include "framework/diag_device.h"

CDiagDevice::CDiagDevice(const std::string& name, const std::string& description, ENodeType type)
    : CDiagMenu(type, name, description) {}

CDiagDevice::~CDiagDevice() = default;

void CDiagDevice::Reset() {
    m_status = DS_UNTESTED;
    m_failures = 0;
    DevReset();
    CDiagMenu::Reset();
}

void CDiagDevice::SendLog(unsigned int logword, const char* fmt, ...) const {
    va_list args;
    va_start(args, fmt);
    static_cast<const CDiagMenu*>(this)->SendLog(logword, fmt, args);
    va_end(args);
}

void CDiagDevice::CauseInterrupts(uint8_t*) {}

bool CDiagDevice::PollInterrupts(uint8_t*, msTime_t) {
    return false;
}

void CDiagDevice::DevReset() {}

void CDiagDevice::CountFailure() {
    ++m_failures;
}

void CDiagDevice::SetTestStatus(ETestStatus status) {
    m_status = status;
}
