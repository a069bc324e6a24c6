// A board of which no description is at hand: a desk PC, or one with a USB adapter.
#pragma once

#include <memory>

#include "boards/linux/i2c_dev.h"
#include "boards/linux/i2c_sysfs.h"
#include "framework/diag_menu.h"

// A root menu with a bus for each I2C adapter of the machine, and on it a plain slave for
// each chip that a driver of the kernel has. Channels of multiplexers that the kernel
// drives are adapters as well. An adapter that cannot be opened is reported with one
// warning and left out. Throws CDiagException when there is none at all.
std::unique_ptr<CDiagMenu> MountAdapters(const CI2cSysfs& sysfs, II2cDev& dev = KernelI2cDev());
