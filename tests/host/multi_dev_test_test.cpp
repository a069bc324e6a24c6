#include "framework/diag_multi_dev_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <set>
#include <string>
#include <thread>

#include "tests/support/lock_probe.h"
#include "tests/support/log_capture.h"
#include "tests/support/recording_test.h"
#include "tests/support/request.h"
#include "tests/support/thrown_text.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

// root / owner / test, root / owner / ch0 / below, root / other, root / menu.
class MultiDevTest : public testing::Test {
  protected:
    MultiDevTest() {
        m_root.AddChild(m_owner, CDiagObj::NO_SORT);
        m_root.AddChild(m_other, CDiagObj::NO_SORT);
        m_root.AddChild(new CDiagMenu(TMENU, "menu", ""), CDiagObj::NO_SORT);
        auto* channel = new CDiagMenu(TMENU, "ch0", "");
        m_owner->AddChild(channel, CDiagObj::NO_SORT);
        channel->AddChild(m_below, CDiagObj::NO_SORT);
        m_owner->AddChild(m_test, CDiagObj::NO_SORT);
        m_test->m_on_run = [this](COutMsg&) {
            for (const CDiagDevice* device : {m_owner, m_below, m_other}) {
                if (WouldWait(*device, DEV_LOCK_ACCESS)) {
                    m_held.insert(device->GetName());
                }
                if (WouldWait(*device, DEV_LOCK_PROTECT)) {
                    m_exclusive.insert(device->GetName());
                }
            }
            return DS_PASSED;
        };
    }
    CAnswer Run() { return Send(*m_test, MSG_CALL); }

    using CNames = std::set<std::string>;
    CDiagMenu m_root{TMENU, "board", ""};
    CDiagDevice* m_owner = new CDiagDevice("owner", "", TDEVICE);
    CDiagDevice* m_below = new CDiagDevice("below", "", TDEVICE);
    CDiagDevice* m_other = new CDiagDevice("other", "", TDEVICE);
    CRecordingTest<CDiagMultiDevTest>* m_test = new CRecordingTest<CDiagMultiDevTest>;
    CNames m_held;       // what the running test keeps other tests from
    CNames m_exclusive;  // and what commands, too
};

TEST_F(MultiDevTest, TakesNothingThatIsNotDeclared) {
    EXPECT_THAT(Run().bytes, ElementsAre(0));
    EXPECT_EQ(m_held, CNames{});
}

TEST_F(MultiDevTest, TakesItsOwnerByTwoDots) {
    m_test->AddDeviceAccess("..", DEV_LOCK_ACCESS, false);
    EXPECT_THAT(Run().bytes, ElementsAre(0));
    EXPECT_EQ(m_exclusive, CNames{"owner"});
}

TEST_F(MultiDevTest, TakesTheDevicesBelowToo) {
    m_test->AddDeviceAccess("..", DEV_LOCK_ACCESS, true);
    EXPECT_THAT(Run().bytes, ElementsAre(0));
    EXPECT_EQ(m_exclusive, (CNames{"owner", "below"}));
}

TEST_F(MultiDevTest, TakesEachDeviceInItsOwnWay) {
    m_test->AddDeviceAccess("../ch0/below", DEV_LOCK_ACCESS, false);
    m_test->AddDeviceAccess("../../other", DEV_LOCK_PROTECT, false);
    EXPECT_THAT(Run().bytes, ElementsAre(0));
    EXPECT_EQ(m_held, (CNames{"below", "other"}));
    EXPECT_EQ(m_exclusive, CNames{"below"});
}

TEST_F(MultiDevTest, GivesAllDevicesBack) {
    m_test->AddDeviceAccess("..", DEV_LOCK_ACCESS, true);
    m_test->AddDeviceAccess("../../other", DEV_LOCK_PROTECT, false);
    Run();
    EXPECT_FALSE(WouldWait(
        {{m_owner, DEV_LOCK_ACCESS}, {m_below, DEV_LOCK_ACCESS}, {m_other, DEV_LOCK_ACCESS}}));
}

TEST_F(MultiDevTest, TakesNoDeviceUntilAllAreFree) {
    m_test->AddDeviceAccess("..", DEV_LOCK_ACCESS, false);
    m_test->AddDeviceAccess("../../other", DEV_LOCK_ACCESS, false);
    std::promise<void> waiting;
    m_test->m_on_lock = [&] { waiting.set_value(); };
    CLockHolder holder({{m_other, DEV_LOCK_ACCESS}});
    CAnswer reply;
    std::thread runner([&] { reply = Run(); });
    waiting.get_future().wait();
    EXPECT_FALSE(WouldWait(*m_owner, DEV_LOCK_ACCESS));
    EXPECT_EQ(m_test->GetStatus(), DS_DEVACC);
    holder.Release();
    runner.join();
    EXPECT_THAT(reply.bytes, ElementsAre(0));
    EXPECT_EQ(m_exclusive, (CNames{"owner", "other"}));
}

TEST_F(MultiDevTest, SharesAProtectedDeviceWithAnotherTest) {
    m_test->AddDeviceAccess("../../other", DEV_LOCK_PROTECT, false);
    const CLockHolder holder({{m_other, DEV_LOCK_PROTECT}});
    EXPECT_THAT(Run().bytes, ElementsAre(0));
}

TEST_F(MultiDevTest, RefusesAPathThatNamesNoDevice) {
    for (const char* path : {"../../none", "../../menu", "../ch0"}) {
        CRecordingTest<CDiagMultiDevTest>* test = new CRecordingTest<CDiagMultiDevTest>;
        m_owner->AddChild(test, CDiagObj::NO_SORT);
        test->AddDeviceAccess("../../other", DEV_LOCK_ACCESS, false);
        test->AddDeviceAccess(path, DEV_LOCK_ACCESS, false);
        EXPECT_NE(ThrownText([&] { test->LockDevices(); }), "") << path;
        EXPECT_FALSE(WouldWait(*m_other, DEV_LOCK_ACCESS));
    }
}

TEST_F(MultiDevTest, FailsWithoutADeviceItNeeds) {
    const CLogCapture log;
    m_test->AddDeviceAccess("../../none", DEV_LOCK_ACCESS, false);
    EXPECT_THAT(Run().bytes, ElementsAre(2));
    EXPECT_EQ(m_test->GetStatus(), DS_FAILED);
    EXPECT_THAT(m_test->StageNames(), Not(Contains("setup")));
    EXPECT_THAT(m_test->StageNames(), Not(Contains("run")));
    EXPECT_THAT(m_test->StageNames(), Not(Contains("cleanup")));
    EXPECT_EQ(log.Texts(LW_ERR_SW).size(), 1U);
}

TEST_F(MultiDevTest, FindsItsDevicesWhereverItHangsWhenItRuns) {
    auto* test = new CRecordingTest<CDiagMultiDevTest>;
    test->AddDeviceAccess("..", DEV_LOCK_ACCESS, false);
    bool held = false;
    test->m_on_run = [&](COutMsg&) {
        held = WouldWait(*m_other, DEV_LOCK_PROTECT);
        return DS_PASSED;
    };
    m_other->AddChild(test, CDiagObj::NO_SORT);
    EXPECT_THAT(Send(*test, MSG_CALL).bytes, ElementsAre(0));
    EXPECT_TRUE(held);
}

}  // namespace
