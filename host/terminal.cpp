#include "host/terminal.h"

#include <algorithm>
#include <cerrno>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// The line that is open, and what waits behind it.
class CTerminal::CLines {
  public:
    explicit CLines(std::FILE* out) : m_out(out) {}

    void Write(std::string_view text) {
        const std::thread::id self = std::this_thread::get_id();
        const std::lock_guard<std::mutex> guard(m_lock);
        if (m_owner == std::thread::id() || m_owner == self) {
            Put(self, text);
            PutWaiting();
            Flush();
            return;
        }
        const auto mine = WaitingOf(self);
        if (mine == m_waiting.end()) {
            m_waiting.push_back({self, std::string(text)});
        } else {
            mine->text += text;
        }
    }

    void EndLine() {
        const std::thread::id self = std::this_thread::get_id();
        const std::lock_guard<std::mutex> guard(m_lock);
        if (m_owner == self) {
            EndOpenLine();
            return;
        }
        const auto mine = WaitingOf(self);
        if (mine != m_waiting.end() && mine->text.back() != '\n') {
            mine->text += '\n';
        }
    }

    // Writes what still waits, each open line ended for its thread.
    void Finish() {
        const std::lock_guard<std::mutex> guard(m_lock);
        while (!m_waiting.empty()) {
            EndOpenLine();
        }
    }

    int Error() const { return m_error; }

  private:
    // What a thread wrote while the open line was another's.
    struct CWaiting {
        std::thread::id thread;
        std::string text;
    };

    std::list<CWaiting>::iterator WaitingOf(std::thread::id thread) {
        return std::find_if(m_waiting.begin(), m_waiting.end(),
                            [thread](const CWaiting& w) { return w.thread == thread; });
    }

    void Put(std::thread::id thread, std::string_view text) {
        std::fwrite(text.data(), 1, text.size(), m_out);
        m_owner = text.back() == '\n' ? std::thread::id() : thread;
    }

    void PutWaiting() {
        while (m_owner == std::thread::id() && !m_waiting.empty()) {
            const CWaiting next = std::move(m_waiting.front());
            m_waiting.pop_front();
            Put(next.thread, next.text);
        }
    }

    void EndOpenLine() {
        Put(m_owner, "\n");
        PutWaiting();
        Flush();
    }

    // What cannot be written is lost; the first reason is kept.
    void Flush() {
        if (std::fflush(m_out) != 0 && m_error == 0) {
            m_error = errno;
        }
    }

    std::FILE* const m_out;
    std::mutex m_lock;
    std::thread::id m_owner;  // of the open line, none at the start of a line
    std::list<CWaiting> m_waiting;
    std::atomic<int> m_error{0};
};

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

    void Remember(const std::shared_ptr<CTerminal::CLines>& lines) {
        const bool known = std::any_of(m_written.begin(), m_written.end(), [&](const auto& other) {
            return !other.owner_before(lines) && !lines.owner_before(other);
        });
        if (!known) {
            m_written.push_back(lines);
        }
    }

  private:
    std::vector<std::weak_ptr<CTerminal::CLines>> m_written;
};

CTerminal::CTerminal(std::FILE* out) : m_lines(std::make_shared<CLines>(out)) {}

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

void CTerminal::EndLine() {
    m_lines->EndLine();
}

int CTerminal::Error() const {
    return m_lines->Error();
}
