// The exception of the contract: a printf-formatted text. Thrown by value,
// caught by reference.
#pragma once

#include <cstdarg>

#include "framework/fmt_output.h"

class CDiagException {
  public:
    explicit CDiagException(const char* fmt, ...) __attribute__((format(printf, 2, 3))) {
        va_list args;
        va_start(args, fmt);
        m_sb.vprintf(fmt, args);
        va_end(args);
    }

    const char* what() const { return m_sb.c_str(); }

  private:
    CFmtString m_sb;
};

// Checks a condition that only a programming error can break.
#define DIAG_ASSERT(cond)                                                                \
    do {                                                                                 \
        if (!(cond)) {                                                                   \
            throw CDiagException("%s:%d Assert failed (%s)", __FILE__, __LINE__, #cond); \
        }                                                                                \
    } while (false)
