#include "host/shell/run/test_results.h"

#include "host/shell/run/result_name.h"

void CTestResults::OnEnd(const CRunRecord& record) {
    // Without a code the test never began: its arguments were refused.
    if (!record.is_test || !record.code.has_value()) {
        return;
    }
    const std::lock_guard<std::mutex> guard(m_lock);
    CTestResult& result = m_results[record.node_id];
    result.last = ResultName(record);
    result.ended = std::chrono::time_point_cast<std::chrono::system_clock::duration>(
        record.began + record.duration);
    if (record.code == MSG_SKIPPED) {
        ++result.skipped;
    } else if (record.status == EXIT_PASSED) {
        ++result.passed;
    } else if (record.status == EXIT_ABORTED) {
        ++result.aborted;
    } else {
        ++result.failed;
    }
}

std::optional<CTestResult> CTestResults::Of(unsigned int node_id) const {
    const std::lock_guard<std::mutex> guard(m_lock);
    const auto found = m_results.find(node_id);
    return found == m_results.end() ? std::nullopt : std::optional(found->second);
}

void CTestResults::Clear() {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_results.clear();
}
