// Menus that stand for devices that cannot be reached: they show what hangs where.
#pragma once

#include <memory>

#include "boards/devicetree/device_request.h"
#include "framework/diag_menu.h"

// Described as "COMPATIBLE at 0xADDR: NOTE".
std::unique_ptr<CDiagMenu> CreatePlainNode(const CDeviceRequest& request, const char* note);

// For devices that are not known; says so in the log.
std::unique_ptr<CDiagMenu> CreateUnknownNode(const CDeviceRequest& request);
// The line in the log; `what` is what stands in for the device.
void TellUnknown(const CDeviceRequest& request, const char* what);
