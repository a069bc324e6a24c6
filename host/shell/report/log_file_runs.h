// Writes into the log file what the shell runs, and what became of it.
#pragma once

#include "host/shell/run/run_record.h"

class CLogFile;

class CLogFileRuns : public IRunObserver {
  public:
    explicit CLogFileRuns(CLogFile& file) : m_file(file) {}

    // What built-ins print and nodes answer is no log text.
    bool WantsDetails() const override { return true; }
    void OnBegin(const CRunRecord& record) override;
    void OnEnd(const CRunRecord& record) override;

  private:
    CLogFile& m_file;
};
