// What several threads, a prompt and a footer make of one terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <optional>
#include <thread>

#include "host/terminal.h"
#include "tests/host/shell/text_file.h"

namespace {

constexpr char ERASED[] = "\r\x1b[K";

// A terminal whose output and errors go to one file, as they do on a screen.
class TerminalSharing : public testing::Test {
  protected:
    std::string Written() { return m_text += m_file.Written(); }
    static void InAnotherThread(const std::function<void()>& work) { std::thread(work).join(); }

    CTextFile m_file;
    std::string m_text;  // as far as it was read
    CTerminal m_terminal{m_file.Get(), m_file.Get()};
};

TEST_F(TerminalSharing, PutsThePrefixOfAThreadBeforeEachOfItsLines) {
    InAnotherThread([this] {
        const CTerminal::CPrefix prefix(m_terminal, "[1] ");
        m_terminal.Write("one\n\ntwo");
        m_terminal.Write(" halves\nthree\n");
        m_terminal.WriteError("and an error\n");
    });
    m_terminal.Write("mine\n");
    EXPECT_EQ(Written(), "[1] one\n[1] \n[1] two halves\n[1] three\n[1] and an error\nmine\n");
}

TEST_F(TerminalSharing, APrefixedThreadKeepsNobodyFromWriting) {
    std::optional<std::string> before;
    InAnotherThread([&] {
        const CTerminal::CPrefix prefix(m_terminal, "[1] ");
        m_terminal.Write("half");
        InAnotherThread([this] { m_terminal.Write("another's\n"); });
        before = Written();
    });
    EXPECT_EQ(before, "another's\n");
    EXPECT_EQ(Written(), "another's\n[1] half\n");
}

TEST_F(TerminalSharing, AnErrorOfAPrefixedThreadEndsItsLine) {
    InAnotherThread([this] {
        const CTerminal::CPrefix prefix(m_terminal, "[1] ");
        m_terminal.Write("half");
        m_terminal.WriteError("wrong\n");
    });
    EXPECT_EQ(Written(), "[1] half\n[1] wrong\n");
}

TEST_F(TerminalSharing, ErrorsWaitForAnotherThreadsLine) {
    m_terminal.Write("mine ");
    InAnotherThread([this] {
        m_terminal.Write("before\n");
        m_terminal.WriteError("wrong\n");
        m_terminal.Write("after\n");
    });
    EXPECT_EQ(Written(), "mine ");
    m_terminal.Write("too\n");
    EXPECT_EQ(Written(), "mine too\nbefore\nwrong\nafter\n");
}

TEST_F(TerminalSharing, AnErrorEndsTheLineOfItsThread) {
    m_terminal.Write("open");
    m_terminal.WriteError("wrong\n");
    EXPECT_EQ(Written(), "open\nwrong\n");
}

TEST_F(TerminalSharing, LinesThatAreSoonOutOfDateDoNotWait) {
    m_terminal.Write("open");
    InAnotherThread([this] { m_terminal.WriteUnlessOpen("late\n"); });
    m_terminal.Write("\n");
    InAnotherThread([this] { m_terminal.WriteUnlessOpen("in time\n"); });
    EXPECT_EQ(Written(), "open\nin time\n");
}

TEST_F(TerminalSharing, TheFooterStaysBelowTheLines) {
    m_terminal.SetFooter("50%");
    m_terminal.Write("a line\n");
    m_terminal.WriteError("wrong\n");
    m_terminal.SetFooter("60%");
    m_terminal.SetFooter("");
    m_terminal.Write("the end\n");
    const std::string erased(ERASED);
    EXPECT_EQ(Written(), erased + "50%" + erased + "a line\n" + erased + "50%" + erased +
                             "wrong\n" + erased + "50%" + erased + "60%" + erased + "the end\n");
}

TEST_F(TerminalSharing, TheFooterDoesNotShowBehindAnOpenLine) {
    m_terminal.Write("open");
    InAnotherThread([this] { m_terminal.SetFooter("50%"); });
    EXPECT_EQ(Written(), "open");
    m_terminal.Write("ed\n");
    EXPECT_EQ(Written(), "opened\n" + std::string(ERASED) + "50%");
}

TEST_F(TerminalSharing, TheFooterDoesNotFollowEveryLineOfMany) {
    constexpr unsigned int LINES = 1000;
    m_terminal.SetFooter("50%");
    for (unsigned int i = 0; i < LINES; ++i) {
        m_terminal.Write("line\n");
    }
    const std::string written = Written();
    EXPECT_LT(written.size(), LINES * 6);
    EXPECT_EQ(written.substr(written.size() - 10), "line\nline\n");
    m_terminal.ShowOpenLine();
    m_terminal.ShowOpenLine();
    EXPECT_EQ(Written(), written + ERASED + "50%");
}

TEST_F(TerminalSharing, LinesOfOthersComeAboveAPrompt) {
    m_terminal.BeginPrompt("/> ");
    InAnotherThread([this] { m_terminal.Write("[1] passed\n"); });
    EXPECT_EQ(Written(), "/> \n[1] passed\n/> ");
    m_terminal.EndPrompt();
    InAnotherThread([this] { m_terminal.Write("[2] passed\n"); });
    m_terminal.Write("answer\n");
    EXPECT_EQ(Written(), "/> \n[1] passed\n/> answer\n[2] passed\n");
}

TEST_F(TerminalSharing, TextWaitsWhileTheScreenIsLent) {
    int told = 0;
    m_terminal.LendScreen([&] { ++told; });
    InAnotherThread([this] { m_terminal.Write("a line\n"); });
    EXPECT_EQ(told, 1);
    EXPECT_EQ(Written(), "");
    m_terminal.WriteWaiting([this] { std::fputs("<room>", m_file.Get()); });
    EXPECT_EQ(Written(), "<room>a line\n");
    m_terminal.WriteWaiting([] { FAIL() << "there is nothing to write"; });
    InAnotherThread([this] { m_terminal.Write("another\n"); });
    m_terminal.TakeScreenBack(true);
    EXPECT_EQ(Written(), "<room>a line\nanother\n");
}

TEST_F(TerminalSharing, ALineLeftOpenByTheEditorIsTheReaders) {
    m_terminal.LendScreen([] {});
    InAnotherThread([this] { m_terminal.Write("a line\n"); });
    m_terminal.TakeScreenBack(false);
    EXPECT_EQ(Written(), "");
    m_terminal.EndLine();
    EXPECT_EQ(Written(), "\na line\n");
}

TEST_F(TerminalSharing, IsNoScreenWhenItIsAFile) {
    EXPECT_EQ(m_terminal.Columns(), 0U);
}

}  // namespace
