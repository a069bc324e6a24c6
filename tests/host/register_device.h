// A device with registers in memory, of every kind of access.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "framework/diag_register_device.h"
#include "tests/support/request.h"

// Notes every access as "name" or "name[index]".
class CMemRegisterDevice : public CDiagRegisterDevice {
  public:
    explicit CMemRegisterDevice(diag_regtable_st* table)
        : CDiagRegisterDevice("cpld", "registers in memory", table) {}

    bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        m_reads.push_back(NameOf(*reg, index));
        if (m_reads.back() == m_fail_read) {
            return false;
        }
        *data = m_data[NameOf(*reg, index)];
        return true;
    }
    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        m_writes.push_back(NameOf(*reg, index));
        if (m_writes.back() == m_fail_write) {
            return false;
        }
        m_data[NameOf(*reg, index)] = *data;
        return true;
    }

    std::map<std::string, diag_regdata_t> m_data;
    std::vector<std::string> m_reads;
    std::vector<std::string> m_writes;
    std::string m_fail_read;
    std::string m_fail_write;

  private:
    static std::string NameOf(const diag_reg_st& reg, uint32_t index) {
        std::string name = reg.name;
        if (reg.num_regs > 1) {
            name += "[" + std::to_string(index) + "]";
        }
        return name;
    }
};

inline diag_reg_st Reg(const char* name, const char* desc, EValueType type, uint8_t format,
                       diag_regacc_et access, uint32_t num_regs = 1) {
    diag_reg_st reg{};
    reg.name = name;
    reg.desc = desc;
    reg.dtype = type;
    reg.format = format;
    reg.access = access;
    reg.num_regs = num_regs;
    reg.mask = UINT64_MAX;
    return reg;
}

class RegisterDeviceBase : public testing::Test {
  protected:
    RegisterDeviceBase() {
        m_device.m_data = {{"ctrl[0]", 1},      {"ctrl[1]", 0x22}, {"ctrl[2]", 0x333},
                           {"ctrl[3]", 0x4444}, {"status", 0x5},   {"mode", 0x80}};
    }
    CAnswer Call(const char* command, const std::string& reg) {
        return Send(NodeAt(m_device, command), MSG_CALL, reg);
    }
    CAnswer Call(const char* command, const std::string& reg, uint64_t data) {
        return Send(NodeAt(m_device, command), MSG_CALL, reg, data);
    }

    std::array<diag_reg_st, 6> m_regs{
        Reg("ctrl", "channel control", VT_UINT16, VF_HEX | VF_PAD, DIAG_REGACC_RW, 4),
        Reg("status", "link status", VT_UINT8, VF_HEX, DIAG_REGACC_RO),
        Reg("mode", "operating mode", VT_UINT32, VF_HEX, DIAG_REGACC_RW, 0),
        Reg("cause", "interrupt cause", VT_UINT8, VF_HEX, DIAG_REGACC_RC),
        Reg("fifo", "receive data", VT_UINT8, VF_HEX, DIAG_REGACC_DA),
        Reg("reset", "reset strobes", VT_UINT8, VF_HEX, DIAG_REGACC_WO),
    };
    diag_regtable_st m_table{m_regs.data(), 6};
    CMemRegisterDevice m_device{&m_table};
};
