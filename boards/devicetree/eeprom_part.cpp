#include "boards/devicetree/eeprom_part.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/part_name.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"
#include "boards/sim/sim_at24.h"
#include "decode/decode_mfg.h"
#include "decode/decode_spd.h"
#include "framework/diag_exception.h"

namespace {

constexpr uint32_t MIN_SIZE = 16;
constexpr uint32_t MIN_MFG_SIZE = std::bit_ceil(uint32_t{MFG_SIZE});
constexpr const char* BOARD_PART = "24c64";
constexpr uint32_t MAX_PAGE = 256;
constexpr uint32_t MAX_ADDRESSES = 8;  // three address pins
constexpr uint32_t FIRST_SPD_ADDR = 0x50;

constexpr eeprom_part_t MODULE_PART = {
    .size = 256, .page = 8, .addr_bytes = 1, .addresses = 1, .read_only = true, .memories = 2};

// Larger relatives and other names of the 24C1024: more addresses of 64 KiB each.
struct large_part_t {
    std::string_view name;
    uint8_t addresses;
};
constexpr std::array<large_part_t, 3> LARGE_PARTS{{{"24cm01", 2}, {"24c2048", 4}, {"24cm02", 4}}};
constexpr uint32_t LARGE_BLOCK = 0x10000;

[[noreturn]] void RefuseValue(const CDeviceTreeNode& node, const char* property, uint32_t value,
                              const std::string& right) {
    throw CDiagException("%s: property \"%s\" is %u, should be %s", node.Path().c_str(), property,
                         value, right.c_str());
}

// The part of that name without any property.
eeprom_part_t KnownPart(const CDeviceTreeNode& node, std::string_view name) {
    const auto* large = std::find_if(LARGE_PARTS.begin(), LARGE_PARTS.end(),
                                     [name](const auto& part) { return part.name == name; });
    if (large != LARGE_PARTS.end()) {
        return {large->addresses * LARGE_BLOCK, MAX_PAGE, 2, large->addresses, false};
    }
    const sim_at24_part_t* part = FindSimAt24Part(name);
    if (part == nullptr) {
        throw CDiagException("%s: there is no EEPROM \"%s\"", node.Path().c_str(),
                             PrintableText(name).c_str());
    }
    return {part->size, part->page, part->addr_bytes, part->addresses, part->write_protected};
}

// The part as the node's properties describe it, of at least `min_size` bytes.
eeprom_part_t Described(eeprom_part_t part, const CDeviceTreeNode& node,
                        uint32_t min_size = MIN_SIZE) {
    const uint32_t width = ReadU32(node, "address-width").value_or(part.addr_bytes * 8U);
    if (width != 8 && width != 16) {
        RefuseValue(node, "address-width", width, "8 or 16");
    }
    part.addr_bytes = static_cast<uint8_t>(width / 8);

    part.size = ReadU32(node, "size").value_or(part.size);
    const uint32_t reach = uint32_t{1} << width;  // bytes behind one slave address
    const uint32_t largest = reach * MAX_ADDRESSES;
    if (!std::has_single_bit(part.size) || part.size < min_size || part.size > largest) {
        RefuseValue(
            node, "size", part.size,
            "a power of two from " + std::to_string(min_size) + " to " + std::to_string(largest));
    }
    part.addresses = static_cast<uint8_t>(std::max(part.size / reach, uint32_t{1}));

    const uint32_t page =
        ReadU32(node, "pagesize").value_or(std::min<uint32_t>(part.page, part.size));
    const uint32_t largest_page = std::min(part.size, MAX_PAGE);
    if (!std::has_single_bit(page) || page > largest_page) {
        RefuseValue(node, "pagesize", page,
                    "a power of two from 1 to " + std::to_string(largest_page));
    }
    part.page = static_cast<uint16_t>(page);
    part.read_only = part.read_only || ReadBool(node, "read-only");

    // A read of one device goes on from one slave address to the next.
    if (part.addr_bytes == 1 && part.addresses > 1 && ReadBool(node, "no-read-rollover")) {
        throw CDiagException("%s: a chip of %u addresses with \"no-read-rollover\" is not driven",
                             node.Path().c_str(), unsigned{part.addresses});
    }
    return part;
}

}  // namespace

eeprom_part_t DescribeSpd(const CDeviceTreeNode& node, const std::string& compatible) {
    // The slot's three address pins follow a fixed code (JEDEC Standard 21-C, 4.1.2).
    RequireReg(node, FIRST_SPD_ADDR, FIRST_SPD_ADDR + 7, "an address of a memory slot");
    return Described(KnownPart(node, PartName(compatible)), node, SPD_SIZE);
}

eeprom_part_t DescribeAt24(const CDeviceTreeNode& node, const std::string& compatible) {
    return Described(KnownPart(node, PartName(compatible)), node);
}

eeprom_part_t DescribeMfgEeprom(const CDeviceTreeNode& node, const std::string&) {
    return Described(KnownPart(node, BOARD_PART), node, MIN_MFG_SIZE);
}

eeprom_part_t DescribeParamEeprom(const CDeviceTreeNode& node, const std::string&) {
    return Described(KnownPart(node, BOARD_PART), node);
}

eeprom_part_t DescribeModuleEeprom(const CDeviceTreeNode&, const std::string&) {
    return MODULE_PART;
}
