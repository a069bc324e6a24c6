#include "host/shell/input/history.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <thread>

#include "tests/host/shell/shell_tree.h"
#include "tests/support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string TextOf(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

class History : public testing::Test {
  protected:
    void Write(const std::string& text) const { std::ofstream(m_file, std::ios::binary) << text; }

    const CTempFolder m_folder;
    const std::filesystem::path m_file = m_folder / "history";
};

TEST_F(History, OutlivesTheSession) {
    CHistory(m_file).Enter("ls");
    CHistory second(m_file);
    second.Enter("cd i2c-0");
    EXPECT_THAT(second.Lines(), ElementsAre("ls", "cd i2c-0"));
    EXPECT_THAT(CHistory(m_file).Lines(), ElementsAre("ls", "cd i2c-0"));
    EXPECT_EQ(TextOf(m_file), "ls\ncd i2c-0\n");
}

TEST_F(History, IsTheOwnersAlone) {
    CHistory(m_folder / "new" / "folder" / "history").Enter("ls");
    struct stat info {};
    ASSERT_EQ(::stat((m_folder / "new/folder/history").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0600U);
}

TEST_F(History, TakesEachLineOnce) {
    CHistory history(m_file);
    for (const char* line : {"ls", "ls", "pwd", "ls"}) {
        history.Enter(line);
    }
    EXPECT_THAT(history.Lines(), ElementsAre("ls", "pwd", "ls"));
    CHistory next(m_file);
    next.Enter("ls");
    EXPECT_EQ(TextOf(m_file), "ls\npwd\nls\n");
}

TEST_F(History, LeavesOutWhatIsNotToBeKept) {
    CHistory history(m_file);
    for (const std::string& line :
         {std::string(" secret"), std::string(), std::string("a\nb"), std::string("nul\0", 4),
          std::string("\x1b[A"), std::string("\xff"), std::string(CHistory::LONGEST + 1, 'x')}) {
        history.Enter(line);
    }
    EXPECT_THAT(history.Lines(), IsEmpty());
    EXPECT_EQ(TextOf(m_file), "");
}

TEST_F(History, KeepsTheLinesOfShellsSideBySide) {
    CHistory first(m_file);
    CHistory second(m_file);
    const auto type = [](CHistory& history, const std::string& name) {
        for (int i = 0; i < 300; ++i) {
            history.Enter(name + std::to_string(i));
        }
    };
    std::thread other(type, std::ref(second), "b");
    type(first, "a");
    other.join();
    EXPECT_THAT(CHistory(m_file).Lines(), SizeIs(600));
}

TEST_F(History, LosesNoLineWhileAnotherShellShortensTheFile) {
    // Empty lines make a file long and are dropped first, so no typed line is too old.
    const std::string empty(2 * CHistory::KEPT + 1, '\n');
    CHistory typing(m_file);
    std::thread starting([this, &empty] {
        for (int i = 0; i < 20; ++i) {
            std::ofstream(m_file, std::ios::app) << empty;
            const CHistory shortens(m_file);
        }
    });
    std::vector<std::string> typed;
    for (int i = 0; i < 200; ++i) {
        typed.push_back("new" + std::to_string(i));
        typing.Enter(typed.back());
    }
    starting.join();
    EXPECT_EQ(CHistory(m_file).Lines(), typed);
}

TEST_F(History, ShortensALongFile) {
    std::string text;
    for (size_t i = 1; i <= 2 * CHistory::KEPT; ++i) {
        text += "line " + std::to_string(i) + "\n";
    }
    Write(text);
    EXPECT_THAT(CHistory(m_file).Lines(), SizeIs(CHistory::KEPT));
    EXPECT_EQ(TextOf(m_file), text);

    Write(text + "last\n");
    const std::vector<std::string> lines = CHistory(m_file).Lines();
    ASSERT_THAT(lines, SizeIs(CHistory::KEPT));
    EXPECT_EQ(lines.front(), "line 1002");
    EXPECT_EQ(lines.back(), "last");
    EXPECT_THAT(TextOf(m_file), testing::StartsWith("line 1002\n"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.Path()), {}), 1);
}

TEST_F(History, KeepsALinkToTheFile) {
    std::filesystem::create_symlink("elsewhere", m_file);
    Write(std::string(5000, '\n') + "ls\n");
    EXPECT_THAT(CHistory(m_file).Lines(), ElementsAre("ls"));
    EXPECT_TRUE(std::filesystem::is_symlink(m_file));
    EXPECT_EQ(TextOf(m_folder / "elsewhere"), "ls\n");
}

