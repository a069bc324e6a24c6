// Whom commands ask for consent: who typed them at the prompt, and nobody else.
#include <gtest/gtest.h>

#include <csignal>
#include <deque>

#include "framework/consent.h"
#include "framework/diag_func.h"
#include "host/shell/input/line_reader.h"
#include "host/shell/session.h"
#include "tests/host/shell/shell_tree.h"
#include "tests/host/shell/standard_input.h"
#include "tests/support/temp_folder.h"

namespace {

// Asks for consent, twice, and counts how often it was given.
class COverwriteCmd : public CDiagFunc {
  public:
    explicit COverwriteCmd(unsigned int& allowed)
        : CDiagFunc("overwrite", "asks first", 0), m_allowed(allowed) {}
    void Invoke(CInMsg&, COutMsg& out) override {
        if (m_is_interrupted) {
            std::raise(SIGINT);
        }
        for (int time = 0; time < 2; ++time) {
            m_allowed += AllowedByOperator("overwrite it") ? 1 : 0;
        }
        out << static_cast<uint8_t>(MSG_SUCCESS);
    }

    bool m_is_interrupted = false;  // by Ctrl-C, before it asks

  private:
    unsigned int& m_allowed;
};

class CLines : public ILineReader {
  public:
    explicit CLines(std::deque<std::string> lines) : m_lines(std::move(lines)) {}
    ELine Read(const std::string&, std::string& line) override {
        if (m_lines.empty()) {
            return ELine::END;
        }
        line = m_lines.front();
        m_lines.pop_front();
        return ELine::READ;
    }

  private:
    std::deque<std::string> m_lines;
};

class ConsentQuestion : public ShellTest {
  protected:
    ConsentQuestion() { m_device->AddChild(m_command, CDiagObj::NO_SORT); }

    EExitStatus AtThePrompt(std::deque<std::string> typed) {
        CLines lines(std::move(typed));
        Catch();
        const EExitStatus status = RunTerminal(m_shell, lines);
        Caught();
        return status;
    }

    unsigned int m_allowed = 0;
    COverwriteCmd* m_command = new COverwriteCmd(m_allowed);  // the tree's
    CTempFolder m_folder;
};

TEST_F(ConsentQuestion, IsAskedOnceForOneCommand) {
    const CTypedInput terminal("y\n");
    AtThePrompt({"dev/overwrite"});
    EXPECT_EQ(m_allowed, 2U);
    EXPECT_EQ(printed, "overwrite it? [y/N] \n\n");
}

TEST_F(ConsentQuestion, IsAskedAgainByTheNextCommandOfTheLine) {
    const CTypedInput terminal("y\nn\n");
    AtThePrompt({"dev/overwrite; dev/overwrite"});
    EXPECT_EQ(m_allowed, 2U);
    EXPECT_EQ(printed, "overwrite it? [y/N] \noverwrite it? [y/N] \n\n");
}

TEST_F(ConsentQuestion, IsAskedOnceForAllRunsOfARepeat) {
    const CTypedInput terminal("y\n");
    AtThePrompt({"repeat 3 'dev/overwrite; dev/overwrite'"});
    EXPECT_EQ(m_allowed, 12U);
    EXPECT_TRUE(printed.starts_with("overwrite it? [y/N] \nrepeat: 3 runs")) << printed;
}

TEST_F(ConsentQuestion, IsNotAskedAfterCtrlC) {
    const CTypedInput terminal("y\n");
    m_command->m_is_interrupted = true;
    AtThePrompt({"repeat 3 dev/overwrite"});
    EXPECT_EQ(m_allowed, 0U);
    EXPECT_EQ(printed.find("[y/N]"), std::string::npos) << printed;
}

TEST_F(ConsentQuestion, IsNotAskedOfAScript) {
    const CTypedInput terminal("y\n");
    CLines lines({"dev/overwrite"});
    Catch();
    RunScript(m_shell, lines, "script");
    RunCommands(m_shell, {"dev/overwrite"});
    Caught();
    EXPECT_EQ(m_allowed, 0U);
    EXPECT_EQ(printed + errors, "");
}

TEST_F(ConsentQuestion, IsNotAskedOfAScriptThatIsRunAtThePrompt) {
    const CTypedInput terminal("y\n");
    const std::filesystem::path script = m_folder / "script";
    std::ofstream(script) << "dev/overwrite\n";
    AtThePrompt({"source " + script.string()});
    EXPECT_EQ(m_allowed, 0U);
    EXPECT_EQ(printed + errors, "\n");
}

TEST_F(ConsentQuestion, IsNotAskedOfAJob) {
    const CTypedInput terminal("y\n");
    AtThePrompt({"dev/overwrite &", "wait"});
    EXPECT_EQ(m_allowed, 0U);
    EXPECT_EQ(printed.find("[y/N]"), std::string::npos) << printed;
}

}  // namespace
