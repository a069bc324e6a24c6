// The words behind "export" and "import": some by position, and one option that
// may stand anywhere among them.
#pragma once

#include <string>
#include <vector>

class CRawArguments {
  public:
    // Throws CUsageError when the words are too few or too many, or hold an
    // option that is not `option`.
    CRawArguments(const std::string& builtin, const std::vector<std::string>& words,
                  const std::string& option, size_t min_count, size_t max_count);

    size_t Count() const { return m_words.size(); }
    const std::string& operator[](size_t i) const { return m_words.at(i); }
    bool HasOption() const { return m_has_option; }

  private:
    std::vector<std::string> m_words;
    bool m_has_option = false;
};
