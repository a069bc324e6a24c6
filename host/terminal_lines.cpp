#include "host/terminal_lines.h"

#include <algorithm>
#include <cerrno>

namespace {

constexpr char ERASE_ROW[] = "\r\x1b[K";
constexpr unsigned int FOOTERS_PER_LOOK = 4;

bool EndsLine(std::string_view text) {
    return !text.empty() && text.back() == '\n';
}

}  // namespace

void CTerminalLines::Write(std::string_view text) {
    const std::thread::id self = std::this_thread::get_id();
    const std::lock_guard<std::mutex> guard(m_lock);
    const auto prefixed = m_prefixed.find(self);
    if (prefixed == m_prefixed.end()) {
        Submit(self, m_out, text);
    } else {
        Submit(self, m_out, WithPrefix(prefixed->second, text));
    }
}

void CTerminalLines::WriteUnlessOpen(std::string_view lines) {
    const std::thread::id self = std::this_thread::get_id();
    const std::lock_guard<std::mutex> guard(m_lock);
    if (m_owner == std::thread::id() || m_owner == self) {
        Submit(self, m_out, lines);
    }
}

void CTerminalLines::WriteError(std::string_view lines) {
    const std::thread::id self = std::this_thread::get_id();
    const std::lock_guard<std::mutex> guard(m_lock);
    EndLineOf(self);
    const auto prefixed = m_prefixed.find(self);
    if (prefixed == m_prefixed.end()) {
        Submit(self, m_errors, lines);
    } else {
        Submit(self, m_errors, WithPrefix(prefixed->second, lines));
    }
}

void CTerminalLines::EndLine() {
    const std::lock_guard<std::mutex> guard(m_lock);
    EndLineOf(std::this_thread::get_id());
}

void CTerminalLines::ShowOpenLine() {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_footer_lines = 0;
    if (!m_footer_shown) {
        ShowFooter();
    }
    Flush();
}

void CTerminalLines::SetFooter(const std::string& footer) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_footer = footer;
    m_footer_lines = 0;
    if (footer.empty()) {
        HideFooter();
    } else {
        ShowFooter();
    }
    Flush();
}

void CTerminalLines::SetPrefix(const std::string& prefix) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_prefixed[std::this_thread::get_id()] = {prefix, ""};
}

void CTerminalLines::ClearPrefix() {
    const std::lock_guard<std::mutex> guard(m_lock);
    EndLineOf(std::this_thread::get_id());
    m_prefixed.erase(std::this_thread::get_id());
}

void CTerminalLines::BeginPrompt(const std::string& prompt) {
    const std::lock_guard<std::mutex> guard(m_lock);
    Submit(std::this_thread::get_id(), m_out, prompt);
    m_prompt = prompt;
    Flush();
}

void CTerminalLines::EndPrompt() {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_prompt.clear();
}

void CTerminalLines::Lend(const std::function<void()>& on_text) {
    const std::lock_guard<std::mutex> guard(m_lock);
    HideFooter();
    m_on_text = on_text;
}

void CTerminalLines::WriteWaiting(const std::function<void()>& make_room) {
    const std::lock_guard<std::mutex> guard(m_lock);
    bool has_room = false;
    for (auto next = m_waiting.begin(); next != m_waiting.end();) {
        if (!EndsLine(next->text)) {
            ++next;
            continue;
        }
        if (!has_room) {
            make_room();
            has_room = true;
        }
        Put(next->thread, next->file, next->text);
        next = m_waiting.erase(next);
    }
    Flush();
}

void CTerminalLines::TakeBack(bool at_line_start) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_on_text = nullptr;
    m_owner = at_line_start ? std::thread::id() : std::this_thread::get_id();
    PutWaiting();
    ShowFooter();
    Flush();
}

void CTerminalLines::Finish() {
    const std::lock_guard<std::mutex> guard(m_lock);
    while (!m_waiting.empty()) {
        EndOpenLine();
    }
}

