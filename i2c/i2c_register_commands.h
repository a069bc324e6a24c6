// The register commands of a chip on an I2C bus. Their names are spelled as the rest
// of the system knows them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "framework/diag_func.h"
#include "framework/diag_reg_table.h"

class CDiagI2cSlaveRegisterDevice;

// A command that acts on a register which the operator names.
class CI2cRegisterCmd : public CDiagFunc {
  protected:
    CI2cRegisterCmd(CDiagI2cSlaveRegisterDevice* pDev, const std::string& n, const std::string& d);

    // The register of a request, and the number behind it.
    struct CArguments {
        std::string full_name;  // as it was typed
        std::string name;       // without the index
        unsigned int index = 0;
        bool has_index = false;
        diag_reg_st* reg = nullptr;  // null when there is none of that name
        uint64_t number = 0;
    };
    // Empty, and answered, when an argument is missing.
    std::optional<CArguments> Read(CInMsg& in, COutMsg& out, bool with_number) const;
    void TellUnknown(const CArguments& arguments) const;
    void TellBadIndex(const CArguments& arguments) const;

    CDiagI2cSlaveRegisterDevice* const m_pDev;
};

// Answers the value; of an array named without an index the values of all elements. A
// name that is no register dumps those that it matches.
class CI2cSalvePeekRegCmd : public CI2cRegisterCmd {
  public:
    CI2cSalvePeekRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n, std::string d);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    bool ReadElement(std::string& text, diag_reg_st* reg, unsigned int index);
    bool ReadAll(std::string& text, diag_reg_st* reg);
    bool ReadNamed(std::string& text, const CArguments& arguments);
};

// After a value that does not fit and after a failed write the path stays open.
class CI2cSalvePokeRegCmd : public CI2cRegisterCmd {
  public:
    CI2cSalvePokeRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n, std::string d);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    bool Poke(const CArguments& arguments);
};

// What "regset" and "regclr" have in common. After a failed access the path stays open.
class CI2cMaskRegCmd : public CI2cRegisterCmd {
  public:
    void Invoke(CInMsg& in, COutMsg& out) override;

  protected:
    CI2cMaskRegCmd(CDiagI2cSlaveRegisterDevice* pDev, const std::string& n, const std::string& d,
                   bool set);

  private:
    bool Change(const CArguments& arguments);

    const bool m_set;
};

class CI2cSalveSetBitsRegCmd : public CI2cMaskRegCmd {
  public:
    CI2cSalveSetBitsRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n, std::string d);
};

class CI2cSalveClrBitsRegCmd : public CI2cMaskRegCmd {
  public:
    CI2cSalveClrBitsRegCmd(CDiagI2cSlaveRegisterDevice* pDev, std::string n, std::string d);
};
