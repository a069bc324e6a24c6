#include "host/register_commands.h"

#include <algorithm>
#include <string>

#include "framework/diag_command.h"
#include "framework/diag_func.h"
#include "framework/diag_functions.h"
#include "framework/diag_param.h"
#include "framework/diag_register_device.h"
#include "host/register_names.h"

namespace {

// Who only reads may do so beside others; who changes a register must find it as it was
// when it began.
constexpr unsigned int READS = CDiagFunc::SHARES_DEVICE;
constexpr unsigned int WRITES = 0;

// A register, or one element of it, as the operator named it.
struct CRegName {
    std::string name;
    diag_reg_st* reg = nullptr;
    unsigned int index = 0;
    bool has_index = false;

    unsigned int Count() const { return ElementCount(*reg); }
    // An array named without an index.
    bool IsWholeArray() const { return Count() > 1 && !has_index; }
};

// A command that acts on a register.
class CRegisterCmd : public CDiagFunc {
  public:
    CRegisterCmd(CDiagRegisterDevice& device, const std::string& name,
                 const std::string& description, unsigned int flags)
        : CDiagFunc(name, description, flags), m_device(device) {}

  protected:
    void AddParam(uint8_t vt, const char* name, const char* description, uint8_t pt) {
        AddChild(new CDiagParam(vt, name, description, pt), NO_SORT);
    }

    // Finds what `text` names; there may be no register of that name.
    CRegName Find(const std::string& text) const {
        CRegName found;
        found.has_index = diag_crack_regname_index(found.name, found.index, text);
        found.reg = m_device.getRegEntry(found.name);
        return found;
    }

    void TellUnknown(const CRegName& found) const {
        SendLog(LW_ERR_SW, "No register named %s\n", found.name.c_str());
    }

    bool IsInRange(const CRegName& found) const {
        if (found.index >= found.Count()) {
            SendLog(LW_ERR_SW, "%s[%u] invalid index, valid range 0 to %u\n", found.reg->name,
                    found.index, found.Count() - 1);
            return false;
        }
        return true;
    }

    // Finds what `text` names, which must be a single element.
    bool FindElement(CRegName& found, const std::string& text) const {
        found = Find(text);
        if (found.reg == nullptr) {
            TellUnknown(found);
            return false;
        }
        if (!IsInRange(found)) {
            return false;
        }
        if (found.IsWholeArray()) {
            SendLog(LW_ERR_SW, "%s is an array: name one element, %s[0] to %s[%u]\n",
                    found.reg->name, found.reg->name, found.reg->name, found.Count() - 1);
            return false;
        }
        return true;
    }

    CDiagRegisterDevice& m_device;
};

class CPeekRegCmd : public CRegisterCmd {
  public:
    explicit CPeekRegCmd(CDiagRegisterDevice& device)
        : CRegisterCmd(device, "regpeek", "Peek Register Value", READS) {
        AddParam(VT_STRING, "regname", "Register Name", PT_IN);
        AddParam(VT_STRING, "regvalue", "Register Value", PT_OUT);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string name;
        in >> name;
        const CRegName found = Find(name);
        if (found.reg == nullptr) {
            Dump(name, found, out);
            return;
        }
        std::string text;
        const bool ok = IsInRange(found) && Read(found, text);
        AnswerResult(out, ok);
        out << (ok ? text : "???");
    }

  private:
    // What names no register may be the pattern of some.
    void Dump(const std::string& pattern, const CRegName& found, COutMsg& out) {
        const bool ok = m_device.dumpRegs(LW_PRINT, pattern);
        if (!ok) {
            TellUnknown(found);
        }
        AnswerResult(out, ok);
    }

