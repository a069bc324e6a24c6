// Menus that stand for devices that cannot be reached: they show what hangs where.
#pragma once

#include <memory>

#include "boards/devicetree/device_request.h"
#include "framework/diag_menu.h"

// Described as "COMPATIBLE at 0xADDR: NOTE".
std::unique_ptr<CDiagMenu> CreatePlainNode(const CDeviceRequest& request, const char* note);

// Says in the log that a device is not known; `what` is what stands in for it.
void TellUnknown(const CDeviceRequest& request, const char* what);
