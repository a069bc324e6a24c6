// What may stand in place of a word that someone types the beginning of: how
// many fit, what they have in common, and the first of them to be listed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class CCandidates {
  public:
    // More are counted, but not listed.
    static constexpr size_t LISTED = 100;

    explicit CCandidates(std::string typed) : m_typed(std::move(typed)) {}

    const std::string& Typed() const { return m_typed; }

    // Takes the name if it begins as typed. It is listed with `mark` behind it. Where
    // more has to be typed, `link` leads on to it, as a "/" does.
    void Offer(std::string_view name, std::string_view mark = "", std::string_view link = "");

    size_t Count() const { return m_count; }
    // What all of them begin with, whole characters only; if there is one, all of it.
    const std::string& Common() const { return m_common; }
    // Whether the one that fits ends its word.
    bool EndsWord() const { return m_count == 1 && !m_goes_on; }
    // In the order in which they came.
    std::vector<std::string> TakeListed() { return std::move(m_listed); }

  private:
    const std::string m_typed;
    size_t m_count = 0;
    bool m_goes_on = false;  // of the last one
    std::string m_common;
    std::vector<std::string> m_listed;
};

// The entries in as many columns as fit the screen, down and then across, and
// under them how many more there are.
std::string InColumns(const std::vector<std::string>& entries, size_t more, unsigned int columns);
