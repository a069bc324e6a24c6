#include "i2c/i2c_register_commands.h"

#include "framework/diag_command.h"
#include "framework/diag_functions.h"
#include "framework/diag_param.h"
#include "i2c/DiagI2cSlaveRegisterDevice.h"
#include "i2c/told_path.h"

namespace {

constexpr uint8_t NUMBER_TYPE = VT_UINT64 | VF_HEX;
constexpr const char* UNREADABLE = "???";

// An array that is named as a whole.
bool IsWholeArray(const diag_reg_st& reg, bool has_index) {
    return reg.num_regs > 1 && !has_index;
}

}  // namespace

CI2cRegisterCmd::CI2cRegisterCmd(CDiagI2cSlaveRegisterDevice* pDev, const std::string& n,
                                 const std::string& d)
    : CDiagFunc(n, d, 0), m_pDev(pDev) {
    AddChild(new CDiagParam(VT_STRING, "regname", "Register Name", PT_IN), NO_SORT);
}

std::optional<CI2cRegisterCmd::CArguments> CI2cRegisterCmd::Read(CInMsg& in, COutMsg& out,
                                                                 bool with_number) const {
    CArguments arguments;
    try {
        in >> arguments.full_name;
        if (with_number) {
            in >> arguments.number;
        }
    } catch (const CDiagException&) {
        out << static_cast<uint8_t>(MSG_ERR_MSGLEN);
        return std::nullopt;
    }
    arguments.has_index =
        diag_crack_regname_index(arguments.name, arguments.index, arguments.full_name);
    arguments.reg = m_pDev->getRegEntry(arguments.name);
    return arguments;
}

void CI2cRegisterCmd::TellUnknown(const CArguments& arguments) const {
    SendLog(LW_ERR_SW, "No register named %s", arguments.name.c_str());
}

void CI2cRegisterCmd::TellBadIndex(const CArguments& arguments) const {
    SendLog(LW_ERR_SW, "%s[%d] invalid index, valid range 0 to %d", arguments.reg->name,
            static_cast<int>(arguments.index), static_cast<int>(arguments.reg->num_regs - 1));
}

CI2cSalvePeekRegCmd::CI2cSalvePeekRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n,
                                         std::string d)
    : CI2cRegisterCmd(pDev, n, d) {
    AddChild(new CDiagParam(VT_STRING, "regvalue", "Register Value", PT_OUT), NO_SORT);
}

void CI2cSalvePeekRegCmd::Invoke(CInMsg& in, COutMsg& out) {
    const auto arguments = Read(in, out, false);
    if (!arguments.has_value()) {
        return;
    }
    if (arguments->reg == nullptr) {
        const bool dumped = m_pDev->dumpRegs(LW_PRINT, arguments->full_name);
        if (!dumped) {
            TellUnknown(*arguments);
        }
        AnswerResult(out, dumped);
        return;
    }
    if (!OpenPathOrTell(*this, *m_pDev)) {
        AnswerResult(out, false);
        return;
    }
    std::string text;
    AnswerResult(out, ReadNamed(text, *arguments));
    try {
        out << text;
    } catch (const CDiagException&) {
        out.SetRespCode(MSG_ERR_MSGLEN);
        out << "Too many values to display";
    }
    if (!ClosePathOrTell(*this, *m_pDev)) {
        AnswerResult(out, false);
    }
}

bool CI2cSalvePeekRegCmd::ReadNamed(std::string& text, const CArguments& arguments) {
    if (IsWholeArray(*arguments.reg, arguments.has_index)) {
        return ReadAll(text, arguments.reg);
    }
    if (arguments.index >= arguments.reg->num_regs) {
        TellBadIndex(arguments);
        text = UNREADABLE;
        return false;
    }
    return ReadElement(text, arguments.reg, arguments.index);
}

bool CI2cSalvePeekRegCmd::ReadElement(std::string& text, diag_reg_st* reg, unsigned int index) {
    diag_regdata_t data = 0;
    const bool ok = m_pDev->readRegEntry(&data, reg, index) &&
                    reg_data_to_string(text, &data, reg->dtype, reg->format);
    if (!ok) {
        text = UNREADABLE;
    }
    return ok;
}

// The values before one that cannot be read stay in the text.
bool CI2cSalvePeekRegCmd::ReadAll(std::string& text, diag_reg_st* reg) {
    bool ok = true;
    for (unsigned int index = 0; ok && index < reg->num_regs; ++index) {
        std::string value;
        ok = ReadElement(value, reg, index);
        text += text.empty() ? value : " " + value;
    }
    return ok;
}

CI2cSalvePokeRegCmd::CI2cSalvePokeRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n,
                                         std::string d)
    : CI2cRegisterCmd(pDev, n, d) {
    AddChild(new CDiagParam(NUMBER_TYPE, "regvalue", "Register Value", PT_IN), NO_SORT);
}

void CI2cSalvePokeRegCmd::Invoke(CInMsg& in, COutMsg& out) {
    const auto arguments = Read(in, out, true);
    if (arguments.has_value()) {
        AnswerResult(out, Poke(*arguments));
    }
}

bool CI2cSalvePokeRegCmd::Poke(const CArguments& arguments) {
    diag_reg_st* reg = arguments.reg;
    if (reg == nullptr) {
        TellUnknown(arguments);
        return false;
    }
    if (IsWholeArray(*reg, arguments.has_index)) {
        SendLog(LW_ERR_SW, "poke on array must have index");
        return false;
    }
    if (arguments.index >= reg->num_regs) {
        TellBadIndex(arguments);
        return false;
    }
    if (!OpenPathOrTell(*this, *m_pDev)) {
        return false;
    }
    diag_regdata_t data = 0;
    if (!reg_data_from_arg(&data, reg->dtype, arguments.number)) {
        SendLog(LW_WARN, "invalid poke value");
        return false;
    }
    return m_pDev->writeRegEntry(&data, reg, arguments.index) && ClosePathOrTell(*this, *m_pDev);
}

CI2cMaskRegCmd::CI2cMaskRegCmd(CDiagI2cSlaveRegisterDevice* pDev, const std::string& n,
                               const std::string& d, bool set)
    : CI2cRegisterCmd(pDev, n, d), m_set(set) {
    AddChild(new CDiagParam(NUMBER_TYPE, "mask", "Bit mask to set", PT_IN), NO_SORT);
}

void CI2cMaskRegCmd::Invoke(CInMsg& in, COutMsg& out) {
    const auto arguments = Read(in, out, true);
    if (arguments.has_value()) {
        AnswerResult(out, Change(*arguments));
    }
}

bool CI2cMaskRegCmd::Change(const CArguments& arguments) {
    if (arguments.reg == nullptr) {
        TellUnknown(arguments);
        return false;
    }
    if (IsWholeArray(*arguments.reg, arguments.has_index)) {
        SendLog(LW_ERR_SW, "Set bits on array must have index");
        return false;
    }
    if (!OpenPathOrTell(*this, *m_pDev)) {
        return false;
    }
    return m_pDev->SetClrBits(arguments.number, arguments.reg, arguments.index, m_set) &&
           ClosePathOrTell(*this, *m_pDev);
}

CI2cSalveSetBitsRegCmd::CI2cSalveSetBitsRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n,
                                               std::string d)
    : CI2cMaskRegCmd(pDev, n, d, true) {}

CI2cSalveClrBitsRegCmd::CI2cSalveClrBitsRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n,
                                               std::string d)
    : CI2cMaskRegCmd(pDev, n, d, false) {}
