#include "framework/fmt_output.h"

#include <array>
#include <cstdio>
#include <vector>

namespace {

int PutAll(IFmtOutput& out, const char* text, size_t length) {
    int count = 0;
    for (size_t i = 0; i < length; ++i) {
        if (!out.putCh(text[i])) {
            break;
        }
        ++count;
    }
    return count;
}

}  // namespace

int IFmtOutput::vprintf(const char* fmt, va_list args) {
    std::array<char, 512> small;
    va_list first_pass;
    va_copy(first_pass, args);
    const int length = std::vsnprintf(small.data(), small.size(), fmt, first_pass);
    va_end(first_pass);
    if (length < 0) {
        return length;
    }
    const auto size = static_cast<size_t>(length);
    if (size < small.size()) {
        return PutAll(*this, small.data(), size);
    }
    std::vector<char> large(size + 1);
    std::vsnprintf(large.data(), large.size(), fmt, args);
    return PutAll(*this, large.data(), size);
}
