#include "host/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "host/terminal_lines.h"

namespace {

// Ends the lines of a thread when it ends.
class CThreadEnd {
  public:
    CThreadEnd() = default;
    ~CThreadEnd() {
        for (const auto& written : m_written) {
            if (const auto lines = written.lock()) {
                lines->EndLine();
            }
        }
    }
    CThreadEnd(const CThreadEnd&) = delete;
    CThreadEnd& operator=(const CThreadEnd&) = delete;

    void Remember(const std::shared_ptr<CTerminalLines>& lines) {
        const bool known = std::any_of(m_written.begin(), m_written.end(), [&](const auto& other) {
            return !other.owner_before(lines) && !lines.owner_before(other);
        });
        if (!known) {
            m_written.push_back(lines);
        }
    }

  private:
    std::vector<std::weak_ptr<CTerminalLines>> m_written;
};

}  // namespace

CTerminal::CTerminal(std::FILE* out, std::FILE* errors)
    : m_lines(std::make_shared<CTerminalLines>(out, errors)),
      m_out(out),
      m_colours(ShowsColours(out)),
      m_error_colours(ShowsColours(errors)) {}

CTerminal::~CTerminal() {
    m_lines->Finish();
}

void CTerminal::Write(std::string_view text) {
    if (text.empty()) {
        return;
    }
    thread_local CThreadEnd thread_end;
    thread_end.Remember(m_lines);
    m_lines->Write(text);
}

void CTerminal::WriteUnlessOpen(std::string_view lines) {
    m_lines->WriteUnlessOpen(lines);
}

void CTerminal::WriteLines(std::string_view lines, EColour colour) {
    Write(m_colours ? Coloured(lines, colour) : std::string(lines));
}

void CTerminal::WriteError(std::string_view lines) {
    m_lines->WriteError(m_error_colours ? Coloured(lines, EColour::RED) : std::string(lines));
}

void CTerminal::EndLine() {
    m_lines->EndLine();
}

void CTerminal::ShowOpenLine() {
    m_lines->ShowOpenLine();
}

int CTerminal::Error() const {
    return m_lines->Error();
}

unsigned int CTerminal::Columns() const {
    struct winsize size {};
    if (!IsScreen(m_out) || ::ioctl(::fileno(m_out), TIOCGWINSZ, &size) != 0) {
        return 0;
    }
    // Serial lines know no size.
    constexpr unsigned int USUAL_COLUMNS = 80;
    return size.ws_col != 0 ? size.ws_col : USUAL_COLUMNS;
}

void CTerminal::SetFooter(const std::string& footer) {
    m_lines->SetFooter(footer);
}

CTerminal::CPrefix::CPrefix(CTerminal& terminal, const std::string& prefix) : m_terminal(terminal) {
    m_terminal.m_lines->SetPrefix(prefix);
}

CTerminal::CPrefix::~CPrefix() {
    m_terminal.m_lines->ClearPrefix();
}

void CTerminal::BeginPrompt(const std::string& prompt) {
    m_lines->BeginPrompt(prompt);
}

void CTerminal::EndPrompt() {
    m_lines->EndPrompt();
}

void CTerminal::LendScreen(const std::function<void()>& on_text) {
    m_lines->Lend(on_text);
}

void CTerminal::WriteWaiting(const std::function<void()>& make_room) {
    m_lines->WriteWaiting(make_room);
}

void CTerminal::TakeScreenBack(bool at_line_start) {
    m_lines->TakeBack(at_line_start);
}
