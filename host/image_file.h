// Images of memory chips in files: plain bytes, or one of the hex dumps that tools print.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Reads the image in a plain file of MAX_IMAGE_SIZE bytes at the most, or what standard
// input gives to its end for "-". Throws CUsageError that names the file.
std::vector<uint8_t> ReadImage(const std::string& path);

// The image that a file called `name` in messages holds; throws CUsageError.
std::vector<uint8_t> ImageOf(std::string_view contents, const std::string& name);
