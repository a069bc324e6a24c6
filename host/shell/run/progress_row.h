// A row that tells a progress: bar and name, figures behind them, and last a text.
// Where room is short the parts that tell least go first.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

class CProgressRow {
  public:
    // In the order in which they go.
    enum EPart : uint8_t { RATE, BAR, COUNT, LEFT, TIME, PERCENT, STATE, PARTS };

    CProgressRow(std::string name, std::string text);

    // Parts are empty until they are set.
    std::string& operator[](EPart part) { return m_parts.at(part); }

    std::string Whole() const;
    // What is most worth to be told in so many columns.
    std::string Within(size_t columns) &&;

  private:
    std::string Head() const;

    std::string m_name;
    std::string m_text;
    std::array<std::string, PARTS> m_parts;
};
