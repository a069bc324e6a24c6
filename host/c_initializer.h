// An array of bytes in C source, as xxd -i FILE writes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// Whether the first row of a dump begins one: "unsigned char spd[] = {", or a brace.
bool BeginsInitializer(std::string_view row);

// Takes its rows one by one.
class CInitializer {
  public:
    // The bytes in a row. Throws CUsageError that says what was expected.
    std::vector<uint8_t> BytesOf(std::string_view row);
    bool IsClosed() const { return m_place == EPlace::BEHIND; }

  private:
    enum class EPlace { BEFORE, BETWEEN, BEHIND };  // the braces

    void CheckBehind(std::string_view row) const;

    EPlace m_place = EPlace::BEFORE;
    size_t m_count = 0;  // of bytes
};
