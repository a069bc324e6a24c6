#include "boards/devicetree/file_bytes.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"
#include "tests/support/thrown_text.h"

TEST(FileBytes, ReadsAFileOfExactlyTheLargestSize) {
    const CTempFolder folder;
    const std::vector<uint8_t> bytes(200'000, 0xA5);
    EXPECT_EQ(ReadFileBytes(folder.Write("file", bytes), bytes.size()), bytes);
}

TEST(FileBytes, ReadsAnEmptyFile) {
    const CTempFolder folder;
    EXPECT_TRUE(ReadFileBytes(folder.Write("file", {}), 16).empty());
}

TEST(FileBytes, NamesAFileThatIsNotThereAndTheReason) {
    EXPECT_EQ(ThrownText([] { ReadFileBytes("/nonexistent/board.dtb", 16); }),
              "/nonexistent/board.dtb: cannot be opened: No such file or directory");
}

TEST(FileBytes, RefusesAFolder) {
    const CTempFolder folder;
    EXPECT_EQ(ThrownText([&] { ReadFileBytes(folder.Path(), 16); }),
              folder.Path().string() + ": cannot be read: Is a directory");
}

TEST(FileBytes, RefusesOneByteTooMany) {
    const CTempFolder folder;
    const auto file = folder.Write("file", std::vector<uint8_t>(17));
    EXPECT_EQ(ThrownText([&] { ReadFileBytes(file, 16); }),
              file.string() + ": too large: more than 16 bytes");
}

TEST(FileBytes, StopsReadingWhatNeverEnds) {
    EXPECT_EQ(ThrownText([] { ReadFileBytes("/dev/zero", 1'000'000); }),
              "/dev/zero: too large: more than 1000000 bytes");
}
