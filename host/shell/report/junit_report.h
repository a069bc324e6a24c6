// Reports a run as JUnit XML, which build servers read: a testcase for every
// command and test that ran, and for every line that was refused.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "host/shell/run/run_record.h"

class CJunitReport : public IRunObserver {
  public:
    // Lines of the log that one testcase shows at the most.
    static constexpr size_t MAX_LINES = 200;

    // Makes the file, empty, so that an old report is never taken for this run's.
    // Throws std::system_error.
    explicit CJunitReport(const std::string& path);

    bool WantsDetails() const override { return true; }
    void OnEnd(const CRunRecord& record) override;

    // Writes the report; once, when all has ended. Throws std::system_error.
    void Finish();

  private:
    struct CCloser {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    const std::string m_path;
    std::unique_ptr<std::FILE, CCloser> m_file;
    std::vector<CRunRecord> m_records;
};
