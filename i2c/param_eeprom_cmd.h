// What the commands of the parameter EEPROM share: the table that the operator
// names, the words of its image, and a copy of the image in memory.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "framework/diag_exception.h"
#include "framework/diag_func.h"
#include "framework/diag_log_word.h"
#include "framework/long_work.h"
#include "i2c/dimm_image.h"
#include "i2c/dimm_table.h"
#include "i2c/xml_exceptions.h"

class CDiagParamEepromDevice;

class CParamEepromCmd : public CDiagFunc, public CLongWork {
  public:
    // The table that is taken when the operator names none.
    static constexpr const char* DEFAULT_FILE =
        "/usr/lib/morva/diags/bin/xml/prog_param_quillbank.xml";

    // `isSWAL`: words are stored with the least significant byte first, and the
    // path to the chip is left alone. `dev` is not owned.
    CParamEepromCmd(const std::string& name, const std::string& description, bool isSWAL,
                    CDiagParamEepromDevice* dev);
    ~CParamEepromCmd() override;

  protected:
    // How the steps of one invocation ended.
    enum class EEnd { DONE, FAILED, STOPPED };

    // Does the `steps` of one invocation and logs what they throw. Answers unless
    // they came to their end, which is for them to answer. Nothing is kept of the
    // table, which may be large.
    template <class Steps>
    EEnd RunSteps(COutMsg& out, Steps&& steps);
    // Does one step; a failure is logged with the step's name and passed on.
    template <class Work>
    auto Step(const char* function, Work&& work) -> decltype(work());
    // Between two words, `done` of `total`: throws when the operator wants no more.
    void countWords(uint32_t done, uint32_t total);

    // Reads the request. Throws CDiagException.
    void getInput(CInMsg& in);
    // Loads the table, lays it out and makes room for the copy of its image.
    // Throws CDiagException, before the EEPROM is touched, when there is no such
    // table or its image does not fit.
    void init();

    // Board code that can ask the board overrides it.
    virtual std::string getCardType() const { return "Quillbank"; }
    bool checkifCardA(const char* name) const;
    void checkifCardSupported() const;

    // Throw Xml_Exceptions or CDiagException.
    void getDimmTableFrom(const std::string& file);
    // Board code that knows of another default overrides it.
    virtual void getDefDimmTable();
    // Works out how large the image is and where each module's registers begin.
    void setDimmTableSz(DimmTable* table) const;
    uint32_t ImageWords() const {
        return static_cast<uint32_t>(m_dimmtbl_arr.size() / sizeof(uint32_t));
    }
    CDimmLayout Layout() const { return CDimmLayout::Of(*m_dimmtable); }
    // Throws CDiagException when the table cannot be stored in this EEPROM; says
    // what of it the image has no room for. In param_eeprom_limits.cpp.
    void requireStorable() const;

    // What follows is in param_eeprom_words.cpp.

    // One word of the EEPROM. Failures are logged; a word that could not be read
    // is 0xFFFFFFFF.
    uint32_t eeprom_read32(const uint16_t& offset) const;
    void eeprom_write32(const uint16_t& offset, const uint32_t& value) const;
    // Writes, waits, reads back and keeps the word in the copy. Throws
    // CDiagException when another word was read.
    void eeprom_write32_verify(const uint16_t& offset, const uint32_t& value);

    // Reads the word at m_offset and keeps it in the copy.
    uint32_t readWord();

    // The header's words that programming and checking share.
    void setDimmTableLength();
    void setNumEntriesHeader();
    uint32_t checkDimmTableLength();

    // Keeps a word in the copy, at the word boundary at or before `offset`.
    void placeDimmTblInArray(uint16_t offset, uint32_t value);
    // The checksum of the copy.
    uint32_t computeCRC() const;
    void hex_dump(const void* data, uint32_t len) const;
    void dumpArray() const;

    std::string m_param_xml_filename;  // empty: the default one
    bool m_xmlfile_specified = false;
    uint16_t m_offset = 0;                   // of the next word, in bytes
    uint32_t m_words_moved = 0;              // by this invocation
    uint32_t m_image_words = 0;              // of the invocation that just ended
    std::unique_ptr<DimmTable> m_dimmtable;  // while steps run
    // The bytes of the image, as the EEPROM holds them; while steps run.
    std::vector<uint8_t> m_dimmtbl_arr;
    const bool m_isSWAL;
    CDiagParamEepromDevice* const m_pDev;

  private:
    struct CStopped {};  // thrown where the operator's request is seen

    void requirePairs(uint32_t i) const;
    void warnOfCuts(uint32_t i) const;
    uint32_t lc_eeprom_read32(uint16_t offset) const;
    void lc_eeprom_write32(uint16_t offset, uint32_t value) const;
    uint32_t swal_eeprom_read32(uint16_t offset) const;
    void swal_eeprom_write32(uint16_t offset, uint32_t value) const;
    void parse(const char* file);
    void reportXmlFault(Xml_Exceptions fault, const char* file, const char* read_fault) const;

    // For log lines: the source unit of these commands.
    static constexpr const char* UNIT = "i2c/diag_param_eeprom";
};

template <class Steps>
CParamEepromCmd::EEnd CParamEepromCmd::RunSteps(COutMsg& out, Steps&& steps) {
    EEnd end = EEnd::FAILED;
    m_words_moved = 0;
    try {
        countWords(0, 0);  // how much there is to do is not known yet
        steps();
        end = EEnd::DONE;
    } catch (const CStopped&) {
        end = EEnd::STOPPED;
        out << static_cast<uint8_t>(MSG_ERR_ABORTED);
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_TEST, "CMB command failed: %s %s", "Invoke", e.what());
    } catch (...) {
        SendLog(LW_ERR_TEST, "%s failed", "Invoke");
    }
    if (end == EEnd::FAILED) {
        out << static_cast<uint8_t>(MSG_ERR_FAIL);
    }
    m_image_words = ImageWords();
    m_dimmtable.reset();
    m_dimmtbl_arr = {};
    return end;
}

template <class Work>
auto CParamEepromCmd::Step(const char* function, Work&& work) -> decltype(work()) {
    try {
        return work();
    } catch (const CStopped&) {
        throw;
    } catch (const CDiagException& e) {
        SendLog(LW_ERR_TEST, "CMB command failed: %s %s", function, e.what());
        throw CDiagException("%s", e.what());
    } catch (...) {
        SendLog(LW_ERR_TEST, "CMB command failed: %s:%s unhandled exception", UNIT, function);
        throw;
    }
}
