#include "host/shell/input/question.h"

#include <csignal>
#include <thread>

#include "tests/host/shell/shell_tree.h"
#include "tests/host/shell/standard_input.h"

namespace {

class Question : public ShellTest {
  protected:
    EAnswer AskAbout(const std::string& question) {
        Catch();
        const EAnswer answer = Ask(m_shell, question);
        Caught();
        return answer;
    }
};

TEST_F(Question, NeedsATerminalAtStandardInput) {
    const CTypedInput terminal;
    EXPECT_TRUE(CanAsk());
    const CStandardInput nobody("/dev/null");
    EXPECT_FALSE(CanAsk());
}

TEST_F(Question, IsAnsweredWithYesByAYesOnly) {
    const std::vector<std::pair<std::string, EAnswer>> answers = {
        {"y\n", EAnswer::YES},   {"Y\n", EAnswer::YES},   {"yes\n", EAnswer::YES},
        {"Yes\n", EAnswer::YES}, {"YES\n", EAnswer::YES}, {"n\n", EAnswer::NO},
        {"\n", EAnswer::NO},     {"yy\n", EAnswer::NO},   {" y\n", EAnswer::NO},
        {"maybe\n", EAnswer::NO}};
    for (const auto& [typed, answer] : answers) {
        const CTypedInput terminal(typed);
        EXPECT_EQ(AskAbout("sure? "), answer) << typed;
        EXPECT_EQ(printed, "sure? \n");
    }
}

TEST_F(Question, TakesTheEndOfInputForNo) {
    const CTypedInput terminal("\x04");
    EXPECT_EQ(AskAbout("sure? "), EAnswer::NO);
    const CTypedInput half_a_line("y\x04\x04");
    EXPECT_EQ(AskAbout("sure? "), EAnswer::NO);
}

TEST_F(Question, LeavesWhatIsTypedBehindTheAnswer) {
    const CTypedInput terminal("n\ny\n");
    EXPECT_EQ(AskAbout("sure? "), EAnswer::NO);
    EXPECT_EQ(AskAbout("really? "), EAnswer::YES);
}

TEST_F(Question, EndsWithCtrlC) {
    const CTypedInput terminal("y");
    std::raise(SIGINT);
    EXPECT_EQ(AskAbout("sure? "), EAnswer::INTERRUPTED);
    EXPECT_EQ(printed, "sure? \n");
}

TEST_F(Question, EndsWithCtrlCWhileItWaits) {
    const CTypedInput terminal;
    std::thread operator_hand([] { ::kill(::getpid(), SIGINT); });
    EXPECT_EQ(AskAbout("sure? "), EAnswer::INTERRUPTED);
    operator_hand.join();
}

TEST_F(Question, BeginsALineOfItsOwn) {
    const CTypedInput terminal("y\n");
    Catch();
    m_terminal.Write("half a line");
    const EAnswer answer = Ask(m_shell, "sure? ");
    Caught();
    EXPECT_EQ(answer, EAnswer::YES);
    EXPECT_EQ(printed, "half a line\nsure? \n");
}

// Standard output on the screen of the terminal, for a scope.
class COnScreen {
  public:
    COnScreen() : m_saved(::dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        ::dup2(STDIN_FILENO, STDOUT_FILENO);
    }
    ~COnScreen() {
        std::fflush(stdout);
        ::dup2(m_saved, STDOUT_FILENO);
        ::close(m_saved);
    }
    COnScreen(const COnScreen&) = delete;
    COnScreen& operator=(const COnScreen&) = delete;

  private:
    const int m_saved;
};

TEST_F(Question, TheEnterOfTheOperatorEndsItsLineOnTheScreen) {
    const CTypedInput terminal;
    std::string shown;
    EAnswer answer = EAnswer::NO;
    {
        const COnScreen screen;
        std::thread operator_hand([&] {
            shown = terminal.ScreenUpTo("sure? ");
            terminal.Type("y\n");
        });
        answer = Ask(m_shell, "sure? ");
        operator_hand.join();
        m_terminal.Write("next\n");
    }
    EXPECT_EQ(answer, EAnswer::YES);
    EXPECT_EQ(shown, "sure? ");
    EXPECT_EQ(terminal.ScreenUpTo("next"), "y\r\nnext");
}

TEST_F(Question, CtrlCEndsItsLineOnTheScreen) {
    const CTypedInput terminal;
    std::raise(SIGINT);
    {
        const COnScreen screen;
        EXPECT_EQ(Ask(m_shell, "sure? "), EAnswer::INTERRUPTED);
        m_terminal.Write("next\n");
    }
    EXPECT_EQ(terminal.ScreenUpTo("next"), "sure? \r\nnext");
}

}  // namespace
