// Locks on devices. A hold takes all the devices it needs at once, so that two
// holds cannot wait for each other; a thread that takes a second hold while it
// has one gives that up.
#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "framework/diag_device.h"

struct CDeviceClaim {
    const CDiagDevice* device;
    EDevLockType type;
};

// Adds a claim on `node`, if it is a device, and with `recursive` on all devices below it.
void AddDeviceClaims(std::vector<CDeviceClaim>& claims, const CDiagObj& node, EDevLockType type,
                     bool recursive);

// Holds devices until destroyed. A thread that holds a device already gets it
// again, so a test may call commands of its own device.
class CDeviceHold {
  public:
    // Waits until all claims can be met; null when `stop` became true first.
    static std::unique_ptr<CDeviceHold> Acquire(const std::vector<CDeviceClaim>& claims,
                                                const std::function<bool()>& stop);
    ~CDeviceHold();
    CDeviceHold(const CDeviceHold&) = delete;
    CDeviceHold& operator=(const CDeviceHold&) = delete;

    // Makes waiting holds look at their `stop` again.
    static void WakeWaiting();

  private:
    explicit CDeviceHold(std::vector<CDeviceClaim> claims);

    std::vector<CDeviceClaim> m_claims;
    const std::thread::id m_holder;
};
