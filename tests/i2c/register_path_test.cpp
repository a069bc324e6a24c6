// The path of a register device, by itself, on command, and round a dump.
#include <stdexcept>

#include "tests/i2c/register_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> OPENING = {"top-1: SelChannel(0)", "mux-2: SelChannel(1)"};
const std::vector<std::string> CLOSING = {"mux-2: DisableChannels()", "top-1: DisableChannels()"};

std::vector<std::string> Joined(std::initializer_list<std::vector<std::string>> parts) {
    std::vector<std::string> all;
    for (const auto& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

using I2cRegisterPath = CRegisterTest;

TEST_F(I2cRegisterPath, OpensFromTheTopDown) {
    EXPECT_TRUE(m_cpld.EnablePath());
    EXPECT_EQ(m_journal.Entries(), m_path_opened);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cRegisterPath, ClosesFromTheBottomUp) {
    EXPECT_TRUE(m_cpld.ClearPath());
    EXPECT_EQ(m_journal.Entries(), m_path_closed);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cRegisterPath, OpensItsOwnChannel) {
    m_cpld.m_i2c_ch = 0;
    EXPECT_TRUE(m_cpld.EnablePath());
    EXPECT_EQ(m_journal.Entries().front(),
              Trace("(cpld): enable upstream switch mux-2 channel = 0\n"));
    EXPECT_EQ(m_journal.Entries().back(), Call("mux-2: SelChannel(0)"));
}

TEST_F(I2cRegisterPath, IsNotNeededWithoutAChannel) {
    m_cpld.m_i2c_ch = -1;
    m_cpld.m_i2cDev = nullptr;
    EXPECT_TRUE(m_cpld.EnablePath());
    EXPECT_TRUE(m_cpld.ClearPath());
    EXPECT_THAT(m_journal.Entries(), IsEmpty());
}

TEST_F(I2cRegisterPath, IsNotNeededOnARootBus) {
    CTestRegisterChip chip(m_journal, "new", &m_table, &m_bus);
    chip.m_i2c_ch = 1;
    EXPECT_TRUE(chip.EnablePath());
    EXPECT_TRUE(chip.ClearPath());
    EXPECT_THAT(m_journal.Entries(), IsEmpty());
}

TEST_F(I2cRegisterPath, ReportsThatItCannotBeOpenedOrClosed) {
    for (CJournalSwitch* sw : {&m_top, &m_mux}) {
        sw->FailAt("SelChannel");
        EXPECT_FALSE(m_cpld.EnablePath());
        sw->FailAt("DisableChannels");
        EXPECT_FALSE(m_cpld.ClearPath());
    }
}

TEST_F(I2cRegisterPath, FollowsTheModeOfItsSwitch) {
    for (const uint8_t mode : Bytes{0, 1, 2, 3}) {
        SCOPED_TRACE(unsigned{mode});
        m_mux.SetPathConfigMode(mode);
        m_journal.Clear();
        EXPECT_TRUE(m_cpld.EnablePath());
        EXPECT_EQ(m_journal.Calls().size(), mode == 1 || mode == 2 ? 2U : 0U);
        m_journal.Clear();
        EXPECT_TRUE(m_cpld.ClearPath());
        EXPECT_EQ(m_journal.Calls().size(), mode == 1 ? 2U : 0U);
    }
}

TEST_F(I2cRegisterPath, TakesNoLock) {
    const CGuard<CMutex> bus(m_bus.m_lock);
    const CGuard<CMutex> mux(m_mux.m_lock);
    EXPECT_TRUE(m_cpld.EnablePath());
    EXPECT_TRUE(m_cpld.ClearPath());
}

// On command

struct CCase {
    std::string command;
    std::string operation;  // of the switch
    std::string error;
    bool opens;
};
void PrintTo(const CCase& one, std::ostream* out) {
    *out << one.command;
}

class EveryI2cRegisterPathCommand : public CRegisterTest,
                                    public testing::WithParamInterface<CCase> {
  protected:
    CDiagFunc& Subject() { return dynamic_cast<CDiagFunc&>(NodeAt(m_cpld, GetParam().command)); }
    const CEntries& Work() const { return GetParam().opens ? m_path_opened : m_path_closed; }
    std::unique_ptr<CDiagObj> DetachSubject() { return m_cpld.RemoveChild(Subject().GetId()); }

    const testing::Matcher<std::string> m_missing_device =
        testing::MatchesRegex(R"(i2c/path_commands\.h:[1-9][0-9]* Assert failed \(pDev != NULL\))");
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cRegisterPathCommand,
                         testing::Values(CCase{"enable-path", "SelChannel",
                                               "  Error when enabling I2C path!\n", true},
                                         CCase{"clr-path", "DisableChannels",
                                               "  Error when clearing I2C path!\n", false}),
                         [](const auto& one) { return one.param.opens ? "enable" : "clear"; });

TEST_P(EveryI2cRegisterPathCommand, SetsThePathAndSaysNoMore) {
    EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), Work());
}

