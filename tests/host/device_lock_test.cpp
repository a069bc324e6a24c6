#include "host/device_lock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>

#include "framework/diag_func.h"
#include "tests/support/lock_probe.h"
#include "tests/support/request.h"

namespace {

bool Never() {
    return false;
}

class DeviceLock : public testing::Test {
  protected:
    static std::unique_ptr<CDeviceHold> Hold(const CClaims& claims) {
        return CDeviceHold::Acquire(claims, Never);
    }

    CDiagDevice m_a{"a", "", TDEVICE};
    CDiagDevice m_b{"b", "", TDEVICE};
};

TEST_F(DeviceLock, IsFreeAtFirst) {
    EXPECT_FALSE(WouldWait(m_a, DEV_LOCK_ACCESS));
    EXPECT_FALSE(WouldWait(m_a, DEV_LOCK_PROTECT));
}

TEST_F(DeviceLock, NeedsNoDeviceAtAll) {
    EXPECT_NE(Hold({}), nullptr);
}

TEST_F(DeviceLock, ExclusiveUseKeepsEveryoneElseOut) {
    const auto hold = Hold({{&m_a, DEV_LOCK_ACCESS}});
    ASSERT_NE(hold, nullptr);
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_ACCESS));
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_PROTECT));
}

TEST_F(DeviceLock, ProtectionKeepsExclusiveUseOutOnly) {
    const auto hold = Hold({{&m_a, DEV_LOCK_PROTECT}});
    ASSERT_NE(hold, nullptr);
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_ACCESS));
    EXPECT_FALSE(WouldWait(m_a, DEV_LOCK_PROTECT));
}

TEST_F(DeviceLock, ExclusiveUseWaitsForTheLastProtection) {
    CLockHolder first({{&m_a, DEV_LOCK_PROTECT}});
    CLockHolder second({{&m_a, DEV_LOCK_PROTECT}});
    first.Release();
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_ACCESS));
    second.Release();
    EXPECT_FALSE(WouldWait(m_a, DEV_LOCK_ACCESS));
}

TEST_F(DeviceLock, DevicesAreIndependent) {
    const auto hold = Hold({{&m_a, DEV_LOCK_ACCESS}});
    EXPECT_FALSE(WouldWait(m_b, DEV_LOCK_ACCESS));
}

TEST_F(DeviceLock, IsFreeAfterTheHoldIsGone) {
    auto hold = Hold({{&m_a, DEV_LOCK_ACCESS}, {&m_b, DEV_LOCK_PROTECT}});
    hold.reset();
    EXPECT_FALSE(WouldWait({{&m_a, DEV_LOCK_ACCESS}, {&m_b, DEV_LOCK_ACCESS}}));
}

TEST_F(DeviceLock, IsTakenByAWaiterOnRelease) {
    CLockHolder holder({{&m_a, DEV_LOCK_ACCESS}});
    CLockSeeker seeker({{&m_a, DEV_LOCK_ACCESS}});
    seeker.AwaitLook();
    EXPECT_FALSE(seeker.HasGot());
    holder.Release();
    EXPECT_TRUE(seeker.Got());
}

TEST_F(DeviceLock, IsTakenByEveryProtectingWaiterOnRelease) {
    CLockHolder holder({{&m_a, DEV_LOCK_ACCESS}});
    CLockSeeker first({{&m_a, DEV_LOCK_PROTECT}});
    CLockSeeker second({{&m_a, DEV_LOCK_PROTECT}});
    first.AwaitLook();
    second.AwaitLook();
    holder.Release();
    EXPECT_TRUE(first.Got());
    EXPECT_TRUE(second.Got());
}

TEST_F(DeviceLock, IsNoLongerAwaitedAfterAStop) {
    const auto hold = Hold({{&m_a, DEV_LOCK_ACCESS}});
    CLockSeeker seeker({{&m_a, DEV_LOCK_ACCESS}});
    seeker.AwaitLook();
    seeker.Stop();
    EXPECT_FALSE(seeker.Got());
}

