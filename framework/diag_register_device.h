// A device with a table of named registers and the commands "regpeek",
// "regpoke", "regset", "regclr", "regdump" and "regtable".
#pragma once

#include <span>
#include <string>

#include "framework/diag_device.h"
#include "framework/diag_reg_table.h"

class CDiagRegisterDevice : public CDiagDevice {
  public:
    // The table is not copied and must outlive the device; null stands for an empty one.
    CDiagRegisterDevice(const std::string& name, const std::string& description,
                        diag_regtable_st* table);
    ~CDiagRegisterDevice() override;

    // Prints the entries whose names match `pattern` (see dumpRegs), without reading any register.
    virtual void showRegTable(std::string pattern);
    // Logs the value of every register whose name matches: all for an empty
    // pattern, one element for NAME[INDEX], else by shell wildcards if it has any
    // or by the beginning of the name. Registers that change when read, or cannot
    // be, are only read when named in full. False when no register matches or a read fails.
    virtual bool dumpRegs(uint32_t logword, std::string pattern);
    // One element of a register; board code supplies both. Several threads may be in
    // them at once.
    virtual bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) = 0;
    virtual bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) = 0;

    // All entries, in the order of the table.
    std::span<diag_reg_st> Registers() const {
        return m_table != nullptr ? std::span(m_table->reg_entries, m_table->num_regs)
                                  : std::span<diag_reg_st>();
    }
    // The entry of that name, or null.
    diag_reg_st* getRegEntry(std::string name);
    // Reads an element, sets or clears `bits` in it and writes it back. Refused, before
    // it is read, of a register that cannot be written, whose reading has effects, in
    // which a one that is written back has effects, or whose type these bits do not fit.
    bool SetClrBits(const uint64_t& bits, diag_reg_st* reg, unsigned int index, bool set);

  private:
    diag_regtable_st* m_table;
};
