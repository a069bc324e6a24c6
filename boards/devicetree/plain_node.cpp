#include "boards/devicetree/plain_node.h"

#include "boards/devicetree/printable_text.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"

std::unique_ptr<CDiagMenu> CreatePlainNode(const CDeviceRequest& request, const char* note) {
    return std::make_unique<CDiagMenu>(TMENU, request.TakeName(), request.Text() + ": " + note);
}

void TellUnknown(const CDeviceRequest& request, const char* what) {
    diag_pf_send_log(LW_INFO, "%s: \"%s\" is not known, mounted as %s\n",
                     request.node.Path().c_str(), PrintableText(request.compatible).c_str(), what);
}
