#include "host/shell/report/log_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>
#include <thread>
#include <vector>

#include "framework/diag_menu.h"
#include "host/log_filter.h"
#include "host/shell/run/run_recorder.h"
#include "tests/support/temp_folder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Files of this process may not grow beyond a size, as on a disk that is full.
class CFullDisk {
  public:
    explicit CFullDisk(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit less{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &less);
    }
    ~CFullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

  private:
    void (*const m_handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
    rlimit m_before{};
};

class LogFile : public testing::Test {
  protected:
    LogFile() {
        m_root.AddChild(m_device, CDiagObj::NO_SORT);
        m_log.emplace(m_path, [this](const std::string& text) { m_told.push_back(text); });
    }

    void Print(const CDiagMenu* node, const char* text) { m_log->Write({LW_PRINT, node, text}); }

    // The lines of a file without their times, which it checks.
    static std::vector<std::string> Lines(const std::string& path) {
        static const std::regex begin(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[+-]\d\d:\d\d )");
        std::ifstream file(path);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            std::smatch match;
            const bool found =
                std::regex_search(line, match, begin, std::regex_constants::match_continuous);
            EXPECT_TRUE(found) << line;
            lines.push_back(found ? match.suffix().str() : line);
        }
        return lines;
    }
    // All that was logged.
    std::vector<std::string> Logged() {
        m_log.reset();
        return Lines(m_path);
    }

    const CTempFolder m_folder;
    const std::string m_path = m_folder / "session.log";
    std::vector<std::string> m_told;
    CDiagMenu m_root{TMENU, "board", ""};
    CDiagMenu* m_device = new CDiagMenu(TMENU, "dev", "");  // owned by the tree
    std::optional<CLogFile> m_log;
};

TEST_F(LogFile, TellsTypeLevelJobNodeAndText) {
    m_log->Write({LW_HW_TRACE, m_device, "write to 0x50\n"});
    m_log->Write({LW_WARN, nullptr, "no node, no newline"});
    m_log->Write({0xF3, &m_root, "whatever\n"});
    m_log->Note("", "begin: ls");
    m_log->Note("/dev", "two\nlines");
    EXPECT_THAT(Logged(),
                ElementsAre("hw-debug:10 - /dev write to 0x50", "warning:0 - - no node, no newline",
                            "other:3 - / whatever", "shell - - begin: ls", "shell - /dev two",
                            "shell - /dev lines"));
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(LogFile, TellsTheJob) {
    const CLogFilter filter;
    CRunRecorder recorder(filter);
    {
        CRunRecorder::COpen open(recorder, {});
        open.Record().job = 3;
        m_log->Write({LW_INFO, m_device, "of the job"});
        Print(m_device, "printed");
    }
    Print(m_device, "after it");
    EXPECT_THAT(Logged(), ElementsAre("info:0 3 /dev of the job", "print:0 3 /dev printed",
                                      "print:0 - /dev after it"));
}

TEST_F(LogFile, TakesEveryLevelOfEveryType) {
    for (unsigned int logword = 0; logword <= 0xFF; ++logword) {
        EXPECT_TRUE(m_log->Takes(logword)) << logword;
    }
}

TEST_F(LogFile, MakesALineOfEveryLineOfAText) {
    m_log->Write({LW_INFO, nullptr, "one\n\ntwo\n"});
    m_log->Write({LW_INFO, nullptr, ""});
    EXPECT_THAT(Logged(), ElementsAre("info:0 - - one", "info:0 - - ", "info:0 - - two"));
}

TEST_F(LogFile, JoinsThePiecesOfAPrintedLine) {
    for (const char* piece : {"0x00: ", " 1", " 2", "", "\n0x10: ", " 3\n"}) {
        Print(m_device, piece);
    }
    EXPECT_THAT(Logged(), ElementsAre("print:0 - /dev 0x00:  1 2", "print:0 - /dev 0x10:  3"));
}

TEST_F(LogFile, EndsAnOpenLineBeforeWhateverComesNextOnItsThread) {
    Print(m_device, "one");
    m_log->Write({LW_SW_TRACE, m_device, "trace"});
    Print(m_device, "two");
    Print(&m_root, "three");
    m_log->Note("", "end");
    Print(nullptr, "at the end");
    EXPECT_THAT(Logged(),
                ElementsAre("print:0 - /dev one", "sw-debug:1 - /dev trace", "print:0 - /dev two",
                            "print:0 - / three", "shell - - end", "print:0 - - at the end"));
}

TEST_F(LogFile, KeepsTheLinesOfThreadsApart) {
    Print(m_device, "mine ");
    std::thread([this] {
        Print(m_device, "other ");
        Print(m_device, "line\n");
    }).join();
    Print(m_device, "line\n");
    EXPECT_THAT(Logged(), ElementsAre("print:0 - /dev other line", "print:0 - /dev mine line"));
}

TEST_F(LogFile, NeverMixesLinesOfThreads) {
    constexpr int LINES = 200;
    const CLogSinkScope sink(*m_log);
    const auto work = [this](const char* letter) {
        for (int i = 0; i < LINES; ++i) {
            for (int piece = 0; piece < 5; ++piece) {
                m_device->SendLog(LW_PRINT, "%s", letter);
            }
            m_device->SendLog(LW_PRINT, "\n");
            m_log->Note("", letter);
        }
    };
    std::thread a(work, "a");
    std::thread b(work, "b");
    a.join();
    b.join();
    const std::vector<std::string> lines = Lines(m_path);
    EXPECT_THAT(lines, SizeIs(4 * LINES));
    for (const char* line :
         {"print:0 - /dev aaaaa", "print:0 - /dev bbbbb", "shell - - a", "shell - - b"}) {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), LINES) << line;
    }
}

