#include "host/shell/input/history.h"

#include <cstdlib>
#include <new>
#include <system_error>
#include <utility>

#include "host/printable.h"

namespace {

bool IsKept(const std::string& line) {
    return !line.empty() && line.front() != ' ' && line.size() <= CHistory::LONGEST &&
           Printable(line) == line;
}

// The folder that a variable names, empty unless it is an absolute path.
std::filesystem::path FolderFrom(const char* variable) {
    const char* value = std::getenv(variable);
    const std::filesystem::path path = value != nullptr ? value : "";
    return path.is_absolute() ? path : std::filesystem::path();
}

}  // namespace

CHistory::CHistory(const std::filesystem::path& file) : m_history(::history_init()) {
    HistEvent event;
    if (m_history == nullptr ||
        ::history(m_history.get(), &event, H_SETSIZE, static_cast<int>(KEPT)) < 0) {
        throw std::bad_alloc();
    }
    if (file.empty()) {
        GiveUpFile("neither XDG_STATE_HOME nor HOME names a folder");
        return;
    }
    try {
        m_file.emplace(file);
        for (const std::string& line : m_file->Load(KEPT, IsKept)) {
            Remember(line);
        }
        m_file->Prepare();
    } catch (const std::system_error& e) {
        GiveUpFile(Printable(file.string()) + ": " + e.code().message());
    }
}

void CHistory::Enter(const std::string& line) {
    if (!IsKept(line) || line == m_last) {
        return;
    }
    Remember(line);
    if (!m_file.has_value()) {
        return;
    }
    try {
        m_file->Append(line);
    } catch (const std::system_error& e) {
        GiveUpFile(e.code().message());
    }
}

std::vector<std::string> CHistory::Lines() const {
    std::vector<std::string> lines;
    HistEvent event;
    for (int found = ::history(m_history.get(), &event, H_LAST); found >= 0;
         found = ::history(m_history.get(), &event, H_PREV)) {
        lines.emplace_back(event.str);
    }
    return lines;
}

std::optional<std::string> CHistory::TakeTrouble() {
    return std::exchange(m_trouble, std::nullopt);
}

void CHistory::Remember(const std::string& line) {
    HistEvent event;
    ::history(m_history.get(), &event, H_ENTER, line.c_str());
    m_last = line;
}

void CHistory::GiveUpFile(const std::string& reason) {
    m_file.reset();
    m_trouble = "history: " + reason + "; lines are kept for this session only";
}

std::filesystem::path DefaultHistoryFile() {
    std::filesystem::path base = FolderFrom("XDG_STATE_HOME");
    if (base.empty()) {
        base = FolderFrom("HOME");
        if (base.empty()) {
            return {};
        }
        base /= ".local/state";
    }
    return base / "morva-diags" / "history";
}
