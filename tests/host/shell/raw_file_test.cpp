#include "host/shell/builtins/raw_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "host/usage_error.h"
#include "tests/support/temp_folder.h"
#include "tests/support/thrown_text.h"

namespace {

using CBytes = std::vector<byte_t>;

class RawFile : public testing::Test {
  protected:
    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    std::string Make(const std::string& name, const CBytes& bytes) const {
        return m_folder.Write(name, bytes).string();
    }
    size_t FilesInFolder() const {
        const std::filesystem::directory_iterator files(m_folder.Path());
        return static_cast<size_t>(std::distance(begin(files), end(files)));
    }
    static std::string RefusalOf(const std::string& path) {
        return UsageTextOf([&] { const CRawInput input(path); });
    }
    template <class Work>
    static std::string UsageTextOf(Work&& work) {
        try {
            work();
        } catch (const CUsageError& e) {
            return e.what();
        }
        return "no usage error";
    }

    CTempFolder m_folder;
};

using RawInput = RawFile;
using RawOutput = RawFile;

// A user who may open nothing here, for a scope.
class CNobody {
  public:
    CNobody() : m_self(::geteuid()) {
        if (m_self == 0 && ::seteuid(65534) != 0) {
            throw std::system_error(errno, std::generic_category(), "seteuid");
        }
    }
    ~CNobody() {
        if (::geteuid() != m_self && ::seteuid(m_self) != 0) {
            std::abort();
        }
    }
    CNobody(const CNobody&) = delete;
    CNobody& operator=(const CNobody&) = delete;

