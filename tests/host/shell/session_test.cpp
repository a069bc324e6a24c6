#include "host/shell/session.h"

#include <gmock/gmock.h>

#include <csignal>
#include <deque>

#include "host/shell/input/line_reader.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Lines from a list; what the list says otherwise happens instead.
class CListReader : public ILineReader {
  public:
    struct CItem {
        ELine result;
        std::string text;
    };
    explicit CListReader(std::deque<CItem> items) : m_items(std::move(items)) {}

    ELine Read(const std::string& prompt, std::string& line) override {
        prompts.push_back(prompt);
        if (m_items.empty()) {
            return ELine::END;
        }
        const CItem item = m_items.front();
        m_items.pop_front();
        line = item.text;
        return item.result;
    }
    size_t Left() const { return m_items.size(); }

    std::vector<std::string> prompts;

  private:
    std::deque<CItem> m_items;
};

class Session : public ShellTest {
  protected:
    EExitStatus Commands(const std::vector<std::string>& commands) {
        Catch();
        const EExitStatus status = RunCommands(m_shell, commands);
        Caught();
        return status;
    }
    EExitStatus Script(CListReader& lines) {
        Catch();
        const EExitStatus status = RunScript(m_shell, lines, "file");
        Caught();
        return status;
    }
    EExitStatus Terminal(CListReader& lines) {
        Catch();
        const EExitStatus status = RunTerminal(m_shell, lines);
        Caught();
        return status;
    }
};

TEST_F(Session, RunsCommandsInOrderAndStopsAtTheFirstFailure) {
    EXPECT_EQ(Commands({"cd dev", "add 1", "fail", "add 2"}), EXIT_FAILED);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_EQ(Commands({"nope", "/dev/add 1"}), EXIT_USAGE);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_EQ(Commands({"/dev/check wait", "/dev/add 1"}), EXIT_ABORTED);
    EXPECT_EQ(m_calls, 3U);
}

TEST_F(Session, SaysWhereAScriptWasAborted) {
    CListReader lines({{ELine::READ, "cd dev"}, {ELine::INTERRUPTED, ""}, {ELine::READ, "add 1"}});
    std::raise(SIGINT);
    EXPECT_EQ(Script(lines), EXIT_ABORTED);
    EXPECT_EQ(errors, "file:1: aborted\n");
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(Session, DoesNothingOfALineThatWasNoText) {
    CListReader lines({{ELine::UNREADABLE, "/dev/add 1"}});
    EXPECT_EQ(Script(lines), EXIT_USAGE);
    EXPECT_EQ(errors, "file:1: the ? in the line were no characters, nothing of it was done\n");
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(Session, GoesOnAfterFailuresWhenToldToAndEndsWithTheWorst) {
    m_shell.KeepGoing();
    EXPECT_EQ(Commands({"/dev/fail", "nope", "/dev/add 1"}), EXIT_FAILED);
    EXPECT_EQ(m_calls, 2U);
    CListReader lines({{ELine::READ, "nope"},
                       {ELine::TOO_LONG, ""},
                       {ELine::READ, "/dev/add 1"},
                       {ELine::READ, "/dev/fail"},
                       {ELine::READ, "/dev/add 1"}});
    EXPECT_EQ(Script(lines), EXIT_FAILED);
    EXPECT_EQ(m_calls, 5U);
    EXPECT_THAT(errors, HasSubstr("file:1: nope"));
    EXPECT_THAT(errors, HasSubstr("file:4: /dev/fail: failed"));
}

TEST_F(Session, CtrlCEndsARunThatKeepsGoing) {
    m_shell.KeepGoing();
    EXPECT_EQ(Commands({"/dev/check wait", "/dev/add 1"}), EXIT_ABORTED);
    EXPECT_EQ(m_calls, 1U);
}

TEST_F(Session, QuitEndsTheCommands) {
    EXPECT_EQ(Commands({"quit", "/dev/add 1"}), EXIT_PASSED);
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(Session, NamesFileAndLineOfAScriptsError) {
    CListReader lines({{ELine::READ, "cd dev"},
                       {ELine::READ, ""},
                       {ELine::READ, "nope"},
                       {ELine::READ, "add 1"}});
    EXPECT_EQ(Script(lines), EXIT_USAGE);
    EXPECT_THAT(errors, testing::StartsWith("file:3: nope: there is no"));
    EXPECT_EQ(lines.Left(), 1U);
}

TEST_F(Session, DoesNothingOfALineThatIsTooLong) {
    CListReader lines({{ELine::TOO_LONG, "/dev/add 1"}, {ELine::READ, "/dev/add 1"}});
    EXPECT_EQ(Script(lines), EXIT_USAGE);
    EXPECT_EQ(errors, "file:1: line too long, nothing of it was done\n");
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(Session, ReportsAScriptThatCannotBeRead) {
    errno = EIO;
    CListReader lines({{ELine::FAILED, ""}});
    EXPECT_EQ(Script(lines), EXIT_HOST);
    EXPECT_EQ(errors, "file:1: Input/output error\n");
}

TEST_F(Session, TheTerminalGoesOnAfterFailuresUntilQuit) {
    CListReader lines({{ELine::READ, "cd dev"},
                       {ELine::READ, "fail"},
                       {ELine::TOO_LONG, ""},
                       {ELine::INTERRUPTED, ""},
                       {ELine::READ, "add 1"},
                       {ELine::READ, "quit"},
                       {ELine::READ, "add 2"}});
    EXPECT_EQ(Terminal(lines), EXIT_PASSED);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_EQ(lines.Left(), 1U);
    EXPECT_THAT(lines.prompts,
                ElementsAre("/> ", "/dev> ", "/dev> ", "/dev> ", "/dev> ", "/dev> "));
    EXPECT_THAT(errors, HasSubstr("line too long"));
}

TEST_F(Session, TheEndOfInputEndsTheTerminal) {
    CListReader lines({});
    EXPECT_EQ(Terminal(lines), EXIT_PASSED);
    EXPECT_EQ(printed, "\n");
}

}  // namespace
