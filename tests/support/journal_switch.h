// A multiplexer chip for tests of switches: it writes down each channel
// operation in a journal, "NAME: OPERATION(ARGUMENTS)", and keeps its channels
// open or closed as asked. Everything else is the real switch's.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <set>
#include <string>

#include "i2c/diag_i2c_switch.h"
#include "tests/support/journal.h"

// "OPERATION(ARGUMENTS)", every argument a number.
template <class... Args>
std::string CallText(const char* operation, Args... args) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + std::to_string(args)), ...);
    return std::string(operation) + "(" + list + ")";
}

class CJournalSwitch : public CDiagI2cSwitch {
  public:
    // On a root bus, with the channel menus "ch0", "ch1" ... below it.
    CJournalSwitch(CJournal& journal, const std::string& name, uint32_t devId, uint8_t addr,
                   int channels = 2);
    // On a channel of another switch.
    CJournalSwitch(CJournal& journal, const std::string& name, uint32_t devId, uint8_t addr,
                   int channels, int8_t upstream_ch);

    // From now on the operation of that name, or every one, reports failure
    // and changes no channel.
    void FailAt(const std::string& operation) { m_failing.insert(operation); }
    void Fail() { m_all_fail = true; }
    // Called after each operation has been written down.
    void OnCall(std::function<void()> hook) { m_hook = std::move(hook); }

    // Whether channel `ch` is open.
    bool IsOpen(int ch) const { return (m_open >> ch & 1U) != 0; }

    uint32_t GetMaxTransSize() override { return 255; }
    int getNumberofChannels() override { return m_channels; }
    int ShowChannels() override;
    int SetChannel(uint8_t ch) override;
    int ClearChannel(uint8_t ch) override;
    int SetChannels(uint32_t mask) override;
    int ClearChannels(uint32_t mask) override;
    int SelChannel(uint8_t ch) override;
    int DisableChannels() override;
    CDiagMenu* getChannelMenu(int ch) override;
    uint8_t getI2cAddr() override { return m_addr; }
    std::list<uint8_t> GetMyDeviceAddrList(uint8_t ch) override;
    void ShowMyDeviceAddrList(uint8_t ch) override;
    void AddMyDeviceAddr(uint8_t ch, uint8_t addr) override;
    void ClearMyDeviceAddrList() override;

    using CDiagI2cSwitch::m_auto_path;
    using CDiagI2cSwitch::m_devId;
    using CDiagI2cSwitch::m_is_probing;
    using CDiagI2cSwitch::m_pDev;
    using CDiagI2cSwitch::m_sw_mode;
    using CDiagI2cSwitch::m_upstream_ch;
    using CDiagI2cSwitch::m_upstream_device_addr;

  protected:
    // Writes a call down; whether its operation succeeds.
    template <class... Args>
    bool Note(const char* operation, Args... args) {
        m_journal.Note(std::string(GetName()) + ": " + CallText(operation, args...));
        if (m_hook) {
            m_hook();
        }
        return !m_all_fail && !m_failing.contains(operation);
    }

  private:
    void AddChannelMenus();
    int Open(bool ok, uint32_t channels);

    CJournal& m_journal;
    const uint8_t m_addr;
    const int m_channels;
    uint32_t m_open = 0;
    std::map<uint8_t, std::list<uint8_t>> m_found;
    std::set<std::string> m_failing;
    bool m_all_fail = false;
    std::function<void()> m_hook;
};
