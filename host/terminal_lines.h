// The lines of a terminal: whose line is open, what waits behind it, and what
// stands below. The terminal's engine, shared with the threads that write.
#pragma once

#include <atomic>
#include <cstdio>
#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

class CTerminalLines {
  public:
    CTerminalLines(std::FILE* out, std::FILE* errors) : m_out(out), m_errors(errors) {}

    // See CTerminal.
    void Write(std::string_view text);
    void WriteUnlessOpen(std::string_view lines);
    void WriteError(std::string_view lines);
    void EndLine();
    void ShowOpenLine();
    int Error() const { return m_error; }
    void SetFooter(const std::string& footer);
    void SetPrefix(const std::string& prefix);
    void ClearPrefix();
    void BeginPrompt(const std::string& prompt);
    void EndPrompt();
    void Lend(const std::function<void()>& on_text);
    void WriteWaiting(const std::function<void()>& make_room);
    void TakeBack(bool at_line_start);

    // Writes what still waits, each open line ended for its thread.
    void Finish();

  private:
    // What a thread wrote while the open line was another's.
    struct CWaiting {
        std::thread::id thread;
        std::FILE* file;
        std::string text;
    };
    // A thread whose lines have a prefix.
    struct CPrefixed {
        std::string prefix;
        std::string open;  // its line as far as it is written
    };

    void Submit(std::thread::id thread, std::FILE* file, std::string_view text);
    void Wait(std::thread::id thread, std::FILE* file, std::string_view text);
    void Put(std::thread::id thread, std::FILE* file, std::string_view text);
    void PutAbovePrompt(std::FILE* file, std::string_view lines);
    void PutWaiting();
    void EndLineOf(std::thread::id thread);
    void EndOpenLine();
    std::string WithPrefix(CPrefixed& prefixed, std::string_view text) const;
    void HideFooter();
    void ShowFooter();
    void Flush();

    std::FILE* const m_out;
    std::FILE* const m_errors;
    std::mutex m_lock;
    std::thread::id m_owner;  // of the open line, none at the start of a line
    std::list<CWaiting> m_waiting;
    std::map<std::thread::id, CPrefixed> m_prefixed;
    std::string m_footer;
    bool m_footer_shown = false;
    unsigned int m_footer_lines = 0;  // written since it was last set or looked after
    std::string m_prompt;             // the open line, while it is a prompt
    std::function<void()> m_on_text;  // set while the screen is lent
    std::atomic<int> m_error{0};
};
