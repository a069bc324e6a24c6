#include "host/shell/report/utc_time.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <ctime>

std::string UtcTime(std::chrono::system_clock::time_point time) {
    const auto ms = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch()).count();
    const auto seconds = static_cast<std::time_t>(ms / 1000);
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 32> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%s.%03" PRId64 "Z", date.data(),
                  static_cast<int64_t>(ms % 1000));
    return text.data();
}
