// How far the foreground test is: a bar below the transcript on a screen, else
// a line every few seconds. A test that ends at once shows neither.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class CDiagTestBase;
class CTerminal;

class CProgressLine {
  public:
    // When the bar first shows, and how often it changes.
    static constexpr uint64_t BAR_AFTER_MS = 500;
    static constexpr uint64_t BAR_EVERY_MS = 200;
    static constexpr uint64_t LINE_EVERY_MS = 5000;

    // The columns of the screen at the time, 0 without one.
    using CColumns = std::function<unsigned int()>;

    CProgressLine(CTerminal& terminal, const CDiagTestBase& test, CColumns columns);
    // Takes the bar away.
    ~CProgressLine();
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;

    // Shows what is due, given the time in milliseconds.
    void Update(uint64_t now);

  private:
    struct CSample {
        uint64_t time;
        uint64_t done;
    };

    void Measure(const CSample& sample);
    std::string Text(const CSample& sample) const;
    std::string Bar(const CSample& sample, unsigned int columns) const;

    CTerminal& m_terminal;
    const CDiagTestBase& m_test;
    const CColumns m_columns;
    std::optional<uint64_t> m_begun;  // when the test was first seen to work
    uint64_t m_shown = 0;             // when something was last shown
    CSample m_from{};                 // where the rate is measured from
    uint64_t m_rate = 0;              // units per second
};

// "45%" of a test; empty when its total is not known.
std::string PercentOf(const CDiagTestBase& test);
