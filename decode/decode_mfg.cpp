#include "decode/decode_mfg.h"

#include <array>
#include <cstring>
#include <string>

#include "decode/field_text.h"
#include "i2c/big_endian.h"
#include "i2c/crc16.h"
#include "i2c/mfg_inventory.h"

namespace {

using Record = CTarnInventory;

constexpr uint64_t LAST_MAC = 0xFFFFFFFFFFFF;

uint16_t StoredCrc(const Record& record) {
    return static_cast<uint16_t>(BigEndian(record.crc_16));
}

uint16_t CalculatedCrc(const Record& record) {
    std::array<uint8_t, sizeof record> bytes;
    std::memcpy(bytes.data(), &record, sizeof record);
    const std::span covered(bytes.data(), offsetof(Record, crc_16));
    return static_cast<uint16_t>(~Crc16(covered, 0xFFFF));
}

std::string ManufacturingDate(const Record& record) {
    const std::string date =
        DateOf({reinterpret_cast<const char*>(record.manu_date.data()), record.manu_date.size()});
    return date.empty() ? TextOf(record.manu_date) : date;
}

std::string LastMac(const Record& record) {
    const uint64_t first = BigEndian(record.macaddr_start);
    const uint64_t count = BigEndian(record.mac_count);
    if (count == 0) {
        return "(none)";
    }
    if (count - 1 > LAST_MAC - first) {
        return "past ff:ff:ff:ff:ff:ff, by " + std::to_string(count - 1 - (LAST_MAC - first));
    }
    std::array<uint8_t, 6> last;
    uint64_t rest = first + count - 1;
    for (auto byte = last.rbegin(); byte != last.rend(); ++byte, rest >>= 8) {
        *byte = static_cast<uint8_t>(rest);
    }
    return HexBytes(last, ':');
}

// What computes the check byte of the product code is not known, so it has no verdict.
constexpr CFieldDecoder<Record> FIELDS[] = {
    {"Record", "Identifier", [](const Record& r) { return Hex(r.id); }},
    {"Record", "Format revision", [](const Record& r) { return std::to_string(r.fmt_rev); }},
    {"Record", "Pages of 32 bytes",
     [](const Record& r) { return std::to_string(r.num_32B_pages); }},
    {"Board", "Serial number", [](const Record& r) { return TextOf(r.serial_numb); }},
    {"Board", "Product number", [](const Record& r) { return TextOf(r.product_num); }},
    {"Board", "Batch number", [](const Record& r) { return TextOf(r.batch_num); }},
    {"Board", "CLEI code", [](const Record& r) { return TextOf(r.clei_code); }},
    {"Board", "Revision state", [](const Record& r) { return TextOf(r.rstate); }},
    {"Board", "Manufacturing date", ManufacturingDate},
    {"Board", "Product code", [](const Record& r) { return TextOf(r.product_code); }},
    {"Board", "Product code check byte", [](const Record& r) { return Hex(r.product_code_crc); }},
    {"Board", "Reserved", [](const Record& r) { return Hex(r.eprom_reserve); }},
    {"MAC addresses", "First", [](const Record& r) { return HexBytes(r.macaddr_start, ':'); }},
    {"MAC addresses", "Last", LastMac},
    {"MAC addresses", "Count",
     [](const Record& r) { return std::to_string(BigEndian(r.mac_count)); }},
    {"Checksum", "CRC-16",
     [](const Record& r) { return CheckText(StoredCrc(r), CalculatedCrc(r), 4); }},
};

}  // namespace

CDecodedRecord DecodeMfg(std::span<const uint8_t> image) {
    Record record;
    static_assert(sizeof record == MFG_SIZE);
    std::memcpy(&record, image.data(), sizeof record);
    CDecodedRecord decoded;
    DecodeFields(record, FIELDS, decoded);
    decoded.checks_hold = StoredCrc(record) == CalculatedCrc(record);
    TellIfBlank(image.first(MFG_SIZE), decoded);
    return decoded;
}
