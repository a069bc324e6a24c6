#include "host/shell/builtins/device_use.h"

#include "host/device_lock.h"
#include "host/shell/shell.h"

CDeviceUse::CDeviceUse(const CShell& shell, const CDiagDevice& device, EDevLockType type)
    : CDeviceUse(shell, {{&device, type}}) {}

CDeviceUse::CDeviceUse(const CShell& shell, const std::vector<CDeviceClaim>& claims) {
    const CForeground foreground(shell.Interrupt(), CDeviceHold::WakeWaiting);
    m_hold = CDeviceHold::Acquire(claims, [&shell] { return shell.IsInterrupted(); });
}

CDeviceUse::~CDeviceUse() = default;
