#include "host/log_filter.h"

#include <stdexcept>

#include "host/log_types.h"

namespace {

constexpr unsigned int ALL_LEVELS = HIGHEST_LOG_LEVEL + 1;
constexpr unsigned int ONLY_LEVEL_0 = 1;

}  // namespace

CLogFilter::CLogFilter() {
    for (auto& below : m_shown_below) {
        below = ALL_LEVELS;
    }
    // What a test says of its progress in detail is for the status line.
    m_shown_below[LOG_LT_PROGRESS] = ONLY_LEVEL_0;
    m_shown_below[LOG_LT_HW_DEBUG_BASE] = ONLY_LEVEL_0;
    m_shown_below[LOG_LT_SW_DEBUG_BASE] = ONLY_LEVEL_0;
    KeepAsDefaults();
}

std::optional<unsigned int> CLogFilter::LevelOf(ELogTypes type) const {
    const unsigned int below = m_shown_below.at(type);
    return below != 0 ? std::optional(below - 1) : std::nullopt;
}

void CLogFilter::Set(ELogTypes type, std::optional<unsigned int> level) {
    if (type == LOG_LT_PRINT) {
        throw std::invalid_argument("print text always shows");
    }
    if (level > HIGHEST_LOG_LEVEL) {
        throw std::invalid_argument("the highest log level is 15");
    }
    m_shown_below.at(type) = level.has_value() ? *level + 1 : 0;
}

void CLogFilter::KeepAsDefaults() {
    for (size_t i = 0; i < TYPES; ++i) {
        m_default_below[i] = m_shown_below[i];
    }
}

void CLogFilter::RestoreDefaults() {
    for (size_t i = 0; i < TYPES; ++i) {
        m_shown_below[i] = m_default_below[i];
    }
}
