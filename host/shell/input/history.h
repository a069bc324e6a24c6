// The lines that were typed at the prompt, in this session and in those before.
#pragma once

#include <histedit.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/shell/input/history_file.h"

class CHistory {
  public:
    // Lines that are kept.
    static constexpr size_t KEPT = 1000;
    // Bytes of a line that is kept at the most.
    static constexpr size_t LONGEST = 4096;

    // Begins with what the file holds, and writes each line to it as it is
    // entered. Without a file lines are kept for this session only.
    explicit CHistory(const std::filesystem::path& file);

    // Takes a line, unless it begins with a blank, is the last one once more, is
    // too long, or is no plain text.
    void Enter(const std::string& line);

    // The oldest first.
    std::vector<std::string> Lines() const;
    // Why lines are kept for this session only, for the operator; told once.
    std::optional<std::string> TakeTrouble();

    // For the line editor.
    ::History* Handle() const { return m_history.get(); }

  private:
    struct CEnd {
        void operator()(::History* history) const { ::history_end(history); }
    };

    void Remember(const std::string& line);
    void GiveUpFile(const std::string& reason);

    const std::unique_ptr<::History, CEnd> m_history;
    std::optional<CHistoryFile> m_file;  // while lines can be written to it
    std::string m_last;
    std::optional<std::string> m_trouble;
};

// Where the user's history is kept: $XDG_STATE_HOME/morva-diags/history or
// $HOME/.local/state/morva-diags/history; empty where neither is set.
std::filesystem::path DefaultHistoryFile();
