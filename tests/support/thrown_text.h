// What the CDiagException says that a piece of code throws.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "framework/diag_exception.h"

template <class Code>
std::string ThrownText(Code&& code) {
    try {
        code();
    } catch (const CDiagException& e) {
        return e.what();
    }
    ADD_FAILURE() << "no CDiagException was thrown";
    return {};
}
