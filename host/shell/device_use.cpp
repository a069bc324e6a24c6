#include "host/shell/device_use.h"

#include "host/device_lock.h"
#include "host/shell/shell.h"

namespace {

constexpr const CDiagTestBase* NO_TEST = nullptr;

}  // namespace

CDeviceUse::CDeviceUse(CShell& shell, const CDiagDevice& device, EDevLockType type,
                       const std::string& name)
    : m_running(shell.Watch(), name, NO_TEST) {
    const CForeground foreground(shell.Interrupt(), CDeviceHold::WakeWaiting);
    m_hold = CDeviceHold::Acquire({{&device, type}}, [&shell] { return shell.IsInterrupted(); });
}

CDeviceUse::~CDeviceUse() = default;
