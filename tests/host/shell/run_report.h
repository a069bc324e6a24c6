// What a run reports, caught.
#pragma once

#include <vector>

#include "host/shell/run/run_record.h"

class CKeptRecords : public IRunObserver {
  public:
    bool WantsDetails() const override { return true; }
    void OnEnd(const CRunRecord& record) override { records.push_back(record); }

    std::vector<CRunRecord> records;
};
