// A time as reports give it, by ISO 8601: "2026-11-21T12:30:05.123Z".
#pragma once

#include <chrono>
#include <string>

std::string UtcTime(std::chrono::system_clock::time_point time);
