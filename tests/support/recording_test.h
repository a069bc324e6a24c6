// Tests and devices that write down what happens to them.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "framework/diag_device.h"

// A test that does what it is told, stage by stage. Base is the class of a test.
template <class Base>
class CRecordingTest : public Base {
  public:
    // A stage and the status that the test had when it began.
    using Stage = std::pair<std::string, ETestStatus>;

    CRecordingTest() : Base("test", "does as told") {}

    // What the stages do, over and above being recorded.
    std::function<void()> m_on_lock = [] {};
    std::function<bool(CInMsg&)> m_on_setup = [](CInMsg&) { return true; };
    std::function<ETestStatus(COutMsg&)> m_on_run = [](COutMsg&) { return DS_PASSED; };
    std::function<void()> m_on_cleanup = [] {};
    std::function<void()> m_on_release = [] {};

    const std::vector<Stage>& Stages() const { return m_stages; }
    std::vector<std::string> StageNames() const {
        std::vector<std::string> names;
        for (const Stage& stage : m_stages) {
            names.push_back(stage.first);
        }
        return names;
    }

    void LockDevices() override {
        Record("lock");
        m_on_lock();
        Base::LockDevices();
    }
    bool TestSetup(CInMsg& in) override {
        Record("setup");
        return m_on_setup(in);
    }
    ETestStatus TestRun(COutMsg& out) override {
        Record("run");
        return m_on_run(out);
    }
    void TestCleanup() override {
        Record("cleanup");
        m_on_cleanup();
    }
    void ReleaseDevices() override {
        Record("release");
        Base::ReleaseDevices();
        m_on_release();
    }

  private:
    void Record(const char* name) { m_stages.emplace_back(name, this->GetStatus()); }

    std::vector<Stage> m_stages;
};

// A device that keeps all it is told about its tests.
class CWatchedDevice : public CDiagDevice {
  public:
    explicit CWatchedDevice(const std::string& name) : CDiagDevice(name, "", TDEVICE) {}

    void SetTestStatus(ETestStatus status) override {
        m_statuses.push_back(status);
        CDiagDevice::SetTestStatus(status);
    }
    const std::vector<ETestStatus>& Statuses() const { return m_statuses; }

  private:
    std::vector<ETestStatus> m_statuses;
};
