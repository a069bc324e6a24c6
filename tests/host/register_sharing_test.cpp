// Which register commands run beside others of their device, and which alone.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/host/register_device.h"
#include "tests/support/lock_probe.h"

namespace {

// Looks at each access whether its device could be tested meanwhile, or reached by a
// command that shares it.
class CProbedDevice : public CMemRegisterDevice {
  public:
    using CMemRegisterDevice::CMemRegisterDevice;

    bool readRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        Probe();
        return CMemRegisterDevice::readRegEntry(data, reg, index);
    }
    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        Probe();
        return CMemRegisterDevice::writeRegEntry(data, reg, index);
    }

    unsigned int m_accesses = 0;
    unsigned int m_without_tests = 0;
    unsigned int m_alone = 0;

  private:
    void Probe() {
        ++m_accesses;
        m_without_tests += WouldWait(*this, DEV_LOCK_ACCESS) ? 1 : 0;
        m_alone += WouldWait(*this, DEV_LOCK_PROTECT) ? 1 : 0;
    }
};

class RegisterSharing : public testing::Test {
  protected:
    template <class... Arguments>
    void Call(const char* command, const Arguments&... arguments) {
        EXPECT_EQ(Send(NodeAt(m_device, command), MSG_CALL, arguments...).Code(), MSG_SUCCESS);
    }

    std::array<diag_reg_st, 2> m_regs{
        Reg("ctrl", "channel control", VT_UINT16, VF_HEX, DIAG_REGACC_RW, 2),
        Reg("mode", "operating mode", VT_UINT8, VF_HEX, DIAG_REGACC_RW),
    };
    diag_regtable_st m_table{m_regs.data(), 2};
    CProbedDevice m_device{&m_table};
    const std::string m_mode = "mode";
    const std::string m_ctrl = "ctrl";
};

TEST_F(RegisterSharing, WhatOnlyReadsLetsOthersReadAndKeepsTestsOut) {
    Call("regpeek", m_mode);
    Call("regpeek", m_ctrl);
    Call("regdump");
    EXPECT_EQ(m_device.m_accesses, 6U);
    EXPECT_EQ(m_device.m_without_tests, 6U);
    EXPECT_EQ(m_device.m_alone, 0U);
}

TEST_F(RegisterSharing, WhatChangesARegisterIsAloneFromItsReadToItsWrite) {
    Call("regset", m_mode, uint64_t{1});
    Call("regclr", m_mode, uint64_t{1});
    EXPECT_EQ(m_device.m_accesses, 4U);
    EXPECT_EQ(m_device.m_alone, 4U);
}

TEST_F(RegisterSharing, WhatWritesARegisterIsAlone) {
    Call("regpoke", m_mode, uint64_t{1});
    EXPECT_EQ(m_device.m_accesses, 1U);
    EXPECT_EQ(m_device.m_alone, 1U);
}

TEST_F(RegisterSharing, TwoReadersRunBesideEachOther) {
    CLockHolder reader({{&m_device, DEV_LOCK_PROTECT}});
    Call("regpeek", m_mode);
    Call("regdump", m_mode);
    Call("regtable");
    EXPECT_EQ(m_device.m_accesses, 2U);
}

TEST_F(RegisterSharing, LeavesTheDeviceFree) {
    Call("regpeek", m_mode);
    Call("regset", m_mode, uint64_t{1});
    EXPECT_FALSE(WouldWait(m_device, DEV_LOCK_ACCESS));
}

}  // namespace
