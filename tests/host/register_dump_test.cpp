// Many registers at once: dumped, or shown as a table, by patterns of their names.
#include <gmock/gmock.h>

#include "tests/host/register_device.h"
#include "tests/support/log_capture.h"

namespace {

using RegisterDump = RegisterDeviceBase;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::vector<std::string> HARMLESS{"ctrl[0]", "ctrl[1]", "ctrl[2]",
                                        "ctrl[3]", "status",  "mode"};

TEST_F(RegisterDump, DumpsAllRegistersThatReadingDoesNotChange) {
    const CLogCapture log;
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, ""));
    EXPECT_EQ(m_device.m_reads, HARMLESS);
    for (const char* text :
         {"ctrl", "0x0001", "0x0022", "0x0333", "0x4444", "status", "0x5", "mode", "0x80"}) {
        EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr(text));
    }
}

TEST_F(RegisterDump, DumpsToTheGivenLogWord) {
    const CLogCapture log;
    EXPECT_TRUE(m_device.dumpRegs(LW_SW_DUMP, "status"));
    EXPECT_THAT(log.Joined(LW_SW_DUMP), HasSubstr("0x5"));
    EXPECT_EQ(log.Joined(LW_PRINT), "");
}

TEST_F(RegisterDump, DumpsRegistersByTheBeginningOfTheirNames) {
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "st"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("status"));
}

TEST_F(RegisterDump, DumpsRegistersByWildcards) {
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "*o*e"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("mode"));
    m_device.m_reads.clear();
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "?ta*"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("status"));
    m_device.m_reads.clear();
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "*"));
    EXPECT_EQ(m_device.m_reads, HARMLESS);
}

TEST_F(RegisterDump, DoesNotTakeAWildcardPatternForABeginning) {
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "?tat"));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDump, DumpsARegisterThatReadingChangesWhenNamedInFull) {
    m_device.m_data["cause"] = 0x21;
    m_device.m_data["fifo"] = 0x43;
    const CLogCapture log;
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "cause"));
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "fifo"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("cause", "fifo"));
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("0x21"));
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("0x43"));
}

TEST_F(RegisterDump, LeavesRegistersThatReadingChangesAloneOtherwise) {
    for (const char* pattern : {"", "c", "caus", "caus?", "cause*", "f", "fif", "fifo*", "*", "r",
                                "rese", "reset*", "re*"}) {
        m_device.dumpRegs(LW_PRINT, pattern);
    }
    EXPECT_THAT(m_device.m_reads, Not(testing::Contains("cause")));
    EXPECT_THAT(m_device.m_reads, Not(testing::Contains("fifo")));
    EXPECT_THAT(m_device.m_reads, Not(testing::Contains("reset")));
}

TEST_F(RegisterDump, TellsThatNoRegisterMatches) {
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "nothing"));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "statusx"));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "tatus"));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "x*"));
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDump, TellsThatADumpCouldNotReadARegister) {
    m_device.m_fail_read = "ctrl[1]";
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, ""));
    EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, "ctrl"));
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "mode"));
}

TEST_F(RegisterDump, DumpsOnCommand) {
    const CLogCapture log;
    EXPECT_EQ(Send(NodeAt(m_device, "regdump"), MSG_CALL).Code(), MSG_SUCCESS);
    EXPECT_EQ(m_device.m_reads, HARMLESS);
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("0x4444"));
    m_device.m_reads.clear();
    EXPECT_EQ(Call("regdump", "mo").Code(), MSG_SUCCESS);
    EXPECT_THAT(m_device.m_reads, ElementsAre("mode"));
    EXPECT_EQ(Call("regdump", "nothing").Code(), MSG_ERR_FAIL);
}

TEST_F(RegisterDump, DumpsOneElementByItsIndex) {
    const CLogCapture log;
    EXPECT_EQ(Call("regdump", "ctrl[1]").Code(), MSG_SUCCESS);
    EXPECT_EQ(Call("regdump", "ctrl[0x3]").Code(), MSG_SUCCESS);
    EXPECT_EQ(Call("regdump", "status[0]").Code(), MSG_SUCCESS);
    EXPECT_THAT(m_device.m_reads, ElementsAre("ctrl[1]", "ctrl[3]", "status"));
    EXPECT_EQ(log.Joined(LW_PRINT),
              "ctrl[1]          0x0022\n"
              "ctrl[3]          0x4444\n"
              "status           0x5\n");
}

TEST_F(RegisterDump, DumpsAnElementThatReadingChanges) {
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "cause[0]"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("cause"));
}

TEST_F(RegisterDump, FindsNoElementBehindTheEndOfAnArray) {
    for (const char* pattern : {"ctrl[4]", "status[1]", "ctrl[4294967295]"}) {
        EXPECT_FALSE(m_device.dumpRegs(LW_PRINT, pattern)) << pattern;
        EXPECT_EQ(Call("regtable", pattern).Code(), MSG_ERR_FAIL) << pattern;
    }
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDump, TakesBracketsWithoutAnIndexForAWildcard) {
    EXPECT_TRUE(m_device.dumpRegs(LW_PRINT, "[cm]*[el]"));
    EXPECT_THAT(m_device.m_reads, ElementsAre("ctrl[0]", "ctrl[1]", "ctrl[2]", "ctrl[3]", "mode"));
}

TEST_F(RegisterDump, ShowsTheTableOfAnArrayByOneElement) {
    const CLogCapture log;
    EXPECT_EQ(Call("regtable", "ctrl[3]").Code(), MSG_SUCCESS);
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("channel control"));
    EXPECT_THAT(log.Joined(LW_PRINT), Not(HasSubstr("link status")));
}

TEST_F(RegisterDump, ShowsItsTableWithoutReadingARegister) {
    const CLogCapture log;
    m_device.showRegTable("");
    const std::string shown = log.Joined(LW_PRINT);
    for (const diag_reg_st& reg : m_regs) {
        EXPECT_THAT(shown, HasSubstr(reg.name));
    }
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

TEST_F(RegisterDump, ShowsOnlyTheEntriesThatMatch) {
    const CLogCapture log;
    m_device.showRegTable("c");
    m_device.showRegTable("?ifo");
    const std::string shown = log.Joined(LW_PRINT);
    for (const char* name : {"ctrl", "cause", "fifo"}) {
        EXPECT_THAT(shown, HasSubstr(name));
    }
    for (const char* name : {"status", "operating mode", "reset strobes"}) {
        EXPECT_THAT(shown, Not(HasSubstr(name)));
    }
}

TEST_F(RegisterDump, ShowsItsTableOnCommand) {
    const CLogCapture log;
    EXPECT_EQ(Send(NodeAt(m_device, "regtable"), MSG_CALL).Code(), MSG_SUCCESS);
    EXPECT_THAT(log.Joined(LW_PRINT), HasSubstr("status"));
    EXPECT_EQ(Call("regtable", "mo").Code(), MSG_SUCCESS);
    EXPECT_THAT(m_device.m_reads, IsEmpty());
}

}  // namespace
