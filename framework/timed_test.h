// A test that repeats one step for a given time.
#pragma once

#include <atomic>
#include <string>

#include "framework/diag_multi_dev_test.h"

// Declares the optional argument "duration" (seconds) and the outputs "passed"
// and "failed" (steps). At least one step runs, whatever the duration.
class CTimedTest : public CDiagMultiDevTest {
  public:
    static constexpr uint32_t DEFAULT_DURATION_S = 10;

    // `duration_desc` describes the argument to the operator; empty stands for
    // the usual text. With `keep_going` a failed step is counted and the test
    // goes on, else it ends there.
    CTimedTest(const std::string& name, const std::string& description,
               const std::string& duration_desc, bool keep_going);
    ~CTimedTest() override;

    void SendLog(unsigned int logword, const char* fmt, ...) const override
        __attribute__((format(printf, 3, 4)));

    // Reads the duration, then calls TestSetupEx for what follows it.
    bool TestSetup(CInMsg& in) override;
    ETestStatus TestRun(COutMsg& out) override;
    void TestCleanup() override;

    virtual bool TestSetupEx(CInMsg& in);
    // Appends the answer: the result byte and the two counts.
    virtual void TestResultEx(COutMsg& out, EResCode code);
    // One step; false when it failed.
    virtual bool TestExecute() = 0;

    uint32_t GetPassCount() const { return m_passed; }
    uint32_t GetFailCount() const { return m_failed; }

  private:
    const bool m_keep_going;
    uint32_t m_duration_s = DEFAULT_DURATION_S;
    std::atomic<uint32_t> m_passed{0};
    std::atomic<uint32_t> m_failed{0};
};
