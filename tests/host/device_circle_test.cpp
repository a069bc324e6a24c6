// Holds that would wait for each other in a circle.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "framework/diag_func.h"
#include "host/device_lock.h"
#include "tests/support/lock_probe.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/thrown_text.h"

namespace {

using testing::ElementsAre;

bool Never() {
    return false;
}

// A thread that holds devices and waits for more.
class CNestedSeeker {
  public:
    CNestedSeeker(const CClaims& held, const CClaims& wanted)
        : m_thread([this, held, wanted] {
              const auto outer = CDeviceHold::Acquire(held, Never);
              const auto inner = CDeviceHold::Acquire(wanted, [this] {
                  // Asked for the first time when the thread is known to wait.
                  if (!m_looked) {
                      m_looked = true;
                      m_waits.set_value();
                  }
                  return false;
              });
              m_got = inner != nullptr;
          }) {}
    ~CNestedSeeker() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }
    void AwaitWait() { m_waits.get_future().wait(); }
    bool Got() {
        m_thread.join();
        return m_got;
    }
    std::thread::id Id() const { return m_thread.get_id(); }

  private:
    bool m_looked = false;
    bool m_got = false;
    std::promise<void> m_waits;
    std::thread m_thread;
};

class DeviceCircle : public testing::Test {
  protected:
    DeviceCircle() {
        for (CDiagDevice* device : {m_x, m_y, m_z}) {
            m_root.AddChild(device, CDiagObj::NO_SORT);
        }
    }
    static std::unique_ptr<CDeviceHold> Hold(const CClaims& claims) {
        return CDeviceHold::Acquire(claims, Never);
    }

    CDiagMenu m_root{TMENU, "board", ""};
    CDiagDevice* m_x = new CDiagDevice("x", "", TDEVICE);
    CDiagDevice* m_y = new CDiagDevice("y", "", TDEVICE);
    CDiagDevice* m_z = new CDiagDevice("z", "", TDEVICE);
};

TEST_F(DeviceCircle, IsRefusedWhenTwoThatShareADeviceBothWantItAlone) {
    auto hold = Hold({{m_x, DEV_LOCK_PROTECT}});
    CNestedSeeker other({{m_x, DEV_LOCK_PROTECT}}, {{m_x, DEV_LOCK_ACCESS}});
    other.AwaitWait();
    EXPECT_EQ(ThrownText([this] {
                  Hold({{m_x, DEV_LOCK_ACCESS}});
              }),
              "/x cannot be waited for: its holder waits for a device that is held here");
    hold.reset();
    EXPECT_TRUE(other.Got());
    EXPECT_FALSE(WouldWait(*m_x, DEV_LOCK_ACCESS));
}

TEST_F(DeviceCircle, IsRefusedWhenEachHasWhatTheOtherWants) {
    auto hold = Hold({{m_x, DEV_LOCK_ACCESS}});
    CNestedSeeker other({{m_y, DEV_LOCK_ACCESS}}, {{m_x, DEV_LOCK_PROTECT}});
    other.AwaitWait();
    EXPECT_NE(ThrownText([this] { Hold({{m_y, DEV_LOCK_PROTECT}}); }), "");
    hold.reset();
    EXPECT_TRUE(other.Got());
}

TEST_F(DeviceCircle, IsRefusedAcrossSeveralThreads) {
    auto hold = Hold({{m_z, DEV_LOCK_ACCESS}});
    CNestedSeeker first({{m_y, DEV_LOCK_ACCESS}}, {{m_z, DEV_LOCK_ACCESS}});
    first.AwaitWait();
    CNestedSeeker second({{m_x, DEV_LOCK_ACCESS}}, {{m_y, DEV_LOCK_ACCESS}});
    second.AwaitWait();
    EXPECT_NE(ThrownText([this] { Hold({{m_x, DEV_LOCK_ACCESS}}); }), "");
    hold.reset();
    EXPECT_TRUE(first.Got());
    EXPECT_TRUE(second.Got());
}

TEST_F(DeviceCircle, IsNoneWhenTheHolderGoesOn) {
    const auto hold = Hold({{m_x, DEV_LOCK_ACCESS}});
    const CLockHolder holder({{m_y, DEV_LOCK_ACCESS}});
    CLockSeeker seeker({{m_x, DEV_LOCK_ACCESS}});
    seeker.AwaitLook();
    // Waits for one who waits for nobody, and is waited for itself.
    EXPECT_EQ(CDeviceHold::Acquire({{m_y, DEV_LOCK_ACCESS}}, [] { return true; }), nullptr);
}

TEST_F(DeviceCircle, IsNoneBetweenThoseThatWaitForTheSame) {
    CLockHolder holder({{m_x, DEV_LOCK_ACCESS}});
    CNestedSeeker first({{m_y, DEV_LOCK_ACCESS}}, {{m_x, DEV_LOCK_ACCESS}});
    CNestedSeeker second({{m_z, DEV_LOCK_ACCESS}}, {{m_x, DEV_LOCK_ACCESS}});
    first.AwaitWait();
    second.AwaitWait();
    holder.Release();
    EXPECT_TRUE(first.Got());
    EXPECT_TRUE(second.Got());
}

TEST_F(DeviceCircle, FailsTheCommandThatWouldCloseIt) {
    class CPlainCmd : public CDiagFunc {
      public:
        CPlainCmd() : CDiagFunc("command", "", SHARES_DEVICE) {}
        void Invoke(CInMsg&, COutMsg& out) override { out << uint8_t{0}; }
    };
    auto* command = new CPlainCmd;
    m_y->AddChild(command, CDiagObj::NO_SORT);
    auto hold = Hold({{m_x, DEV_LOCK_ACCESS}});
    CNestedSeeker other({{m_y, DEV_LOCK_ACCESS}}, {{m_x, DEV_LOCK_ACCESS}});
    other.AwaitWait();
    const CLogCapture log;
    EXPECT_THAT(Send(*command, MSG_CALL).bytes, ElementsAre(MSG_ERR_FAIL));
    EXPECT_THAT(
        log.Texts(LW_ERR_SW),
        ElementsAre("/y cannot be waited for: its holder waits for a device that is held here"));
    hold.reset();
    EXPECT_TRUE(other.Got());
}

TEST_F(DeviceCircle, WaitsAreKnownWhileTheyLast) {
    auto hold = Hold({{m_x, DEV_LOCK_ACCESS}});
    EXPECT_FALSE(CDeviceHold::WaitOf(std::this_thread::get_id()).has_value());
    CNestedSeeker other({{m_y, DEV_LOCK_ACCESS}},
                        {{m_z, DEV_LOCK_PROTECT}, {m_x, DEV_LOCK_ACCESS}});
    other.AwaitWait();
    const std::thread::id waiter = other.Id();
    const auto wait = CDeviceHold::WaitOf(waiter);
    ASSERT_TRUE(wait.has_value());
    EXPECT_EQ(wait->device, m_x);
    EXPECT_FALSE(wait->path);
    EXPECT_EQ(wait->holder, std::this_thread::get_id());
    hold.reset();
    EXPECT_TRUE(other.Got());
    EXPECT_FALSE(CDeviceHold::WaitOf(waiter).has_value());
}

}  // namespace
