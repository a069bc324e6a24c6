#include "host/run_stop.h"

#include "host/device_lock.h"

namespace {

thread_local const CRunStop* t_here = nullptr;

}  // namespace

void CRunStop::Request() {
    m_requested = true;
    CDeviceHold::WakeWaiting();
}

bool CRunStop::IsRequestedHere() {
    return t_here != nullptr && t_here->IsRequested();
}

CRunStop::CScope::CScope(const CRunStop& stop) : m_outer(t_here) {
    t_here = &stop;
}

CRunStop::CScope::~CScope() {
    t_here = m_outer;
}
