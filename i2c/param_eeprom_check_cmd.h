// "check-param-eeprom": compares the EEPROM with a DIMM table, field by field.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "i2c/param_eeprom_cmd.h"

enum eeprom_result_t : int {
    EEPROM_MATCH = 0,
    EEPROM_MISMATCH = -1,
};

// What was found of one module; each an eeprom_result_t.
struct AddCheck {
    int manufacture_chk = EEPROM_MISMATCH;
    int part_num_chk = EEPROM_MISMATCH;
    int revision_chk = EEPROM_MISMATCH;
    int num_reg_chk = EEPROM_MISMATCH;
    int addr_values_chk = EEPROM_MISMATCH;
};

// What was found of the whole image.
struct DimmCheck {
    int version_num_chk = EEPROM_MISMATCH;
    int table_len_chk = EEPROM_MISMATCH;
    int signature_chk = EEPROM_MISMATCH;
    int num_entry_chk = EEPROM_MISMATCH;
    int crc_chk = EEPROM_MISMATCH;
    std::vector<AddCheck> dim_check;  // one for each module
    int chk_result = EEPROM_MATCH;    // until something differs
};

class CParamEepromCmdCheck : public virtual CParamEepromCmd {
  public:
    CParamEepromCmdCheck(const std::string& name, const std::string& description, bool isSWAL,
                         CDiagParamEepromDevice* dev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    void checkDimmVersionNum();
    void checkSignature();
    void checkNumEntriesHeader();
    void checkEntry(uint32_t i);
    // Whether the fields of module `i` match.
    bool checkManufacturerId(uint32_t i);
    bool checkDimmPartNum(uint32_t i);
    bool checkRevisions(uint32_t i);
    bool checkNumRegisters(uint32_t i);
    bool checkWord(uint32_t i, uint32_t expected);
    bool checkAddrValues(uint32_t i);
    bool checkRegisterOffset(uint32_t i, uint32_t k);
    bool checkRegisterValue(uint32_t i, uint32_t k);
    uint32_t readRegisterWord();
    // Returns the checksum of what was read.
    uint32_t checkCRC();

    // Notes the result of one comparison in `field`.
    void note(int& field, bool match);
    void printResults() const;
    void printEntryResults(int i, const AddCheck& check) const;

    std::unique_ptr<DimmCheck> m_print_check;
};
