// A memory and the file behind it: changed, gone, put back.
#include "tests/boards/sim/sim_test.h"
#include "tests/support/log_capture.h"

namespace {

class SimAt24File : public CSimTest {
  protected:
    SimAt24File() : m_chip(AddAt24("24c02", 0x50, Counting(256))) {}

    const std::filesystem::path& Path() { return m_chip.Memory().Path(); }
    std::string GoneText() {
        return "cannot open " + Path().string() + ": No such file or directory\n";
    }

    CSimAt24& m_chip;
    CLogCapture m_log;
};

TEST_F(SimAt24File, IsReadAsItIsAtTheStartOfEachTransfer) {
    EXPECT_EQ(Read(0x50, {0x10}, 1), CData{0x10});
    PatchFile(Path(), 0x10, 0x5A);
    EXPECT_EQ(Read(0x50, {0x10}, 1), CData{0x5A});
    WriteFile(m_folder / "new", CData(256, 0x33));
    std::filesystem::rename(m_folder / "new", Path());
    EXPECT_EQ(Read(0x50, {0x10}, 1), CData{0x33});
}

TEST_F(SimAt24File, ThatCannotBeReadKeepsTheChipFromAcknowledging) {
    std::filesystem::remove(Path());
    EXPECT_TRUE(Read(0x50, 1).empty());
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50");
    EXPECT_EQ(m_log.Joined(0x20), GoneText());
}

TEST_F(SimAt24File, IsReportedOnceForAllAttempts) {
    std::filesystem::remove(Path());
    EXPECT_TRUE(Read(0x50, 1).empty());
    EXPECT_TRUE(Read(0x50, 1).empty());
    EXPECT_EQ(m_log.Texts(0x20).size(), 1U);
    WriteFile(Path(), Counting(256));
    EXPECT_EQ(Read(0x50, {0x01}, 1), CData{0x01});
    std::filesystem::remove(Path());
    EXPECT_TRUE(Read(0x50, 1).empty());
    EXPECT_EQ(m_log.Texts(0x20).size(), 2U);
}

TEST_F(SimAt24File, ThatCannotBeWrittenKeepsTheChipFromAcknowledging) {
    std::filesystem::remove(Path());
    EXPECT_TRUE(Write(0x50, {0x10}, {0xA5}));  // the bytes went into the page buffer
    EXPECT_EQ(m_log.Joined(0x20), GoneText());
    EXPECT_FALSE(Answers(0x50));
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50, asked 25 more times after a write");
    EXPECT_FALSE(Answers(0x50));
    EXPECT_EQ(m_log.Texts(0x20).size(), 1U);
}

TEST_F(SimAt24File, GetsThePageOnceItCanBeWrittenAgain) {
    std::filesystem::remove(Path());
    EXPECT_TRUE(Write(0x50, {0x10}, {0xA5, 0xA6}));
    CData restored = Counting(256);
    restored[0x12] = 0x77;
    WriteFile(Path(), restored);

    EXPECT_EQ(Read(0x50, {0x0F}, 4), (CData{0x0F, 0xA5, 0xA6, 0x77}));
    restored[0x10] = 0xA5;
    restored[0x11] = 0xA6;
    EXPECT_EQ(BytesOf(Path()), restored);
}

}  // namespace
