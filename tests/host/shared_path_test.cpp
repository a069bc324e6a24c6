// Holds of devices that are reached through others.
#include "framework/shared_path.h"

#include <gtest/gtest.h>

#include "host/device_lock.h"
#include "tests/support/lock_probe.h"

namespace {

// Lets one of the devices below it be reached at a time, and is itself in
// nobody's way.
class CGateway : public CDiagDevice, public ISharedPath {
  public:
    explicit CGateway(const std::string& name) : CDiagDevice(name, "", TDEVICE) {}
    const CDiagDevice* PathTo(const CDiagDevice& target) const override {
        return &target == this ? nullptr : this;
    }
};

// bus/          a device
//   direct      a device
//   gateway     one
//     channel   a menu
//       near    a device
//       inner   a gateway
//         far   a device
//   other       a gateway
//     beside    a device
class SharedPath : public testing::Test {
  protected:
    SharedPath() {
        m_bus.AddChild(m_direct, CDiagObj::NO_SORT);
        m_bus.AddChild(m_gateway, CDiagObj::NO_SORT);
        auto* channel = new CDiagMenu(TMENU, "channel", "");
        m_gateway->AddChild(channel, CDiagObj::NO_SORT);
        channel->AddChild(m_near, CDiagObj::NO_SORT);
        channel->AddChild(m_inner, CDiagObj::NO_SORT);
        m_inner->AddChild(m_far, CDiagObj::NO_SORT);
        m_bus.AddChild(m_other, CDiagObj::NO_SORT);
        m_other->AddChild(m_beside, CDiagObj::NO_SORT);
    }
    static std::unique_ptr<CDeviceHold> Hold(const CDiagDevice& device, EDevLockType type) {
        return CDeviceHold::Acquire({{&device, type}}, [] { return false; });
    }

    CDiagDevice m_bus{"bus", "", TDEVICE};
    CDiagDevice* m_direct = new CDiagDevice("direct", "", TDEVICE);
    CGateway* m_gateway = new CGateway("gateway");
    CDiagDevice* m_near = new CDiagDevice("near", "", TDEVICE);
    CGateway* m_inner = new CGateway("inner");
    CDiagDevice* m_far = new CDiagDevice("far", "", TDEVICE);
    CGateway* m_other = new CGateway("other");
    CDiagDevice* m_beside = new CDiagDevice("beside", "", TDEVICE);
};

TEST_F(SharedPath, LetsTwoDevicesBehindItTakeTurns) {
    auto hold = Hold(*m_near, DEV_LOCK_ACCESS);
    EXPECT_TRUE(WouldWait(*m_far, DEV_LOCK_ACCESS));
    EXPECT_TRUE(WouldWait(*m_far, DEV_LOCK_PROTECT));
    hold.reset();
    EXPECT_FALSE(WouldWait(*m_far, DEV_LOCK_ACCESS));
}

TEST_F(SharedPath, IsTakenAloneByThoseThatShareTheirDevice) {
    const auto hold = Hold(*m_near, DEV_LOCK_PROTECT);
    EXPECT_TRUE(WouldWait(*m_near, DEV_LOCK_PROTECT));
    EXPECT_TRUE(WouldWait(*m_far, DEV_LOCK_PROTECT));
}

TEST_F(SharedPath, LeavesDevicesThatNeedItNotAlone) {
    const auto hold = Hold(*m_near, DEV_LOCK_ACCESS);
    EXPECT_FALSE(WouldWait(*m_direct, DEV_LOCK_ACCESS));
    EXPECT_FALSE(WouldWait(*m_beside, DEV_LOCK_ACCESS));
    EXPECT_FALSE(WouldWait(m_bus, DEV_LOCK_ACCESS));
}

TEST_F(SharedPath, IsNotTheDeviceThatDeclaresIt) {
    const auto hold = Hold(*m_near, DEV_LOCK_ACCESS);
    EXPECT_FALSE(WouldWait(*m_gateway, DEV_LOCK_ACCESS));
}

TEST_F(SharedPath, IsNeededAtEveryLevel) {
    auto hold = Hold(*m_far, DEV_LOCK_ACCESS);
    EXPECT_TRUE(WouldWait(*m_near, DEV_LOCK_PROTECT));
    hold.reset();
    hold = Hold(*m_inner, DEV_LOCK_ACCESS);
    // The inner gateway is a device behind the outer one.
    EXPECT_TRUE(WouldWait(*m_near, DEV_LOCK_PROTECT));
    EXPECT_FALSE(WouldWait(*m_gateway, DEV_LOCK_PROTECT));
}

TEST_F(SharedPath, IsTakenAgainByTheThreadThatHasIt) {
    auto outer = Hold(*m_near, DEV_LOCK_ACCESS);
    auto inner = Hold(*m_far, DEV_LOCK_ACCESS);
    ASSERT_NE(inner, nullptr);
    inner.reset();
    EXPECT_TRUE(WouldWait(*m_far, DEV_LOCK_PROTECT));
    outer.reset();
    EXPECT_FALSE(WouldWait(*m_far, DEV_LOCK_PROTECT));
}

TEST_F(SharedPath, IsTakenTogetherWithTheDevices) {
    CLockHolder holder({{m_beside, DEV_LOCK_ACCESS}});
    CLockSeeker seeker({{m_near, DEV_LOCK_ACCESS}, {m_beside, DEV_LOCK_ACCESS}});
    seeker.AwaitLook();
    EXPECT_FALSE(WouldWait(*m_far, DEV_LOCK_ACCESS));
    holder.Release();
    EXPECT_TRUE(seeker.Got());
}

TEST_F(SharedPath, IsNamedToThoseThatWaitForIt) {
    const auto hold = Hold(*m_near, DEV_LOCK_ACCESS);
    std::promise<void> waits;
    std::atomic<bool> stop{false};
    std::thread waiter([&] {
        bool looked = false;
        CDeviceHold::Acquire({{m_far, DEV_LOCK_PROTECT}}, [&] {
            if (!looked) {
                looked = true;
                waits.set_value();
            }
            return stop.load();
        });
    });
    waits.get_future().wait();
    const auto wait = CDeviceHold::WaitOf(waiter.get_id());
    ASSERT_TRUE(wait.has_value());
    EXPECT_EQ(wait->device, m_gateway);
    EXPECT_TRUE(wait->path);
    stop = true;
    CDeviceHold::WakeWaiting();
    waiter.join();
}

}  // namespace
