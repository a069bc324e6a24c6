#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "host/terminal.h"

namespace {

constexpr int GIVE_UP_MS = 30'000;

struct CFileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using CFile = std::unique_ptr<std::FILE, CFileCloser>;

// A terminal on a screen, whose environment a test may change.
class TerminalColours : public testing::Test {
  protected:
    TerminalColours() {
        ::setenv("TERM", "xterm", 1);
        ::unsetenv("NO_COLOR");
        int master = -1;
        int slave = -1;
        if (::openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) {
            throw std::runtime_error("no pseudo-terminal");
        }
        termios raw{};
        ::tcgetattr(slave, &raw);
        ::cfmakeraw(&raw);
        ::tcsetattr(slave, TCSANOW, &raw);
        m_master.reset(::fdopen(master, "r"));
        m_slave.reset(::fdopen(slave, "w"));
    }

    // What is on the screen after `type` and print texts were logged and the shell
    // reported an error.
    std::string Shown(ELogTypes type) {
        CTerminal terminal(m_slave.get(), m_slave.get());
        CTerminalLog log(terminal, m_filter);
        log.Write({LW_PRINT, nullptr, "text "});
        log.Write({LogWord(type), nullptr, "one\n\ntwo"});
        terminal.WriteError("no\n");
        return OnScreen();
    }
    // What was written arrives a little later.
    std::string OnScreen() {
        constexpr std::string_view END = "<end>";
        EXPECT_EQ(::write(::fileno(m_slave.get()), END.data(), END.size()),
                  static_cast<ssize_t>(END.size()));
        std::string text;
        while (!text.ends_with(END)) {
            std::array<char, 4096> part{};
            pollfd readable{::fileno(m_master.get()), POLLIN, 0};
            const ssize_t length = ::poll(&readable, 1, GIVE_UP_MS) == 1
                                       ? ::read(readable.fd, part.data(), part.size())
                                       : -1;
            if (length <= 0) {
                ADD_FAILURE() << "the screen shows no more than " << text;
                return text;
            }
            text.append(part.data(), static_cast<size_t>(length));
        }
        return text.substr(0, text.size() - END.size());
    }

    CFile m_master;
    CFile m_slave;
    CLogFilter m_filter;
};

constexpr const char* PLAIN = "text \none\n\ntwo\nno\n";

TEST_F(TerminalColours, MarkErrorsAndWarnings) {
    constexpr const char* RED =
        "text \n\x1b[31mone\x1b[0m\n\n\x1b[31mtwo\x1b[0m\n\x1b[31mno\x1b[0m\n";
    EXPECT_EQ(Shown(LOG_LT_ERR_TEST), RED);
    EXPECT_EQ(Shown(LOG_LT_ERR_SYS), RED);
    EXPECT_EQ(Shown(LOG_LT_ERR_SW), RED);
    EXPECT_EQ(Shown(LOG_LT_WARN),
              "text \n\x1b[33mone\x1b[0m\n\n\x1b[33mtwo\x1b[0m\n\x1b[31mno\x1b[0m\n");
    EXPECT_EQ(Shown(LOG_LT_INFO), "text \none\n\ntwo\n\x1b[31mno\x1b[0m\n");
}

TEST_F(TerminalColours, LeaveThePrefixOfAJobAlone) {
    CTerminal terminal(m_slave.get(), m_slave.get());
    const CTerminal::CPrefix prefix(terminal, "[1] ");
    terminal.WriteLines("one\ntwo\n", EColour::RED);
    terminal.WriteError("no\n");
    EXPECT_EQ(OnScreen(),
              "[1] \x1b[31mone\x1b[0m\n[1] \x1b[31mtwo\x1b[0m\n[1] \x1b[31mno\x1b[0m\n");
}

TEST_F(TerminalColours, EndWithTheirLineWhoeverWritesBetween) {
    CTerminal terminal(m_slave.get(), m_slave.get());
    terminal.Write("open ");
    std::thread([&] { terminal.WriteLines("one\ntwo\n", EColour::YELLOW); }).join();
    terminal.Write("line\n");
    terminal.Write("plain\n");
    EXPECT_EQ(OnScreen(), "open line\n\x1b[33mone\x1b[0m\n\x1b[33mtwo\x1b[0m\nplain\n");
}

TEST_F(TerminalColours, AreNotShownToWhoAsksForNone) {
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(Shown(LOG_LT_ERR_SW), PLAIN);
    ::setenv("NO_COLOR", "", 1);
    EXPECT_NE(Shown(LOG_LT_ERR_SW), PLAIN);
}

TEST_F(TerminalColours, AreNotSentToADumbTerminal) {
    ::setenv("TERM", "dumb", 1);
    EXPECT_EQ(Shown(LOG_LT_ERR_SW), PLAIN);
    ::unsetenv("TERM");
    EXPECT_EQ(Shown(LOG_LT_ERR_SW), PLAIN);
}

TEST_F(TerminalColours, GoToTheScreenOnlyWhenTheOtherStreamIsAFile) {
    const CFile file(std::tmpfile());
    {
        CTerminal terminal(file.get(), m_slave.get());
        terminal.WriteLines("to the file\n", EColour::RED);
        terminal.WriteError("to the screen\n");
    }
    EXPECT_EQ(OnScreen(), "\x1b[31mto the screen\x1b[0m\n");
    std::rewind(file.get());
    std::array<char, 64> text{};
    EXPECT_EQ(std::string(text.data(), std::fread(text.data(), 1, text.size(), file.get())),
              "to the file\n");
}

}  // namespace
