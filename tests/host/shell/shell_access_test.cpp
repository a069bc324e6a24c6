#include <gmock/gmock.h>

#include "tests/host/shell/shell_tree.h"

namespace {

using ShellAccess = ShellTest;
using testing::HasSubstr;

TEST_F(ShellAccess, PeeksAndPokesValues) {
    EXPECT_EQ(Run("peek dev/name"), EXIT_PASSED);
    EXPECT_EQ(printed, "name = initial\n");
    EXPECT_EQ(Run("poke dev/name 'two words'"), EXIT_PASSED);
    EXPECT_EQ(printed, "");
    EXPECT_EQ(Run("peek dev/name"), EXIT_PASSED);
    EXPECT_EQ(printed, "name = two words\n");
    EXPECT_EQ(Run("peek dev/fixed"), EXIT_PASSED);
    EXPECT_EQ(printed, "fixed = 0x1234\n");
}

TEST_F(ShellAccess, ReportsAReadOnlyValue) {
    EXPECT_EQ(Run("poke dev/fixed 1"), EXIT_FAILED);
    EXPECT_EQ(printed, "poke (Value is readonly)\n");
    EXPECT_EQ(errors, "/dev/fixed: poke failed (ERR_READONLY)\n");
}

TEST_F(ShellAccess, PeeksOneElementOrARange) {
    EXPECT_EQ(Run("peek dev/memory 0x12"), EXIT_PASSED);
    EXPECT_EQ(printed, "0x12:  12\n");
    EXPECT_EQ(Run("peek dev/memory 14..0x11"), EXIT_PASSED);
    EXPECT_EQ(printed, " 0xe:  0e 0f\n0x10:  10 11\n");
    EXPECT_EQ(Run("peek dev/list 9..10"), EXIT_PASSED);
    EXPECT_EQ(printed, "  9:  09 0a\n");
}

TEST_F(ShellAccess, TakesPositionsAndValuesInAnyBase) {
    EXPECT_EQ(Run("poke dev/memory 0b1_0000..0o21 0xA_A"), EXIT_PASSED);
    EXPECT_THAT(m_memory->cells, testing::ElementsAre(std::pair(16, 0xAA), std::pair(17, 0xAA)));
    EXPECT_EQ(Run("peek dev/memory 0o17..0x1_1"), EXIT_PASSED);
    EXPECT_EQ(printed, " 0xf:  0f\n0x10:  aa aa\n");
    EXPECT_EQ(Run("peek dev/memory 010"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/memory: position: \"010\" may be octal or decimal; write 0o10 or 10\n");
}

TEST_F(ShellAccess, PeeksAWholeArrayHoweverLarge) {
    EXPECT_EQ(Run("peek dev/memory"), EXIT_PASSED);
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 16);
    EXPECT_THAT(printed, HasSubstr("0xf0:  f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff\n"));
    EXPECT_EQ(Run("peek dev/list"), EXIT_PASSED);
    EXPECT_THAT(printed, testing::StartsWith("  5:  05 06 07 08 09 0a 0b 0c 0d 0e 0f\n 16:  10"));
    EXPECT_THAT(printed, testing::EndsWith(" 96:  60 61 62 63 64 65 66 67 68\n"));
}

TEST_F(ShellAccess, CtrlCEndsAPeek) {
    m_memory->interrupted_at = 0x20;
    EXPECT_EQ(Run("peek dev/memory"), EXIT_ABORTED);
    EXPECT_THAT(printed,
                testing::EndsWith("0x20:  20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f\n"));
}

TEST_F(ShellAccess, PokesOneElementOrARange) {
    EXPECT_EQ(Run("poke dev/memory 3 0xAA"), EXIT_PASSED);
    EXPECT_EQ(Run("poke dev/memory 0xfe..0xff 0x55"), EXIT_PASSED);
    EXPECT_THAT(m_memory->cells, testing::ElementsAre(std::pair(3, 0xAA), std::pair(0xfe, 0x55),
                                                      std::pair(0xff, 0x55)));
}

TEST_F(ShellAccess, RefusesPositionsOutsideTheArrayBeforeAnythingIsSent) {
    EXPECT_EQ(Run("peek dev/memory 0x100"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/memory: position: 0x100 is out of range, 0x0 to 0xff fits\n");
    EXPECT_EQ(Run("peek dev/list 4"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/list: position: 4 is out of range, 5 to 104 fits\n");
    EXPECT_EQ(Run("poke dev/memory 0..256 1"), EXIT_USAGE);
    EXPECT_EQ(Run("peek dev/memory -1"), EXIT_USAGE);
    EXPECT_EQ(Run("peek dev/memory 1.."), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("\"\" is not a number"));
    EXPECT_EQ(Run("peek dev/memory 1..2..3"), EXIT_USAGE);
    EXPECT_TRUE(m_memory->cells.empty());
}

TEST_F(ShellAccess, RefusesARangeThatRunsBackwards) {
    EXPECT_EQ(Run("poke dev/memory 5..2 1"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/memory: position: the range 5..2 runs backwards; write it 2..5\n");
    EXPECT_TRUE(m_memory->cells.empty());
}

TEST_F(ShellAccess, RefusesValuesThatDoNotFit) {
    EXPECT_EQ(Run("poke dev/memory 1 256"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/memory: value: 256 is out of range, 0 to 255 fits\n");
    EXPECT_EQ(Run("poke dev/name " + std::string(1023, 'x')), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("value: too long"));
    EXPECT_EQ(Run("poke dev/name a b"), EXIT_USAGE);
    EXPECT_EQ(errors, "usage: poke /dev/name VALUE\n");
    EXPECT_EQ(Run("poke dev/memory 1"), EXIT_USAGE);
    EXPECT_EQ(errors, "usage: poke /dev/memory POSITION|FIRST..LAST VALUE\n");
    EXPECT_EQ(Run("peek dev/name 1"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/name is a value and has no positions\n");
}

TEST_F(ShellAccess, ReportsAnElementThatFailsAndKeepsWhatWasRead) {
    m_memory->broken = 0x40;
    EXPECT_EQ(Run("peek dev/memory"), EXIT_FAILED);
    EXPECT_THAT(printed, testing::StartsWith(" 0x0:  00 01"));
    EXPECT_THAT(printed, HasSubstr("0x20:  20 21"));
    EXPECT_THAT(printed, HasSubstr("cell broken"));
    EXPECT_EQ(errors, "/dev/memory: peek failed (ERR_FAIL)\n");
    EXPECT_EQ(Run("poke dev/memory 0x3f..0x41 9"), EXIT_FAILED);
    EXPECT_EQ(errors, "/dev/memory: poke failed (ERR_FAIL)\n");
    EXPECT_EQ(m_memory->cells.size(), 1U);
}

TEST_F(ShellAccess, RefusesNodesThatHoldNothing) {
    EXPECT_EQ(Run("peek dev"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev is a device; peek and poke take values and arrays\n");
    EXPECT_EQ(Run("poke dev/add 1"), EXIT_USAGE);
}

}  // namespace
