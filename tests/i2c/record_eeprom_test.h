// What the tests of EEPROMs that begin with a record share: the device on a
// recording bus, what its chip holds, and what happened in order.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "tests/i2c/eeprom_test.h"
#include "tests/i2c/record_files.h"
#include "tests/support/declared_params.h"

// An EEPROM of that kind whose place on the bus is given from outside.
template <class Kind>
class CPlacedEeprom : public Kind {
  public:
    CPlacedEeprom(CI2cDevice& bus, i2c_eeprom_attr_t* attr, int8_t ch = -1)
        : Kind("record-eeprom", "an EEPROM with a record", &bus, attr) {
        this->m_i2c_addr = CTestEeprom::ADDR;
        this->m_i2c_ch = ch;
    }
};

// A record as a caller may have it, with nothing that may be written behind it.
template <class Record>
class CGuardedRecord {
  public:
    explicit CGuardedRecord(uint8_t fill = 0xFF) {
        std::memset(&m_record, fill, sizeof m_record);
        m_behind.fill(GUARD);
    }
    Record* Get() { return &m_record; }
    std::vector<uint8_t> Bytes() const {
        const auto* first = reinterpret_cast<const uint8_t*>(&m_record);
        return {first, first + sizeof m_record};
    }
    bool IsIntactBehind() const {
        return std::all_of(m_behind.begin(), m_behind.end(), [](uint8_t b) { return b == GUARD; });
    }

  private:
    static constexpr uint8_t GUARD = 0xA5;

    Record m_record;
    std::array<uint8_t, 512> m_behind;
};

// Which node said what; the traces of transfers are left out.
class CSenderLog : public ILogSink {
  public:
    struct Line {
        std::string sender;
        unsigned int word;
        std::string text;

        bool operator==(const Line&) const = default;
        friend void PrintTo(const Line& line, std::ostream* out) {
            *out << line.sender << " 0x" << std::hex << line.word << " \"" << line.text << '"';
        }
    };

    CSenderLog() { CDiagLog::Instance().AddSink(*this); }
    ~CSenderLog() override { CDiagLog::Instance().RemoveSink(*this); }
    bool Takes(unsigned int word) const override {
        return word == LW_PRINT || word == LW_ERR_TEST || word == LW_ERR_SW;
    }
    void Write(const CLogRecord& record) override {
        m_lines.push_back({record.node == nullptr ? "nobody" : record.node->GetName(),
                           record.logword, record.text});
    }
    const std::vector<Line>& Lines() const { return m_lines; }

  private:
    std::vector<Line> m_lines;
};

// Names the tests of a parameter that is a text.
inline std::string NameOfText(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

template <class Kind>
class CRecordEepromTest : public CEepromTest {
  protected:
    using CPlaced = CPlacedEeprom<Kind>;

    // The device on the root bus, or behind channel CHANNEL of a multiplexer.
    void MountRecord(i2c_eeprom_attr_t attr) {
        m_device = new CPlaced(m_bus, &attr);
        m_bus.AddChild(m_device, CDiagObj::NO_SORT);
    }
    void MountRecordBehindSwitch(i2c_eeprom_attr_t attr) {
        m_switch = new CJournalSwitch(m_journal, "mux", 0, 0x70, CHANNEL + 1);
        m_bus.AddChild(m_switch, CDiagObj::NO_SORT);
        m_device = new CPlaced(*m_switch, &attr, CHANNEL);
        m_switch->getChannelMenu(CHANNEL)->AddChild(m_device, CDiagObj::NO_SORT);
    }

    CPlaced& Device() { return *m_device; }
    CDiagMenu& Command(const std::string& name) { return NodeAt(*m_device, name); }
    CAnswer Ask(const std::string& name) { return Send(Command(name), MSG_CALL); }
    // What a command answers that was taken out of its device.
    CAnswer AskDetached(const std::string& name) {
        const std::unique_ptr<CDiagObj> command = m_device->RemoveChild(Command(name).GetId());
        return Send(dynamic_cast<CDiagMenu&>(*command), MSG_CALL);
    }

    void Store(const Bytes& image) {
        for (size_t i = 0; i < image.size(); ++i) {
            m_bus.At(i) = image[i];
        }
    }
    // The transfer `count` from now on fails.
    void FailTransfer(size_t count) { m_bus.FailAt(m_bus.Xfers().size() + count); }

    // What was printed, in one piece.
    std::string Printed() const { return m_log.Joined(LW_PRINT); }
    Texts ChildNames() const {
        Texts names;
        for (const CDiagObj* child : m_device->GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }

    // Calls and lines in order: a call as it is, a line as its log word and text,
    // any number of printed lines as PRINTS.
    inline static const std::string PRINTS = "prints";
    Texts Story() const {
        Texts story;
        for (const auto& [word, text] : m_journal.Entries()) {
            if (word == LW_PRINT) {
                if (story.empty() || story.back() != PRINTS) {
                    story.push_back(PRINTS);
                }
            } else if (word == CJournal::CALL) {
                story.push_back(text);
            } else if (word == LW_ERR_TEST) {
                story.push_back("0x10 " + text);
            } else if (word == LW_ERR_SW) {
                story.push_back("0x30 " + text);
            }
        }
        return story;
    }

    // The transfers that read `size` bytes in whole steps of `step`.
    static CCalls StepCalls(size_t size, size_t step) {
        CCalls calls;
        for (size_t at = 0; at < size; at += step) {
            calls.push_back("RD " + std::to_string(at) + "+" + std::to_string(step));
        }
        return calls;
    }
    // The first `count` bytes of the image; none of the others was read.
    static Bytes CutAt(Bytes image, size_t count) {
        for (size_t i = count; i < image.size(); ++i) {
            image[i] = 0xFF;
        }
        return image;
    }

  private:
    CPlaced* m_device = nullptr;
};

// What the path errors look like in a story.
inline const std::string CANNOT_OPEN = "0x30   Error when enabling I2C path!\n";
inline const std::string CANNOT_CLOSE = "0x30   Error when disabling I2C path!\n";
