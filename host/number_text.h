// Text of an unsigned number of a given width.
#pragma once

#include <cstdint>
#include <string>

// `width` in bytes counts only for padded hexadecimal; `format` as for toString().
std::string NumberText(uint64_t value, unsigned int width, uint8_t format);
