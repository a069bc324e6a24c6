#include "boards/devicetree/device_request.h"

#include <utility>

#include "boards/devicetree/node_name.h"
#include "boards/devicetree/printable_text.h"
#include "framework/diag_functions.h"

CDeviceRequest::CDeviceRequest(const CDeviceTreeNode& of_node, std::string compatible_text,
                               std::optional<uint64_t> bus_addr, CSiblingNames& sibling_names)
    : node(of_node),
      compatible(std::move(compatible_text)),
      addr(bus_addr),
      wanted(TypeableName(WantedName(of_node))),
      names(sibling_names) {}

std::string CDeviceRequest::Text() const {
    std::string text = compatible.empty() ? "device" : PrintableText(compatible);
    if (addr) {
        text += " at " + toString(*addr, VF_HEX);
    }
    return note.empty() ? text : text + " (" + note + ")";
}
