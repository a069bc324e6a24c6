// A built-in's use of a device: keeps others away from it, and waits for them no
// longer than until Ctrl-C.
#pragma once

#include <memory>
#include <vector>

#include "framework/diag_device.h"

class CDeviceHold;
class CShell;
struct CDeviceClaim;

class CDeviceUse {
  public:
    // Waits for the device. Throws CDiagException when the wait would never end.
    CDeviceUse(const CShell& shell, const CDiagDevice& device, EDevLockType type);
    // The same for several devices at once.
    CDeviceUse(const CShell& shell, const std::vector<CDeviceClaim>& claims);
    ~CDeviceUse();
    CDeviceUse(const CDeviceUse&) = delete;
    CDeviceUse& operator=(const CDeviceUse&) = delete;

    // False when Ctrl-C came while it waited.
    bool IsHeld() const { return m_hold != nullptr; }

  private:
    std::unique_ptr<CDeviceHold> m_hold;
};
