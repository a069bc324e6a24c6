// Runs of a test below its device, the same for the test of one device and of
// several.
#pragma once

#include <gtest/gtest.h>

#include <type_traits>

#include "framework/diag_multi_dev_test.h"
#include "framework/diag_test.h"
#include "tests/support/recording_test.h"
#include "tests/support/request.h"

template <class Base>
class TestRunBase : public testing::Test {
  protected:
    using CTest = CRecordingTest<Base>;

    TestRunBase() {
        m_device.AddChild(m_test, CDiagObj::NO_SORT);
        if constexpr (std::is_same_v<Base, CDiagMultiDevTest>) {
            m_test->AddDeviceAccess("..", DEV_LOCK_ACCESS, true);
        }
    }
    CAnswer Run() { return Send(*m_test, MSG_CALL); }
    void FinishWith(ETestStatus status) {
        m_test->m_on_run = [status](COutMsg&) { return status; };
    }

    CWatchedDevice m_device{"device"};
    CTest* m_test = new CTest;
};
using TestKinds = testing::Types<CDiagTest, CDiagMultiDevTest>;
