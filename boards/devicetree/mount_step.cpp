#include "boards/devicetree/mount_step.h"

#include <optional>
#include <string>
#include <vector>

#include "boards/devicetree/property_reader.h"
#include "framework/diag_exception.h"

namespace {

uint32_t InRange(const CDeviceTreeNode& node, uint32_t reg, uint32_t first, uint32_t last,
                 const char* what) {
    if (reg < first || reg > last) {
        throw CDiagException("%s: property \"reg\" is 0x%x, should be %s from 0x%x to 0x%x",
                             node.Path().c_str(), reg, what, first, last);
    }
    return reg;
}

}  // namespace

bool IsDisabled(const CDeviceTreeNode& node) {
    const std::optional<std::string> status = ReadString(node, "status");
    return status && *status != "okay" && *status != "ok";
}

uint32_t RequireReg(const CDeviceTreeNode& node, uint32_t first, uint32_t last, const char* what) {
    return InRange(node, RequireU32(node, "reg"), first, last, what);
}

uint32_t RequireFirstReg(const CDeviceTreeNode& node, uint32_t first, uint32_t last,
                         const char* what) {
    const std::vector<uint32_t> regs = ReadCells(node, "reg");
    return regs.empty() ? RequireReg(node, first, last, what)
                        : InRange(node, regs.front(), first, last, what);
}

const CDeviceTreeNode& ChannelsOf(const CDeviceTreeNode& mux) {
    for (const auto& child : mux.Children()) {
        if (child->Name() == "i2c-mux") {
            return *child;
        }
    }
    return mux;
}
