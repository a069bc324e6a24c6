#include "framework/diag_multi_dev_test.h"

#include "framework/diag_exception.h"
#include "host/device_lock.h"
#include "host/diag_tree.h"
#include "host/test_runner.h"

CDiagMultiDevTest::CDiagMultiDevTest(const std::string& name, const std::string& description)
    : CDiagTestBase(name, description) {}

CDiagMultiDevTest::~CDiagMultiDevTest() = default;

void CDiagMultiDevTest::HandleMsg(CInMsg& in, COutMsg& out) {
    CTestRunner::HandleMsg(*this, in, out);
}

void CDiagMultiDevTest::RequestStop(bool stop) {
    CTestRunner::RequestStop(*this, stop);
}

bool CDiagMultiDevTest::TestSetup(CInMsg&) {
    return true;
}

void CDiagMultiDevTest::TestCleanup() {}

void CDiagMultiDevTest::Run(CInMsg& in, COutMsg& out) {
    CTestRunner::Run(*this, in, out);
}

bool CDiagMultiDevTest::IsStopReq() const {
    return CTestRunner::IsStopReq(*this);
}

void CDiagMultiDevTest::LockDevices() {
    std::vector<CDeviceClaim> claims;
    for (const CAccess& access : m_accesses) {
        const CDiagObj* node = FindByPath(*this, access.path);
        if (dynamic_cast<const CDiagDevice*>(node) == nullptr) {
            throw CDiagException("%s needs a device, and there is none at %s", GetName(),
                                 access.path.c_str());
        }
        AddDeviceClaims(claims, *node, access.type, access.recursive);
    }
    m_hold = CDeviceHold::Acquire(claims, [this] { return IsStopReq(); });
    if (m_hold == nullptr) {
        // The request has been seen: taking it back now would start a run
        // without its devices.
        RequestStop(true);
    }
}

void CDiagMultiDevTest::ReleaseDevices() {
    m_hold.reset();
}

void CDiagMultiDevTest::AddDeviceAccess(const std::string& path, EDevLockType type,
                                        bool recursive) {
    m_accesses.push_back({path, type, recursive});
}
