#include <histedit.h>

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/shell/input/candidates.h"
#include "host/shell/input/completion.h"
#include "host/shell/input/event.h"
#include "host/shell/input/history.h"
#include "host/shell/input/history_search.h"
#include "host/shell/input/keyboard.h"
#include "host/shell/input/line_layout.h"
#include "host/shell/input/line_reader.h"
#include "host/shell/input/terminal_echo.h"
#include "host/shell/input/wide_text.h"
#include "host/shell/shell.h"
#include "host/terminal.h"

namespace {

struct CEditLineEnd {
    void operator()(EditLine* el) const {
        // The library would throw away what was typed ahead.
        ::el_set(el, EL_EDITMODE, 0);
        ::el_end(el);
    }
};

// Keys for commands of the library's own, beside those that it binds itself.
struct CBinding {
    const char* key;
    const char* command;
};
constexpr std::array<CBinding, 16> BINDINGS = {{
    {"^R", "em-inc-search-prev"},
    // The library takes it for each special key that the terminal does not have.
    {"^@", "em-set-mark"},
    // What terminals send differs, and not all say so in their description.
    {"\\e[H", "ed-move-to-beg"},
    {"\\eOH", "ed-move-to-beg"},
    {"\\e[1~", "ed-move-to-beg"},
    {"\\e[7~", "ed-move-to-beg"},
    {"\\e[F", "ed-move-to-end"},
    {"\\eOF", "ed-move-to-end"},
    {"\\e[4~", "ed-move-to-end"},
    {"\\e[8~", "ed-move-to-end"},
    {"\\e[3~", "ed-delete-next-char"},
    {"\\e[1;5C", "em-next-word"},
    {"\\e[1;5D", "ed-prev-word"},
    // Insert and the page keys would leave a ~ in the line.
    {"\\e[2~", "ed-ignore"},
    {"\\e[5~", "ed-ignore"},
    {"\\e[6~", "ed-ignore"},
}};

class CTerminalReader : public ILineReader {
  public:
    CTerminalReader(const CShell& shell, const CHistory& history)
        : m_shell(shell),
          m_terminal(shell.Terminal()),
          m_keyboard(shell.Interrupt()),
          m_search(history),
          m_edit(::el_init("diagsh", stdin, stdout, stderr)) {
        EditLine* edit = m_edit.get();
        if (edit == nullptr) {
            throw std::runtime_error("this terminal cannot be used to edit lines");
        }
        ::el_set(edit, EL_CLIENTDATA, this);
        // Between two lines the library is to leave the terminal as it is.
        ::el_set(edit, EL_SETTY, "-x", "-echo", "-icanon", "-iexten", nullptr);
        ::el_wset(edit, EL_PROMPT, &Prompt);
        ::el_set(edit, EL_EDITOR, "emacs");
        ::el_set(edit, EL_HIST, ::history, history.Handle());
        ::el_set(edit, EL_GETCFN, &ReadKey);
        Bind(L"complete-word", &CompleteWord, {"\t"});
        Bind(L"older-line", &OlderLine, {"^P", "\\e[A", "\\eOA"});
        Bind(L"newer-line", &NewerLine, {"^N", "\\e[B", "\\eOB"});
        for (const CBinding& binding : BINDINGS) {
            ::el_set(edit, EL_BIND, binding.key, binding.command, nullptr);
        }
        m_keyboard.Watch(m_text.Descriptor(), [this] { LetTextThrough(); });
        m_keyboard.Watch(m_echo.Descriptor(), [this] { FollowScreen(); });
    }

    ELine Read(const std::string& prompt, std::string& line) override {
        m_terminal.LendScreen([this] { m_text.Set(); });
        const ELine result = ReadLine(prompt, line);
        m_terminal.TakeScreenBack(result != ELine::END);
        m_text.Clear();
        return result;
    }

  private:
    ELine ReadLine(const std::string& prompt, std::string& line) {
        m_prompt = Widened(prompt);
        m_interrupted = false;
        m_search.Reset();
        m_keyboard.TakeUnreadable();
        m_echo.TakeChange();
        ::el_resize(m_edit.get());
        m_columns = m_terminal.Columns();
        line.clear();
        int length = 0;
        // Wide, since the narrow text ends at a NUL.
        const wchar_t* text = ::el_wgets(m_edit.get(), &length);
        if (text == nullptr || length <= 0) {
            if (!m_interrupted) {
                return ELine::END;
            }
            ::el_reset(m_edit.get());
            std::fputc('\n', stdout);
            return ELine::INTERRUPTED;
        }
        line = Narrowed({text, static_cast<size_t>(length)});
        if (line.back() == '\n') {
            line.pop_back();
        }
        if (line.size() > MAX_LINE) {
            return ELine::TOO_LONG;
        }
        return m_keyboard.TakeUnreadable() ? ELine::UNREADABLE : ELine::READ;
    }

    static CTerminalReader& Self(EditLine* edit) {
        void* self = nullptr;
        ::el_get(edit, EL_CLIENTDATA, &self);
        return *static_cast<CTerminalReader*>(self);
    }

    static wchar_t* Prompt(EditLine* edit) { return Self(edit).m_prompt.data(); }

