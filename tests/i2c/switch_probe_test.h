// What the tests of a switch's probe share: devices in their places behind
// open channels, and the sweeps of reads that look for them.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/i2c/switch_test.h"

// What is expected behind a read that is answered, by address.
using CFinds = std::map<uint8_t, CEntries>;

// A read from every address a probe tries, and a second one with command byte
// 0 from each that did not answer. `found` answer the first, `found_by_command`
// the second.
inline CEntries Sweep(const CFinds& found = {}, const CFinds& found_by_command = {}) {
    CEntries all;
    for (uint8_t addr = 1; addr <= 125; ++addr) {
        const std::string number = std::to_string(addr);
        all += {Call("read " + number)};
        if (const auto find = found.find(addr); find != found.end()) {
            all += find->second;
            continue;
        }
        all += {Call("read " + number + " with command 0")};
        if (const auto find = found_by_command.find(addr); find != found_by_command.end()) {
            all += find->second;
        }
    }
    return all;
}

class CSwitchProbeTest : public CSwitchTest {
  protected:
    CSwitchProbeTest() {
        m_bus.OnTransfer([this](const CI2cXfrReq& req) {
            m_journal.Note("read " + std::to_string(req.saddr) +
                           (req.cmd_sel == 1 ? " with command " + std::to_string(req.cmd) : ""));
            m_bus.Answer(IsReached(req) ? Bytes{req.saddr} : Bytes{});
        });
    }

    // One channel on the way to a device.
    struct CHop {
        CJournalSwitch* sw;
        int ch;
    };
    // A device that answers while all channels on the way to it are open; to
    // a read without command only if it is not choosy.
    void Place(uint8_t addr, std::vector<CHop> way = {}) {
        m_devices.push_back({addr, std::move(way), false});
    }
    void PlaceChoosy(uint8_t addr, std::vector<CHop> way = {}) {
        m_devices.push_back({addr, std::move(way), true});
    }

    // What is expected of a device that is found on a channel.
    static CEntries Found(const CJournalSwitch& sw, int ch, uint8_t addr) {
        return {Print(FoundText(sw, addr) + " found \n"), Added(sw, ch, addr)};
    }
    static CEntries FoundByCommand(const CJournalSwitch& sw, int ch, uint8_t addr) {
        return {Print(FoundText(sw, addr) + " found via send_data command\n"), Added(sw, ch, addr)};
    }
    // What stands before and behind the sweep of a channel.
    static CEntries ChannelOpened(const CJournalSwitch& sw, int level, int ch) {
        const std::string channel = std::to_string(ch);
        return {Call(sw.GetName() + (": SelChannel(" + channel + ")")),
                Print("probe (lvl=" + std::to_string(level) + "): search devices from channel " +
                      channel + "\n")};
    }
    static CEntries ChannelsClosed(const CJournalSwitch& sw) {
        return {Call(std::string(sw.GetName()) + ": DisableChannels()")};
    }
    const CEntries m_nothing_found = {Print("         no device found\n")};
    // A channel without any device.
    CEntries EmptyChannel(const CJournalSwitch& sw, int level, int ch) const {
        return ChannelOpened(sw, level, ch) + Sweep() + m_nothing_found;
    }
    // What is said of the devices upstream.
    static CEntries Upstream(const CJournalSwitch& sw, const Bytes& addresses) {
        CEntries all = {Print(sw.GetName() + std::string(" (lvl=0):: devices from  parents: "))};
        for (const uint8_t addr : addresses) {
            all += {Print(Hex(addr) + " ")};
        }
        return all += {Print("\n")};
    }

    // Fails at the first entry that differs, rather than with all of them.
    void ExpectJournal(const CEntries& expected) const {
        const CEntries& entries = m_journal.Entries();
        for (size_t i = 0; i < std::min(entries.size(), expected.size()); ++i) {
            ASSERT_EQ(entries[i], expected[i]) << "entry " << i;
        }
        ASSERT_EQ(entries.size(), expected.size());
    }

  private:
    struct CPlaced {
        uint8_t addr;
        std::vector<CHop> way;
        bool choosy;
    };

    static std::string Hex(uint8_t number) {
        std::ostringstream text;
        text << "0x" << std::hex << unsigned{number};
        return text.str();
    }
    static std::string FoundText(const CJournalSwitch& sw, uint8_t addr) {
        return std::string("         (") + sw.GetName() + "): device with addr = " + Hex(addr);
    }
    static CJournal::Entry Added(const CJournalSwitch& sw, int ch, uint8_t addr) {
        return Call(sw.GetName() + std::string(": AddMyDeviceAddr(") + std::to_string(ch) + ", " +
                    std::to_string(addr) + ")");
    }
    bool IsReached(const CI2cXfrReq& req) const {
        for (const CPlaced& device : m_devices) {
            bool reached = device.addr == req.saddr && (!device.choosy || req.cmd_sel == 1);
            for (const CHop& hop : device.way) {
                reached = reached && hop.sw->IsOpen(hop.ch);
            }
            if (reached) {
                return true;
            }
        }
        return false;
    }

    std::vector<CPlaced> m_devices;
};
