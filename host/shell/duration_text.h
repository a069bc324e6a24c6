// A duration for the operator: "912 us", "1.20 ms", "3.05 s", "0:02:05".
#pragma once

#include <chrono>
#include <string>

// In the unit that fits, with three digits.
std::string DurationText(std::chrono::nanoseconds duration);
// Always in hours, minutes and seconds.
std::string ClockText(std::chrono::milliseconds duration);
