#include "boards/devicetree/line_names.h"

#include <algorithm>
#include <string>
#include <vector>

#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"
#include "framework/diag_exception.h"
#include "framework/diag_value.h"

namespace {

constexpr size_t PORT_WIDTH = 8;

}  // namespace

void AddLineNames(CDiagMenu& chip, const CDeviceTreeNode& node, size_t ports) {
    const std::vector<std::string> names = ReadStrings(node, "gpio-line-names");
    if (names.size() > ports * PORT_WIDTH) {
        throw CDiagException(
            "%s: property \"gpio-line-names\" has %zu names, should be at most %zu",
            node.Path().c_str(), names.size(), ports * PORT_WIDTH);
    }
    for (size_t first = 0; first < names.size(); first += PORT_WIDTH) {
        std::string text;
        for (size_t line = first; line < std::min(first + PORT_WIDTH, names.size()); ++line) {
            if (!names[line].empty()) {
                text += (text.empty() ? "" : ", ") + std::to_string(line - first) + " " +
                        PrintableText(names[line]);
            }
        }
        if (!text.empty()) {
            const std::string port = std::to_string(first / PORT_WIDTH);
            chip.AddChild(
                new CDiagMemValue<std::string>("lines-" + port, "names of the pins of port " + port,
                                               true, VT_STRING, text),
                CDiagObj::NO_SORT);
        }
    }
}
