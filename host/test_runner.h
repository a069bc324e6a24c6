// Runs a test from its request to its answer; shared by the two kinds of test,
// which have the same operations but no common class that declares them.
#pragma once

#include <mutex>

#include "framework/diag_device.h"
#include "framework/diag_log_word.h"
#include "framework/diag_test_base.h"
#include "host/device_lock.h"
#include "host/exception_text.h"
#include "host/run_stop.h"

class CTestRunner {
  public:
    // What a message does to a test.
    template <class Test>
    static void HandleMsg(Test& test, CInMsg& in, COutMsg& out) {
        switch (in.GetType()) {
            case MSG_CALL:
            case MSG_START:
                if (!Begin(test)) {
                    out << static_cast<uint8_t>(MSG_ERR_ISRUN);
                    return;
                }
                RunGuarded(test, in, out);
                End(test);
                break;
            case MSG_STOP:
                out << static_cast<uint8_t>(Stop(test) ? MSG_SUCCESS : MSG_ERR_NOTRUN);
                break;
            default:
                test.CDiagMenu::HandleMsg(in, out);
        }
    }

    // One run: devices, setup, run, clean-up, status.
    template <class Test>
    static void Run(Test& test, CInMsg& in, COutMsg& out) {
        test.m_progress_done = 0;
        test.m_progress_total = 0;
        ETestStatus status = DS_FAILED;
        Guarded(test, status, [&] {
            test.m_status = DS_DEVACC;
            test.LockDevices();
            status = test.IsStopReq() ? DS_ABORTED : SetupAndRun(test, in, out);
        });
        // Both must happen, whatever the other does.
        const bool released = Guarded(test, status, [&] { test.ReleaseDevices(); });
        const bool told = Guarded(test, status, [&] { TellDevice(test, status); });
        if (!released || !told) {
            out.Clear();
        }
        if (out.GetHeader().len == 0) {
            out << static_cast<uint8_t>(CodeOf(status));
        }
        test.m_status = status;
    }

    static void RequestStop(CDiagTestBase& test, bool stop) {
        test.m_stop_requested = stop;
        CDeviceHold::WakeWaiting();
    }
    static bool IsStopReq(const CDiagTestBase& test) { return test.m_stop_requested; }

    static EResCode CodeOf(ETestStatus status) {
        switch (status) {
            case DS_PASSED:
                return MSG_SUCCESS;
            case DS_ABORTED:
                return MSG_ERR_ABORTED;
            case DS_SKIPPED:
                return MSG_SKIPPED;
            default:
                return MSG_ERR_FAIL;
        }
    }

  private:
    // Held where "runs" and "shall stop" change together, so that a stop always
    // meets the run it was meant for. One for all tests: it is held for moments,
    // and again by a test that hands its stop on to others.
    static std::recursive_mutex& StateLock() {
        static std::recursive_mutex lock;
        return lock;
    }

    template <class Test>
    static bool Begin(Test& test) {
        const std::lock_guard<std::recursive_mutex> guard(StateLock());
        if (test.m_running) {
            return false;
        }
        test.m_running = true;
        if (CRunStop::IsRequestedHere()) {
            test.RequestStop(true);
        }
        return true;
    }

    static void End(CDiagTestBase& test) {
        const std::lock_guard<std::recursive_mutex> guard(StateLock());
        test.m_stop_requested = false;
        test.m_running = false;
    }

    template <class Test>
    static bool Stop(Test& test) {
        const std::lock_guard<std::recursive_mutex> guard(StateLock());
        if (!test.m_running) {
            return false;
        }
        test.RequestStop(true);
        return true;
    }

    // A test may bring a Run of its own; whatever it throws, the test has ended.
    template <class Test>
    static void RunGuarded(Test& test, CInMsg& in, COutMsg& out) {
        ETestStatus status = DS_FAILED;
        if (!Guarded(test, status, [&] { test.Run(in, out); })) {
            test.m_status = status;
            out.Clear();
            out << static_cast<uint8_t>(MSG_ERR_FAIL);
        }
    }

    static void TellDevice(const CDiagTestBase& test, ETestStatus status) {
        if (CDiagDevice* device = test.GetParentDevice()) {
            device->SetTestStatus(status);
            if (status == DS_FAILED || status == DS_FAILED_NCUP) {
                device->CountFailure();
            }
        }
    }

    template <class Test>
    static ETestStatus SetupAndRun(Test& test, CInMsg& in, COutMsg& out) {
        test.m_status = DS_SETUP;
        if (!test.TestSetup(in)) {
            return DS_FAILED;
        }
        ETestStatus status = DS_FAILED;
        test.m_status = DS_PROGRESS;
        // An answer that an exception cut off is not half an answer.
        if (!Guarded(test, status, [&] { status = test.TestRun(out); })) {
            out.Clear();
        }
        if (!Guarded(test, status, [&] { test.TestCleanup(); })) {
            status = DS_FAILED_NCUP;
            out.Clear();
        }
        return status;
    }

    // Runs one phase; an exception is logged, fails the test and gives false.
    template <class Phase>
    static bool Guarded(const CDiagTestBase& test, ETestStatus& status, const Phase& phase) {
        try {
            phase();
            return true;
        } catch (...) {
            test.SendLog(LW_ERR_SW, "%s", CurrentExceptionText().c_str());
        }
        status = DS_FAILED;
        return false;
    }
};
