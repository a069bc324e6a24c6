// What the foreground says of itself while it runs: its latest progress text,
// and how much is done of how much. Tests and commands say it through the log,
// built-ins directly.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "framework/diag_menu.h"
#include "framework/long_work.h"
#include "host/diag_log.h"

class CRunNote {
  public:
    struct CAmount {
        uint64_t done = 0;
        uint64_t total = 0;  // 0 when it is not known
    };

    // Is from now on what the calling thread's texts go to. `node` is what runs,
    // null for a built-in: traces of its own go before those of the way to a device.
    explicit CRunNote(const CDiagMenu* node = nullptr);
    ~CRunNote();
    CRunNote(const CRunNote&) = delete;
    CRunNote& operator=(const CRunNote&) = delete;

    // Note something of what the calling thread runs, if that has a note.
    static void Say(std::string_view text);
    static void Count(uint64_t done, uint64_t total);

    // Whether what runs tells itself how far it is.
    bool IsOfLongWork() const { return dynamic_cast<const CLongWork*>(m_node) != nullptr; }
    // How far a test, or a command that tells it, is.
    static CAmount AmountOf(const CDiagMenu& node);

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
    // What a text tells of the progress, from little to much.
    enum ERank { OTHERS_TRACE, OWN_TRACE, PROGRESS };

    void Set(std::string_view text);
    ERank RankOf(const CLogRecord& record) const;

    CRunNote* const m_outer;
    const CDiagMenu* const m_node;
    ERank m_rank = OTHERS_TRACE;  // of the text; none of less is taken
    mutable std::mutex m_lock;
    std::string m_text;
    CAmount m_amount;
};
