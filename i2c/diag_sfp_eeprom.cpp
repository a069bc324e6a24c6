#include "i2c/diag_sfp_eeprom.h"

#include <span>

#include "framework/diag_log_word.h"
#include "i2c/eeprom_record.h"
#include "i2c/sfp_eeprom_commands.h"

CDiagSfpEepromDevice::CDiagSfpEepromDevice(const std::string& n, const std::string& d,
                                           CI2cDevice* i2cDev, i2c_eeprom_attr_t* attr)
    : CDiagI2cEepromDevice(n, d, i2cDev, attr, true, 0) {
    AddChild(new CShowSfpEeprom("show-eeprom-info",
                                "Read and display SFP Serial ID EEPROM contents", this),
             NO_SORT);
    AddChild(new CSfpType("type", "Read SFP type: 1G or 10G", this), NO_SORT);
}

bool CDiagSfpEepromDevice::ReadContent(sfp_serial_id_t* id) {
    const std::span bytes(reinterpret_cast<byte_t*>(id), sizeof *id);
    if (const auto failed = ReadRecord(*this, m_attr.xfer_size, bytes)) {
        SendLog(LW_ERR_TEST, "ERROR: Error during EEPROM read! addr = 0x%x ", *failed);
        return false;
    }
    return true;
}
