// Feeds the shell what nobody means to type. Whatever comes, a line ends with
// an exit status, and a line that is refused has run nothing.
#include <gmock/gmock.h>

#include <array>
#include <random>

#include "tests/host/shell/shell_tree.h"

namespace {

constexpr std::array PIECES = {"dev",       "/",           "..",   ".",     "add",
                               "check",     "memory",      "name", "peek ", "poke ",
                               "cd ",       "ls ",         "help", " ",     " ",
                               "\t",        "'",           "\"",   "\\",    "#",
                               "0x",        "255",         "-1",   "..",    "/dev/add ",
                               "/dev/fail", "/dev/memory", "pass", "7 ",    "99999999999999999999"};

class ShellGarbage : public ShellTest {
  protected:
    // A line of pieces of the grammar, some of them damaged.
    std::string Line() {
        std::string line;
        for (unsigned int i = Below(12); i != 0; --i) {
            if (Below(8) == 0) {
                line += static_cast<char>(Below(256));
            } else {
                line += PIECES[Below(PIECES.size())];
            }
        }
        return line;
    }

    unsigned int Below(size_t limit) { return static_cast<unsigned int>(m_random() % limit); }

    std::mt19937 m_random{20261120};
};

TEST_F(ShellGarbage, EveryLineEndsWithAnExitStatus) {
    std::array<unsigned int, EXIT_HOST + 1> seen{};
    for (int i = 0; i < 20000; ++i) {
        const std::string line = Line();
        const unsigned int calls = m_calls;
        const EExitStatus status = Run(line);
        ASSERT_GE(status, EXIT_PASSED) << line;
        ASSERT_LE(status, EXIT_USAGE) << line;
        ++seen.at(status);
        if (status == EXIT_USAGE) {
            ASSERT_NE(errors, "") << line;
            // Of several commands only the one that is wrong is not done.
            if (line.find_first_of(";&") == std::string::npos) {
                ASSERT_EQ(m_calls, calls) << line;
            }
        }
        if (line.find('&') != std::string::npos) {
            // What it left in the background shall not call later.
            Run("wait");
        }
    }
    // The lines are not all of one kind, or the test would show little.
    EXPECT_GT(seen[EXIT_PASSED], 100U);
    EXPECT_GT(seen[EXIT_FAILED], 10U);
    EXPECT_GT(seen[EXIT_USAGE], 1000U);
}

TEST_F(ShellGarbage, ErrorsHoldNoControlCharacters) {
    for (int i = 0; i < 5000; ++i) {
        const std::string line = Line();
        Run(line);
        for (const char c : errors) {
            ASSERT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << line;
        }
    }
}

}  // namespace
