#include "host/shell/duration_text.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace {

std::string Scaled(double value, const char* unit) {
    std::array<char, 32> text{};
    const int digits = value < 10 ? 2 : (value < 100 ? 1 : 0);
    std::snprintf(text.data(), text.size(), "%.*f %s", digits, value, unit);
    return text.data();
}

}  // namespace

std::string DurationText(std::chrono::nanoseconds duration) {
    using namespace std::chrono_literals;
    const auto ns = static_cast<double>(duration.count());
    if (duration < 1ms) {
        return Scaled(ns / 1e3, "us");
    }
    if (duration < 1s) {
        return Scaled(ns / 1e6, "ms");
    }
    if (duration < 60s) {
        return Scaled(ns / 1e9, "s");
    }
    return ClockText(std::chrono::duration_cast<std::chrono::milliseconds>(duration));
}

std::string ClockText(std::chrono::milliseconds duration) {
    const int64_t seconds = duration.count() / 1000;
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%" PRId64 ":%02" PRId64 ":%02" PRId64, seconds / 3600,
                  seconds / 60 % 60, seconds % 60);
    return text.data();
}
