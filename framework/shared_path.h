// A device through which others are reached over a path that serves one user
// at a time, such as an I2C multiplexer. Who holds a device holds the path to
// it as well, so that no other thread switches the path away meanwhile.
#pragma once

#include "framework/diag_device.h"

class ISharedPath {
  public:
    ISharedPath() = default;
    virtual ~ISharedPath() = default;
    ISharedPath(const ISharedPath&) = delete;
    ISharedPath& operator=(const ISharedPath&) = delete;

    // The device that stands for the path which a user of `target`, this device
    // or one below it, needs to itself; null when that use disturbs nobody.
    virtual const CDiagDevice* PathTo(const CDiagDevice& target) const = 0;
};
