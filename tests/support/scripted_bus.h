// A bus that is told in advance which transfers arrive and what it answers.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "i2c/diag_i2c_device.h"

// A transfer as a test expects it.
struct CExpectedXfer {
    uint8_t saddr = 0;
    bool read = false;
    uint8_t cmd_sel = 0;
    uint16_t cmd = 0;
    std::vector<uint8_t> data{};  // what a write must carry; what a read answers
    bool ok = true;
    std::string errmsg{};  // left in the record when not ok
    int8_t switch_ch = -1;
};

// With a script (Expect), every I2cTrans must be the next of it, field by
// field, and the destructor fails the test if some did not arrive. Without
// one, the addresses of Answer acknowledge and all others do not.
class CScriptedBus : public CI2cDevice {
  public:
    explicit CScriptedBus(const std::string& name = "bus") : CI2cDevice(name, "scripted bus") {}
    ~CScriptedBus() override;

    void Expect(CExpectedXfer xfer) {
        m_script.push_back(std::move(xfer));
        m_scripted = true;
    }
    void Answer(std::vector<uint8_t> addresses) { m_answering = std::move(addresses); }
    // Called before each transfer is looked at.
    void OnTransfer(std::function<void(const CI2cXfrReq&)> hook) { m_hook = std::move(hook); }
    // Every transfer that arrived, in order.
    const std::vector<CI2cXfrReq>& Seen() const { return m_seen; }

    bool I2cTrans(CI2cXfrReq& req) override;
    bool DirectI2cTrans(CI2cXfrReq& req) override { return I2cTrans(req); }
    uint32_t GetMaxTransSize() override { return 255; }

    // Each SMBus operation is recorded by name and answers SmbusResult.
    void SetSmbusResult(bool ok) { m_smbus_ok = ok; }
    const std::vector<std::string>& SmbusCalls() const { return m_smbus; }
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

  private:
    bool RunScript(CI2cXfrReq& req);
    bool Smbus(const char* name, int8_t ch, uint8_t addr);

    std::deque<CExpectedXfer> m_script;
    bool m_scripted = false;
    std::vector<uint8_t> m_answering;
    std::function<void(const CI2cXfrReq&)> m_hook;
    std::vector<CI2cXfrReq> m_seen;
    std::vector<std::string> m_smbus;
    bool m_smbus_ok = true;
};
