// The images and the expected outputs of EEPROMs that begin with a record: text
// files in images/ and expected/. The expected ones come from the layouts, never
// from what the program printed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The bytes of images/NAME.txt: two hexadecimal digits each, "#" begins a comment.
std::vector<uint8_t> ImageNamed(const std::string& name);

// The text of expected/NAME.txt, where a byte that cannot be printed stands as \xNN.
std::string ExpectedNamed(const std::string& name);