    // The values of a whole array are separated by blanks.
    bool Read(const CRegName& found, std::string& text) {
        const unsigned int end = found.IsWholeArray() ? found.Count() : found.index + 1;
        for (unsigned int index = found.index; index < end; ++index) {
            diag_regdata_t data = 0;
            std::string value;
            if (!m_device.readRegEntry(&data, found.reg, index) ||
                !reg_data_to_string(value, &data, found.reg->dtype, found.reg->format)) {
                return false;
            }
            text += text.empty() ? value : " " + value;
        }
        return true;
    }
};

class CPokeRegCmd : public CRegisterCmd {
  public:
    explicit CPokeRegCmd(CDiagRegisterDevice& device)
        : CRegisterCmd(device, "regpoke", "Poke Register Value", WRITES) {
        AddParam(VT_STRING, "regname", "Register Name", PT_IN);
        AddParam(VT_UINT64 | VF_HEX, "regvalue", "Register Value", PT_IN);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string name;
        uint64_t value = 0;
        in >> name >> value;
        CRegName found;
        diag_regdata_t data = 0;
        AnswerResult(out, FindElement(found, name) && Convert(data, found, value) &&
                              m_device.writeRegEntry(&data, found.reg, found.index));
    }

  private:
    // Converts an argument to data of the register's type.
    bool Convert(diag_regdata_t& data, const CRegName& found, uint64_t arg) const {
        if (reg_data_from_arg(&data, found.reg->dtype, arg)) {
            return true;
        }
        TellUnfit(*this, *found.reg, arg);
        return false;
    }
};

class CSetClrRegCmd : public CRegisterCmd {
  public:
    CSetClrRegCmd(CDiagRegisterDevice& device, bool set)
        : CRegisterCmd(device, set ? "regset" : "regclr",
                       set ? "Set Bits in a Register" : "Clear Bits in a Register", WRITES),
          m_set(set) {
        AddParam(VT_STRING, "regname", "Register Name", PT_IN);
        AddParam(VT_UINT64 | VF_HEX, "mask", set ? "Bit mask to set" : "Bit mask to clear", PT_IN);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string name;
        uint64_t mask = 0;
        in >> name >> mask;
        CRegName found;
        AnswerResult(out, FindElement(found, name) &&
                              m_device.SetClrBits(mask, found.reg, found.index, m_set));
    }

  private:
    const bool m_set;
};

// The two commands over all registers, or those that a pattern picks.
class CListRegsCmd : public CRegisterCmd {
  public:
    CListRegsCmd(CDiagRegisterDevice& device, bool values)
        : CRegisterCmd(device, values ? "regdump" : "regtable",
                       values ? "Show Register Values" : "Show Register Table", READS),
          m_values(values) {
        AddParam(VT_STRING, "pattern", "Register Names (dflt=all)", PT_IN | PT_OPTIONAL);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string pattern;
        if (in.GetLen() != 0) {
            in >> pattern;
        }
        const auto matches = [&pattern](const diag_reg_st& reg) {
            return MatchRegister(pattern, reg).match != EMatch::NONE;
        };
        bool ok = pattern.empty() || std::ranges::any_of(m_device.Registers(), matches);
        if (!ok) {
            SendLog(LW_ERR_SW, "No register matches %s\n", pattern.c_str());
        } else if (m_values) {
            ok = m_device.dumpRegs(LW_PRINT, pattern);
        } else {
            m_device.showRegTable(pattern);
        }
        AnswerResult(out, ok);
    }

  private:
    const bool m_values;
};

}  // namespace

void AddRegisterCommands(CDiagRegisterDevice& device) {
    device.AddChild(new CPeekRegCmd(device), CDiagObj::NO_SORT);
    device.AddChild(new CPokeRegCmd(device), CDiagObj::NO_SORT);
    device.AddChild(new CSetClrRegCmd(device, true), CDiagObj::NO_SORT);
    device.AddChild(new CSetClrRegCmd(device, false), CDiagObj::NO_SORT);
    device.AddChild(new CListRegsCmd(device, true), CDiagObj::NO_SORT);
    device.AddChild(new CListRegsCmd(device, false), CDiagObj::NO_SORT);
}
