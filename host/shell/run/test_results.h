// What became of the tests in this run of the shell.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>

#include "host/shell/run/run_record.h"

struct CTestResult {
    const char* last = "";  // "passed", as ResultName has it
    unsigned int passed = 0;
    unsigned int failed = 0;
    unsigned int aborted = 0;
    unsigned int skipped = 0;
    std::chrono::system_clock::time_point ended;  // the last time
};

class CTestResults : public IRunObserver {
  public:
    void OnEnd(const CRunRecord& record) override;
    // Of the test with that id, if it ever ran.
    std::optional<CTestResult> Of(unsigned int node_id) const;
    // Forgets them.
    void Clear();

  private:
    mutable std::mutex m_lock;
    std::map<unsigned int, CTestResult> m_results;
};
