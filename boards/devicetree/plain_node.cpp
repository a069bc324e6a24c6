#include "boards/devicetree/plain_node.h"

#include "boards/devicetree/printable_text.h"
#include "framework/diag_functions.h"

std::unique_ptr<CDiagMenu> CreatePlainNode(const CDeviceRequest& request, const char* note) {
    std::string description =
        request.compatible.empty() ? "device" : PrintableText(request.compatible);
    if (request.addr) {
        description += " at " + toString(*request.addr, VF_HEX);
    }
    return std::make_unique<CDiagMenu>(TMENU, request.name, description + ": " + note);
}

std::unique_ptr<CDiagMenu> CreateUnsupportedNode(const CDeviceRequest& request) {
    // An operator who sees the node must know whether anything will answer.
    return CreatePlainNode(
        request, request.simulated ? "not yet supported" : "not yet supported, not simulated");
}
