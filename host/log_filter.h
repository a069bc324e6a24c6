// Which log texts show: per type, up to which debug level. Set at the prompt while
// tests log from threads of their own.
#pragma once

#include <array>
#include <atomic>
#include <optional>

#include "framework/diag_log_word.h"

class CLogFilter {
  public:
    // Debug text and progress show at level 0 only, everything else at all levels.
    CLogFilter();

    bool Shows(unsigned int logword) const {
        return LogLevelOf(logword) <
               m_shown_below[LogTypeOf(logword)].load(std::memory_order_relaxed);
    }

    // Up to which level (0 to 15) texts of a type show; none if the type is hidden.
    std::optional<unsigned int> LevelOf(ELogTypes type) const;
    // The higher the level, the more shows; without a level nothing does. Print text
    // always shows, it is what commands are run for: for it this throws
    // std::invalid_argument, as for a level above 15.
    void Set(ELogTypes type, std::optional<unsigned int> level);

    // Makes the present settings those that RestoreDefaults brings back.
    void KeepAsDefaults();
    void RestoreDefaults();

  private:
    static constexpr size_t TYPES = 16;  // that a log word has room for

    // For each type one more than the highest level that shows; 0 hides the type.
    std::array<std::atomic<unsigned int>, TYPES> m_shown_below{};
    std::array<unsigned int, TYPES> m_default_below{};
};
