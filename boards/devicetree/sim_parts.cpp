#include "boards/devicetree/sim_parts.h"

#include <memory>
#include <system_error>
#include <vector>

#include "boards/devicetree/file_bytes.h"
#include "boards/devicetree/part_name.h"
#include "boards/devicetree/printable_text.h"
#include "boards/sim/sim_at24.h"

namespace {

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

}  // namespace

CSimParts CreateSimEeprom(const CChipRequest& request) {
    const eeprom_part_t& part = *request.eeprom;
    const sim_at24_part_t chip_part = {.name = "EEPROM",
                                       .size = part.size,
                                       .page = part.page,
                                       .addr_bytes = part.addr_bytes,
                                       .addresses = part.addresses,
                                       .write_protected = part.read_only};
    CSimAt24& chip = request.wire.Segment().Add(std::make_unique<CSimAt24>(
        chip_part, request.addr, CreateMemory(request, part.size), request.wire.Clock()));
    return {.memory = &chip.Memory()};
}

CSimParts CreateSimMux(const CChipRequest& request) {
    const sim_mux_part_t* part = FindSimMuxPart(PartName(request.compatible));
    if (part == nullptr) {
        throw CDiagException("%s: there is no simulated \"%s\"", request.node.Path().c_str(),
                             PrintableText(request.compatible).c_str());
    }
    return {.mux = &request.wire.Segment().Add(std::make_unique<CSimMux>(*part, request.addr))};
}
