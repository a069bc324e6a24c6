#include "i2c/sfp_eeprom_commands.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <span>

#include "framework/diag_command.h"
#include "framework/diag_param.h"
#include "i2c/diag_sfp_eeprom.h"
#include "i2c/told_path.h"

namespace {

constexpr uint8_t UNREAD = 0xFF;
// Any 10G Ethernet compliance, or any InfiniBand one of a single lane
// (SFF-8472, transceiver compliance codes, byte 3).
constexpr uint8_t TEN_GIGABIT = 0xF1;

// What stands before and behind the bytes of a field.
enum class EForm {
    LINE,           // the whole line
    BEGINNING,      // without the end of the line
    NEW_LINE,       // ends the line before
    NEW_BEGINNING,  // ends the line before, without an end of its own
    TEXT,
    HIDDEN,
};

// How one field is shown.
struct sfp_eeprom_reg_s {
    const char* name;
    int size;  // bytes
    EForm form;
};

// In the order of the record. Operators and their scripts know the labels by
// these spellings.
constexpr sfp_eeprom_reg_s FIELDS[] = {
    {"Identifier", 1, EForm::LINE},
    {"Ext_Identifier", 1, EForm::LINE},
    {"Connector", 1, EForm::LINE},
    {"Transceiver[8]", 8, EForm::BEGINNING},
    {"Encoding", 1, EForm::NEW_LINE},
    {"BR_Nominal", 1, EForm::LINE},
    {"Rate_ID", 1, EForm::LINE},
    {"Length_9um_km", 1, EForm::LINE},
    {"Length_9um_100m", 1, EForm::LINE},
    {"Length_50um_OM2", 1, EForm::LINE},
    {"Length_62p5um", 1, EForm::LINE},
    {"Length_Copper", 1, EForm::LINE},
    {"Length_50um_10m", 1, EForm::LINE},
    {"Vendor_name[16]", 16, EForm::TEXT},
    {"Transciever", 1, EForm::LINE},
    {"Vendor_OUI", 3, EForm::BEGINNING},
    {"Vendor_PN[16]", 16, EForm::NEW_BEGINNING},
    {"Vendor_rev[4]", 4, EForm::NEW_BEGINNING},
    {"Wavelength[2]", 2, EForm::NEW_BEGINNING},
    {"Unallocated", 1, EForm::HIDDEN},
    {"CC_BASE", 1, EForm::LINE},
    {"Options[2]", 2, EForm::BEGINNING},
    {"BR_max", 1, EForm::NEW_LINE},
    {"BR_min", 1, EForm::LINE},
    {"Vendor_SN[16]", 16, EForm::BEGINNING},
    {"Date_code[8]", 8, EForm::NEW_BEGINNING},
    {"Diagnostic_Monitoring_Type", 1, EForm::NEW_LINE},
    {"Enhanced_Options", 1, EForm::LINE},
    {"SFF-8472_Compliance", 1, EForm::LINE},
    {"CC_EXT", 1, EForm::LINE},
    {"Vendor_Specific[32]", 32, EForm::BEGINNING},
};
static_assert(std::accumulate(std::begin(FIELDS), std::end(FIELDS), 0,
                              [](int sum, const auto& field) { return sum + field.size; }) ==
              sizeof(sfp_serial_id_t));

void PrintField(const CDiagMenu& command, const sfp_eeprom_reg_s& field,
                std::span<const byte_t> bytes) {
    switch (field.form) {
        case EForm::LINE:
            command.SendLog(LW_PRINT, "  %30s: %02x\n", field.name, bytes[0]);
            break;
        case EForm::BEGINNING:
            command.SendLog(LW_PRINT, "  %30s: %02x", field.name, bytes[0]);
            break;
        case EForm::NEW_LINE:
            command.SendLog(LW_PRINT, "\n  %30s: %02x\n", field.name, bytes[0]);
            break;
        case EForm::NEW_BEGINNING:
            command.SendLog(LW_PRINT, "\n  %30s: %02x", field.name, bytes[0]);
            break;
        case EForm::TEXT: {
            // The field has no end of its own: the text goes on to the first zero.
            const auto end = std::find(bytes.begin(), bytes.end(), byte_t{0});
            command.SendLog(LW_PRINT, "  %30s: %20s\n", field.name,
                            std::string(bytes.begin(), end).c_str());
            return;
        }
        case EForm::HIDDEN:
            return;
    }
    for (const byte_t byte : bytes.first(static_cast<size_t>(field.size)).subspan(1)) {
        command.SendLog(LW_PRINT, " %02x", byte);
    }
}

void Print(const CDiagMenu& command, const sfp_serial_id_t& id) {
    std::span bytes(reinterpret_cast<const byte_t*>(&id), sizeof id);
    command.SendLog(LW_PRINT, "\nSFP EEPROM:\n\n");
    for (const sfp_eeprom_reg_s& field : FIELDS) {
        PrintField(command, field, bytes);
        bytes = bytes.subspan(static_cast<size_t>(field.size));
    }
    command.SendLog(LW_PRINT, "\n");
}

sfp_serial_id_t Unread() {
    sfp_serial_id_t id;
    std::memset(&id, UNREAD, sizeof id);
    return id;
}

// A module without any compliance code is taken for one of 10 Gbit/s.
uint32_t TypeOf(const sfp_serial_id_t& id) {
    const auto& codes = id.Transceiver;
    const bool none = std::all_of(codes.begin(), codes.end(), [](uint8_t c) { return c == 0; });
    return none || (codes[0] & TEN_GIGABIT) != 0 ? 10 : 1;
}

}  // namespace

CShowSfpEeprom::CShowSfpEeprom(const std::string& name, const std::string& description,
                               CDiagSfpEepromDevice* pDev)
    : CDiagFunc(name, description, 0), m_pDev(pDev) {}

void CShowSfpEeprom::Invoke(CInMsg&, COutMsg& out) {
    if (!OpenPathOrTell(*this, *m_pDev)) {
        AnswerResult(out, false);
        return;
    }
    sfp_serial_id_t id = Unread();
    const bool read = m_pDev->ReadContent(&id);
    Print(*this, id);
    const bool cleared = ClosePathOrTell(*this, *m_pDev);
    AnswerResult(out, read && cleared);
}

CSfpType::CSfpType(const std::string& name, const std::string& description,
                   CDiagSfpEepromDevice* pDev)
    : CDiagFunc(name, description, 0), m_pDev(pDev) {
    AddChild(new CDiagParam(VT_INT32, "type", "1- SFP, 10 - SFP+", PT_OUT), NO_SORT);
}

void CSfpType::Invoke(CInMsg&, COutMsg& out) {
    if (!OpenPathOrTell(*this, *m_pDev)) {
        AnswerResult(out, false);
        return;
    }
    sfp_serial_id_t id = Unread();
    const bool read = m_pDev->ReadContent(&id);
    const bool cleared = ClosePathOrTell(*this, *m_pDev);
    AnswerResult(out, read && cleared);
    out << TypeOf(id);
}
