// Formatted output to a character sink.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

class IFmtOutput {
  public:
    virtual ~IFmtOutput() = default;

    // Takes one character; false when the sink can take no more.
    virtual bool putCh(char c) = 0;
    virtual bool flush() = 0;

    // Return the number of characters the sink took, or a negative number for
    // a format the C library refuses.
    int printf(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    int vprintf(const char* fmt, va_list args) __attribute__((format(printf, 2, 0)));
    int puts(const char* text);
};

// Formats into a string.
class CFmtString : public IFmtOutput {
  public:
    bool putCh(char c) override {
        s += c;
        return true;
    }
    bool flush() override { return true; }

    const char* c_str() const { return s.c_str(); }
    size_t length() const { return s.length(); }
    bool empty() const { return s.empty(); }
    void clear() { s.clear(); }

  private:
    std::string s;
};

inline int IFmtOutput::printf(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const int count = vprintf(fmt, args);
    va_end(args);
    return count;
}

inline int IFmtOutput::puts(const char* text) {
    int count = 0;
    while (*text != '\0' && putCh(*text)) {
        ++text;
        ++count;
    }
    return count;
}
