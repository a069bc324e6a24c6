// Text in columns.
#pragma once

#include <string>
#include <vector>

class CTable {
  public:
    // The cells of one line, printable, as many in each line.
    void Add(std::vector<std::string> cells) { m_lines.push_back(std::move(cells)); }

    // The lines, each column as wide as its widest cell; one without any text
    // takes no room. On a screen that has `columns` (0: none) the last cell of a
    // line is cut short where the line would not fit.
    std::string Text(unsigned int columns) const;

  private:
    std::vector<std::vector<std::string>> m_lines;
};