TEST_F(LogFile, ShowsControlCharactersAsText) {
    m_log->Write({LW_INFO, nullptr, "\x1b[31mred\r\ttab \xff \xc3\xa9\n"});
    EXPECT_THAT(Logged(), ElementsAre("info:0 - - \\x1b[31mred\\x0d\\ttab \\xff \xc3\xa9"));
}

TEST_F(LogFile, IsOnTheDiskAtOnceAfterWarningsAndNotes) {
    m_log->Write({LW_INFO, nullptr, "before"});
    m_log->Write({LW_WARN, nullptr, "warning"});
    EXPECT_THAT(Lines(m_path), SizeIs(2));
    m_log->Note("", "end");
    EXPECT_THAT(Lines(m_path), SizeIs(3));
}

TEST_F(LogFile, IsOnTheDiskSoonWithoutAnythingElse) {
    m_log->Write({LW_INFO, nullptr, "alone"});
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (Lines(m_path).empty() && std::chrono::steady_clock::now() < give_up) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_THAT(Lines(m_path), SizeIs(1));
}

TEST_F(LogFile, GoesOnBehindAnEarlierSession) {
    m_log->Note("", "first");
    m_log.reset();
    m_log.emplace(m_path, nullptr);
    m_log->Note("", "second");
    EXPECT_THAT(Logged(), ElementsAre("shell - - first", "shell - - second"));
}

TEST_F(LogFile, RotatesAndKeepsFiveFiles) {
    m_log.emplace(m_folder / "small.log", nullptr, 1000);
    for (int i = 0; i < 100; ++i) {
        m_log->Note("", std::to_string(i) + std::string(150, '.'));
    }
    m_log.reset();
    std::vector<std::string> kept;
    for (const char* name :
         {"small.4.log", "small.3.log", "small.2.log", "small.1.log", "small.log"}) {
        EXPECT_LE(std::filesystem::file_size(m_folder / name), 1000U) << name;
        const std::vector<std::string> lines = Lines(m_folder / name);
        kept.insert(kept.end(), lines.begin(), lines.end());
    }
    EXPECT_FALSE(std::filesystem::exists(m_folder / "small.5.log"));
    // All of the latest, none twice.
    ASSERT_GE(kept.size(), 20U);
    for (size_t i = 0; i < kept.size(); ++i) {
        EXPECT_THAT(kept[i], HasSubstr(" " + std::to_string(100 - kept.size() + i) + "."));
    }
}

TEST_F(LogFile, RefusesWhatItCannotAppendTo) {
    const auto error_of = [](const std::string& path) -> std::string {
        try {
            const CLogFile log(path, nullptr);
        } catch (const std::exception& e) {
            return e.what();
        }
        return "no error";
    };
    EXPECT_EQ(error_of(m_folder / "no/such.log"),
              "log file " + (m_folder / "no/such.log").string() + ": No such file or directory");
    EXPECT_EQ(error_of(m_folder.Path()),
              "log file " + m_folder.Path().string() + ": Is a directory");
    // It would be renamed when enough was written.
    EXPECT_EQ(error_of("/dev/null"), "log file /dev/null: is not a regular file");
    ASSERT_EQ(::mkfifo((m_folder / "fifo").c_str(), 0600), 0);
    EXPECT_THAT(error_of(m_folder / "fifo"), HasSubstr("fifo"));
}

TEST_F(LogFile, SaysOnceThatTheDiskIsFullAndMarksTheGap) {
    m_log->Note("", "before");
    {
        const CFullDisk full(200);
        for (int i = 0; i < 10; ++i) {
            m_log->Note("", std::string(100, 'x'));
        }
        ASSERT_THAT(m_told, SizeIs(1));
        EXPECT_THAT(m_told.front(), HasSubstr(m_path + ": File too large; lines of the log are "
                                                       "missing"));
    }
    const auto logged = [this] {
        std::ifstream file(m_path);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (logged().find("again") == std::string::npos &&
           std::chrono::steady_clock::now() < give_up) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        m_log->Note("", "again");
    }
    EXPECT_THAT(logged(),
                testing::ContainsRegex("shell - - lines are missing here: .*File too large\n"
                                       ".* shell - - again\n"));
    EXPECT_THAT(m_told, SizeIs(1));
}

}  // namespace
