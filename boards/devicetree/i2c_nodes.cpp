#include "boards/devicetree/i2c_nodes.h"

#include <algorithm>
#include <filesystem>
#include <string>

#include "boards/chips/board_eeprom.h"
#include "boards/chips/board_param_eeprom.h"
#include "boards/chips/board_sfp_eeprom.h"
#include "boards/chips/board_slave.h"
#include "boards/chips/decoded_eeprom.h"
#include "boards/chips/mux_chip.h"
#include "boards/chips/port_expander.h"
#include "boards/chips/register_chip.h"
#include "boards/devicetree/known_part_name.h"
#include "boards/devicetree/line_names.h"
#include "boards/devicetree/node_name.h"
#include "boards/devicetree/plain_node.h"
#include "boards/devicetree/printable_text.h"
#include "framework/diag_exception.h"
#include "i2c/diag_mfg_eeprom.h"
#include "i2c/diag_spd_eeprom.h"
#include "i2c/param_eeprom_cmd.h"

namespace {

// The library counts the bytes of a transfer in eight bits, and takes a power
// of two.
constexpr uint16_t LARGEST_TRANSFER = 128;

uint8_t AddrOf(const CDeviceRequest& request) {
    return static_cast<uint8_t>(request.addr.value());
}

std::string SizeText(const eeprom_part_t& part, uint32_t size) {
    return std::to_string(size) + " bytes" + (part.read_only ? ", read-only" : "");
}

i2c_eeprom_attr_t AttributesOf(const eeprom_part_t& part, uint32_t size) {
    const auto transfer = static_cast<uint8_t>(std::min(part.page, LARGEST_TRANSFER));
    return {.mem_size = size,
            .mem_addr_size = part.addr_bytes,
            .addrh_first = true,
            .xfer_unit = 1,
            .wr_pg_size = transfer,
            .xfer_size = transfer,
            .rd_wr = 0};
}

// The device behind one slave address, or behind all of them. `more` is what
// that kind of device takes besides.
template <class Eeprom, class... More>
std::unique_ptr<CDiagMenu> CreateEeprom(const CDeviceRequest& request, const std::string& name,
                                        const std::string& description, uint8_t addr, uint32_t size,
                                        const More&... more) {
    const eeprom_part_t& part = *request.eeprom;
    return std::make_unique<Eeprom>(name, description, request.wire->Place(addr),
                                    AttributesOf(part, size), part.read_only, more...);
}

std::string EepromText(const CDeviceRequest& request) {
    return request.Text() + ": " + SizeText(*request.eeprom, request.eeprom->size);
}

// A part whose contents have a meaning is one device.
template <class Eeprom, class... More>
std::unique_ptr<CDiagMenu> CreateWholeEeprom(const CDeviceRequest& request, const More&... more) {
    const eeprom_part_t& part = *request.eeprom;
    if (part.Devices() != 1) {
        throw CDiagException("%s: \"%s\" of %u bytes does not fit one slave address",
                             request.node.Path().c_str(), PrintableText(request.compatible).c_str(),
                             part.size);
    }
    return CreateEeprom<Eeprom>(request, request.TakeName(), EepromText(request), AddrOf(request),
                                part.size, more...);
}

// One that begins with a record of that kind.
template <class Eeprom>
std::unique_ptr<CDiagMenu> CreateDecodedEeprom(const CDeviceRequest& request,
                                               std::string_view kind) {
    return CreateWholeEeprom<Eeprom>(request, *FindDecoder(kind));
}

template <class Chip>
std::unique_ptr<Chip> CreateRegisters(const CDeviceRequest& request) {
    const register_part_t* part = FindRegisterPart(KnownPartName(request.compatible));
    if (part == nullptr) {
        throw CDiagException("%s: there is no register chip \"%s\"", request.node.Path().c_str(),
                             PrintableText(request.compatible).c_str());
    }
    return std::make_unique<Chip>(*part, request.TakeName(), request.Text() + ": " + part->what,
                                  request.wire->Place(AddrOf(request)));
}

template <class Chip>
std::unique_ptr<CDiagMenu> CreateExpander(const CDeviceRequest& request) {
    auto chip = CreateRegisters<Chip>(request);
    AddLineNames(*chip, request.node, chip->getRegEntry("input")->num_regs);
    return chip;
}

}  // namespace

