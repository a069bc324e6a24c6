#include "tests/i2c/param_eeprom_table.h"

#include <algorithm>

#include "framework/fmt_output.h"

namespace {

constexpr size_t HEADER = 20;

std::string Hex(uint64_t value) {
    CFmtString text;
    text.printf("0x%llX", static_cast<unsigned long long>(value));
    return text.c_str();
}

std::string Element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">\n";
}

void Append(std::vector<uint8_t>& image, uint32_t word) {
    image.resize(image.size() + 4);
    SetWordAt(image, image.size() - 4, word);
}

void AppendModule(std::vector<uint8_t>& image, const CModule& module, bool extended) {
    if (extended) {
        Append(image, static_cast<uint32_t>(module.id >> 32));
        Append(image, static_cast<uint32_t>(module.id));
    } else {
        Append(image, static_cast<uint32_t>(module.id << 16));
    }
    std::string part = module.part;
    part.resize(extended ? 19 : 32, ' ');
    image.insert(image.end(), part.begin(), part.end());
    if (extended) {
        image.push_back(0);
    }
    Append(image, module.rev_start << 16 | module.rev_end);
    Append(image, static_cast<uint32_t>(module.regs.size()));
    for (const auto& [offset, value] : module.regs) {
        Append(image, offset);
        Append(image, value);
    }
}

}  // namespace

std::string XmlOf(const CTable& table) {
    std::string xml = "<?xml version=\"1.0\"?>\n<dimm_table>\n" +
                      Element("dimm_table_version", Hex(table.version)) +
                      Element("signature", Hex(table.signature));
    for (auto module = table.modules.begin(); module != table.modules.end(); ++module) {
        xml += "<dimm>\n" + Element("jedec_manufacturer_id", Hex(module->id)) +
               Element("dimm_part_num", module->part) +
               Element("revision_start", Hex(module->rev_start)) +
               Element("revision_end", Hex(module->rev_end));
        // Sets are counted, so an empty one is needed where others follow. At the
        // end it would be an element without text.
        if (std::any_of(module, table.modules.end(),
                        [](const CModule& later) { return !later.regs.empty(); })) {
            xml += "<register_set>\n";
            for (const auto& [offset, value] : module->regs) {
                xml += Element("offset", Hex(offset)) + Element("value", Hex(value));
            }
            xml += "</register_set>\n";
        }
        xml += "</dimm>\n";
    }
    return xml + "</dimm_table>\n";
}

std::vector<uint8_t> ImageOf(const CTable& table) {
    std::vector<uint8_t> image(HEADER);
    for (const CModule& module : table.modules) {
        AppendModule(image, module, table.IsExtended());
    }
    SetWordAt(image, 4, table.version);
    SetWordAt(image, 8, static_cast<uint32_t>(image.size()));
    SetWordAt(image, 12, table.signature);
    SetWordAt(image, 16, static_cast<uint32_t>(table.modules.size()));
    SetWordAt(image, 0, BitwiseCrc(std::span(image).subspan(4)));
    return image;
}

std::vector<unsigned int> RegisterBlocksOf(const CTable& table) {
    std::vector<unsigned int> blocks;
    unsigned int end = HEADER;
    for (const CModule& module : table.modules) {
        blocks.push_back(end + (table.IsExtended() ? 36 : 44));
        end = blocks.back() + 8 * static_cast<unsigned int>(module.regs.size());
    }
    return blocks;
}

std::vector<unsigned int> WordOrderOf(const CTable& table) {
    std::vector<unsigned int> order = {4, 8, 12, 16};
    unsigned int at = HEADER;
    for (size_t i = 0; i < table.modules.size(); ++i) {
        const unsigned int block = RegisterBlocksOf(table)[i];
        for (; at < block; at += 4) {
            order.push_back(at);
        }
        // All offsets go before all values.
        const unsigned int end =
            block + 8 * static_cast<unsigned int>(table.modules[i].regs.size());
        for (const unsigned int first : {block, block + 4}) {
            for (unsigned int word = first; word < end; word += 8) {
                order.push_back(word);
            }
        }
        at = end;
    }
    order.push_back(0);
    return order;
}

uint32_t BitwiseCrc(std::span<const uint8_t> bytes, uint32_t crc) {
    for (const uint8_t byte : bytes) {
        for (unsigned int bit = 0; bit < 8; ++bit) {
            const bool carry = ((crc >> 31) ^ (byte >> (7 - bit) & 1U)) != 0;
            crc = crc << 1 ^ (carry ? 0x04C11DB7U : 0U);
        }
    }
    return crc;
}

uint32_t WordAt(std::span<const uint8_t> image, size_t offset) {
    uint32_t word = 0;
    for (const uint8_t byte : image.subspan(offset, 4)) {
        word = word << 8 | byte;
    }
    return word;
}

void SetWordAt(std::span<uint8_t> image, size_t offset, uint32_t word) {
    for (uint8_t& byte : image.subspan(offset, 4)) {
        byte = static_cast<uint8_t>(word >> 24);
        word <<= 8;
    }
}

CTable CompactTable() {
    return {.version = 3,
            .signature = CTable::COMPACT,
            .modules = {{.id = 0x1234,
                         .part = "PN-EXAMPLE-01",
                         .rev_start = 0x0102,
                         .rev_end = 0x00FF,
                         .regs = {{0x10, 0x1F}, {0x14, 0x200}}},
                        {.id = 0xCE, .part = "MT36", .rev_end = 0xFFFF, .regs = {{0x18, 7}}}}};
}

CTable ExtendedTable() {
    CTable table = CompactTable();
    table.signature = CTable::EXTENDED;
    table.modules.front().id = 0x5566778899AA1234;
    return table;
}
