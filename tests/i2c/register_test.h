// What the tests of register devices share: a chip with registers of every kind, whose
// accesses stand in the journal beside what the switches above it do.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "i2c/DiagI2cSlaveRegisterDevice.h"
#include "i2c/i2c_register_commands.h"
#include "tests/host/register_device.h"
#include "tests/i2c/slave_test.h"
#include "tests/support/bytes.h"

// Notes "NAME: read REGISTER[INDEX]" and "NAME: write REGISTER[INDEX] = DATA", and
// every dump that is asked of it.
class CTestRegisterChip : public CDiagI2cSlaveRegisterDevice {
  public:
    CTestRegisterChip(CJournal& journal, const std::string& name, diag_regtable_st* table,
                      CI2cDevice* bus)
        : CDiagI2cSlaveRegisterDevice(name, "a register chip", table, bus), m_journal(journal) {}

    bool dumpRegs(uint32_t logword, std::string pattern) override {
        Note("dump " + std::to_string(logword) + " '" + pattern + "'");
        return CDiagI2cSlaveRegisterDevice::dumpRegs(logword, pattern);
    }
    bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        const std::string element = Element(*reg, index);
        Note("read " + element);
        if (m_failing.contains("read " + element)) {
            return false;
        }
        *data = m_data[element];
        return true;
    }
    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        const std::string element = Element(*reg, index);
        Note("write " + element + " = " + std::to_string(*data));
        if (m_failing.contains("write " + element)) {
            return false;
        }
        m_data[element] = *data;
        return true;
    }

    // From now on "read REGISTER[INDEX]" or "write REGISTER[INDEX]" fails.
    void FailAt(const std::string& access) { m_failing.insert(access); }
    // Called after each access has been written down.
    void OnAccess(std::function<void()> hook) { m_hook = std::move(hook); }

    using CDiagI2cSlaveRegisterDevice::m_i2c_addr;
    using CDiagI2cSlaveRegisterDevice::m_i2c_ch;
    using CDiagI2cSlaveRegisterDevice::m_i2cDev;

    std::map<std::string, diag_regdata_t> m_data;  // by "REGISTER[INDEX]"

  private:
    static std::string Element(const diag_reg_st& reg, uint32_t index) {
        return std::string(reg.name) + "[" + std::to_string(index) + "]";
    }
    void Note(const std::string& call) {
        m_journal.Note(std::string(GetName()) + ": " + call);
        if (m_hook) {
            m_hook();
        }
    }

    CJournal& m_journal;
    std::set<std::string> m_failing;
    std::function<void()> m_hook;
};

// The chip "cpld" below channel 1 of "mux-2", which is on channel 0 of "top-1".
class CRegisterTest : public CSlaveTest {
  protected:
    CRegisterTest() : m_cpld(*new CTestRegisterChip(m_journal, "cpld", &m_table, &m_mux)) {
        m_mux.getChannelMenu(1)->AddChild(&m_cpld, CDiagObj::NO_SORT);
        m_cpld.m_i2c_ch = 1;
        m_cpld.m_i2c_addr = 0x41;
        m_cpld.m_data = {{"ctrl[0]", 1},      {"ctrl[1]", 0x22},  {"ctrl[2]", 0x333},
                         {"ctrl[3]", 0x4444}, {"status[0]", 0x5}, {"mode[0]", 0x80},
                         {"cause[0]", 0x11}};
    }

    CDiagMenu& RegCommand(const std::string& name) { return NodeAt(m_cpld, name); }
    CAnswer Peek(const std::string& reg) { return Send(RegCommand("regpeek"), MSG_CALL, reg); }
    CAnswer Poke(const std::string& reg, uint64_t number) {
        return Send(RegCommand("regpoke"), MSG_CALL, reg, number);
    }

    diag_reg_st& Entry(const std::string& name) { return *m_cpld.getRegEntry(name); }
    static CEntries Access(const std::string& text) { return {Call("cpld: " + text)}; }

    bool IsPathOpen() const { return m_top.IsOpen(0) && m_mux.IsOpen(1); }
    bool IsPathClosed() const { return !m_top.IsOpen(0) && !m_mux.IsOpen(1); }
    void FailToOpen() { m_mux.FailAt("SelChannel"); }
    void FailToClose() { m_mux.FailAt("DisableChannels"); }

    std::array<diag_reg_st, 9> m_regs{
        Reg("ctrl", "channel control", VT_UINT16, VF_HEX | VF_PAD, DIAG_REGACC_RW, 4),
        Reg("status", "link status", VT_UINT8, VF_HEX, DIAG_REGACC_RO),
        Reg("mode", "operating mode", VT_UINT32, VF_HEX, DIAG_REGACC_RW),
        Reg("limit", "lowest temperature", VT_INT8, 0, DIAG_REGACC_RW),
        Reg("cause", "interrupt cause", VT_UINT8, VF_HEX, DIAG_REGACC_RC),
        Reg("reset", "reset strobes", VT_UINT8, VF_HEX, DIAG_REGACC_WO),
        Reg("wide", "event counters", VT_UINT16, VF_HEX | VF_PAD, DIAG_REGACC_RO, 146),
        Reg("serial", "of a type that is no number", VT_STRING, 0, DIAG_REGACC_RO),
        Reg("none", "without an element", VT_UINT8, VF_HEX, DIAG_REGACC_RW, 0),
    };
    diag_regtable_st m_table{m_regs.data(), 9};
    CTestRegisterChip& m_cpld;

    const CEntries m_path_opened =
        CEntries{Trace("(cpld): enable upstream switch mux-2 channel = 1\n")} + m_opened;
    const CEntries m_path_closed =
        CEntries{Trace("(cpld): clear upstream switch mux-2 channel = 1\n")} + m_closed;
    const CEntries m_cannot_open = {ArgError("  Error when enabling I2C path!\n")};
    const CEntries m_cannot_disable = {ArgError("  Error when disabling I2C path!\n")};
    const CEntries m_cannot_clear = {ArgError("  Error when clearing I2C path!\n")};
};
