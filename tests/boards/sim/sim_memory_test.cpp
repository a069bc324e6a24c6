#include "boards/sim/sim_memory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/temp_folder.h"
#include "tests/support/thrown_text.h"

namespace {

using CData = std::vector<uint8_t>;

class SimMemory : public testing::Test {
  protected:
    static CData Read(const CSimMemory& memory, uint32_t offset, size_t length) {
        CData bytes(length);
        memory.Read(offset, bytes);
        return bytes;
    }

    const CTempFolder m_folder;
    const std::filesystem::path m_path = m_folder / "eeprom.bin";
};

TEST_F(SimMemory, MakesAMissingFileOfErasedBytes) {
    const CSimMemory memory(m_path, 16);
    EXPECT_EQ(BytesOf(m_path), CData(16, 0xFF));
    EXPECT_EQ(memory.Size(), 16U);
}

TEST_F(SimMemory, MakesAMissingFileFromItsImage) {
    const CData image = {1, 2, 3, 4};
    const CSimMemory memory(m_path, 4, image);
    EXPECT_EQ(BytesOf(m_path), image);
    EXPECT_EQ(Read(memory, 1, 2), (CData{2, 3}));
}

TEST_F(SimMemory, MakesTheFoldersAboveTheFile) {
    const CSimMemory memory(m_folder / "state/bus 0/eeprom.bin", 16);
    EXPECT_EQ(BytesOf(m_folder / "state/bus 0/eeprom.bin").size(), 16U);
}

TEST_F(SimMemory, LeavesNothingElseBehindWhenItMakesTheFile) {
    const CSimMemory memory(m_path, 16);
    size_t entries = 0;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator(m_folder.Path())) {
        ++entries;
    }
    EXPECT_EQ(entries, 1U);
}

TEST_F(SimMemory, MakesAFileThatFollowsTheUmask) {
    const mode_t mask = ::umask(027);
    const CSimMemory memory(m_path, 16);
    ::umask(mask);
    EXPECT_EQ(std::filesystem::status(m_path).permissions(), std::filesystem::perms{0640});
}

TEST_F(SimMemory, KeepsTheContentsOfAnExistingFile) {
    WriteFile(m_path, {9, 8, 7, 6});
    const CSimMemory memory(m_path, 4, CData{1, 2, 3, 4});
    EXPECT_EQ(Read(memory, 0, 4), (CData{9, 8, 7, 6}));
}

TEST_F(SimMemory, RefusesAFileOfAnotherSize) {
    WriteFile(m_path, CData(15));
    EXPECT_EQ(
        ThrownText([&] { const CSimMemory memory(m_path, 16); }),
        m_path.string() + " holds 15 bytes, but the chip has 16; remove it to have it made anew");
    EXPECT_EQ(BytesOf(m_path).size(), 15U);
}

TEST_F(SimMemory, RefusesAnImageOfAnotherSize) {
    EXPECT_EQ(ThrownText([&] { const CSimMemory memory(m_path, 16, CData(17)); }),
              "the image for " + m_path.string() + " holds 17 bytes, but the chip has 16");
    EXPECT_FALSE(std::filesystem::exists(m_path));
}

TEST_F(SimMemory, RefusesWhatIsNoPlainFile) {
    EXPECT_EQ(ThrownText([&] { const CSimMemory memory(m_folder.Path(), 16); }),
              m_folder.Path().string() + " is not a plain file");
}

TEST_F(SimMemory, TellsWhyAFileCannotBeMade) {
    WriteFile(m_path, {0});
    const std::filesystem::path below = m_path / "eeprom.bin";
    EXPECT_EQ(ThrownText([&] { const CSimMemory memory(below, 16); }),
              "cannot open " + below.string() + ": Not a directory");
}

TEST_F(SimMemory, WritesThroughAtOnce) {
    CSimMemory memory(m_path, 8);
    memory.Write(2, CData{0x11, 0x22});
    EXPECT_EQ(BytesOf(m_path), (CData{0xFF, 0xFF, 0x11, 0x22, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(SimMemory, SeesAByteChangedInPlace) {
    const CSimMemory memory(m_path, 8);
    EXPECT_EQ(Read(memory, 3, 1), CData{0xFF});
    PatchFile(m_path, 3, 0x5A);
    EXPECT_EQ(Read(memory, 3, 1), CData{0x5A});
}

TEST_F(SimMemory, SeesAndWritesAFileThatReplacedItsOwn) {
    CSimMemory memory(m_path, 4);
    WriteFile(m_folder / "new", {1, 2, 3, 4});
    std::filesystem::rename(m_folder / "new", m_path);
    EXPECT_EQ(Read(memory, 0, 4), (CData{1, 2, 3, 4}));
    memory.Write(0, CData{9});
    EXPECT_EQ(BytesOf(m_path), (CData{9, 2, 3, 4}));
}

TEST_F(SimMemory, TellsWhenTheFileIsGone) {
    CSimMemory memory(m_path, 4);
    std::filesystem::remove(m_path);
    const std::string text = "cannot open " + m_path.string() + ": No such file or directory";
    EXPECT_EQ(ThrownText([&] { Read(memory, 0, 1); }), text);
    EXPECT_EQ(ThrownText([&] { memory.Write(0, CData{1}); }), text);
    EXPECT_FALSE(std::filesystem::exists(m_path));
}

TEST_F(SimMemory, TellsWhenTheFileChangedItsSize) {
    CSimMemory memory(m_path, 4);
    WriteFile(m_path, CData(3));
    const std::string text =
        m_path.string() + " holds 3 bytes, but the chip has 4; remove it to have it made anew";
    EXPECT_EQ(ThrownText([&] { Read(memory, 0, 1); }), text);
    EXPECT_EQ(ThrownText([&] { memory.Write(0, CData{1}); }), text);
    EXPECT_EQ(BytesOf(m_path), CData(3));
}

}  // namespace
