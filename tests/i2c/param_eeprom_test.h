// What the tests of the parameter EEPROM share: the device on a recording bus,
// its commands, and what is expected of them.
#pragma once

#include <string>
#include <vector>

#include "i2c/diag_param_eeprom.h"
#include "tests/i2c/eeprom_test.h"
#include "tests/i2c/param_eeprom_table.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

// A parameter EEPROM whose place on the bus is given from outside.
class CTestParamEeprom : public CDiagParamEepromDevice {
  public:
    CTestParamEeprom(CI2cDevice& bus, i2c_eeprom_attr_t* attr, int8_t ch)
        : CDiagParamEepromDevice("param-eeprom", "a parameter EEPROM", &bus, attr) {
        m_i2c_addr = CTestEeprom::ADDR;
        m_i2c_ch = ch;
    }
};

// Notes every sleep among the transfers and takes no time for it.
class CJournalClock : public CFakeClock {
  public:
    explicit CJournalClock(CJournal& journal) : m_journal(journal) {}
    void SleepMs(unsigned int ms) override {
        CFakeClock::SleepMs(ms);
        m_journal.Note("sleep " + std::to_string(ms));
    }

  private:
    CJournal& m_journal;
};

inline CLogCapture::Line Failure(const std::string& text) {
    return {0x10, text};
}
inline CLogCapture::Line Warning(const std::string& text) {
    return {0x40, text};
}
inline CLogCapture::Line Progress(const std::string& text) {
    return {0xA1, text};
}

// The calls of words: read; written; written, waited for and read back.
CCalls ReadCalls(const std::vector<unsigned int>& offsets);
CCalls WriteCalls(const std::vector<unsigned int>& offsets);
CCalls VerifiedCalls(const std::vector<unsigned int>& offsets);

// What is expected on the log and on the bus, in order.
class CStory {
  public:
    using Entry = CJournal::Entry;

    CStory& Says(const std::string& text) { return Add(0xA1, text); }
    CStory& Prints(const std::string& text) { return Add(0xB0, text); }
    CStory& Informs(const std::string& text) { return Add(0x60, text); }
    CStory& Warns(const std::string& text) { return Add(0x40, text); }
    CStory& Fails(const std::string& text) { return Add(0x10, text); }
    // Words that are written and read back, words that are written, words that
    // are read.
    CStory& Verifies(const std::vector<unsigned int>& offsets);
    CStory& Writes(const std::vector<unsigned int>& offsets);
    CStory& Reads(const std::vector<unsigned int>& offsets);
    // How a table is read and laid out, up to the image's length.
    CStory& Loads(const CTable& table, const std::string& file);

    const std::vector<Entry>& Entries() const { return m_entries; }

  private:
    CStory& Add(unsigned int word, const std::string& text) {
        m_entries.emplace_back(word, text);
        return *this;
    }
    CStory& Calls(const CCalls& calls);

    std::vector<Entry> m_entries;
};

// What "check-param-eeprom" answers.
inline std::vector<uint8_t> CheckAnswer(uint8_t code, uint32_t version, uint32_t crc) {
    std::vector<uint8_t> bytes(9);
    bytes[0] = code;
    SetWordAt(bytes, 1, version);
    SetWordAt(bytes, 5, crc);
    return bytes;
}

class CParamEepromTest : public CEepromTest {
  protected:
    // The device on the root bus, or behind channel CHANNEL of a multiplexer.
    void MountParam(i2c_eeprom_attr_t attr = Part(8192));
    void MountParamBehindSwitch(i2c_eeprom_attr_t attr = Part(8192));

    CTestParamEeprom& Device() { return *m_device; }
    CDiagMenu& Command(const std::string& name) { return NodeAt(*m_device, name); }

    std::string File(const std::string& xml, const std::string& name = "table.xml");
    std::string File(const CTable& table) { return File(XmlOf(table)); }

    CAnswer Program(const std::string& file) {
        return Send(Command("prog-param-eeprom"), MSG_CALL, file);
    }
    CAnswer Program(const CTable& table) { return Program(File(table)); }
    CAnswer Check(const std::string& file) {
        return Send(Command("check-param-eeprom"), MSG_CALL, file);
    }
    CAnswer Check(const CTable& table) { return Check(File(table)); }
    CAnswer Erase() { return Send(Command("erase-param-eeprom"), MSG_CALL); }

    // The chip's memory.
    Bytes Memory(size_t addr, size_t count);
    void Store(const Bytes& image, size_t addr = 0);
    void StoreWord(size_t addr, uint32_t word);
    void Blank(size_t count = CEepromBus::MEMORY_SIZE) { Store(Bytes(count, 0xFF)); }

    // Everything but the traces of transfers, in order.
    std::vector<CStory::Entry> Story() const;
    // Forgets what was logged and called.
    void Forget();
    // The log without the traces of transfers.
    CLines Log() const;
    // The log without anything of the debug levels.
    CLines LogWithoutDebug() const;
    // The debug and other lines that begin like that.
    Texts LinesWith(const std::string& begin) const;
    CCalls Transfers() const;

    // Write, wait and read back, word by word, behind the multiplexer.
    static CCalls VerifiedPathCalls(const std::vector<unsigned int>& offsets);

    CJournalClock m_clock{m_journal};
    CTempFolder m_folder;

  private:
    CTestParamEeprom* m_device = nullptr;
};
