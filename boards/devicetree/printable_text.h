// Text out of a blob, made fit for one line of a message: what is not printable
// ASCII becomes "?", what is too long is cut and ends in "...".
#pragma once

#include <string>
#include <string_view>

std::string PrintableText(std::string_view text);
