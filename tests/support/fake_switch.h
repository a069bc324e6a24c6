// A multiplexer that only writes down in a journal what it is asked to do:
// "NAME: OPERATION(ARGUMENTS)". Reads of its address are counted and left out
// of the journal unless asked for, since texts need the address all the time.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <string>

#include "i2c/diag_i2c_switch.h"
#include "tests/support/journal.h"

class CFakeSwitch : public CDiagI2cSwitch {
  public:
    CFakeSwitch(CJournal& journal, const std::string& name, uint8_t addr);

    // From now on every operation reports failure.
    void Fail() { m_ok = false; }
    void JournalAddressReads() { m_journal_addr = true; }
    unsigned int AddressReads() const { return m_addr_reads; }
    // Called after each operation has been written down.
    void OnCall(std::function<void()> hook) { m_hook = std::move(hook); }

    bool I2cTrans(CI2cXfrReq& req) override;
    bool DirectI2cTrans(CI2cXfrReq& req) override;
    uint32_t GetMaxTransSize() override { return 255; }
    bool probe(int level) override;
    bool DisableAllSwitches() override;
    bool smb_write_quick(int8_t ch, uint8_t addr) override;
    bool smb_read_quick(int8_t ch, uint8_t addr) override;
    bool smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) override;
    bool smb_receive_byte(int8_t ch, uint8_t addr, uint8_t* data) override;
    bool smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) override;
    bool smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t* data) override;
    bool smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) override;
    bool smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t* data) override;
    bool smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) override;
    bool smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) override;
    bool smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                uint8_t* buf) override;
    void SetSwMode(uint8_t mode) override;
    void ShowSwMode() override;

    int getNumberofChannels() override;
    int ShowChannels() override;
    int SetChannel(uint8_t ch) override;
    int ClearChannel(uint8_t ch) override;
    int SetChannels(uint32_t mask) override;
    int ClearChannels(uint32_t mask) override;
    int SelChannel(uint8_t ch) override;
    int DisableChannels() override;
    CDiagMenu* getChannelMenu(int ch) override;
    uint8_t getI2cAddr() override;
    void ClearAllDeviceAddrList() override;
    std::list<uint8_t> GetMyDeviceAddrList(uint8_t ch) override;
    void ShowMyDeviceAddrList(uint8_t ch) override;
    void AddMyDeviceAddr(uint8_t ch, uint8_t addr) override;
    void ClearMyDeviceAddrList() override;

  private:
    bool Note(const std::string& call);

    CJournal& m_journal;
    const uint8_t m_addr;
    bool m_ok = true;
    bool m_journal_addr = false;
    unsigned int m_addr_reads = 0;
    std::function<void()> m_hook;
};
