#include "tests/support/scripted_bus.h"

#include <gtest/gtest.h>

#include <algorithm>

CScriptedBus::~CScriptedBus() {
    EXPECT_TRUE(m_script.empty()) << m_script.size() << " expected transfers did not arrive";
}

bool CScriptedBus::I2cTrans(CI2cXfrReq& req) {
    if (m_hook) {
        m_hook(req);
    }
    m_seen.push_back(req);
    if (m_scripted) {
        return RunScript(req);
    }
    return std::find(m_answering.begin(), m_answering.end(), req.saddr) != m_answering.end();
}

bool CScriptedBus::RunScript(CI2cXfrReq& req) {
    const size_t index = m_seen.size() - 1;
    if (m_script.empty()) {
        ADD_FAILURE() << "transfer " << index << " to 0x" << std::hex << unsigned{req.saddr}
                      << " was not expected";
        return false;
    }
    const CExpectedXfer want = m_script.front();
    m_script.pop_front();
    SCOPED_TRACE("transfer " + std::to_string(index));
    EXPECT_EQ(req.saddr, want.saddr);
    EXPECT_EQ(req.dir, want.read ? 1 : 0);
    EXPECT_EQ(req.cmd_sel, want.cmd_sel);
    EXPECT_EQ(req.cmd, want.cmd);
    EXPECT_EQ(req.switch_ch, want.switch_ch);
    EXPECT_EQ(size_t{req.tsize}, want.data.size());
    if (!want.ok) {
        req.SetErrMsg(want.errmsg.c_str());
        return false;
    }
    if (want.read) {
        std::copy_n(want.data.begin(), std::min<size_t>(want.data.size(), req.tsize), req.data);
    } else if (req.tsize != 0) {
        EXPECT_EQ(std::vector<uint8_t>(req.data, req.data + req.tsize), want.data);
    }
    return true;
}

bool CScriptedBus::Smbus(const char* name, int8_t ch, uint8_t addr) {
    m_smbus.push_back(std::string(name) + " ch=" + std::to_string(ch) +
                      " addr=" + std::to_string(addr));
    return m_smbus_ok;
}

bool CScriptedBus::smb_write_quick(int8_t ch, uint8_t addr) {
    return Smbus("write_quick", ch, addr);
}
bool CScriptedBus::smb_read_quick(int8_t ch, uint8_t addr) {
    return Smbus("read_quick", ch, addr);
}
bool CScriptedBus::smb_send_byte(int8_t ch, uint8_t addr, uint8_t) {
    return Smbus("send_byte", ch, addr);
}
bool CScriptedBus::smb_receive_byte(int8_t ch, uint8_t addr, uint8_t*) {
    return Smbus("receive_byte", ch, addr);
}
bool CScriptedBus::smb_write_byte(int8_t ch, uint8_t addr, uint8_t, uint8_t) {
    return Smbus("write_byte", ch, addr);
}
bool CScriptedBus::smb_read_byte(int8_t ch, uint8_t addr, uint8_t, uint8_t*) {
    return Smbus("read_byte", ch, addr);
}
bool CScriptedBus::smb_write_word(int8_t ch, uint8_t addr, uint8_t, uint16_t) {
    return Smbus("write_word", ch, addr);
}
bool CScriptedBus::smb_read_word(int8_t ch, uint8_t addr, uint8_t, uint16_t*) {
    return Smbus("read_word", ch, addr);
}
bool CScriptedBus::smb_block_write(int8_t ch, uint8_t addr, uint8_t, uint32_t, uint8_t*) {
    return Smbus("block_write", ch, addr);
}
bool CScriptedBus::smb_block_read(int8_t ch, uint8_t addr, uint8_t, uint32_t, uint8_t*) {
    return Smbus("block_read", ch, addr);
}
bool CScriptedBus::smb_block_process_call(int8_t ch, uint8_t addr, uint8_t, uint32_t, uint8_t*) {
    return Smbus("block_process_call", ch, addr);
}