// Writes the text, or lets it wait until the line that is open has ended.
void CTerminalLines::Submit(std::thread::id thread, std::FILE* file, std::string_view text) {
    if (text.empty()) {
        return;
    }
    if (m_on_text != nullptr) {
        Wait(thread, file, text);
        m_on_text();
        return;
    }
    const bool mine = m_owner == std::thread::id() || m_owner == thread;
    if (!mine && !m_prompt.empty() && EndsLine(text)) {
        PutAbovePrompt(file, text);
    } else if (!mine) {
        Wait(thread, file, text);
        return;
    } else {
        HideFooter();
        Put(thread, file, text);
        PutWaiting();
        // Below many lines at once it would be most of what is written.
        if (m_footer_lines++ < FOOTERS_PER_LOOK) {
            ShowFooter();
        }
        if (m_owner != std::thread::id() && file == m_out) {
            return;  // ShowOpenLine or the end of the line will show it
        }
    }
    Flush();
}

void CTerminalLines::Wait(std::thread::id thread, std::FILE* file, std::string_view text) {
    // Behind what the thread wrote last, if that went to the same file.
    const auto last = std::find_if(m_waiting.rbegin(), m_waiting.rend(),
                                   [thread](const CWaiting& w) { return w.thread == thread; });
    if (last != m_waiting.rend() && last->file == file) {
        last->text += text;
    } else {
        m_waiting.push_back({thread, file, std::string(text)});
    }
}

void CTerminalLines::Put(std::thread::id thread, std::FILE* file, std::string_view text) {
    // The two may show on one screen.
    if (file != m_out) {
        Flush();
    }
    std::fwrite(text.data(), 1, text.size(), file);
    m_owner = EndsLine(text) ? std::thread::id() : thread;
}

void CTerminalLines::PutAbovePrompt(std::FILE* file, std::string_view lines) {
    const std::thread::id reader = m_owner;
    Put(reader, m_out, "\n");
    Put(reader, file, lines);
    Put(reader, m_out, m_prompt);
}

void CTerminalLines::PutWaiting() {
    while (m_owner == std::thread::id() && !m_waiting.empty()) {
        const CWaiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        Put(next.thread, next.file, next.text);
    }
}

void CTerminalLines::EndLineOf(std::thread::id thread) {
    const auto prefixed = m_prefixed.find(thread);
    if (prefixed != m_prefixed.end()) {
        if (!prefixed->second.open.empty()) {
            Submit(thread, m_out, WithPrefix(prefixed->second, "\n"));
        }
        return;
    }
    if (m_owner == thread) {
        EndOpenLine();
        return;
    }
    const auto open = std::find_if(m_waiting.begin(), m_waiting.end(), [thread](const CWaiting& w) {
        return w.thread == thread && !EndsLine(w.text);
    });
    if (open != m_waiting.end()) {
        open->text += '\n';
        if (m_on_text != nullptr) {
            m_on_text();
        }
    }
}

void CTerminalLines::EndOpenLine() {
    HideFooter();
    Put(m_owner, m_out, "\n");
    PutWaiting();
    ShowFooter();
    Flush();
}

// The lines that `text` makes whole, each behind the prefix; the rest is kept.
std::string CTerminalLines::WithPrefix(CPrefixed& prefixed, std::string_view text) const {
    std::string whole;
    while (!text.empty()) {
        if (prefixed.open.empty()) {
            prefixed.open = prefixed.prefix;
        }
        const size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        prefixed.open += text.substr(0, length);
        text.remove_prefix(length);
        if (EndsLine(prefixed.open)) {
            whole += prefixed.open;
            prefixed.open.clear();
        }
    }
    return whole;
}

void CTerminalLines::HideFooter() {
    if (m_footer_shown) {
        std::fwrite(ERASE_ROW, 1, sizeof ERASE_ROW - 1, m_out);
        m_footer_shown = false;
    }
}

void CTerminalLines::ShowFooter() {
    if (m_footer.empty() || m_owner != std::thread::id() || m_on_text != nullptr) {
        return;
    }
    // What is typed ahead shows on that row too.
    std::fwrite(ERASE_ROW, 1, sizeof ERASE_ROW - 1, m_out);
    std::fwrite(m_footer.data(), 1, m_footer.size(), m_out);
    m_footer_shown = true;
}

// What cannot be written is lost; the first reason is kept.
void CTerminalLines::Flush() {
    if (std::fflush(m_out) != 0 && m_error == 0) {
        m_error = errno;
    }
}
