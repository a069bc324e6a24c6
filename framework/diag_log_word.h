// The log word that every SendLog call takes first: what kind of text it is
// (ELogTypes, bits 4 to 7) and how detailed (debug level, bits 0 to 3).
#pragma once

#include <cstdint>

enum ELogTypes : uint32_t {
    LOG_LT_ERR_TEST = 1,
    LOG_LT_ERR_SYS = 2,
    LOG_LT_ERR_SW = 3,
    LOG_LT_WARN = 4,
    LOG_LT_SYS = 5,
    LOG_LT_INFO = 6,
    LOG_LT_PROGRESS = 7,
    LOG_LT_RESULT = 8,
    LOG_LT_HW_DEBUG_BASE = 9,
    LOG_LT_SW_DEBUG_BASE = 10,
    LOG_LT_PRINT = 11,
    LOG_LT_FIRST = 1,
    LOG_LT_LAST = 11,
};

constexpr unsigned int LogWord(ELogTypes type, unsigned int level = 0) {
    return (static_cast<unsigned int>(type) << 4) | (level & 0x0FU);
}
constexpr ELogTypes LogTypeOf(unsigned int logword) {
    return static_cast<ELogTypes>((logword >> 4) & 0x0FU);
}
constexpr unsigned int LogLevelOf(unsigned int logword) {
    return logword & 0x0FU;
}

inline constexpr unsigned int LW_ERR_TEST = LogWord(LOG_LT_ERR_TEST);  // 0x10
inline constexpr unsigned int LW_ERR_SYS = LogWord(LOG_LT_ERR_SYS);    // 0x20
inline constexpr unsigned int LW_ERR_SW = LogWord(LOG_LT_ERR_SW);      // 0x30
inline constexpr unsigned int LW_WARN = LogWord(LOG_LT_WARN);          // 0x40
inline constexpr unsigned int LW_INFO = LogWord(LOG_LT_INFO);          // 0x60
inline constexpr unsigned int LW_RESULT = LogWord(LOG_LT_RESULT);      // 0x80
inline constexpr unsigned int LW_PRINT = LogWord(LOG_LT_PRINT);        // 0xB0

inline constexpr unsigned int LW_HW_TRACE = LogWord(LOG_LT_HW_DEBUG_BASE, 10);  // 0x9A
inline constexpr unsigned int LW_SW_TRACE = LogWord(LOG_LT_SW_DEBUG_BASE, 1);   // 0xA1
inline constexpr unsigned int LW_SW_DUMP = LogWord(LOG_LT_SW_DEBUG_BASE, 5);    // 0xA5
