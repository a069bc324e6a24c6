// What every fuzz target is made of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// The entry point of a fuzz target, of libFuzzer and of our own driver alike.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Ends the program, which is how a target reports an input, unless it held.
inline void Require(bool held, const char* what) {
    if (!held) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

inline std::string_view TextOf(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}
