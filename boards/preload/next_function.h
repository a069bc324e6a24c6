// For an object that is preloaded: its own functions in place of the C library's, and the
// way on to the one that a program would have without it.
#pragma once

#include <dlfcn.h>

#include <atomic>

#define EXPORTED extern "C" __attribute__((visibility("default")))

// The function of the same name that the program would have without this object. May be
// looked up twice when two threads meet, which gives the same.
template <class Function>
class CNext {
  public:
    explicit constexpr CNext(const char* name) : m_name(name) {}

    Function Get() {
        Function function = m_function.load(std::memory_order_relaxed);
        if (function == nullptr) {
            function = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, m_name));
            m_function.store(function, std::memory_order_relaxed);
        }
        return function;
    }

  private:
    const char* const m_name;
    std::atomic<Function> m_function = nullptr;
};
