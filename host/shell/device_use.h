// A built-in's use of a device: keeps others away from it, is watched like a
// command that runs, and waits no longer than until Ctrl-C.
#pragma once

#include <memory>
#include <string>

#include "framework/diag_device.h"
#include "host/shell/run_watch.h"

class CDeviceHold;
class CShell;

class CDeviceUse {
  public:
    // Waits for the device; `name` is what the operator typed, for others who
    // wait. Throws CDiagException when the wait would never end.
    CDeviceUse(CShell& shell, const CDiagDevice& device, EDevLockType type,
               const std::string& name);
    ~CDeviceUse();
    CDeviceUse(const CDeviceUse&) = delete;
    CDeviceUse& operator=(const CDeviceUse&) = delete;

    // False when Ctrl-C came while it waited.
    bool IsHeld() const { return m_hold != nullptr; }

  private:
    const CRunWatch::CRunning m_running;
    std::unique_ptr<CDeviceHold> m_hold;
};
