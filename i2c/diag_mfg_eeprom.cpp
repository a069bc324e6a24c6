#include "i2c/diag_mfg_eeprom.h"

#include <algorithm>

#include "framework/diag_log_word.h"
#include "i2c/big_endian.h"
#include "i2c/crc16.h"
#include "i2c/eeprom_record.h"
#include "i2c/mfg_eeprom_commands.h"

namespace {

bool IsPrintable(uint8_t byte) {
    return byte > ' ' && byte <= '~';
}

// CRC-16/GENIBUS.
uint16_t ChecksumOf(std::span<const byte_t> bytes) {
    return static_cast<uint16_t>(~Crc16(bytes, 0xFFFF));
}

}  // namespace

CDiagMfgEepromDevice::CDiagMfgEepromDevice(const std::string& name, const std::string& desc,
                                           CI2cDevice* bus, i2c_eeprom_attr_t* attr)
    : CDiagI2cEepromDevice(name, desc, bus, attr, false, 0) {
    AddChild(new CShowManufEeprom("show-manuf-info",
                                  "Read and display manufacturing EEPROM contents", this),
             NO_SORT);
    AddChild(new CGetBoardSerial("get-serial-num",
                                 "Get Board Serial Number from manufacturing EEPROM", this),
             NO_SORT);
    AddChild(new CGetBoardInfo("get-board-info", "Get attribute of board from manufacturing EEPROM",
                               this),
             NO_SORT);
    AddChild(new CCheckMfgTest("chk-mfg", "Check Mfg Content test"), NO_SORT);
}

bool CDiagMfgEepromDevice::ReadNCheck(CTarnInventory* rec, bool& ok) {
    const std::span bytes(reinterpret_cast<byte_t*>(rec), sizeof *rec);
    if (const auto failed = ReadRecord(*this, m_attr.xfer_size, bytes)) {
        SendLog(LW_ERR_TEST, "Error during EEPROM read! addr = 0x%x ", *failed);
        return false;
    }
    const uint16_t calculated = ChecksumOf(bytes.first(offsetof(CTarnInventory, crc_16)));
    const uint16_t stored = static_cast<uint16_t>(BigEndian(rec->crc_16));
    if (calculated != stored) {
        SendLog(LW_ERR_TEST, "EEPROM checksum error: calculated 0x%04X, stored 0x%04X", calculated,
                stored);
        return false;
    }
    ok = true;
    return true;
}

std::string CDiagMfgEepromDevice::ExtractSerialNumber(CTarnInventory& rec) {
    const auto& field = rec.serial_numb;
    return {std::find_if(field.begin(), field.end(), IsPrintable), field.end()};
}
