#include "i2c/diag_spd_eeprom.h"

#include <cstring>
#include <span>

#include "framework/diag_command.h"
#include "i2c/eeprom_record.h"
#include "i2c/told_path.h"

namespace {

constexpr uint8_t UNREAD = 0xFF;

}  // namespace

CDiagSpdEepromDevice::CDiagSpdEepromDevice(const std::string& n, const std::string& d,
                                           CI2cDevice* i2cDev, i2c_eeprom_attr_t* attr)
    : CDiagI2cEepromDevice(n, d, i2cDev, attr, true, 0) {
    AddChild(new CShowSpdEepromCmd("show-spd-info", "Read and display SPD EEPROM contents", this),
             NO_SORT);
}

bool CDiagSpdEepromDevice::ReadSPD(ddr3_spd_eeprom_t* spd) {
    const std::span bytes(reinterpret_cast<byte_t*>(spd), sizeof *spd);
    if (const auto failed = ReadRecord(*this, m_attr.xfer_size, bytes)) {
        SendLog(LW_ERR_TEST, "Error during EEPROM read! addr = 0x%x ", *failed);
        return false;
    }
    return true;
}

CShowSpdEepromCmd::CShowSpdEepromCmd(const std::string& name, const std::string& description,
                                     CDiagSpdEepromDevice* pDev)
    : CDiagFunc(name, description, 0), m_pDev(pDev) {}

void CShowSpdEepromCmd::Invoke(CInMsg&, COutMsg& out) {
    if (!OpenPathOrTell(*this, *m_pDev)) {
        AnswerResult(out, false);
        return;
    }
    ddr3_spd_eeprom_t spd;
    std::memset(&spd, UNREAD, sizeof spd);
    const bool read = m_pDev->ReadSPD(&spd);
    m_pDev->ShowSPD(&spd);
    const bool closed = ClosePathOrTell(*this, *m_pDev);
    AnswerResult(out, read && closed);
}
