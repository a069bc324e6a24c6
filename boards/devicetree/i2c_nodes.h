// Creators of the tree nodes of devices on I2C. The request names a wire and an
// address; all return a device that is ready for its first transfer once it
// hangs in the tree.
#pragma once

#include <memory>

#include "boards/chips/mux_part.h"
#include "boards/devicetree/device_request.h"
#include "boards/devicetree/node_name.h"
#include "framework/diag_menu.h"

// The multiplexer that the request is for. Throws CDiagException when there is no such part.
const mux_part_t& RequireMuxPart(const CDeviceRequest& request);
// The number is the label's own, or the first free one.
CNumberedName TakeMuxName(const CDeviceRequest& request);

// A CMuxChip.
std::unique_ptr<CDiagMenu> CreateMuxNode(const CDeviceRequest& request);

// A CBoardEeprom. A part that is more than one device to the library is a menu
// with a device for each slave address, "block0", "block1", ...
std::unique_ptr<CDiagMenu> CreateEepromNode(const CDeviceRequest& request);

// A CDecodedEepromOf.
std::unique_ptr<CDiagMenu> CreateSpdNode(const CDeviceRequest& request);
std::unique_ptr<CDiagMenu> CreateMfgEepromNode(const CDeviceRequest& request);
// A CBoardSfpEeprom.
std::unique_ptr<CDiagMenu> CreateSfpNode(const CDeviceRequest& request);
// A CBoardParamEeprom; its table of last resort is the default board's.
std::unique_ptr<CDiagMenu> CreateParamEepromNode(const CDeviceRequest& request);

// A CRegisterChip.
std::unique_ptr<CDiagMenu> CreateRegisterNode(const CDeviceRequest& request);
// A CPortExpander, or a CQuasiPortExpander.
std::unique_ptr<CDiagMenu> CreateExpanderNode(const CDeviceRequest& request);
std::unique_ptr<CDiagMenu> CreateQuasiExpanderNode(const CDeviceRequest& request);

// A CBoardSlave, for chips that are not known.
std::unique_ptr<CDiagMenu> CreateUnknownSlave(const CDeviceRequest& request);
