#include "boards/devicetree/sim_parts.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <system_error>
#include <vector>

#include "boards/devicetree/file_bytes.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"
#include "boards/sim/sim_at24.h"
#include "framework/diag_exception.h"

namespace {

constexpr uint32_t MIN_SIZE = 16;
constexpr uint32_t MAX_ADDRESSES = 8;  // three address pins

constexpr sim_at24_part_t MODULE_PART = {.name = "sfp",
                                         .size = 256,
                                         .page = 8,
                                         .addr_bytes = 1,
                                         .addresses = 1,
                                         .write_protected = true};

[[noreturn]] void RefuseValue(const CDeviceTreeNode& node, const char* property, uint32_t value,
                              const std::string& right) {
    throw CDiagException("%s: property \"%s\" is %u, should be %s", node.Path().c_str(), property,
                         value, right.c_str());
}

// The part as the node's properties describe it.
sim_at24_part_t Described(const sim_at24_part_t& base, const CDeviceTreeNode& node) {
    sim_at24_part_t part = base;
    const uint32_t width = ReadU32(node, "address-width").value_or(part.addr_bytes * 8U);
    if (width != 8 && width != 16) {
        RefuseValue(node, "address-width", width, "8 or 16");
    }
    part.addr_bytes = static_cast<uint8_t>(width / 8);

    part.size = ReadU32(node, "size").value_or(part.size);
    const uint32_t reach = uint32_t{1} << width;  // bytes behind one slave address
    const uint32_t largest = reach * MAX_ADDRESSES;
    if (!std::has_single_bit(part.size) || part.size < MIN_SIZE || part.size > largest) {
        RefuseValue(
            node, "size", part.size,
            "a power of two from " + std::to_string(MIN_SIZE) + " to " + std::to_string(largest));
    }
    part.addresses = static_cast<uint8_t>(std::max(part.size / reach, uint32_t{1}));

    const uint32_t page =
        ReadU32(node, "pagesize").value_or(std::min<uint32_t>(part.page, part.size));
    const uint32_t largest_page = std::min<uint32_t>(part.size, 256);
    if (!std::has_single_bit(page) || page > largest_page) {
        RefuseValue(node, "pagesize", page,
                    "a power of two from 1 to " + std::to_string(largest_page));
    }
    part.page = static_cast<uint16_t>(page);
    part.write_protected = part.write_protected || ReadBool(node, "read-only");
    return part;
}

// Nothing when there is no such file: the chip is blank then.
std::vector<uint8_t> ReadImage(const std::filesystem::path& file, uint32_t size) {
    std::error_code unknown;
    if (!std::filesystem::exists(file, unknown) && !unknown) {
        return {};
    }
    std::vector<uint8_t> image = ReadFileBytes(file, size);
    if (image.size() != size) {
        throw CDiagException("%s: has %zu bytes, the chip has %u", file.c_str(), image.size(),
                             size);
    }
    return image;
}

std::unique_ptr<CSimMemory> CreateMemory(const CChipRequest& request, uint32_t size) {
    try {
        return std::make_unique<CSimMemory>(request.contents, size, ReadImage(request.image, size));
    } catch (const CDiagException& fault) {
        throw CContentsFault(request.node.Path() + ": " + fault.what());
    }
}

CSimParts AddAt24(const CChipRequest& request, const sim_at24_part_t& part) {
    const std::string path = request.node.Path();
    if (request.addr % part.addresses != 0) {
        throw CDiagException("%s: a chip of %u addresses cannot begin at 0x%02x", path.c_str(),
                             unsigned{part.addresses}, unsigned{request.addr});
    }
    for (unsigned int next = 1; next < part.addresses; ++next) {
        request.wire.Claim(static_cast<uint8_t>(request.addr + next), path);
    }
    CSimAt24& chip = request.wire.Segment().Add(std::make_unique<CSimAt24>(
        part, request.addr, CreateMemory(request, part.size), request.wire.Clock()));
    return {.memory = &chip.Memory()};
}

// The part that the table of the chips has under that name.
template <class Part>
const Part& Known(const Part* part, const CChipRequest& request) {
    if (part == nullptr) {
        throw CDiagException("%s: there is no simulated \"%s\"", request.node.Path().c_str(),
                             PrintableText(request.compatible).c_str());
    }
    return *part;
}

}  // namespace

std::string_view PartName(std::string_view compatible) {
    return compatible.substr(compatible.find(',') + 1);
}

CSimParts CreateSimAt24(const CChipRequest& request) {
    const sim_at24_part_t& part = Known(FindSimAt24Part(PartName(request.compatible)), request);
    return AddAt24(request, Described(part, request.node));
}

CSimParts CreateSimBoardEeprom(const CChipRequest& request) {
    return AddAt24(request, Described(Known(FindSimAt24Part("24c64"), request), request.node));
}

CSimParts CreateSimModuleEeprom(const CChipRequest& request) {
    return AddAt24(request, MODULE_PART);
}

CSimParts CreateSimMux(const CChipRequest& request) {
    const sim_mux_part_t& part = Known(FindSimMuxPart(PartName(request.compatible)), request);
    return {.mux = &request.wire.Segment().Add(std::make_unique<CSimMux>(part, request.addr))};
}