TEST_F(DeviceLock, IsStillAwaitedAfterAWakeWithoutAStop) {
    CLockHolder holder({{&m_a, DEV_LOCK_ACCESS}});
    CLockSeeker seeker({{&m_a, DEV_LOCK_ACCESS}});
    seeker.AwaitLook();
    CDeviceHold::WakeWaiting();
    CDeviceHold::WakeWaiting();
    EXPECT_FALSE(seeker.HasGot());
    holder.Release();
    EXPECT_TRUE(seeker.Got());
}

TEST_F(DeviceLock, AStoppedWaiterLeavesNothingTaken) {
    {
        const auto hold = Hold({{&m_a, DEV_LOCK_ACCESS}});
        EXPECT_TRUE(WouldWait({{&m_b, DEV_LOCK_ACCESS}, {&m_a, DEV_LOCK_ACCESS}}));
    }
    EXPECT_FALSE(WouldWait({{&m_a, DEV_LOCK_ACCESS}, {&m_b, DEV_LOCK_ACCESS}}));
}

TEST_F(DeviceLock, AWaiterForTwoDevicesTakesNeitherUntilBothAreFree) {
    CLockHolder holder({{&m_b, DEV_LOCK_ACCESS}});
    CLockSeeker seeker({{&m_a, DEV_LOCK_ACCESS}, {&m_b, DEV_LOCK_ACCESS}});
    seeker.AwaitLook();
    EXPECT_FALSE(WouldWait(m_a, DEV_LOCK_ACCESS));
    holder.Release();
    EXPECT_TRUE(seeker.Got());
}

TEST_F(DeviceLock, OppositeOrdersDoNotBlockEachOther) {
    constexpr int ROUNDS = 300;
    int in_use = 0;
    const auto work = [&](const CClaims& claims) {
        for (int i = 0; i < ROUNDS; ++i) {
            const auto hold = Hold(claims);
            EXPECT_EQ(++in_use, 1);
            --in_use;
        }
    };
    std::thread other(work, CClaims{{&m_a, DEV_LOCK_ACCESS}, {&m_b, DEV_LOCK_ACCESS}});
    work({{&m_b, DEV_LOCK_ACCESS}, {&m_a, DEV_LOCK_ACCESS}});
    other.join();
    EXPECT_EQ(in_use, 0);
}

TEST_F(DeviceLock, IsTakenAgainByTheThreadThatHoldsIt) {
    const auto outer = Hold({{&m_a, DEV_LOCK_ACCESS}});
    auto inner = Hold({{&m_a, DEV_LOCK_ACCESS}});
    auto shared = Hold({{&m_a, DEV_LOCK_PROTECT}});
    ASSERT_NE(inner, nullptr);
    ASSERT_NE(shared, nullptr);
    inner.reset();
    shared.reset();
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_PROTECT));
}

TEST_F(DeviceLock, IsHeldUntilTheLastHoldOfItsThreadIsGone) {
    auto outer = Hold({{&m_a, DEV_LOCK_ACCESS}});
    auto inner = Hold({{&m_a, DEV_LOCK_ACCESS}});
    outer.reset();
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_PROTECT));
    inner.reset();
    EXPECT_FALSE(WouldWait(m_a, DEV_LOCK_ACCESS));
}

TEST_F(DeviceLock, OfAProtectingThreadBecomesExclusiveForIt) {
    const auto outer = Hold({{&m_a, DEV_LOCK_PROTECT}});
    auto inner = Hold({{&m_a, DEV_LOCK_ACCESS}});
    ASSERT_NE(inner, nullptr);
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_PROTECT));
    inner.reset();
    EXPECT_FALSE(WouldWait(m_a, DEV_LOCK_PROTECT));
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_ACCESS));
}

TEST_F(DeviceLock, MayBeClaimedTwiceInOneHold) {
    const CLockHolder holder(
        {{&m_a, DEV_LOCK_PROTECT}, {&m_a, DEV_LOCK_ACCESS}, {&m_a, DEV_LOCK_PROTECT}});
    EXPECT_TRUE(WouldWait(m_a, DEV_LOCK_PROTECT));
}

