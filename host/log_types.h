// The names that operators know the types of log texts by.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "framework/diag_log_word.h"

struct CLogTypeName {
    ELogTypes type;
    const char* name;
};

inline constexpr unsigned int HIGHEST_LOG_LEVEL = 15;

// In the order of the types, what goes wrong first.
inline constexpr std::array<CLogTypeName, LOG_LT_LAST> LOG_TYPE_NAMES{{
    {LOG_LT_ERR_TEST, "test-error"},
    {LOG_LT_ERR_SYS, "system-error"},
    {LOG_LT_ERR_SW, "error"},
    {LOG_LT_WARN, "warning"},
    {LOG_LT_SYS, "system"},
    {LOG_LT_INFO, "info"},
    {LOG_LT_PROGRESS, "progress"},
    {LOG_LT_RESULT, "result"},
    {LOG_LT_HW_DEBUG_BASE, "hw-debug"},
    {LOG_LT_SW_DEBUG_BASE, "sw-debug"},
    {LOG_LT_PRINT, "print"},
}};

// Log words have room for types that nobody defined; those are "other".
const char* LogTypeName(ELogTypes type);
std::optional<ELogTypes> FindLogType(std::string_view name);
