// A test of its parent device.
#pragma once

#include <memory>
#include <string>

#include "framework/diag_test_base.h"

class CDeviceHold;

class CDiagTest : public CDiagTestBase {
  public:
    CDiagTest(const std::string& name, const std::string& description);
    ~CDiagTest() override;

    // A call or start message runs the test, a stop message asks it to stop.
    void HandleMsg(CInMsg& in, COutMsg& out) override;

    // With false takes a request back that has not been seen yet.
    virtual void RequestStop(bool stop);
    // Reads the arguments; false refuses the run.
    virtual bool TestSetup(CInMsg& in);
    // Does the work, appends the result byte and returns the status it stands for.
    virtual ETestStatus TestRun(COutMsg& out) = 0;
    // Called after every run whose setup was accepted.
    virtual void TestCleanup();
    // One whole run: devices, setup, run, clean-up, status.
    virtual void Run(CInMsg& in, COutMsg& out);
    virtual bool IsStopReq() const;
    // Takes the parent device, exclusively; waits for it until a stop is requested.
    virtual void LockDevices();
    virtual void ReleaseDevices();

  private:
    std::unique_ptr<CDeviceHold> m_hold;
};
