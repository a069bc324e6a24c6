#include "framework/diag_functions.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <system_error>

#include "host/number_text.h"

namespace {

constexpr std::array<const char*, MSG_SKIPPED + 1> RES_CODE_TEXTS = {
    "SUCCESS",     "ERR_NORESP",   "ERR_FAIL",     "ERR_DEST",  "ERR_MSGTYPE",
    "ERR_MSGLEN",  "ERR_READONLY", "ERR_PARAM",    "ERR_ISRUN", "ERR_NOTRUN",
    "ERR_ABORTED", "ERR_CANCELED", "ERR_SLOTDOWN", "SKIPPED",
};

}  // namespace

std::string NumberText(uint64_t value, unsigned int width, uint8_t format) {
    const bool hex = (format & VF_HEX) != 0;
    std::array<char, 24> digits{};
    const char* end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, hex ? 16 : 10).ptr;
    const auto length = static_cast<size_t>(end - digits.data());
    const size_t least = hex && (format & VF_PAD) != 0 ? size_t{2} * width : 1;
    std::string text = hex ? "0x" : "";
    text.append(length < least ? least - length : 0, '0');
    return text.append(digits.data(), length);
}

std::string toString(uint8_t value, uint8_t format) {
    return NumberText(value, sizeof value, format);
}
std::string toString(uint32_t value, uint8_t format) {
    return NumberText(value, sizeof value, format);
}
std::string toString(uint64_t value, uint8_t format) {
    return NumberText(value, sizeof value, format);
}
std::string toString(int64_t value, uint8_t format) {
    if ((format & VF_HEX) != 0 || value >= 0) {
        return NumberText(static_cast<uint64_t>(value), sizeof value, format);
    }
    return "-" + NumberText(0 - static_cast<uint64_t>(value), sizeof value, format);
}

const char* resCode2str(int code) {
    if (code >= 0 && static_cast<size_t>(code) < RES_CODE_TEXTS.size()) {
        return RES_CODE_TEXTS[static_cast<size_t>(code)];
    }
    thread_local std::array<char, 24> unknown;
    std::snprintf(unknown.data(), unknown.size(), "code %d", code);
    return unknown.data();
}

std::string GetErrorStr(int err) {
    return std::generic_category().message(err);
}

int GetLastOsErr() {
    return errno;
}

uint32_t DiagRand_R(unsigned int* state) {
    // Knuth's MMIX constants are for 64 bits; these are the 32-bit ones of
    // Numerical Recipes, with full period.
    *state = *state * 1664525U + 1013904223U;
    return *state;
}
