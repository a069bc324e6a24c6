#include "framework/diag_test.h"

#include "host/device_lock.h"
#include "host/test_runner.h"

CDiagTest::CDiagTest(const std::string& name, const std::string& description)
    : CDiagTestBase(name, description) {}

CDiagTest::~CDiagTest() = default;

void CDiagTest::HandleMsg(CInMsg& in, COutMsg& out) {
    CTestRunner::HandleMsg(*this, in, out);
}

void CDiagTest::RequestStop(bool stop) {
    CTestRunner::RequestStop(*this, stop);
}

bool CDiagTest::TestSetup(CInMsg&) {
    return true;
}

void CDiagTest::TestCleanup() {}

void CDiagTest::Run(CInMsg& in, COutMsg& out) {
    CTestRunner::Run(*this, in, out);
}

bool CDiagTest::IsStopReq() const {
    return CTestRunner::IsStopReq(*this);
}

void CDiagTest::LockDevices() {
    std::vector<CDeviceClaim> claims;
    if (const CDiagDevice* device = GetParentDevice()) {
        claims.push_back({device, DEV_LOCK_ACCESS});
    }
    m_hold = CDeviceHold::Acquire(claims, [this] { return IsStopReq(); });
    if (m_hold == nullptr) {
        // The request has been seen: taking it back now would start a run
        // without its devices.
        RequestStop(true);
    }
}

void CDiagTest::ReleaseDevices() {
    m_hold.reset();
}
