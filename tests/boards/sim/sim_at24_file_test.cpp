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

TEST_F(SimAt24File, ThatCannotBeReadFailsTheTransferAndIsNamed) {
    std::filesystem::remove(Path());
    EXPECT_TRUE(Read(0x50, {0x00}, 1).empty());
    EXPECT_EQ(m_errmsg + "\n", GoneText());
    EXPECT_EQ(m_log.Joined(0x20), GoneText());
    WriteFile(Path(), Counting(256));
    EXPECT_EQ(Read(0x50, {0x01}, 1), CData{0x01});
}

TEST_F(SimAt24File, ThatCannotBeWrittenFailsTheWriteAndIsNamed) {
    std::filesystem::remove(Path());
    EXPECT_FALSE(Write(0x50, {0x10}, {0xA5}));
    EXPECT_EQ(m_errmsg + "\n", GoneText());
    EXPECT_EQ(m_log.Joined(0x20), GoneText());
}

TEST_F(SimAt24File, NeverGetsAWriteThatWasReportedAsFailed) {
    std::filesystem::remove(Path());
    EXPECT_FALSE(Write(0x50, {0x10}, {0xA5, 0xA6}));
    WriteFile(Path(), Counting(256));
    EXPECT_EQ(Read(0x50, {0x10}, 2), (CData{0x10, 0x11}));
    EXPECT_TRUE(Write(0x50, {0x20}, {0x77}));
    CData expected = Counting(256);
    expected[0x20] = 0x77;
    EXPECT_EQ(BytesOf(Path()), expected);
}

TEST_F(SimAt24File, FaultLeavesTheOtherChipsOfTheWireWorking) {
    CSimMux& mux = AddMux("pca9548", 0x70);
    CSimAt24& other = AddAt24(mux.Channel(0), "24c02", 0x50, Counting(256));
    EXPECT_TRUE(Write(0x70, {0x01}));
    std::filesystem::remove(Path());
    EXPECT_FALSE(Write(0x50, {0x10}, {0xA5}));
    EXPECT_EQ(BytesOf(other.Memory().Path())[0x10], 0xA5);
    EXPECT_TRUE(Write(0x70, {0x00}));
}

}  // namespace
