// What a register's transfer asks of the bus.
#include "boards/chips/register_access.h"

#include <ctime>
#include <thread>

#include "boards/chips/register_chip.h"
#include "tests/boards/chips/register_test.h"
#include "tests/support/scripted_bus.h"

namespace {

// Whether another thread would have to wait for it now.
bool IsTaken(CMutex& mutex) {
    bool taken = false;
    std::thread([&] {
        const timespec long_ago = {};
        taken = !mutex.Acquire(&long_ago);
        if (!taken) {
            mutex.Release();
        }
    }).join();
    return taken;
}

class RegisterAccess : public CRegisterTest {
  protected:
    CScriptedBus m_switch;
    CRegisterChip m_chip{*FindRegisterPart("tmp75"), "chip", "", {&m_switch, 3, 0x48}};
};

TEST_F(RegisterAccess, NamesTheChannelBehindWhichTheChipIs) {
    m_switch.Expect({.saddr = 0x48,
                     .read = true,
                     .cmd_sel = 1,
                     .cmd = 0,
                     .data = {0x12, 0x34},
                     .switch_ch = 3});
    m_switch.Expect({.saddr = 0x48, .cmd_sel = 1, .cmd = 1, .data = {0x60}, .switch_ch = 3});
    EXPECT_EQ(Read(m_chip, "temp"), 0x1234);
    EXPECT_TRUE(Write(m_chip, "conf", 0x60));
}

TEST_F(RegisterAccess, HoldsTheBusForEachTransferAndNoLonger) {
    std::vector<bool> taken;
    m_switch.OnTransfer([&](const CI2cXfrReq&) { taken.push_back(IsTaken(m_switch.m_lock)); });
    m_switch.Answer({0x48});
    EXPECT_NE(Read(m_chip, "temp"), -1);
    EXPECT_FALSE(IsTaken(m_switch.m_lock));
    EXPECT_TRUE(Write(m_chip, "conf", 0x60));
    EXPECT_FALSE(IsTaken(m_switch.m_lock));
    EXPECT_EQ(taken, (std::vector<bool>{true, true}));
}

}  // namespace
