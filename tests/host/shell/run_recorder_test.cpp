#include "host/shell/run/run_recorder.h"

#include <gmock/gmock.h>

#include "tests/host/shell/run_report.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RunRecorder : public ShellTest {
  protected:
    RunRecorder() { m_shell.Recorder().AddObserver(m_kept); }

    // The only record of a line.
    CRunRecord RecordOf(const std::string& line, const std::string& origin = "") {
        m_kept.records.clear();
        Run(line, origin);
        EXPECT_EQ(m_kept.records.size(), 1U) << line;
        return m_kept.records.empty() ? CRunRecord{} : m_kept.records.front();
    }
    static std::vector<std::string> LinesOf(const CRunRecord& record) {
        std::vector<std::string> lines;
        for (const CRunLogLine& line : record.log) {
            lines.push_back(line.path + ": " + line.text);
        }
        return lines;
    }

    CKeptRecords m_kept;
};

TEST_F(RunRecorder, TellsWhatACommandWasAskedAndAnswered) {
    Run("cd dev");
    const CRunRecord record = RecordOf("add 0x10 2", "file:3");
    EXPECT_EQ(record.command, "/dev/add 0x10 2");
    EXPECT_EQ(record.path, "/dev/add");
    EXPECT_THAT(record.arguments, ElementsAre("0x10", "2"));
    EXPECT_EQ(record.origin, "file:3");
    EXPECT_EQ(record.job, 0U);
    EXPECT_FALSE(record.is_test);
    EXPECT_EQ(record.code, MSG_SUCCESS);
    EXPECT_EQ(record.status, EXIT_PASSED);
    EXPECT_GT(record.duration.count(), 0);
    EXPECT_THAT(LinesOf(record), ElementsAre("/dev/add: adding 16 and 2"));
    EXPECT_THAT(record.errors, IsEmpty());

    ASSERT_EQ(record.outputs.size(), 2U);
    EXPECT_EQ(record.outputs[0].name, "sum");
    EXPECT_EQ(record.outputs[0].type.Name(), "uint32");
    EXPECT_EQ(std::get<uint64_t>(record.outputs[0].value.data), 18U);
    EXPECT_EQ(record.outputs[1].name, "note");
    EXPECT_EQ(std::get<std::string>(record.outputs[1].value.data), "done");
}

TEST_F(RunRecorder, TellsWhyACommandFailed) {
    const CRunRecord record = RecordOf("/dev/fail");
    EXPECT_EQ(record.status, EXIT_FAILED);
    EXPECT_EQ(record.code, MSG_ERR_FAIL);
    EXPECT_THAT(record.errors, ElementsAre("/dev/fail: failed (ERR_FAIL)"));
}

TEST_F(RunRecorder, KeepsWhatWasRefused) {
    const CRunRecord argument = RecordOf("/dev/add one");
    EXPECT_EQ(argument.status, EXIT_USAGE);
    EXPECT_FALSE(argument.code.has_value());
    EXPECT_THAT(argument.errors, ElementsAre(HasSubstr("argument a: \"one\" is not a number")));

    const CRunRecord line = RecordOf("/dev/add 1; 'x");
    EXPECT_EQ(line.command, "/dev/add 1; 'x");
    EXPECT_EQ(line.status, EXIT_USAGE);
    EXPECT_THAT(line.errors, ElementsAre(HasSubstr("never closed")));
}

TEST_F(RunRecorder, KeepsWhatABuiltInPrintsAndReads) {
    const CRunRecord pwd = RecordOf("ls");
    EXPECT_EQ(pwd.path, "");
    EXPECT_EQ(pwd.command, "ls");
    EXPECT_THAT(LinesOf(pwd), testing::Contains(HasSubstr("dev/")));

    const CRunRecord peek = RecordOf("peek /dev/memory 0x11..0x12");
    ASSERT_EQ(peek.outputs.size(), 2U);
    EXPECT_EQ(peek.outputs[1].name, "memory[0x12]");
    EXPECT_EQ(peek.outputs[1].value.text, "0x12");
    EXPECT_THAT(peek.log, IsEmpty());
}