const mux_part_t& RequireMuxPart(const CDeviceRequest& request) {
    const mux_part_t* part = FindMuxPart(KnownPartName(request.compatible));
    if (part == nullptr) {
        throw CDiagException("%s: there is no multiplexer \"%s\"", request.node.Path().c_str(),
                             PrintableText(request.compatible).c_str());
    }
    return *part;
}

CNumberedName TakeMuxName(const CDeviceRequest& request) {
    CNumberedName name = SplitNumber(request.wanted);
    name.number = request.names.TakeNumbered(name.base, name.number);
    return name;
}

std::unique_ptr<CDiagMenu> CreateMuxNode(const CDeviceRequest& request) {
    const mux_part_t& part = RequireMuxPart(request);
    const CNumberedName name = TakeMuxName(request);
    return std::make_unique<CMuxChip>(part, name.base, request.Text() + ": multiplexer",
                                      name.number, AddrOf(request), request.wire->Channel());
}

std::unique_ptr<CDiagMenu> CreateEepromNode(const CDeviceRequest& request) {
    const eeprom_part_t& part = *request.eeprom;
    const uint8_t addr = AddrOf(request);
    if (part.Devices() == 1) {
        return CreateWholeEeprom<CBoardEeprom>(request);
    }
    auto menu = std::make_unique<CDiagMenu>(TMENU, request.TakeName(), EepromText(request));
    const uint32_t size = part.size / part.Devices();
    for (unsigned int block = 0; block < part.Devices(); ++block) {
        const auto block_addr = static_cast<uint8_t>(addr + block);
        const std::string block_text = "block " + std::to_string(block) + " at " +
                                       toString(block_addr, VF_HEX) + ": " + SizeText(part, size);
        menu->AddChild(CreateEeprom<CBoardEeprom>(request, "block" + std::to_string(block),
                                                  block_text, block_addr, size)
                           .release(),
                       CDiagObj::NO_SORT);
    }
    return menu;
}

std::unique_ptr<CDiagMenu> CreateSpdNode(const CDeviceRequest& request) {
    return CreateDecodedEeprom<CDecodedEepromOf<CDiagSpdEepromDevice>>(request, "spd");
}

std::unique_ptr<CDiagMenu> CreateMfgEepromNode(const CDeviceRequest& request) {
    return CreateDecodedEeprom<CDecodedEepromOf<CDiagMfgEepromDevice>>(request, "mfg");
}

std::unique_ptr<CDiagMenu> CreateSfpNode(const CDeviceRequest& request) {
    return CreateDecodedEeprom<CBoardSfpEeprom>(request, "sfp");
}

std::unique_ptr<CDiagMenu> CreateParamEepromNode(const CDeviceRequest& request) {
    return CreateWholeEeprom<CBoardParamEeprom>(
        request, request.tables / std::filesystem::path(CParamEepromCmd::DEFAULT_FILE).filename());
}

std::unique_ptr<CDiagMenu> CreateRegisterNode(const CDeviceRequest& request) {
    return CreateRegisters<CRegisterChip>(request);
}

std::unique_ptr<CDiagMenu> CreateExpanderNode(const CDeviceRequest& request) {
    return CreateExpander<CPortExpander>(request);
}

std::unique_ptr<CDiagMenu> CreateQuasiExpanderNode(const CDeviceRequest& request) {
    return CreateExpander<CQuasiPortExpander>(request);
}

std::unique_ptr<CDiagMenu> CreateUnknownSlave(const CDeviceRequest& request) {
    TellUnknown(request, "a plain slave");
    return std::make_unique<CBoardSlave>(request.TakeName(),
                                         request.Text() + ": no driver, plain slave",
                                         request.wire->Place(AddrOf(request)));
}
