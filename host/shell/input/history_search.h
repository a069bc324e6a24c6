// The arrow keys: walks through the lines of the history that begin as what is
// typed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class CHistory;

class CHistorySearch {
  public:
    explicit CHistorySearch(const CHistory& history) : m_history(history) {}

    // What takes the place of the line that is shown: the next older line that
    // begins as the line does up to the cursor, the next newer one, or in the end
    // what was typed; null where there is none. A walk goes on for as long as
    // nothing is typed between two steps.
    std::optional<std::string> Older(const std::string& shown, size_t cursor);
    std::optional<std::string> Newer(const std::string& shown, size_t cursor);
    // The next step begins a new walk.
    void Reset() { m_shown.reset(); }

  private:
    void GoOnFrom(const std::string& shown, size_t cursor);
    bool Fits(size_t line) const;
    std::optional<std::string> Show(size_t line);

    const CHistory& m_history;
    std::vector<std::string> m_lines;    // the oldest first, and behind them what was typed
    std::string m_prefix;                // what they begin with
    size_t m_at = 0;                     // the one that is shown
    std::optional<std::string> m_shown;  // while a walk is under way
};
