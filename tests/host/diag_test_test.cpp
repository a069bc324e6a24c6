#include "framework/diag_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "tests/support/lock_probe.h"
#include "tests/support/recording_test.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;

TEST(DiagTest, TakesTheNearestDeviceAboveItExclusively) {
    CDiagDevice outer("outer", "", TDEVICE);
    auto* device = new CDiagDevice("device", "", TDEVICE);
    outer.AddChild(device, CDiagObj::NO_SORT);
    auto* menu = new CDiagMenu(TMENU, "tests", "");
    device->AddChild(menu, CDiagObj::NO_SORT);
    auto* test = new CRecordingTest<CDiagTest>;
    menu->AddChild(test, CDiagObj::NO_SORT);

    bool device_held = false;
    bool outer_held = true;
    test->m_on_run = [&](COutMsg&) {
        device_held = WouldWait(*device, DEV_LOCK_PROTECT);
        outer_held = WouldWait(outer, DEV_LOCK_ACCESS);
        return DS_PASSED;
    };
    EXPECT_THAT(Send(*test, MSG_CALL).bytes, ElementsAre(0));
    EXPECT_TRUE(device_held);
    EXPECT_FALSE(outer_held);
}

// Supplies nothing but the work.
class CShortTest : public CDiagTest {
  public:
    CShortTest() : CDiagTest("short", "") {}
    ETestStatus TestRun(COutMsg& out) override {
        out << uint8_t{0};
        return DS_PASSED;
    }
};

TEST(DiagTest, NeedsNothingButItsWork) {
    CDiagDevice device("device", "", TDEVICE);
    auto* test = new CShortTest;
    device.AddChild(test, CDiagObj::NO_SORT);
    EXPECT_THAT(Send(*test, MSG_CALL).bytes, ElementsAre(0));
    EXPECT_EQ(device.GetTestStatus(), DS_PASSED);
}

TEST(DiagTest, RunsBesideTheTestOfAnotherDevice) {
    CDiagDevice left("left", "", TDEVICE);
    CDiagDevice right("right", "", TDEVICE);
    auto* outer = new CRecordingTest<CDiagTest>;
    auto* inner = new CShortTest;
    left.AddChild(outer, CDiagObj::NO_SORT);
    right.AddChild(inner, CDiagObj::NO_SORT);
    outer->m_on_run = [&](COutMsg&) {
        std::thread([&] { EXPECT_THAT(Send(*inner, MSG_CALL).bytes, ElementsAre(0)); }).join();
        return DS_PASSED;
    };
    EXPECT_THAT(Send(*outer, MSG_CALL).bytes, ElementsAre(0));
}

}  // namespace
