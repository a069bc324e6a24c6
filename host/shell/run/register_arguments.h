// What the commands of register devices take: names of registers and values for them.
#pragma once

#include <string>
#include <vector>

class CDiagObj;
class CDiagRegisterDevice;
struct CSignature;

class CRegisterArguments {
  public:
    // Those of `command`, which may be any; both must outlive this.
    CRegisterArguments(const CDiagObj& command, const CSignature& signature);

    // Null where the command takes no registers.
    const CDiagRegisterDevice* Device() const { return m_device; }
    // Whether the argument of that name is a register or an element of one.
    bool IsRegister(const std::string& param) const;
    // Whether it picks any number of registers.
    bool IsPattern(const std::string& param) const;
    // Whether an array may be named without an index.
    bool TakesWholeArrays() const;

    // The words, a value for a signed register as the bits of a 64-bit number: it may be
    // typed as it is shown, with its sign or as its bits in another base than ten.
    std::vector<std::string> AsBits(std::vector<std::string> words) const;

    // Registers that the words may have meant, as a question; empty where they name some
    // or nothing is near.
    std::string NearRegisters(const std::vector<std::string>& words) const;

    // Lines about naming registers; empty where the command takes none.
    std::string Help() const;

  private:
    const CSignature& m_signature;
    CDiagRegisterDevice* m_device = nullptr;
};
