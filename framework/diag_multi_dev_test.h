// A test that declares which devices it needs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/diag_test_base.h"

class CDeviceHold;

class CDiagMultiDevTest : public CDiagTestBase {
  public:
    CDiagMultiDevTest(const std::string& name, const std::string& description);
    ~CDiagMultiDevTest() override;

    // A call or start message runs the test, a stop message asks it to stop.
    void HandleMsg(CInMsg& in, COutMsg& out) override;

    // The operations of CDiagTest, in the same order.
    virtual void RequestStop(bool stop);
    virtual bool TestSetup(CInMsg& in);
    virtual ETestStatus TestRun(COutMsg& out) = 0;
    virtual void TestCleanup();
    virtual void Run(CInMsg& in, COutMsg& out);
    virtual bool IsStopReq() const;
    // Takes all declared devices at once; waits for them until a stop is
    // requested. Throws CDiagException when a path names no device.
    virtual void LockDevices();
    virtual void ReleaseDevices();

    // Declares a device: `path` is relative to this test (".." is its owner);
    // `recursive` takes the devices below it too.
    void AddDeviceAccess(const std::string& path, EDevLockType type, bool recursive);

  private:
    struct CAccess {
        std::string path;
        EDevLockType type;
        bool recursive;
    };
    std::vector<CAccess> m_accesses;
    std::unique_ptr<CDeviceHold> m_hold;
};