TEST_F(History, PassesOverGarbage) {
    std::string garbage = "ls\n";
    for (int byte = 0; byte < 256; ++byte) {
        garbage += static_cast<char>(byte);
    }
    Write(garbage + "\n" + std::string(1'000'000, 'x') + "\n\n\npwd\n");
    EXPECT_THAT(CHistory(m_file).Lines(), ElementsAre("ls", "pwd"));
}

TEST_F(History, BeginsANewLineBehindABrokenOne) {
    Write("ls\nbro");
    CHistory(m_file).Enter("pwd");
    EXPECT_EQ(TextOf(m_file), "ls\nbro\npwd\n");
}

TEST_F(History, SaysOnceThatItCannotBeKept) {
    std::filesystem::create_directory(m_file);
    CHistory history(m_file);
    EXPECT_EQ(history.TakeTrouble(), "history: " + m_file.string() +
                                         ": Is a directory; lines are kept for this session only");
    history.Enter("ls");
    EXPECT_EQ(history.TakeTrouble(), std::nullopt);
    EXPECT_THAT(history.Lines(), ElementsAre("ls"));
}

TEST_F(History, DoesNotWaitForAPipe) {
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    CHistory history(m_file);
    EXPECT_NE(history.TakeTrouble(), std::nullopt);
}

TEST_F(History, SaysOnceThatItsFolderIsGone) {
    CHistory history(m_folder / "folder" / "history");
    EXPECT_EQ(history.TakeTrouble(), std::nullopt);
    std::filesystem::remove_all(m_folder / "folder");
    history.Enter("ls");
    EXPECT_EQ(history.TakeTrouble(),
              "history: No such file or directory; lines are kept for this session only");
    history.Enter("pwd");
    EXPECT_EQ(history.TakeTrouble(), std::nullopt);
    EXPECT_THAT(history.Lines(), ElementsAre("ls", "pwd"));
}

TEST_F(History, DoesWithoutAFile) {
    CHistory history("");
    EXPECT_EQ(history.TakeTrouble(),
              "history: neither XDG_STATE_HOME nor HOME names a folder; lines are kept for this "
              "session only");
    history.Enter("ls");
    EXPECT_THAT(history.Lines(), ElementsAre("ls"));
}

TEST_F(History, ForgetsTheOldest) {
    CHistory history(m_file);
    for (size_t i = 0; i <= CHistory::KEPT; ++i) {
        history.Enter(std::to_string(i));
    }
    EXPECT_THAT(history.Lines(), SizeIs(CHistory::KEPT));
    EXPECT_EQ(history.Lines().front(), "1");
}

class HistoryCommand : public ShellTest {
  protected:
    HistoryCommand() : m_history(m_folder / "history") { m_shell.SetHistory(&m_history); }

    const CTempFolder m_folder;
    CHistory m_history;
};

TEST_F(HistoryCommand, ListsTheLastLines) {
    for (int i = 1; i <= 25; ++i) {
        m_history.Enter("line " + std::to_string(i));
    }
    EXPECT_EQ(Run("history"), EXIT_PASSED);
    EXPECT_THAT(printed, testing::StartsWith("    6  line 6\n    7  line 7\n"));
    EXPECT_THAT(printed, testing::EndsWith("   25  line 25\n"));
    Run("history 2");
    EXPECT_EQ(printed, "   24  line 24\n   25  line 25\n");
    Run("history 99999999999999999999999");
    EXPECT_THAT(printed, testing::StartsWith("    1  line 1\n"));
    Run("history 0");
    EXPECT_EQ(printed, "");
}

TEST_F(HistoryCommand, ListsTheLinesWithAText) {
    for (const char* line : {"peek a", "poke a 1", "peek b"}) {
        m_history.Enter(line);
    }
    Run("history peek");
    EXPECT_EQ(printed, "    1  peek a\n    3  peek b\n");
    Run("history \"a 1\"");
    EXPECT_EQ(printed, "    2  poke a 1\n");
    EXPECT_EQ(Run("history nothing"), EXIT_PASSED);
    EXPECT_EQ(printed, "");
}

TEST_F(HistoryCommand, SaysThatAScriptHasNone) {
    m_shell.SetHistory(nullptr);
    EXPECT_EQ(Run("history"), EXIT_USAGE);
    EXPECT_EQ(errors, "there is no history: it is kept of lines that are typed at the prompt\n");
}

}  // namespace
