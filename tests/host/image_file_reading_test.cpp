// Files that are read as images, and files that are not.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "host/hex_dump.h"
#include "host/image_file.h"
#include "host/usage_error.h"
#include "tests/support/temp_folder.h"

namespace {

using CBytes = std::vector<uint8_t>;

class ImageReading : public ::testing::Test {
  protected:
    // What is said about a file instead of reading it, behind its name.
    static std::string Refusal(const std::string& path) {
        try {
            ReadImage(path);
        } catch (const CUsageError& e) {
            const std::string text = e.what();
            EXPECT_EQ(text.substr(0, path.size()), path);
            return text.substr(std::min(path.size(), text.size()));
        }
        return " was read";
    }

    const CTempFolder m_folder;
};

}  // namespace

TEST_F(ImageReading, GivesTheBytesOfAFile) {
    const CBytes image{0x92, 0x00, 0xFF, '\n'};
    EXPECT_EQ(ReadImage(m_folder.Write("raw", image)), image);
}

TEST_F(ImageReading, GivesTheBytesOfADump) {
    const std::string text = "00: 92 00\n";
    EXPECT_EQ(ReadImage(m_folder.Write("dump", CBytes(text.begin(), text.end()))),
              (CBytes{0x92, 0x00}));
}

TEST_F(ImageReading, TakesAFileOfTheLargestSizeAndNoneBeyond) {
    const CBytes largest(MAX_IMAGE_SIZE, 0xFF);
    EXPECT_EQ(ReadImage(m_folder.Write("largest", largest)), largest);
    const CBytes larger(MAX_IMAGE_SIZE + 1, 0xFF);
    EXPECT_EQ(Refusal(m_folder.Write("larger", larger)),
              ": more than 1 MiB, no image of an EEPROM");
}

TEST_F(ImageReading, NamesAFileThatCannotBeRead) {
    EXPECT_EQ(Refusal(m_folder / "nothing"), ": No such file or directory");
    EXPECT_EQ(Refusal(m_folder.Path()), " is a directory");
    EXPECT_EQ(Refusal(m_folder.Write("empty", {})), " is empty");
}

TEST_F(ImageReading, WaitsForNoPipeAndNoDevice) {
    const std::string pipe = m_folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(Refusal(pipe), " is not a plain file; - reads standard input");
    EXPECT_EQ(Refusal("/dev/zero"), " is not a plain file; - reads standard input");
}
