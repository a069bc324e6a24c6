#include <histedit.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cwchar>
#include <optional>
#include <system_error>

#include "host/shell/input/line_reader.h"
#include "host/shell/run/interrupt.h"
#include "host/terminal.h"

namespace {

constexpr int HISTORY_SIZE = 500;

struct CEditLineEnd {
    void operator()(EditLine* el) const { ::el_end(el); }
};
struct CHistoryEnd {
    void operator()(History* history) const { ::history_end(history); }
};

// An event that other threads set and the reader polls for.
class CEvent {
  public:
    CEvent() : m_fd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (m_fd < 0) {
            throw std::system_error(errno, std::generic_category(), "eventfd");
        }
    }
    ~CEvent() { ::close(m_fd); }
    CEvent(const CEvent&) = delete;
    CEvent& operator=(const CEvent&) = delete;

    void Set() const { ::eventfd_write(m_fd, 1); }
    void Clear() const {
        eventfd_t count = 0;
        ::eventfd_read(m_fd, &count);
    }
    int Descriptor() const { return m_fd; }

  private:
    const int m_fd;
};

// Columns that a character takes where the editor shows it.
size_t WidthOf(wchar_t character) {
    const int width = ::wcwidth(character);
    return width >= 0 ? static_cast<size_t>(width) : 2;  // as ^C
}

class CTerminalReader : public ILineReader {
  public:
    CTerminalReader(const CInterrupt& interrupt, CTerminal& terminal)
        : m_interrupt(interrupt),
          m_terminal(terminal),
          m_edit(::el_init("diagsh", stdin, stdout, stderr)),
          m_history(::history_init()) {
        HistEvent event;
        ::history(m_history.get(), &event, H_SETSIZE, HISTORY_SIZE);
        ::history(m_history.get(), &event, H_SETUNIQUE, 1);
        ::el_set(m_edit.get(), EL_CLIENTDATA, this);
        ::el_set(m_edit.get(), EL_PROMPT, &Prompt);
        ::el_set(m_edit.get(), EL_EDITOR, "emacs");
        ::el_set(m_edit.get(), EL_HIST, ::history, m_history.get());
        // Gives the terminal back when the program is stopped or ended by a
        // signal, and takes it again when it goes on.
        ::el_set(m_edit.get(), EL_SIGNAL, 1);
        ::el_set(m_edit.get(), EL_GETCFN, &ReadCharacter);
        ::el_set(m_edit.get(), EL_BIND, "^R", "em-inc-search-prev", nullptr);
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
        m_prompt = prompt;
        m_interrupted = false;
        m_unreadable = false;
        line.clear();
        int length = 0;
        // Before the prompt, so that what is typed at it is never taken as the
        // keys of a terminal that is not ready.
        ::el_set(m_edit.get(), EL_PREP_TERM, 1);
        const char* text = ::el_gets(m_edit.get(), &length);
        if (text == nullptr || length <= 0) {
            if (m_interrupted) {
                ::el_reset(m_edit.get());
                std::fputc('\n', stdout);
                return ELine::INTERRUPTED;
            }
            return ELine::END;
        }
        line.assign(text, static_cast<size_t>(length));
        if (line.back() == '\n') {
            line.pop_back();
        }
        if (line.size() > MAX_LINE) {
            return ELine::TOO_LONG;
        }
        if (m_unreadable) {
            return ELine::UNREADABLE;
        }
        if (line.find_first_not_of(" \t") != std::string::npos) {
            HistEvent event;
            ::history(m_history.get(), &event, H_ENTER, line.c_str());
        }
        return ELine::READ;
    }

    static CTerminalReader& Self(EditLine* edit) {
        void* self = nullptr;
        ::el_get(edit, EL_CLIENTDATA, &self);
        return *static_cast<CTerminalReader*>(self);
    }

    static char* Prompt(EditLine* edit) { return Self(edit).m_prompt.data(); }

    // The library's own reader starts again after every signal; this one lets
    // Ctrl-C end the line. Others (the window was resized, the program goes on
    // after a stop) leave the line as it is, drawn anew.
    static int ReadCharacter(EditLine* edit, wchar_t* character) {
        std::mbstate_t state{};
        while (true) {
            char byte = 0;
            const ssize_t count = Self(edit).ReadByte(byte);
            if (count < 0 && errno == EINTR && !Self(edit).m_interrupt.IsPending()) {
                ::el_set(edit, EL_REFRESH);
                continue;
            }
            if (count <= 0) {
                Self(edit).m_interrupted = count < 0 && errno == EINTR;
                return static_cast<int>(count);
            }
            const bool first = std::mbsinit(&state) != 0;
            const size_t used = std::mbrtowc(character, &byte, 1, &state);
            if (used == static_cast<size_t>(-1)) {
                CTerminalReader& self = Self(edit);
                if (!first) {
                    self.m_put_back = byte;
                }
                self.m_unreadable = true;
                *character = L'?';
                return 1;
            }
            if (used != static_cast<size_t>(-2)) {
                return 1;
            }
        }
    }

    // Writes what others wrote meanwhile above the line, which is then drawn anew.
    void LetTextThrough() {
        m_text.Clear();
        bool written = false;
        m_terminal.WriteWaiting([&] {
            MakeRoom();
            written = true;
        });
        if (written) {
            ::el_set(m_edit.get(), EL_REFRESH);
        }
    }

    // Clears the prompt and what is typed, from the row where they begin.
    void MakeRoom() {
        size_t width = 0;
        for (const char c : m_prompt) {
            // Bytes that go on a character take no column of their own.
            width += (static_cast<unsigned char>(c) & 0xC0U) == 0x80U ? 0 : 1;
        }
        const LineInfoW* line = ::el_wline(m_edit.get());
        for (const wchar_t* c = line->buffer; c < line->cursor; ++c) {
            width += WidthOf(*c);
        }
        const unsigned int columns = m_terminal.Columns();
        if (columns != 0 && width >= columns) {
            std::fprintf(stdout, "\x1b[%zuA", width / columns);
        }
        std::fputs("\r\x1b[J", stdout);
    }

    // As read() does; a pending Ctrl-C counts as an interruption.
    ssize_t ReadByte(char& byte) {
        if (m_put_back.has_value()) {
            byte = *m_put_back;
            m_put_back.reset();
            return 1;
        }
        std::array<pollfd, 3> inputs{{{STDIN_FILENO, POLLIN, 0},
                                      {m_interrupt.Descriptor(), POLLIN, 0},
                                      {m_text.Descriptor(), POLLIN, 0}}};
        do {
            if (::poll(inputs.data(), inputs.size(), -1) < 0) {
                return -1;
            }
            if (inputs[2].revents != 0) {
                LetTextThrough();
            }
        } while (inputs[0].revents == 0 && inputs[1].revents == 0);
        if (inputs[1].revents != 0) {
            errno = EINTR;
            return -1;
        }
        return ::read(STDIN_FILENO, &byte, 1);
    }

    const CInterrupt& m_interrupt;
    CTerminal& m_terminal;
    CEvent m_text;  // text of other threads waits
    std::string m_prompt;
    bool m_interrupted = false;
    bool m_unreadable = false;       // the line held bytes that are no characters
    std::optional<char> m_put_back;  // a byte that broke a character off
    std::unique_ptr<EditLine, CEditLineEnd> m_edit;
    std::unique_ptr<History, CHistoryEnd> m_history;
};

}  // namespace

std::unique_ptr<ILineReader> MakeTerminalReader(const CInterrupt& interrupt, CTerminal& terminal) {
    return std::make_unique<CTerminalReader>(interrupt, terminal);
}
