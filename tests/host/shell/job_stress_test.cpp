// Many jobs at once, stopped from elsewhere: what they share must stay whole.
#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <sstream>
#include <vector>

#include "framework/diag_multi_dev_test.h"
#include "host/shell/run/request.h"
#include "tests/host/shell/job_board.h"
#include "tests/host/shell/text_file.h"

namespace {

// A device whose state only its holder may touch.
class CStateDevice : public CDiagDevice {
  public:
    explicit CStateDevice(const std::string& name) : CDiagDevice(name, "", TDEVICE) {}
    int m_users = 0;  // no atomic, on purpose
    int m_uses = 0;
};

ETestStatus Use(const std::vector<CStateDevice*>& devices, const std::function<bool()>& progress) {
    constexpr int STEPS = 20;
    for (CStateDevice* device : devices) {
        EXPECT_EQ(++device->m_users, 1);
        ++device->m_uses;
    }
    bool goes_on = true;
    for (int i = 0; i < STEPS && goes_on; ++i) {
        std::this_thread::yield();
        goes_on = progress();
    }
    for (CStateDevice* device : devices) {
        --device->m_users;
    }
    return goes_on ? DS_PASSED : DS_ABORTED;
}

class CUseTest : public CDiagTest {
  public:
    explicit CUseTest(const std::string& name) : CDiagTest(name, "") {}
    ETestStatus TestRun(COutMsg&) override {
        SendLog(LW_PRINT, "%s ", GetName());
        SendLog(LW_PRINT, "works\n");
        return Use({dynamic_cast<CStateDevice*>(GetParentDevice())},
                   [this] { return ProgressCb(); });
    }
};

class CUseBothTest : public CDiagMultiDevTest {
  public:
    CUseBothTest(const std::string& name, CStateDevice& a, CStateDevice& b)
        : CDiagMultiDevTest(name, ""), m_devices{&a, &b} {
        AddDeviceAccess("/a", DEV_LOCK_ACCESS, false);
        AddDeviceAccess("/b", DEV_LOCK_ACCESS, false);
    }
    ETestStatus TestRun(COutMsg&) override {
        return Use(m_devices, [this] { return ProgressCb(); });
    }

  private:
    const std::vector<CStateDevice*> m_devices;
};

class JobStress : public testing::Test {
  protected:
    JobStress() {
        for (CStateDevice* device : {m_a, m_b}) {
            m_root.AddChild(device, CDiagObj::NO_SORT);
            for (const char* name : {"one", "two", "three"}) {
                auto* test = new CUseTest(name);
                device->AddChild(test, CDiagObj::NO_SORT);
                m_tests.push_back(test);
            }
            device->AddChild(new CSayCmd, CDiagObj::NO_SORT);
        }
        auto* both = new CUseBothTest("both", *m_a, *m_b);
        m_root.AddChild(both, CDiagObj::NO_SORT);
        m_tests.push_back(both);
        m_shell.emplace(m_root, m_terminal, m_interrupt, m_log_filter);
    }

    CTextFile m_file;
    CDiagMenu m_root{TMENU, "board", ""};
    CStateDevice* m_a = new CStateDevice("a");
    CStateDevice* m_b = new CStateDevice("b");
    std::vector<CDiagMenu*> m_tests;
    CInterrupt m_interrupt;
    CTerminal m_terminal{m_file.Get(), m_file.Get()};
    CLogFilter m_log_filter;
    CTerminalLog m_log{m_terminal, m_log_filter};
    const CLogSinkScope m_sink{m_log};
    std::optional<CShell> m_shell;
};

TEST_F(JobStress, DevicesHaveOneUserAndLinesStayWhole) {
    constexpr int ROUNDS = 25;
    std::atomic<bool> done{false};
    std::thread stopper([&] {
        for (size_t i = 0; !done; ++i) {
            const EResCode code = AskToStop(*m_tests[i * 5 % m_tests.size()]);
            EXPECT_TRUE(code == MSG_SUCCESS || code == MSG_ERR_NOTRUN);
            std::this_thread::yield();
        }
    });
    for (int i = 0; i < ROUNDS; ++i) {
        // Some wait for both devices, some for one, some stop before they begin.
        for (const char* line : {"/a/one &", "/b/one &", "/both &", "/a/two &", "/a/three &",
                                 "/b/two &", "/a/say background &", "/b/three &"}) {
            ASSERT_EQ(m_shell->Execute(line), EXIT_PASSED);
        }
        ASSERT_EQ(m_shell->Execute("stop /b/three"), EXIT_PASSED);
        ASSERT_EQ(m_shell->Execute("/a/say foreground"), EXIT_PASSED);
        ASSERT_EQ(m_shell->Execute("jobs"), EXIT_PASSED);
        const EExitStatus status = m_shell->Execute("wait");
        ASSERT_TRUE(status == EXIT_PASSED || status == EXIT_ABORTED) << status;
    }
    done = true;
    stopper.join();
    EXPECT_EQ(m_a->m_users, 0);
    EXPECT_EQ(m_b->m_users, 0);
    EXPECT_GT(m_a->m_uses, 0);
    EXPECT_GT(m_b->m_uses, 0);

    std::istringstream lines(m_file.Written());
    int spoken = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line == "foreground" || line == "no job runs there") {
            spoken += line == "foreground" ? 1 : 0;
            continue;
        }
        EXPECT_THAT(line, testing::MatchesRegex(
                              "\\[[0-9]+\\] (background|(one|two|three) works|"
                              "waiting for /[ab], held by .*|/(both|[ab]/[a-z]+)[ a-z]*: .*)"));
    }
    EXPECT_EQ(spoken, ROUNDS);
}

}  // namespace
