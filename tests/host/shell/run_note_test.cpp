#include "host/shell/run/run_note.h"

#include <gtest/gtest.h>

#include <thread>

#include "framework/diag_functions.h"
#include "framework/diag_menu.h"
#include "framework/long_work.h"
#include "tests/support/allocation_counter.h"

namespace {

constexpr unsigned int LW_PROGRESS_15 = LogWord(LOG_LT_PROGRESS, 15);
constexpr unsigned int LW_SW_2 = LogWord(LOG_LT_SW_DEBUG_BASE, 2);

class RunNote : public testing::Test {
  protected:
    CRunNote::CCatcher m_catcher;
    const CLogSinkScope m_scope{m_catcher};
    CRunNote m_note;
};

TEST_F(RunNote, CatchesProgressOfEveryLevel) {
    diag_pf_send_log(LogWord(LOG_LT_PROGRESS), "page %u\n", 1);
    EXPECT_EQ(m_note.Text(), "page 1");
    diag_pf_send_log(LW_PROGRESS_15, "page 2");
    EXPECT_EQ(m_note.Text(), "page 2");
}

TEST_F(RunNote, CatchesTracesOfLowLevels) {
    diag_pf_send_log(LW_SW_TRACE, "enable path\n");
    EXPECT_EQ(m_note.Text(), "enable path");
    diag_pf_send_log(LW_SW_2, "details\n");
    diag_pf_send_log(LW_HW_TRACE, "bytes\n");
    diag_pf_send_log(LW_PRINT, "print\n");
    diag_pf_send_log(LW_ERR_TEST, "error\n");
    EXPECT_EQ(m_note.Text(), "enable path");
}

TEST_F(RunNote, TakesWhatIsMeantAsProgressBeforeTraces) {
    diag_pf_send_log(LW_SW_TRACE, "enable path\n");
    diag_pf_send_log(LW_PROGRESS_15, "page 2\n");
    diag_pf_send_log(LW_SW_TRACE, "clear path\n");
    EXPECT_EQ(m_note.Text(), "page 2");
    CRunNote next;
    diag_pf_send_log(LW_SW_TRACE, "clear path\n");
    EXPECT_EQ(next.Text(), "clear path");
}

TEST_F(RunNote, TakesTracesOfWhatRunsBeforeThoseOfOthers) {
    const CDiagMenu command(TFUNC, "program", "");
    const CDiagMenu bus(TMENU, "bus", "");
    const CRunNote note(&command);
    bus.SendLog(LW_SW_TRACE, "select channel\n");
    EXPECT_EQ(note.Text(), "select channel");
    command.SendLog(LW_SW_TRACE, "writing\n");
    bus.SendLog(LW_SW_TRACE, "disable all channels\n");
    diag_pf_send_log(LW_SW_TRACE, "of nobody\n");
    EXPECT_EQ(note.Text(), "writing");
    bus.SendLog(LW_PROGRESS_15, "page 2\n");
    command.SendLog(LW_SW_TRACE, "written\n");
    EXPECT_EQ(note.Text(), "page 2");
}

TEST_F(RunNote, KnowsHowFarALongCommandIs) {
    class CLongCmd : public CDiagMenu, public CLongWork {
      public:
        CLongCmd() : CDiagMenu(TFUNC, "program", "") {}
        void Work(uint64_t done) { EXPECT_TRUE(ProgressCb(done, 10)); }
    } command;
    const CRunNote note(&command);
    EXPECT_EQ(note.Amount().total, 0U);
    command.Work(7);
    EXPECT_EQ(note.Amount().done, 7U);
    EXPECT_EQ(note.Amount().total, 10U);
}

TEST_F(RunNote, KeepsTheFirstLine) {
    CRunNote::Say("\r\nfirst\r\nsecond\n");
    EXPECT_EQ(m_note.Text(), "first");
    CRunNote::Say("\n");
    CRunNote::Say("");
    EXPECT_EQ(m_note.Text(), "first");
    CRunNote::Say(std::string(100'000, 'x'));
    EXPECT_LT(m_note.Text().size(), 2000U);
}

TEST_F(RunNote, TakesNoMemoryForAnotherText) {
    const CLogRecord record{LW_PROGRESS_15, nullptr, "putting back 0x0100 to 0x011f of 0x0000"};
    m_catcher.Write(record);
    const size_t before = g_allocations;
    for (int i = 0; i < 100; ++i) {
        m_catcher.Write(record);
    }
    EXPECT_EQ(g_allocations, before);
}

TEST_F(RunNote, IsOfTheThreadThatMadeIt) {
    std::thread([] {
        CRunNote::Say("nobody listens");
        CRunNote::Count(1, 2);
        diag_pf_send_log(LW_PROGRESS_15, "of a job\n");
    }).join();
    EXPECT_EQ(m_note.Text(), "");
    EXPECT_EQ(m_note.Amount().total, 0U);
}

TEST_F(RunNote, GivesWayToTheOneThatIsMadeInIt) {
    CRunNote::Count(3, 10);
    {
        const CRunNote inner;
        CRunNote::Count(7, 8);
        CRunNote::Say("inner");
        EXPECT_EQ(inner.Amount().done, 7U);
        EXPECT_EQ(inner.Amount().total, 8U);
    }
    CRunNote::Say("outer");
    EXPECT_EQ(m_note.Text(), "outer");
    EXPECT_EQ(m_note.Amount().done, 3U);
    EXPECT_EQ(m_note.Amount().total, 10U);
}

}  // namespace
