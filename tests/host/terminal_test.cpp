#include "host/terminal.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <thread>

namespace {

// A terminal that writes to a file which can be read back.
class TerminalTest : public testing::Test {
  protected:
    std::string Written() {
        std::fflush(m_file.get());
        std::rewind(m_file.get());
        std::string text;
        std::array<char, 4096> part;
        size_t count = 0;
        while ((count = std::fread(part.data(), 1, part.size(), m_file.get())) != 0) {
            text.append(part.data(), count);
        }
        return text;
    }

    static void InAnotherThread(const std::function<void()>& work) { std::thread(work).join(); }

    struct CClose {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, CClose> m_file{std::tmpfile()};
    CTerminal m_terminal{m_file.get()};
    CLogFilter m_log_filter;
    CTerminalLog m_log{m_terminal, m_log_filter};
};

using Terminal = TerminalTest;
using TerminalLog = TerminalTest;

TEST_F(Terminal, WritesTextAsItStands) {
    m_terminal.Write("no newline");
    m_terminal.Write("");
    m_terminal.Write(", \x1b[1mstill\n\nthe same");
    EXPECT_EQ(Written(), "no newline, \x1b[1mstill\n\nthe same");
}

TEST_F(Terminal, EndsOnlyALineThatIsOpen) {
    m_terminal.EndLine();
    m_terminal.Write("open");
    m_terminal.EndLine();
    m_terminal.EndLine();
    EXPECT_EQ(Written(), "open\n");
}

TEST_F(Terminal, KeepsAnotherThreadsTextUntilTheLineIsWhole) {
    m_terminal.Write("first ");
    InAnotherThread([this] {
        m_terminal.Write("second ");
        m_terminal.Write("line\n");
    });
    EXPECT_EQ(Written(), "first ");
    m_terminal.Write("line\n");
    EXPECT_EQ(Written(), "first line\nsecond line\n");
}

TEST_F(Terminal, EndsTheLineOfAThreadThatEnds) {
    InAnotherThread([this] { m_terminal.Write("open"); });
    EXPECT_EQ(Written(), "open\n");
    m_terminal.Write("mine");
    InAnotherThread([this] { m_terminal.Write("waiting"); });
    m_terminal.Write("\n");
    EXPECT_EQ(Written(), "open\nmine\nwaiting\n");
}

TEST_F(Terminal, WritesWhatStillWaitsAtItsEnd) {
    std::optional<CTerminal> terminal(m_file.get());
    terminal->Write("mine");
    InAnotherThread([&terminal] { terminal->Write("waiting"); });
    terminal.reset();
    EXPECT_EQ(Written(), "mine\nwaiting\n");
}

TEST_F(Terminal, MayEndBeforeTheThreadsThatWroteToIt) {
    InAnotherThread([this] {
        CTerminal terminal(m_file.get());
        terminal.Write("open");
    });
    EXPECT_EQ(Written(), "open");
}

TEST_F(Terminal, RemembersWhyOutputGotLost) {
    const std::unique_ptr<std::FILE, CClose> full(std::fopen("/dev/full", "w"));
    ASSERT_NE(full, nullptr);
    CTerminal terminal(full.get());
    EXPECT_EQ(terminal.Error(), 0);
    terminal.Write("lost\n");
    EXPECT_EQ(terminal.Error(), ENOSPC);
}

TEST_F(Terminal, NeverMixesLinesOfThreads) {
    constexpr int LINES = 200;
    const auto work = [this](char letter) {
        for (int i = 0; i < LINES; ++i) {
            for (int piece = 0; piece < 10; ++piece) {
                m_terminal.Write(std::string(3, letter));
            }
            m_terminal.Write("\n");
        }
    };
    std::thread a(work, 'a');
    std::thread b(work, 'b');
    std::thread c(work, 'c');
    a.join();
    b.join();
    c.join();

    std::istringstream lines(Written());
    std::string line;
    int count = 0;
    while (std::getline(lines, line)) {
        EXPECT_EQ(line, std::string(30, line.empty() ? '?' : line.front()));
        ++count;
    }
    EXPECT_EQ(count, 3 * LINES);
}

TEST_F(TerminalLog, LetsNothingActOnTheTerminalThatAChipHolds) {
    m_log.Write({LW_PRINT, nullptr, "name : EV\x1b]0;own\x07 \xff\r|\tµm\n"});
    m_log.Write({LW_WARN, nullptr, "\x1b[2J"});
    EXPECT_EQ(Written(), "name : EV\\x1b]0;own\\x07 \\xff\\x0d|\tµm\n\\x1b[2J\n");
}

TEST_F(TerminalLog, PassesPrintTextUnchanged) {
    m_log.Write({LW_PRINT, nullptr, "devices connected: "});
    m_log.Write({LW_PRINT, nullptr, "0x50 "});
    m_log.Write({LW_PRINT, nullptr, "\n"});
    EXPECT_EQ(Written(), "devices connected: 0x50 \n");
}

TEST_F(TerminalLog, GivesEveryOtherTextItsOwnLine) {
    m_log.Write({LW_PRINT, nullptr, "open"});
    m_log.Write({LW_ERR_TEST, nullptr, "poke (Value is readonly)"});
    m_log.Write({LW_ERR_SW, nullptr, "ERROR: bad\n"});
    m_log.Write({LW_INFO, nullptr, ""});
    EXPECT_EQ(Written(), "open\npoke (Value is readonly)\nERROR: bad\n");
}

TEST_F(TerminalLog, HidesDebugTextUnlessAskedFor) {
    m_log.Write({LW_SW_TRACE, nullptr, "hidden\n"});
    m_log.Write({LW_HW_TRACE, nullptr, "hidden\n"});
    m_log_filter.Set(LOG_LT_SW_DEBUG_BASE, 4);
    m_log.Write({LW_SW_TRACE, nullptr, "level 1\n"});
    m_log.Write({LW_SW_DUMP, nullptr, "level 5\n"});
    m_log_filter.Set(LOG_LT_HW_DEBUG_BASE, 10);
    m_log.Write({LW_HW_TRACE, nullptr, "level 10\n"});
    EXPECT_EQ(Written(), "level 1\nlevel 10\n");
}

TEST_F(TerminalLog, HidesATypeAsAWhole) {
    m_log_filter.Set(LOG_LT_RESULT, std::nullopt);
    m_log.Write({LW_RESULT, nullptr, "SUCCESS peek val=1"});
    m_log.Write({LW_WARN, nullptr, "still there"});
    EXPECT_EQ(Written(), "still there\n");
}

}  // namespace
