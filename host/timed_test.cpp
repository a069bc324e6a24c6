#include "framework/timed_test.h"

#include <algorithm>

#include "framework/diag_log_word.h"
#include "framework/diag_param.h"
#include "host/diag_clock.h"
#include "host/test_runner.h"

CTimedTest::CTimedTest(const std::string& name, const std::string& description,
                       const std::string& duration_desc, bool keep_going)
    : CDiagMultiDevTest(name, description), m_keep_going(keep_going) {
    const std::string usual =
        "Test time in seconds (dflt=" + std::to_string(DEFAULT_DURATION_S) + ")";
    AddChild(new CDiagParam(VT_UINT32, "duration", duration_desc.empty() ? usual : duration_desc,
                            PT_IN | PT_OPTIONAL),
             NO_SORT);
    AddChild(new CDiagParam(VT_UINT32, "passed", "Steps that passed", PT_OUT), NO_SORT);
    AddChild(new CDiagParam(VT_UINT32, "failed", "Steps that failed", PT_OUT), NO_SORT);
}

CTimedTest::~CTimedTest() = default;

void CTimedTest::SendLog(unsigned int logword, const char* fmt, ...) const {
    va_list args;
    va_start(args, fmt);
    static_cast<const CDiagMenu*>(this)->SendLog(logword, fmt, args);
    va_end(args);
}

bool CTimedTest::TestSetup(CInMsg& in) {
    m_duration_s = DEFAULT_DURATION_S;
    m_passed = 0;
    m_failed = 0;
    if (in.GetLen() != 0) {
        in >> m_duration_s;
    }
    return TestSetupEx(in);
}

ETestStatus CTimedTest::TestRun(COutMsg& out) {
    IDiagClock& clock = GetDiagClock();
    const uint64_t start = clock.NowMs();
    const uint64_t duration_ms = uint64_t{1000} * m_duration_s;
    m_progress_total = duration_ms;

    bool stopped = false;
    uint64_t elapsed = 0;
    do {
        ++(TestExecute() ? m_passed : m_failed);
        elapsed = clock.NowMs() - start;
        m_progress_done = std::min(elapsed, duration_ms);
        stopped = !ProgressCb();
    } while (!stopped && elapsed < duration_ms && (m_keep_going || m_failed == 0));

    ETestStatus status = m_failed == 0 ? DS_PASSED : DS_FAILED;
    if (stopped) {
        status = DS_ABORTED;
    }
    TestResultEx(out, CTestRunner::CodeOf(status));
    return status;
}

void CTimedTest::TestCleanup() {}

bool CTimedTest::TestSetupEx(CInMsg&) {
    return true;
}

void CTimedTest::TestResultEx(COutMsg& out, EResCode code) {
    out << static_cast<uint8_t>(code) << m_passed.load() << m_failed.load();
}
