// The whole contents of a small file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

// Throws CDiagException with the file and the reason when it cannot be opened
// or read, or holds more than `max_size` bytes.
std::vector<uint8_t> ReadFileBytes(const std::filesystem::path& file, size_t max_size);