TEST_F(RunRecorder, GivesEachCommandOfOthersARecordOfItsOwn) {
    Run("repeat 2 /dev/add 1");
    ASSERT_EQ(m_kept.records.size(), 3U);
    EXPECT_EQ(m_kept.records[0].path, "/dev/add");
    EXPECT_EQ(m_kept.records[1].path, "/dev/add");
    EXPECT_EQ(m_kept.records[2].command, "repeat 2 /dev/add 1");
    ASSERT_EQ(m_kept.records[2].outputs.size(), 6U);
    EXPECT_EQ(m_kept.records[2].outputs[0].name, "runs");
    EXPECT_EQ(std::get<uint64_t>(m_kept.records[2].outputs[0].value.data), 2U);
    EXPECT_THAT(LinesOf(m_kept.records[2]), ElementsAre(HasSubstr("repeat: 2 runs")));
}

TEST_F(RunRecorder, TellsWhichJobRan) {
    Run("/dev/check fail &");
    Run("wait");
    ASSERT_EQ(m_kept.records.size(), 2U);
    EXPECT_EQ(m_kept.records[0].path, "/dev/check");
    EXPECT_EQ(m_kept.records[0].job, 1U);
    EXPECT_TRUE(m_kept.records[0].is_test);
    EXPECT_EQ(m_kept.records[0].status, EXIT_FAILED);
    EXPECT_EQ(m_kept.records[1].command, "wait");
}

TEST_F(RunRecorder, TellsThatATestWasAborted) {
    const CRunRecord record = RecordOf("/dev/check wait");
    EXPECT_EQ(record.status, EXIT_ABORTED);
    EXPECT_EQ(record.code, MSG_ERR_ABORTED);
}

TEST_F(RunRecorder, JoinsPrintedPiecesAndSplitsLines) {
    CRunRecorder& recorder = m_shell.Recorder();
    {
        const CRunRecorder::COpen open(recorder, {});
        m_device->SendLog(LW_PRINT, "a ");
        m_device->SendLog(LW_PRINT, "line\nand another\nand ");
        m_device->SendLog(LW_WARN, "two\nwarnings\n");
        m_device->SendLog(LW_PRINT, "an end");
    }
    ASSERT_EQ(m_kept.records.size(), 1U);
    EXPECT_THAT(LinesOf(m_kept.records[0]),
                ElementsAre("/dev: a line", "/dev: and another", "/dev: and ", "/dev: two",
                            "/dev: warnings", "/dev: an end"));
    EXPECT_EQ(m_kept.records[0].log[3].type, LOG_LT_WARN);
}

TEST_F(RunRecorder, KeepsOnlyWhatTheFilterLetsThrough) {
    {
        const CRunRecorder::COpen open(m_shell.Recorder(), {});
        m_device->SendLog(LW_SW_TRACE, "hidden\n");
        m_shell.LogFilter().Set(LOG_LT_SW_DEBUG_BASE, 1);
        m_device->SendLog(LW_SW_TRACE, "shown\n");
    }
    EXPECT_THAT(LinesOf(m_kept.records.at(0)), ElementsAre("/dev: shown"));
}

TEST_F(RunRecorder, KeepsSoManyLinesAndCountsTheOthers) {
    {
        const CRunRecorder::COpen open(m_shell.Recorder(), {});
        for (size_t i = 0; i < CRunRecorder::MAX_LINES + 7; ++i) {
            m_shell.Recorder().NotePrint("x\n");
        }
    }
    EXPECT_EQ(m_kept.records.at(0).log.size(), CRunRecorder::MAX_LINES);
    EXPECT_EQ(m_kept.records.at(0).log_left_out, 7U);
}

}  // namespace
