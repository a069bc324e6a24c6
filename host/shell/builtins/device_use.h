// A built-in's use of a device: keeps others away from it, and waits for them no
// longer than until Ctrl-C.
#pragma once

#include <memory>

#include "framework/diag_device.h"

class CDeviceHold;
class CShell;

class CDeviceUse {
  public:
    // Waits for the device. Throws CDiagException when the wait would never end.
    CDeviceUse(const CShell& shell, const CDiagDevice& device, EDevLockType type);
    ~CDeviceUse();
    CDeviceUse(const CDeviceUse&) = delete;
    CDeviceUse& operator=(const CDeviceUse&) = delete;

    // False when Ctrl-C came while it waited.
    bool IsHeld() const { return m_hold != nullptr; }

  private:
    std::unique_ptr<CDeviceHold> m_hold;
};
