// What the tests of the I2C switch share: switches below a bus, devices behind
// them, and one journal of calls, transfers and log lines.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/i2c/bus_test.h"
#include "tests/support/journal.h"
#include "tests/support/journal_switch.h"

using CEntries = std::vector<CJournal::Entry>;

inline CJournal::Entry Call(const std::string& text) {
    return {CJournal::CALL, text};
}
inline CJournal::Entry Trace(const std::string& text) {
    return {0xA1, text};
}
inline CJournal::Entry Info(const std::string& text) {
    return {0x60, text};
}
inline CJournal::Entry SystemError(const std::string& text) {
    return {0x20, text};
}

// Joins journals, entry lists and single entries in order.
inline CEntries& operator+=(CEntries& all, const CEntries& more) {
    all.insert(all.end(), more.begin(), more.end());
    return all;
}
inline CEntries operator+(CEntries all, const CEntries& more) {
    return all += more;
}

class CSwitchTest : public CBusTest {
  protected:
    // A switch directly below the bus.
    CJournalSwitch& AddSwitch(const std::string& name, uint32_t devId, uint8_t addr,
                              int channels = 2) {
        return Hang(m_bus, new CJournalSwitch(m_journal, name, devId, addr, channels));
    }
    // A switch below channel `ch` of another.
    CJournalSwitch& AddSwitch(CJournalSwitch& upper, int8_t ch, const std::string& name,
                              uint32_t devId, uint8_t addr, int channels = 2) {
        return Hang(*upper.getChannelMenu(ch),
                    new CJournalSwitch(m_journal, name, devId, addr, channels, ch));
    }

    static CJournalSwitch& Hang(CDiagObj& parent, CJournalSwitch* sw) {
        parent.AddChild(sw, CDiagObj::NO_SORT);
        return *sw;
    }

    CJournal m_journal;
};

// Three switches in a row: "top-1" (0x70) on the bus, "mid-2" (0x71) on its
// channel 1, "low-3" (0x72) on channel 0 of that.
class CThreeSwitchTest : public CSwitchTest {
  protected:
    CThreeSwitchTest()
        : m_top(AddSwitch("top", 1, 0x70)),
          m_mid(AddSwitch(m_top, 1, "mid", 2, 0x71)),
          m_low(AddSwitch(m_mid, 0, "low", 3, 0x72)) {}

    CJournalSwitch& m_top;
    CJournalSwitch& m_mid;
    CJournalSwitch& m_low;
};

// A transfer record in which no field has its initial value.
inline CI2cXfrReq FullRequest(uint8_t* data) {
    CI2cXfrReq req;
    req.saddr = 0x50;
    req.esaddr = 0x11;
    req.cmd_sel = 2;
    req.baddr_sel = 3;
    req.cmd = 0x1234;
    req.baddr = 0x56789ABC;
    req.data = data;
    req.tsize = 4;
    req.dir = 1;
    req.xfer = 5;
    req.rpec_en = 1;
    req.wpec_en = 1;
    req.switch_ch = 6;
    req.SetErrMsg("left over");
    return req;
}