  private:
    const uid_t m_self;
};

TEST_F(RawInput, ReadsAllBytes) {
    CBytes bytes(100'000);
    for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<byte_t>(i * 7 / 3);
    }
    const CRawInput input(Make("data", bytes));
    EXPECT_EQ(input.Size(), 100'000U);
    EXPECT_EQ(input.Read(), bytes);
}

TEST_F(RawInput, FollowsALink) {
    Make("data", {1, 2});
    std::filesystem::create_symlink("data", m_folder / "link");
    EXPECT_EQ(CRawInput(Path("link")).Read(), (CBytes{1, 2}));
}

TEST_F(RawInput, RefusesWhatCannotBeOpened) {
    EXPECT_EQ(RefusalOf(Path("missing")), Path("missing") + ": No such file or directory");
    EXPECT_EQ(RefusalOf(Make("data", {1}) + "/x"), Path("data/x") + ": Not a directory");
    EXPECT_EQ(RefusalOf(""), "\"\" cannot name a file");
    EXPECT_EQ(RefusalOf(Path("data") + '\0'), '"' + Path("data") + "\\x00\" cannot name a file");
}

TEST_F(RawInput, RefusesAFileThatMayNotBeRead) {
    const std::string path = Make("data", {1});
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    const CNobody nobody;
    EXPECT_EQ(RefusalOf(path), path + ": Permission denied");
}

TEST_F(RawInput, RefusesWhatIsNoPlainFile) {
    EXPECT_EQ(RefusalOf(m_folder.Path().string()), m_folder.Path().string() + " is a directory");
    EXPECT_EQ(RefusalOf("/dev/zero"), "/dev/zero is not a plain file");
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(RefusalOf(Path("pipe")), Path("pipe") + " is not a plain file");
}

TEST_F(RawInput, RefusesAnEmptyFile) {
    EXPECT_EQ(RefusalOf(Make("data", {})), Path("data") + " is empty");
}

TEST_F(RawInput, RefusesAFileThatGrows) {
    const CRawInput input(Make("data", {1, 2}));
    WriteFile(Path("data"), {1, 2, 3});
    EXPECT_EQ(UsageTextOf([&] { input.Read(); }), Path("data") + " changed while it was read");
}

TEST_F(RawInput, RefusesAFileThatShrinks) {
    const CRawInput input(Make("data", {1, 2}));
    WriteFile(Path("data"), {1});
    EXPECT_EQ(UsageTextOf([&] { input.Read(); }), Path("data") + " changed while it was read");
}

TEST_F(RawInput, ReadsTheFileItOpenedEvenIfAnotherTakesItsName) {
    const CRawInput input(Make("data", {1, 2}));
    std::filesystem::rename(Make("other", {3, 4}), Path("data"));
    EXPECT_EQ(input.Read(), (CBytes{1, 2}));
}

TEST_F(RawOutput, IsNotThereBeforeItIsWhole) {
    CRawOutput output(Path("data"), false);
    EXPECT_FALSE(std::filesystem::exists(Path("data")));
    output.Finish(CBytes{1, 2, 3});
    EXPECT_EQ(BytesOf(Path("data")), (CBytes{1, 2, 3}));
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(RawOutput, LeavesNothingWhenItIsNotFinished) {
    { const CRawOutput output(Path("data"), false); }
    EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(RawOutput, MayBeEmpty) {
    CRawOutput(Path("data"), false).Finish({});
    EXPECT_EQ(std::filesystem::file_size(Path("data")), 0U);
}

TEST_F(RawOutput, RefusesAFileThatExists) {
    Make("data", {9});
    EXPECT_EQ(UsageTextOf([&] { const CRawOutput output(Path("data"), false); }),
              Path("data") + " exists; --force replaces it");
    std::filesystem::create_symlink("nowhere", m_folder / "link");
    EXPECT_EQ(UsageTextOf([&] { const CRawOutput output(Path("link"), false); }),
              Path("link") + " exists; --force replaces it");
    EXPECT_EQ(BytesOf(Path("data")), CBytes{9});
    EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(RawOutput, ReplacesAFileOnDemandAsAWhole) {
    Make("data", {9, 9});
    {
        CRawOutput output(Path("data"), true);
        EXPECT_EQ(BytesOf(Path("data")), (CBytes{9, 9}));
        output.Finish(CBytes{1});
    }
    EXPECT_EQ(BytesOf(Path("data")), CBytes{1});
    { const CRawOutput unfinished(Path("data"), true); }
    EXPECT_EQ(BytesOf(Path("data")), CBytes{1});
}

TEST_F(RawOutput, ReplacesTheFileBehindALink) {
    Make("data", {9});
    std::filesystem::create_symlink("data", m_folder / "link");
    CRawOutput(Path("link"), true).Finish(CBytes{1});
    EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
    EXPECT_EQ(BytesOf(Path("data")), CBytes{1});
}

TEST_F(RawOutput, ReplacesNothingButPlainFiles) {
    std::filesystem::create_directory(m_folder / "folder");
    for (const bool replace : {false, true}) {
        EXPECT_EQ(UsageTextOf([&] { const CRawOutput output(Path("folder"), replace); }),
                  Path("folder") + " is a directory");
        EXPECT_EQ(UsageTextOf([&] { const CRawOutput output("/dev/null", replace); }),
                  "/dev/null is not a plain file");
    }
}

TEST_F(RawOutput, RefusesAPlaceWhereNoFileCanBeMade) {
    const std::string text =
        UsageTextOf([&] { const CRawOutput output(Path("missing/data"), false); });
    EXPECT_TRUE(text.starts_with("cannot make " + Path("missing/data."))) << text;
    EXPECT_TRUE(text.ends_with(".tmp: No such file or directory")) << text;
}

TEST_F(RawOutput, RefusesANameThatNoFileCanHave) {
    EXPECT_EQ(UsageTextOf([] { const CRawOutput output("", true); }), "\"\" cannot name a file");
}

TEST_F(RawOutput, DoesNotReplaceAFileThatAppearedMeanwhile) {
    CRawOutput output(Path("data"), false);
    Make("data", {9});
    EXPECT_EQ(ThrownText([&] { output.Finish(CBytes{1}); }),
              Path("data") + " exists by now; --force replaces it");
    EXPECT_EQ(BytesOf(Path("data")), CBytes{9});
}

TEST_F(RawOutput, TellsWhenItsFolderWentAway) {
    std::filesystem::create_directory(m_folder / "folder");
    CRawOutput output(Path("folder/data"), false);
    std::filesystem::remove_all(m_folder / "folder");
    EXPECT_EQ(ThrownText([&] { output.Finish(CBytes{1}); }),
              "cannot make " + Path("folder/data") + ": No such file or directory");
}

// Files may grow to some bytes only, as on a full disk, for a scope.
class CFullDisk {
  public:
    explicit CFullDisk(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_saved);
        const rlimit limit = {bytes, m_saved.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_handler);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

  private:
    void (*const m_handler)(int);
    rlimit m_saved{};
};

TEST_F(RawOutput, KeepsTheOldFileWhenTheNewOneCannotBeWritten) {
    Make("data", {9});
    {
        CRawOutput output(Path("data"), true);
        std::string text;
        {
            const CFullDisk disk(10);
            text = ThrownText([&] { output.Finish(CBytes(20)); });
        }
        EXPECT_EQ(text, "cannot write " + Path("data") + ": File too large");
    }
    EXPECT_EQ(BytesOf(Path("data")), CBytes{9});
    EXPECT_EQ(FilesInFolder(), 1U);
}

}  // namespace
