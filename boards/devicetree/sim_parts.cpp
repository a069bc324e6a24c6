#include "boards/devicetree/sim_parts.h"

#include <memory>
#include <system_error>
#include <vector>

#include "boards/devicetree/file_bytes.h"
#include "boards/devicetree/known_part_name.h"
#include "boards/devicetree/printable_text.h"
#include "boards/sim/sim_at24.h"
#include "framework/diag_functions.h"

namespace {

// A file that cannot be looked for counts: who reads it will say why it cannot.
bool Exists(const std::filesystem::path& file) {
    std::error_code unknown;
    return std::filesystem::exists(file, unknown) || unknown;
}

// Nothing when there is no such file: the chip is blank then.
std::vector<uint8_t> ReadImage(const std::filesystem::path& file, uint32_t size) {
    if (!Exists(file)) {
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

[[noreturn]] void RefusePart(const CChipRequest& request) {
    throw CDiagException("%s: there is no simulated \"%s\"", request.node.Path().c_str(),
                         PrintableText(request.compatible).c_str());
}

}  // namespace

std::filesystem::path ContentsFile(uint8_t addr) {
    return toString(addr, VF_HEX | VF_PAD) + std::string(".bin");
}

CSimParts CreateSimEeprom(const CChipRequest& request) {
    const eeprom_part_t& part = *request.eeprom;
    const sim_at24_part_t chip_part = {.name = "EEPROM",
                                       .size = part.size,
                                       .page = part.page,
                                       .addr_bytes = part.addr_bytes,
                                       .addresses = part.addresses,
                                       .write_protected = part.read_only};
    CSimAt24& chip = request.segment.Add(std::make_unique<CSimAt24>(
        chip_part, request.addr, CreateMemory(request, part.size), request.clock));
    return {.memory = &chip.Memory()};
}

CSimParts CreateSimModule(const CChipRequest& request) {
    CSimParts parts = CreateSimEeprom(request);
    CChipRequest second = request;
    ++second.addr;
    const std::filesystem::path file = ContentsFile(second.addr);
    second.contents.replace_filename(file);
    second.image.replace_filename(file);
    if (Exists(second.contents) || Exists(second.image)) {
        parts.diagnostics = CreateSimEeprom(second).memory;
    }
    return parts;
}

CSimParts CreateSimMux(const CChipRequest& request) {
    const sim_mux_part_t* part = FindSimMuxPart(KnownPartName(request.compatible));
    if (part == nullptr) {
        RefusePart(request);
    }
    return {.mux = &request.segment.Add(std::make_unique<CSimMux>(*part, request.addr))};
}

CSimParts CreateSimRegisters(const CChipRequest& request) {
    const sim_register_part_t* part = FindSimRegisterPart(KnownPartName(request.compatible));
    if (part == nullptr) {
        RefusePart(request);
    }
    return {.registers = &request.segment.Add(part->create(*part, request.addr))};
}