// A device with a device behind a menu behind a device.
class DeviceClaims : public testing::Test {
  protected:
    DeviceClaims() {
        m_bus.AddChild(m_menu, CDiagObj::NO_SORT);
        m_menu->AddChild(m_switch, CDiagObj::NO_SORT);
        m_switch->AddChild(m_slave, CDiagObj::NO_SORT);
        m_bus.AddChild(m_eeprom, CDiagObj::NO_SORT);
    }
    static std::set<const CDiagMenu*> Devices(const CClaims& claims) {
        std::set<const CDiagMenu*> devices;
        for (const CDeviceClaim& claim : claims) {
            devices.insert(claim.device);
        }
        return devices;
    }

    CDiagDevice m_bus{"bus", "", TDEVICE};
    CDiagMenu* m_menu = new CDiagMenu(TMENU, "menu", "");
    CDiagDevice* m_switch = new CDiagDevice("switch", "", TDEVICE);
    CDiagDevice* m_slave = new CDiagDevice("slave", "", TDEVICE);
    CDiagDevice* m_eeprom = new CDiagDevice("eeprom", "", TDEVICE);
};

TEST_F(DeviceClaims, AreOnTheDeviceAloneUnlessRecursive) {
    CClaims claims;
    AddDeviceClaims(claims, m_bus, DEV_LOCK_PROTECT, false);
    ASSERT_EQ(claims.size(), 1U);
    EXPECT_EQ(claims[0].device, &m_bus);
    EXPECT_EQ(claims[0].type, DEV_LOCK_PROTECT);
}

TEST_F(DeviceClaims, AreOnAllDevicesBelowWhenRecursive) {
    CClaims claims;
    AddDeviceClaims(claims, m_bus, DEV_LOCK_ACCESS, true);
    EXPECT_EQ(Devices(claims), (std::set<const CDiagMenu*>{&m_bus, m_switch, m_slave, m_eeprom}));
    for (const CDeviceClaim& claim : claims) {
        EXPECT_EQ(claim.type, DEV_LOCK_ACCESS);
    }
}

TEST_F(DeviceClaims, LeaveOutWhatIsNotBelow) {
    CClaims claims;
    AddDeviceClaims(claims, *m_switch, DEV_LOCK_ACCESS, true);
    EXPECT_EQ(Devices(claims), (std::set<const CDiagMenu*>{m_switch, m_slave}));
}

TEST_F(DeviceClaims, AreAddedToThoseThatAreThere) {
    CClaims claims;
    AddDeviceClaims(claims, *m_eeprom, DEV_LOCK_PROTECT, false);
    AddDeviceClaims(claims, *m_slave, DEV_LOCK_ACCESS, false);
    EXPECT_EQ(Devices(claims), (std::set<const CDiagMenu*>{m_eeprom, m_slave}));
}

TEST_F(DeviceClaims, HoldADeviceFarBelow) {
    CClaims claims;
    AddDeviceClaims(claims, m_bus, DEV_LOCK_ACCESS, true);
    const CLockHolder holder(claims);
    EXPECT_TRUE(WouldWait(*m_slave, DEV_LOCK_PROTECT));
}

// Tells while it runs whether its device could be tested, or reached by a command
// that shares it.
class CProbingCmd : public CDiagFunc {
  public:
    CProbingCmd(const std::string& name, unsigned int flags) : CDiagFunc(name, "", flags) {}
    void Invoke(CInMsg&, COutMsg& out) override {
        m_kept_tests_out = WouldWait(*GetParentDevice(), DEV_LOCK_ACCESS);
        m_kept_commands_out = WouldWait(*GetParentDevice(), DEV_LOCK_PROTECT);
        m_invoked = true;
        out << uint8_t{0};
    }
    std::atomic<bool> m_kept_tests_out{false};
    std::atomic<bool> m_kept_commands_out{false};
    std::atomic<bool> m_invoked{false};
};

class CommandLock : public testing::Test {
  protected:
    CProbingCmd& Add(unsigned int flags) {
        auto* command = new CProbingCmd("command", flags);
        m_device.AddChild(command, CDiagObj::NO_SORT);
        return *command;
    }
    // Until the thread waits for a device.
    static void AwaitWait(std::thread::id thread) {
        while (!CDeviceHold::WaitOf(thread).has_value()) {
            std::this_thread::yield();
        }
    }
    CDiagDevice m_device{"device", "", TDEVICE};
};

