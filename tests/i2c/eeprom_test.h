// What the tests of the EEPROM device and its tests share: a chip on a
// recording bus, the device in its tree, and the log.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "i2c/diag_i2c_eeprom_device.h"
#include "tests/i2c/bus_test.h"
#include "tests/i2c/eeprom_bus.h"
#include "tests/support/journal_switch.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

// What happened on the hardware, in order.
using CCalls = std::vector<std::string>;

// An EEPROM whose place on the bus is given from outside.
class CTestEeprom : public CDiagI2cEepromDevice {
  public:
    static constexpr uint8_t ADDR = 0x52;
    static constexpr int DEV_ID = 77;

    CTestEeprom(CI2cDevice& bus, i2c_eeprom_attr_t* attr, bool rd_only, int8_t ch)
        : CDiagI2cEepromDevice("eeprom", "an EEPROM", &bus, attr, rd_only, DEV_ID) {
        m_i2c_addr = ADDR;
        m_i2c_ch = ch;
    }
};

class CEepromTest : public testing::Test {
  protected:
    using Bytes = std::vector<uint8_t>;
    using Texts = std::vector<std::string>;

    static constexpr uint8_t SUCCESS = 0;
    static constexpr uint8_t FAIL = 2;
    static constexpr uint8_t ABORTED = 10;
    static constexpr int8_t CHANNEL = 3;
    // The path of a device behind the switch is opened and closed.
    inline static const std::string SELECT = "mux-0: SelChannel(3)";
    inline static const std::string CLOSE = "mux-0: DisableChannels()";

    CEepromTest() : m_bus(*new CEepromBus(m_journal, "i2c-0")) {
        m_root.AddChild(&m_bus, CDiagObj::NO_SORT);
    }

    // A part of `size` bytes that moves up to `xfer` bytes at once.
    static i2c_eeprom_attr_t Part(uint32_t size, uint8_t xfer = 128) {
        i2c_eeprom_attr_t attr{};
        attr.mem_size = size;
        attr.mem_addr_size = 2;
        attr.addrh_first = true;
        attr.xfer_unit = 1;
        attr.wr_pg_size = xfer;
        attr.xfer_size = xfer;
        return attr;
    }

    // The device on the root bus.
    CTestEeprom& Mount(i2c_eeprom_attr_t attr, bool rd_only = false, int8_t ch = -1) {
        return Place(m_bus, &attr, rd_only, ch);
    }
    CTestEeprom& MountWithoutAttributes() { return Place(m_bus, nullptr, false, -1); }
    // The device behind channel CHANNEL of a multiplexer.
    CTestEeprom& MountBehindSwitch(i2c_eeprom_attr_t attr, bool rd_only = false) {
        return MountBehind(new CJournalSwitch(m_journal, "mux", 0, 0x70, CHANNEL + 1), attr,
                           rd_only);
    }
    CTestEeprom& MountBehind(CJournalSwitch* sw, i2c_eeprom_attr_t attr, bool rd_only = false) {
        m_switch = sw;
        m_bus.AddChild(m_switch, CDiagObj::NO_SORT);
        return Place(*m_switch, &attr, rd_only, CHANNEL);
    }

    CTestEeprom& Eeprom() { return *m_eeprom; }
    CDiagMenu& Node(const std::string& name) { return NodeAt(*m_eeprom, name); }
    // Takes a child out of the device.
    std::unique_ptr<CDiagObj> Detach(const std::string& name) {
        return m_eeprom->RemoveChild(Node(name).GetId());
    }
    template <class... Args>
    CAnswer Call(const std::string& name, const Args&... args) {
        return Send(Node(name), MSG_CALL, args...);
    }

    CCalls Calls() const { return m_journal.Calls(); }
    // What was logged, without the traces of transfers and without what the
    // switch itself has to say.
    CLines Messages() const {
        CLines lines;
        for (const CLogCapture::Line& line : m_log.Lines()) {
            if (line.first != LW_HW_TRACE && line.first != LW_SW_TRACE &&
                line.first != LW_ERR_SYS) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    CDiagMenu m_root{TMENU, "root", "the tree"};
    CJournal m_journal;
    CEepromBus& m_bus;
    CJournalSwitch* m_switch = nullptr;
    CLogCapture m_log;

  private:
    CTestEeprom& Place(CI2cDevice& bus, i2c_eeprom_attr_t* attr, bool rd_only, int8_t ch) {
        m_eeprom = new CTestEeprom(bus, attr, rd_only, ch);
        CDiagMenu& place = ch != -1 && m_switch != nullptr ? *m_switch->getChannelMenu(ch) : bus;
        place.AddChild(m_eeprom, CDiagObj::NO_SORT);
        return *m_eeprom;
    }

    CTestEeprom* m_eeprom = nullptr;
};
