#include "host/shell/builtins/device_use.h"

#include "host/device_lock.h"
#include "host/shell/shell.h"

CDeviceUse::CDeviceUse(const CShell& shell, const CDiagDevice& device, EDevLockType type) {
    const CForeground foreground(shell.Interrupt(), CDeviceHold::WakeWaiting);
    m_hold = CDeviceHold::Acquire({{&device, type}}, [&shell] { return shell.IsInterrupted(); });
}

CDeviceUse::~CDeviceUse() = default;
