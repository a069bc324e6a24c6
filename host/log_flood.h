// Keeps a screen usable while a job fails again and again: of more errors and
// warnings than anybody reads it shows the first, and then only how many came.
// Other sinks, such as a log file, get all of them.
#pragma once

#include <cstdint>
#include <string>

#include "host/diag_log.h"

class CLogFlood : public ILogSink {
  public:
    static constexpr unsigned int LINES_PER_SECOND = 10;
    // How often it says how many came meanwhile.
    static constexpr uint64_t TELL_EVERY_MS = 5000;

    // Hands records on to `sink`.
    explicit CLogFlood(ILogSink& sink) : m_sink(sink) {}

    bool Takes(unsigned int logword) const override { return m_sink.Takes(logword); }
    void Write(const CLogRecord& record) override;

    // Makes the calling thread one whose errors may be left out, for a scope. Its
    // end says how many were.
    class CScope {
      public:
        CScope();
        ~CScope();
        CScope(const CScope&) = delete;
        CScope& operator=(const CScope&) = delete;

      private:
        friend class CLogFlood;

        CLogFlood* m_flood = nullptr;  // while records are left out
        uint64_t m_second_began = 0;
        unsigned int m_lines = 0;  // shown in this second
        uint64_t m_told = 0;       // when
        uint64_t m_left_out = 0;   // since then
        CLogRecord m_last{};
    };

  private:
    bool IsShown(CScope& scope, const CLogRecord& record);
    void Tell(CScope& scope);

    ILogSink& m_sink;
};
