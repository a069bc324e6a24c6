// Where a virtual operation stands in its class's table of virtual functions.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

inline constexpr size_t NOT_VIRTUAL = static_cast<size_t>(-1);

// In the Itanium C++ ABI a pointer to a member function is two words. For a
// virtual function the first is 1 plus the byte offset into the table; for any
// other it is the function's address. Where functions begin at even addresses,
// as on x86-64 and PowerPC, the lowest bit thus tells which it is. The two
// entries of a virtual destructor count as slots as well.
//
// The signature is part of the question:
// SlotOf<bool(CInMsg&)>(&CDiagTest::TestSetup).
template <class Signature, class Class>
size_t SlotOf(Signature Class::*member) {
    std::array<size_t, 2> words{};
    static_assert(sizeof member == sizeof words);
    std::memcpy(words.data(), &member, sizeof words);
    if (words[0] % 2 == 0) {
        return NOT_VIRTUAL;
    }
    return (words[0] - 1) / sizeof(void*);
}

// The slot of the first operation that a class derived from Base would add.
template <class Base>
class CFirstAdded : public Base {
  public:
    virtual void Added() = 0;
};
template <class Base>
size_t SlotAfter() {
    return SlotOf<void()>(&CFirstAdded<Base>::Added);
}
