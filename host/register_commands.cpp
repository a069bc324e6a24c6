#include "host/register_commands.h"

#include <string>

#include "framework/diag_command.h"
#include "framework/diag_func.h"
#include "framework/diag_functions.h"
#include "framework/diag_param.h"
#include "framework/diag_register_device.h"

namespace {

// One element of one register, as the operator named it.
struct CRegElement {
    diag_reg_st* reg = nullptr;
    unsigned int index = 0;
};

// A command that acts on one register element.
class CRegisterCmd : public CDiagFunc {
  public:
    CRegisterCmd(CDiagRegisterDevice& device, const std::string& name,
                 const std::string& description)
        : CDiagFunc(name, description, 0), m_device(device) {}

  protected:
    void AddParam(uint8_t vt, const char* name, const char* description, uint8_t pt) {
        AddChild(new CDiagParam(vt, name, description, pt), NO_SORT);
    }

    // Finds the element that `text` names; a register array needs an index.
    bool Find(CRegElement& element, const std::string& text) const {
        std::string name;
        const bool has_index = diag_crack_regname_index(name, element.index, text);
        element.reg = m_device.getRegEntry(name);
        if (element.reg == nullptr) {
            SendLog(LW_ERR_SW, "No register named %s\n", name.c_str());
            return false;
        }
        const unsigned int count = element.reg->num_regs > 1 ? element.reg->num_regs : 1;
        if (count > 1 && !has_index) {
            SendLog(LW_ERR_SW, "%s is an array: name one element, %s[0] to %s[%u]\n", name.c_str(),
                    name.c_str(), name.c_str(), count - 1);
            return false;
        }
        if (element.index >= count) {
            SendLog(LW_ERR_SW, "%s[%u] invalid index, valid range 0 to %u\n", name.c_str(),
                    element.index, count - 1);
            return false;
        }
        return true;
    }

    CDiagRegisterDevice& m_device;
};

class CPeekRegCmd : public CRegisterCmd {
  public:
    explicit CPeekRegCmd(CDiagRegisterDevice& device)
        : CRegisterCmd(device, "regpeek", "Peek Register Value") {
        AddParam(VT_STRING, "regname", "Register Name", PT_IN);
        AddParam(VT_STRING, "regvalue", "Register Value", PT_OUT);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string name;
        in >> name;
        CRegElement element;
        diag_regdata_t data = 0;
        std::string text;
        const bool ok = Find(element, name) &&
                        m_device.readRegEntry(&data, element.reg, element.index) &&
                        reg_data_to_string(text, &data, element.reg->dtype, element.reg->format);
        AnswerResult(out, ok);
        out << (ok ? text : "???");
    }
};

class CPokeRegCmd : public CRegisterCmd {
  public:
    explicit CPokeRegCmd(CDiagRegisterDevice& device)
        : CRegisterCmd(device, "regpoke", "Poke Register Value") {
        AddParam(VT_STRING, "regname", "Register Name", PT_IN);
        AddParam(VT_UINT64 | VF_HEX, "regvalue", "Register Value", PT_IN);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string name;
        uint64_t value = 0;
        in >> name >> value;
        CRegElement element;
        if (!Find(element, name)) {
            AnswerResult(out, false);
            return;
        }
        diag_regdata_t data = 0;
        if (!reg_data_from_arg(&data, element.reg->dtype, value)) {
            SendLog(LW_WARN, "%s does not fit register %s\n", toString(value, VF_HEX).c_str(),
                    element.reg->name);
            AnswerResult(out, false);
            return;
        }
        AnswerResult(out, m_device.writeRegEntry(&data, element.reg, element.index));
    }
};

class CSetClrRegCmd : public CRegisterCmd {
  public:
    CSetClrRegCmd(CDiagRegisterDevice& device, bool set)
        : CRegisterCmd(device, set ? "regset" : "regclr",
                       set ? "Set Bits in a Register" : "Clear Bits in a Register"),
          m_set(set) {
        AddParam(VT_STRING, "regname", "Register Name", PT_IN);
        AddParam(VT_UINT64 | VF_HEX, "mask", set ? "Bit mask to set" : "Bit mask to clear", PT_IN);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string name;
        uint64_t mask = 0;
        in >> name >> mask;
        CRegElement element;
        AnswerResult(out, Find(element, name) &&
                              m_device.SetClrBits(mask, element.reg, element.index, m_set));
    }

  private:
    const bool m_set;
};

// The two commands over all registers, or those that a pattern picks.
class CListRegsCmd : public CRegisterCmd {
  public:
    CListRegsCmd(CDiagRegisterDevice& device, bool values)
        : CRegisterCmd(device, values ? "regdump" : "regtable",
                       values ? "Show Register Values" : "Show Register Table"),
          m_values(values) {
        AddParam(VT_STRING, "pattern", "Register Names (dflt=all)", PT_IN | PT_OPTIONAL);
    }

    void Invoke(CInMsg& in, COutMsg& out) override {
        std::string pattern;
        if (in.GetLen() != 0) {
            in >> pattern;
        }
        bool ok = true;
        if (m_values) {
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
