// Locks on devices. A hold takes all the devices it needs at once, so that two
// holds cannot wait for each other. Who needs more while it holds some asks for
// a second hold; where that would make threads wait in a circle, it is refused.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "framework/diag_device.h"

struct CDeviceClaim {
    const CDiagMenu* device;  // or a test, which runs once at a time
    EDevLockType type;
    bool path = false;  // the path through the device, apart from the device itself
};

// What a thread waits for, and one of those who have it.
struct CDeviceWait {
    const CDiagMenu* device;
    bool path;
    std::thread::id holder;
};

// Adds a claim on `node`, if it is a device, and with `recursive` on all devices below it.
void AddDeviceClaims(std::vector<CDeviceClaim>& claims, const CDiagObj& node, EDevLockType type,
                     bool recursive);

// Holds devices, and the paths that lead to them, until destroyed. A thread that
// holds a device already gets it again, so a test may call commands of its own
// device.
class CDeviceHold {
  public:
    // Waits until all claims can be met; null when `stop` became true while they
    // could not. Throws CDiagException when the wait would never end, because
    // those it waits for wait for this thread.
    static std::unique_ptr<CDeviceHold> Acquire(const std::vector<CDeviceClaim>& claims,
                                                const std::function<bool()>& stop);
    ~CDeviceHold();
    CDeviceHold(const CDeviceHold&) = delete;
    CDeviceHold& operator=(const CDeviceHold&) = delete;

    // Makes waiting holds look at their `stop` again.
    static void WakeWaiting();
    // What `thread` waits for now, if it does.
    static std::optional<CDeviceWait> WaitOf(std::thread::id thread);

  private:
    explicit CDeviceHold(std::vector<CDeviceClaim> claims);

    std::vector<CDeviceClaim> m_claims;
    const std::thread::id m_holder;
};
