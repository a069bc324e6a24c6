// How far one thing in the foreground is, in words: for the row below the
// transcript on a screen, or for a line every few seconds without one. Of a test
// and of a built-in that counts a bar, of others the time they take; behind it
// the latest progress text. What ends soon shows neither.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/shell/run/progress_rate.h"
#include "host/shell/run/run_note.h"

class CDiagTestBase;
class CProgressRow;

class CProgressLine {
  public:
    // When the row first shows, of a test that works and of all else.
    static constexpr uint64_t BAR_AFTER_MS = 500;
    static constexpr uint64_t STATUS_AFTER_MS = 1000;
    static constexpr uint64_t LINE_EVERY_MS = 5000;

    // `test` is null for what is none.
    CProgressLine(std::string name, const CDiagTestBase* test, const CRunNote& note);

    // Looks how far it is, given the time in milliseconds; to be called often.
    void Look(uint64_t now);
    // It was asked to stop, and says so from now on.
    void SetStopping() { m_stopping = true; }

    // Whether it takes long enough for the row, as of the last look.
    bool IsDue() const;
    // The row, cut to that many columns.
    std::string Row(unsigned int columns) const;
    // Of a test or a long command that works, every few seconds: what the row would say.
    std::optional<std::string> TakeDueLine();
    // "45%, 14746 of 32768", or what of it is known; empty when nothing is.
    std::string Figures() const;

  private:
    bool Works() const;
    CProgressRow MakeRow() const;

    const std::string m_name;
    const CDiagTestBase* const m_test;
    const CRunNote& m_note;
    bool m_stopping = false;
    uint64_t m_now = 0;
    std::optional<uint64_t> m_since;  // first seen
    std::optional<uint64_t> m_begun;  // of a test: first seen to work
    uint64_t m_line_told = 0;
    CRunNote::CAmount m_amount;
    CProgressRate m_rate;
};

// "45%"; empty when the total is not known.
std::string PercentOf(const CRunNote::CAmount& amount);
