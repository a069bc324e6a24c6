// A multiplexer that only writes down in a journal what it is asked to do:
// "NAME: OPERATION(ARGUMENTS)". Reads of its address are counted and left out
// of the journal unless asked for, since texts need the address all the time.
#pragma once

#include <cstdint>
#include <string>

#include "tests/support/journal_switch.h"

class CFakeSwitch : public CJournalSwitch {
  public:
    CFakeSwitch(CJournal& journal, const std::string& name, uint8_t addr);

    void JournalAddressReads() { m_journal_addr = true; }
    unsigned int AddressReads() const { return m_addr_reads; }

    bool I2cTrans(CI2cXfrReq& req) override;
    bool DirectI2cTrans(CI2cXfrReq& req) override;
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
    uint8_t getI2cAddr() override;
    void ClearAllDeviceAddrList() override;

  private:
    bool m_journal_addr = false;
    unsigned int m_addr_reads = 0;
};
