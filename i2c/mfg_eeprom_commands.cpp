#include "i2c/mfg_eeprom_commands.h"

#include <cstring>
#include <optional>

#include "framework/diag_command.h"
#include "framework/diag_param.h"
#include "i2c/big_endian.h"
#include "i2c/diag_mfg_eeprom.h"
#include "i2c/told_path.h"

namespace {

constexpr uint8_t UNREAD = 0xFF;
// Shown in hexadecimal, with all digits.
constexpr uint8_t RSTATE_TYPE = VT_UINT32 | VF_HEX | VF_PAD;

// What could be read of the record; `good` tells whether it is all there.
CTarnInventory Read(CDiagMfgEepromDevice& eeprom, bool& good) {
    CTarnInventory record;
    std::memset(&record, UNREAD, sizeof record);
    good = false;
    eeprom.ReadNCheck(&record, good);
    return record;
}

// A good record, when the path could be opened and closed too. After a bad one the
// path stays open.
std::optional<CTarnInventory> GoodRecord(const CDiagMenu& command, CDiagMfgEepromDevice& eeprom) {
    if (!OpenPathOrTell(command, eeprom)) {
        return std::nullopt;
    }
    bool good = false;
    const CTarnInventory record = Read(eeprom, good);
    if (!good || !ClosePathOrTell(command, eeprom)) {
        return std::nullopt;
    }
    return record;
}

// Of a field without an end, to be printed with its width as precision.
template <size_t N>
const char* Text(const std::array<uint8_t, N>& field) {
    return reinterpret_cast<const char*>(field.data());
}

// The revision state packed into a number, without the blank behind one of three
// characters.
uint32_t NumericRstateOf(const CTarnInventory& record) {
    const auto& r = record.rstate;
    const uint32_t upper = (uint32_t{r[0]} << 24) + (uint32_t{r[1]} << 16);
    return r[3] > ' ' ? upper + (uint32_t{r[2]} << 8) + r[3] : upper + r[2];
}

void Print(const CDiagMenu& command, const CTarnInventory& r) {
    command.SendLog(LW_PRINT, "\nBoard EEPROM\n\n");
    command.SendLog(LW_PRINT, "id           : %02x\n", r.id);
    command.SendLog(LW_PRINT, "fmt_rev      : %02x\n", r.fmt_rev);
    command.SendLog(LW_PRINT, "num_32B_pages: %02x\n", r.num_32B_pages);
    command.SendLog(LW_PRINT, "serial_numb  : %.*s\n", 13, Text(r.serial_numb));
    command.SendLog(LW_PRINT, "product_num  : %.*s\n", 22, Text(r.product_num));
    command.SendLog(LW_PRINT, "batch_num    : %.*s\n", 17, Text(r.batch_num));
    command.SendLog(LW_PRINT, "clei_code    : %.*s\n", 10, Text(r.clei_code));
    command.SendLog(LW_PRINT, "rstate       : %.*s\n", 7, Text(r.rstate));
    command.SendLog(LW_PRINT, "manu_date    : %.*s\n", 8, Text(r.manu_date));
    command.SendLog(LW_PRINT, "product_code : %.*s\n", 4, Text(r.product_code));
    command.SendLog(LW_PRINT, "product_code_crc : %02x\n", r.product_code_crc);
    const auto& mac = r.macaddr_start;
    command.SendLog(LW_PRINT, "macaddr_start: %02x:%02x:%02x:%02x:%02x:%02x\n", mac[0], mac[1],
                    mac[2], mac[3], mac[4], mac[5]);
    command.SendLog(LW_PRINT, "mac_count    : %d\n", static_cast<int>(BigEndian(r.mac_count)));
    command.SendLog(LW_PRINT, "crc_16       : %04x\n",
                    static_cast<unsigned int>(BigEndian(r.crc_16)));
}

}  // namespace

CShowManufEeprom::CShowManufEeprom(const std::string& name, const std::string& description,
                                   CDiagMfgEepromDevice* pDev)
    : CDiagFunc(name, description, 0), m_pDev(pDev) {}

void CShowManufEeprom::Invoke(CInMsg&, COutMsg& out) {
    if (!OpenPathOrTell(*this, *m_pDev)) {
        AnswerResult(out, false);
        return;
    }
    bool good = false;
    Print(*this, Read(*m_pDev, good));
    const bool cleared = ClosePathOrTell(*this, *m_pDev);
    AnswerResult(out, good && cleared);
}

CGetBoardSerial::CGetBoardSerial(const std::string& name, const std::string& description,
                                 CDiagMfgEepromDevice* pDev)
    : CDiagFunc(name, description, 0), m_pDev(pDev) {
    AddChild(new CDiagParam(VT_STRING, "serialnum", "Board Serial Number", PT_OUT), NO_SORT);
}

void CGetBoardSerial::Invoke(CInMsg&, COutMsg& out) {
    auto record = GoodRecord(*this, *m_pDev);
    AnswerResult(out, record.has_value());
    if (record.has_value()) {
        out << CDiagMfgEepromDevice::ExtractSerialNumber(*record).c_str();
    }
}

CGetBoardInfo::CGetBoardInfo(const std::string& name, const std::string& description,
                             CDiagMfgEepromDevice* pDev)
    : CDiagFunc(name, description, 0), m_pDev(pDev) {
    AddChild(new CDiagParam(VT_STRING, "serialnum", "Board Serial Number", PT_OUT), NO_SORT);
    AddChild(new CDiagParam(RSTATE_TYPE, "rstate", "Board RState (numeric)", PT_OUT), NO_SORT);
}

void CGetBoardInfo::Invoke(CInMsg&, COutMsg& out) {
    auto record = GoodRecord(*this, *m_pDev);
    AnswerResult(out, record.has_value());
    if (record.has_value()) {
        out << CDiagMfgEepromDevice::ExtractSerialNumber(*record).c_str()
            << NumericRstateOf(*record);
    }
}

CCheckMfgTest::CCheckMfgTest(const std::string& name, const std::string& description)
    : CDiagTest(name, description) {}

bool CCheckMfgTest::TestSetup(CInMsg&) {
    return true;
}

ETestStatus CCheckMfgTest::TestRun(COutMsg& out) {
    m_pDev = &ParentDeviceOf<CDiagMfgEepromDevice>(*this);
    const bool good = GoodRecord(*this, *m_pDev).has_value();
    AnswerResult(out, good);
    return good ? DS_PASSED : DS_FAILED;
}
