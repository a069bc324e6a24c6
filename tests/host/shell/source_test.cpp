#include <gmock/gmock.h>

#include "tests/host/shell/shell_tree.h"
#include "tests/support/temp_folder.h"

namespace {

using testing::HasSubstr;

class Source : public ShellTest {
  protected:
    // The path of a script with these lines.
    std::string Script(const std::string& name, const std::string& lines) {
        std::ofstream(m_folder.Path() / name) << lines;
        return (m_folder.Path() / name).string();
    }

    CTempFolder m_folder;
};

TEST_F(Source, RunsTheLinesOfAFileInTheShellsOwnPlace) {
    EXPECT_EQ(Run("source " + Script("a", "cd dev\nadd 1\n# done\nadd 2")), EXIT_PASSED);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_EQ(Run("add 3"), EXIT_PASSED);
}

TEST_F(Source, EndsAtTheFirstFailureAndNamesFileAndLine) {
    const std::string path = Script("a", "/dev/add 1\n/dev/fail\n/dev/add 2\n");
    EXPECT_EQ(Run("source " + path), EXIT_FAILED);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_THAT(errors, HasSubstr(path + ":2: /dev/fail: failed"));
}

TEST_F(Source, GoesOnAfterFailuresWhereTheShellDoes) {
    m_shell.KeepGoing();
    EXPECT_EQ(Run("source " + Script("a", "nope\n/dev/fail\n/dev/add 2\n")), EXIT_FAILED);
    EXPECT_EQ(m_calls, 2U);
}

TEST_F(Source, GivesItsOwnLineBackToTheScriptThatRanIt) {
    const std::string inner = Script("inner", "/dev/add 1\n");
    const std::string outer = Script("outer", "source " + inner + "; nope\n");
    EXPECT_EQ(Run("source " + outer), EXIT_USAGE);
    EXPECT_THAT(errors, testing::StartsWith(outer + ":1: nope"));
}

TEST_F(Source, RefusesAScriptThatRunsItselfForEver) {
    const std::string path = Script("a", "");
    Script("a", "/dev/add 1\nsource " + path + "\n");
    EXPECT_EQ(Run("source " + path), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr(path + ":2: source: " + path +
                                  ": source and repeat nest only 16 deep\n"));
    EXPECT_EQ(m_calls, 16U);
    EXPECT_EQ(Run("/dev/add 1"), EXIT_PASSED);
    EXPECT_EQ(Run("source " + Script("b", "/dev/add 1\n")), EXIT_PASSED);
}

TEST_F(Source, NamesAFileThatIsNoScript) {
    EXPECT_EQ(Run("source /does/not/exist"), EXIT_USAGE);
    EXPECT_EQ(errors, "source: /does/not/exist: No such file or directory\n");
    EXPECT_EQ(Run("source /tmp"), EXIT_USAGE);
    EXPECT_EQ(errors, "source: /tmp: Is a directory\n");
}

TEST_F(Source, EndsAtCtrlCWithEveryScriptAroundIt) {
    const std::string inner = Script("inner", "/dev/check wait\n/dev/add 1\n");
    const std::string outer = Script("outer", "source " + inner + "\n/dev/add 1\n");
    EXPECT_EQ(Run("source " + outer + "; /dev/add 1"), EXIT_ABORTED);
    EXPECT_EQ(m_calls, 1U);
    EXPECT_THAT(errors, HasSubstr(inner + ":1: /dev/check: aborted"));
}

TEST_F(Source, QuitInItLeavesTheShell) {
    EXPECT_EQ(Run("source " + Script("a", "quit\n/dev/add 1\n")), EXIT_PASSED);
    EXPECT_TRUE(m_shell.HasQuit());
    EXPECT_EQ(m_calls, 0U);
}

}  // namespace
