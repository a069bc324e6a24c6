// Colours of lines on a screen.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

enum class EColour { NONE, RED, YELLOW };

// Whether a stream shows on a screen that understands control sequences.
bool IsScreen(std::FILE* stream);
// Whether it does, and nobody asked for no colours (https://no-color.org).
bool ShowsColours(std::FILE* stream);

// Whole lines, each in the colour by itself: whatever comes between them, and the
// prefix of a job, keeps its own.
std::string Coloured(std::string_view lines, EColour colour);
