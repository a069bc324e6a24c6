// What the foreground says of itself while it runs: its latest progress text,
// and how much is done of how much. Tests and commands say it through the log,
// built-ins directly.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "host/diag_log.h"

class CRunNote {
  public:
    struct CAmount {
        uint64_t done = 0;
        uint64_t total = 0;  // 0 when it is not known
    };

    // Is from now on what the calling thread's texts go to.
    CRunNote();
    ~CRunNote();
    CRunNote(const CRunNote&) = delete;
    CRunNote& operator=(const CRunNote&) = delete;

    // Note something of what the calling thread runs, if that has a note.
    static void Say(std::string_view text);
    static void Count(uint64_t done, uint64_t total);

    // The first line of the latest text, as it was said.
    std::string Text() const;
    CAmount Amount() const;

    // Catches progress texts in the log, whatever is shown of it.
    class CCatcher : public ILogSink {
      public:
        bool Takes(unsigned int logword) const override;
        void Write(const CLogRecord& record) override;
    };

  private:
    void Set(std::string_view text);

    CRunNote* const m_outer;
    bool m_traces_only = true;  // texts that were meant to tell the progress go before traces
    mutable std::mutex m_lock;
    std::string m_text;
    CAmount m_amount;
};
