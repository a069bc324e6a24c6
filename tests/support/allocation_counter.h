// Counts what a test program takes from the heap. It replaces the program's
// operators, so one source file of a program includes it.
#pragma once

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<size_t> g_allocations{0};

}  // namespace

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    ++g_allocations;
    return std::malloc(size != 0 ? size : 1);
}
void* operator new(size_t size) {
    if (void* memory = operator new(size, std::nothrow)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