TEST_P(EveryI2cRegisterPathCommand, PrintsThatThePathFails) {
    for (CJournalSwitch* sw : {&m_top, &m_mux}) {
        sw->FailAt(GetParam().operation);
        m_journal.Clear();
        EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{FAIL});
        EXPECT_EQ(m_journal.Entries().back(), Print(GetParam().error));
        EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
    }
}

TEST_P(EveryI2cRegisterPathCommand, DoesNothingWithoutAChannel) {
    m_cpld.m_i2c_ch = -1;
    EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_journal.Entries(), IsEmpty());
}

TEST_P(EveryI2cRegisterPathCommand, FailsTheAssertionOutOfInvokeWhenDetached) {
    const std::unique_ptr<CDiagObj> node = DetachSubject();
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    EXPECT_THAT(ThrownText([&] { dynamic_cast<CDiagFunc&>(*node).Invoke(in, out); }),
                m_missing_device);
    EXPECT_EQ(out.GetHeader().len, 0);
}

TEST_P(EveryI2cRegisterPathCommand, AnswersFailureWithTheAssertionTextWhenDetached) {
    const std::unique_ptr<CDiagObj> node = DetachSubject();
    EXPECT_EQ(Send(dynamic_cast<CDiagMenu&>(*node), MSG_CALL).bytes, Bytes{FAIL});
    ASSERT_EQ(m_journal.Entries().size(), 1U);
    EXPECT_EQ(m_journal.Entries()[0].first, 0x30U);
    EXPECT_THAT(m_journal.Entries()[0].second, m_missing_device);
}

TEST_P(EveryI2cRegisterPathCommand, AnswersFailureBelowADeviceThatHasNoRegisters) {
    m_mux.AddChild(DetachSubject().release(), CDiagObj::NO_SORT);
    EXPECT_EQ(Send(NodeAt(m_mux, GetParam().command), MSG_CALL).bytes, Bytes{FAIL});
    EXPECT_THAT(m_journal.Calls(), IsEmpty());
}

TEST_P(EveryI2cRegisterPathCommand, CatchesADeviceExceptionAndAnswersFailure) {
    m_mux.OnCall([] { throw CDiagException("chip %d is stuck", 7); });
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    EXPECT_NO_THROW(Subject().Invoke(in, out));
    EXPECT_EQ(PayloadOf(out), Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("chip 7 is stuck"));
}

TEST_P(EveryI2cRegisterPathCommand, LetsExceptionsOfOtherTypesPass) {
    m_mux.OnCall([] { throw std::runtime_error("not of the contract"); });
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    EXPECT_THROW(Subject().Invoke(in, out), std::runtime_error);
}

// Round a dump

using I2cRegisterDump = CRegisterTest;

