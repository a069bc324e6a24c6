// Reports what ran as JSON, one object a line: docs/json.md describes it, and
// docs/diagsh.schema.json checks it.
#pragma once

#include <atomic>
#include <cstdio>

#include "host/shell/run/run_record.h"

class CJsonReport : public IRunObserver {
  public:
    // Of the objects; a reader that knows another one should look closer.
    static constexpr int SCHEMA_VERSION = 1;

    // The stream is not owned.
    explicit CJsonReport(std::FILE* out) : m_out(out) {}

    bool WantsDetails() const override { return true; }
    void OnEnd(const CRunRecord& record) override;
    bool IsLost() const override { return m_lost; }

  private:
    std::FILE* const m_out;
    std::atomic<bool> m_lost{false};
};