TEST_F(CommandLock, ACommandThatSharesItsDeviceKeepsTestsOutWhileItRuns) {
    CProbingCmd& command = Add(CDiagFunc::SHARES_DEVICE);
    EXPECT_EQ(Send(command, MSG_CALL).Code(), MSG_SUCCESS);
    EXPECT_TRUE(command.m_kept_tests_out);
    EXPECT_FALSE(command.m_kept_commands_out);
    EXPECT_FALSE(WouldWait(m_device, DEV_LOCK_ACCESS));
}

TEST_F(CommandLock, AnyOtherCommandHasItsDeviceToItself) {
    CProbingCmd& command = Add(0);
    EXPECT_EQ(Send(command, MSG_CALL).Code(), MSG_SUCCESS);
    EXPECT_TRUE(command.m_kept_commands_out);
    EXPECT_FALSE(WouldWait(m_device, DEV_LOCK_PROTECT));
}

TEST_F(CommandLock, ACommandThatSharesItsDeviceWaitsForATest) {
    CProbingCmd& command = Add(CDiagFunc::SHARES_DEVICE);
    auto test = CDeviceHold::Acquire({{&m_device, DEV_LOCK_ACCESS}}, Never);
    std::thread caller([&] { EXPECT_EQ(Send(command, MSG_CALL).Code(), MSG_SUCCESS); });
    AwaitWait(caller.get_id());
    CDeviceHold::WakeWaiting();
    EXPECT_FALSE(command.m_invoked);
    test.reset();
    caller.join();
    EXPECT_TRUE(command.m_invoked);
}

TEST_F(CommandLock, AnyOtherCommandWaitsForACommandThatSharesTheDevice) {
    CProbingCmd& command = Add(0);
    auto sharing = CDeviceHold::Acquire({{&m_device, DEV_LOCK_PROTECT}}, Never);
    std::thread caller([&] { EXPECT_EQ(Send(command, MSG_CALL).Code(), MSG_SUCCESS); });
    AwaitWait(caller.get_id());
    CDeviceHold::WakeWaiting();
    EXPECT_FALSE(command.m_invoked);
    sharing.reset();
    caller.join();
    EXPECT_TRUE(command.m_invoked);
}

TEST_F(CommandLock, ACommandDoesNotWaitForATestThatOnlyProtectsItsDevice) {
    class CPlainCmd : public CDiagFunc {
      public:
        CPlainCmd() : CDiagFunc("command", "", SHARES_DEVICE) {}
        void Invoke(CInMsg&, COutMsg& out) override { out << uint8_t{0}; }
    };
    auto* command = new CPlainCmd;
    m_device.AddChild(command, CDiagObj::NO_SORT);
    const CLockHolder test({{&m_device, DEV_LOCK_PROTECT}});
    EXPECT_EQ(Send(*command, MSG_CALL).Code(), MSG_SUCCESS);
}

TEST_F(CommandLock, ACommandRunsInsideATestOfItsOwnThread) {
    for (const unsigned int flags : {CDiagFunc::SHARES_DEVICE, 0U}) {
        for (const EDevLockType type : {DEV_LOCK_ACCESS, DEV_LOCK_PROTECT}) {
            CProbingCmd& command = Add(flags);
            const auto test = CDeviceHold::Acquire({{&m_device, type}}, Never);
            EXPECT_EQ(Send(command, MSG_CALL).Code(), MSG_SUCCESS);
            m_device.RemoveChild(command.GetId());
        }
    }
}

TEST_F(CommandLock, ACommandWithoutADeviceRunsAllTheSame) {
    class CPlainCmd : public CDiagFunc {
      public:
        CPlainCmd() : CDiagFunc("command", "", SHARES_DEVICE) {}
        void Invoke(CInMsg&, COutMsg& out) override { out << uint8_t{0}; }
    } command;
    EXPECT_EQ(Send(command, MSG_CALL).Code(), MSG_SUCCESS);
}

}  // namespace