TEST_F(I2cRegisterDump, OpensThePathBeforeItAndClosesItAfterwards) {
    EXPECT_TRUE(m_cpld.dumpRegs(LW_PRINT, "ctrl"));
    EXPECT_EQ(m_journal.Calls(), Joined({{"cpld: dump 176 'ctrl'"},
                                         OPENING,
                                         {"cpld: read ctrl[0]", "cpld: read ctrl[1]",
                                          "cpld: read ctrl[2]", "cpld: read ctrl[3]"},
                                         CLOSING}));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
    for (const char* value : {"0x0001", "0x0022", "0x0333", "0x4444"}) {
        EXPECT_THAT(m_log.Joined(0xB0), testing::HasSubstr(value));
    }
}

TEST_F(I2cRegisterDump, GoesToTheGivenLogWord) {
    EXPECT_TRUE(m_cpld.dumpRegs(LW_SW_DUMP, "status"));
    EXPECT_THAT(m_log.Joined(LW_SW_DUMP), testing::HasSubstr("0x5"));
    EXPECT_EQ(m_log.Joined(LW_PRINT), "");
}

TEST_F(I2cRegisterDump, IsReachedByTheCommandToo) {
    EXPECT_EQ(Send(RegCommand("regdump"), MSG_CALL, std::string("status")).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Calls(),
              Joined({{"cpld: dump 176 'status'"}, OPENING, {"cpld: read status[0]"}, CLOSING}));
}

TEST_F(I2cRegisterDump, ReadsNothingWhenThePathCannotBeOpened) {
    FailToOpen();
    EXPECT_FALSE(m_cpld.dumpRegs(LW_PRINT, "status"));
    EXPECT_EQ(m_journal.Calls(), Joined({{"cpld: dump 176 'status'"}, OPENING}));
    EXPECT_EQ(m_journal.Entries().back(), m_cannot_open.front());
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when enabling I2C path!\n"));
}

TEST_F(I2cRegisterDump, ClosesThePathAfterAFailedDumpToo) {
    m_cpld.FailAt("read status[0]");
    EXPECT_FALSE(m_cpld.dumpRegs(LW_PRINT, "status"));
    EXPECT_EQ(m_journal.Calls().back(), "top-1: DisableChannels()");
    EXPECT_TRUE(IsPathClosed());
    EXPECT_FALSE(m_cpld.dumpRegs(LW_PRINT, "nothing"));
    EXPECT_TRUE(IsPathClosed());
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_F(I2cRegisterDump, FailsWhenThePathCannotBeClosed) {
    FailToClose();
    EXPECT_FALSE(m_cpld.dumpRegs(LW_PRINT, "status"));
    EXPECT_THAT(m_log.Joined(LW_PRINT), testing::HasSubstr("0x5"));
    EXPECT_EQ(m_journal.Entries().back(), m_cannot_clear.front());
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when clearing I2C path!\n"));
}

TEST_F(I2cRegisterDump, TellsOfThePathEvenAfterAFailedDump) {
    FailToClose();
    EXPECT_FALSE(m_cpld.dumpRegs(LW_PRINT, "nothing"));
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when clearing I2C path!\n"));
}

TEST_F(I2cRegisterDump, NeedsNoPathOnARootBus) {
    CTestRegisterChip chip(m_journal, "new", &m_table, &m_bus);
    EXPECT_TRUE(chip.dumpRegs(LW_PRINT, "status"));
    EXPECT_THAT(m_journal.Calls(), ElementsAre("new: dump 176 'status'", "new: read status[0]"));
}

TEST_F(I2cRegisterDump, DoesNotReadWhatReadingChangesUnlessNamedInFull) {
    EXPECT_TRUE(m_cpld.dumpRegs(LW_PRINT, "c"));
    EXPECT_THAT(m_journal.Calls(), testing::Not(testing::Contains("cpld: read cause[0]")));
    EXPECT_TRUE(m_cpld.dumpRegs(LW_PRINT, "cause"));
    EXPECT_THAT(m_journal.Calls(), testing::Contains("cpld: read cause[0]"));
}

}  // namespace