    static int ReadKey(EditLine* edit, wchar_t* character) {
        CTerminalReader& self = Self(edit);
        switch (self.m_keyboard.Read(*character)) {
            case CKeyboard::EKey::CHARACTER:
                return 1;
            case CKeyboard::EKey::INTERRUPTED:
                self.m_interrupted = true;
                return -1;
            default:
                return 0;
        }
    }

    void Bind(const wchar_t* name, unsigned char (*function)(EditLine*, int),
              std::initializer_list<const char*> keys) {
        ::el_wset(m_edit.get(), EL_ADDFN, name, name, function);
        const std::string narrow = Narrowed(name);
        for (const char* key : keys) {
            ::el_set(m_edit.get(), EL_BIND, key, narrow.c_str(), nullptr);
        }
    }

    static unsigned char CompleteWord(EditLine* edit, int) { return Self(edit).CompleteWord(); }
    static unsigned char OlderLine(EditLine* edit, int) {
        CTerminalReader& self = Self(edit);
        return self.ShowLine(self.m_search.Older(self.Line(), self.BeforeCursor().size()));
    }
    static unsigned char NewerLine(EditLine* edit, int) {
        CTerminalReader& self = Self(edit);
        return self.ShowLine(self.m_search.Newer(self.Line(), self.BeforeCursor().size()));
    }

    unsigned char CompleteWord() {
        EditLine* edit = m_edit.get();
        if (m_keyboard.HasMore()) {
            // Nobody types that fast: it is part of a pasted text.
            return ::el_winsertstr(edit, L" ") == 0 ? CC_REFRESH : CC_ERROR;
        }
        const std::string before = BeforeCursor();
        const CCompletion found = Complete(m_shell, Line(), before.size());
        const std::string typed = before.substr(found.begin);
        if (found.text != typed) {
            ::el_wdeletestr(edit, static_cast<int>(Widened(typed).size()));
            return ::el_winsertstr(edit, Widened(found.text).c_str()) == 0 ? CC_REFRESH : CC_ERROR;
        }
        if (found.count > 1) {
            WriteAbove(
                InColumns(found.candidates, found.count - found.candidates.size(), m_columns));
            return CC_NORM;
        }
        if (!found.hint.empty()) {
            WriteAbove(found.hint);
            return CC_NORM;
        }
        return CC_ERROR;
    }

    unsigned char ShowLine(const std::optional<std::string>& line) {
        if (!line.has_value()) {
            return CC_ERROR;
        }
        EditLine* edit = m_edit.get();
        const LineInfoW* shown = ::el_wline(edit);
        const auto length = static_cast<int>(shown->lastchar - shown->buffer);
        ::el_cursor(edit, static_cast<int>(shown->lastchar - shown->cursor));
        ::el_wdeletestr(edit, length);
        ::el_winsertstr(edit, Widened(*line).c_str());
        return CC_REFRESH;
    }

    std::string Line() const {
        const LineInfoW* line = ::el_wline(m_edit.get());
        return Narrowed({line->buffer, line->lastchar});
    }
    std::string BeforeCursor() const {
        const LineInfoW* line = ::el_wline(m_edit.get());
        return Narrowed({line->buffer, line->cursor});
    }

    // Writes what others wrote meanwhile above the line, which is then drawn anew.
    void LetTextThrough() {
        m_text.Clear();
        bool written = false;
        m_terminal.WriteWaiting([&] {
            GoToPrompt(CursorRow(m_columns));
            written = true;
        });
        if (written) {
            ::el_set(m_edit.get(), EL_REFRESH);
        }
    }

    void WriteAbove(const std::string& lines) {
        GoToPrompt(CursorRow(m_columns));
        std::fputs(lines.c_str(), stdout);
        ::el_set(m_edit.get(), EL_REFRESH);
    }

    // The window has a new size, or the program goes on after a stop.
    void FollowScreen() {
        const CTerminalEcho::EChange change = m_echo.TakeChange();
        const unsigned int before = std::exchange(m_columns, m_terminal.Columns());
        ::el_resize(m_edit.get());
        if (change == CTerminalEcho::EChange::SIZE) {
            // Some terminals break their rows anew and some do not. Too few rows
            // leave a piece of the old line, too many would take others' text.
            GoToPrompt(std::min(CursorRow(before), CursorRow(m_columns)));
        } else {
            GoToPrompt(0);
        }
        ::el_set(m_edit.get(), EL_REFRESH);
    }

    size_t CursorRow(unsigned int columns) const {
        const LineInfoW* line = ::el_wline(m_edit.get());
        return RowOfCursor(m_prompt, {line->buffer, line->cursor}, columns);
    }

    // Clears the prompt and what is typed, from the row where they begin.
    static void GoToPrompt(size_t rows_up) {
        if (rows_up != 0) {
            std::fprintf(stdout, "\x1b[%zuA", rows_up);
        }
        std::fputs("\r\x1b[J", stdout);
    }

    const CShell& m_shell;
    CTerminal& m_terminal;
    CKeyboard m_keyboard;
    CHistorySearch m_search;
    CEvent m_text;  // text of other threads waits
    CTerminalEcho m_echo;
    std::wstring m_prompt;
    unsigned int m_columns = 0;
    bool m_interrupted = false;
    // Before the history and the echo go.
    std::unique_ptr<EditLine, CEditLineEnd> m_edit;
};

}  // namespace

std::unique_ptr<ILineReader> MakeTerminalReader(const CShell& shell, const CHistory& history) {
    return std::make_unique<CTerminalReader>(shell, history);
}
