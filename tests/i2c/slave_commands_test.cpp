// The commands "enable-path" and "clr-path" of a slave.
#include <stdexcept>

#include "tests/i2c/slave_test.h"
#include "tests/support/lock_probe.h"

namespace {

struct CCase {
    std::string command;
    std::string verb;       // in the trace
    std::string operation;  // of the switch
    std::string error;
};
void PrintTo(const CCase& one, std::ostream* out) {
    *out << one.command;
}

const std::vector<CCase> CASES = {
    {"enable-path", "enable", "SelChannel", "  Error when enabling I2C path!\n"},
    {"clr-path", "clear", "DisableChannels", "  Error when clearing I2C path!\n"},
};

std::string CaseName(const testing::TestParamInfo<CCase>& info) {
    return info.param.verb;
}

class EveryI2cSlaveCommand : public CSlaveTest, public testing::WithParamInterface<CCase> {
  protected:
    CDiagFunc& Subject() { return dynamic_cast<CDiagFunc&>(NodeAt(m_chip, GetParam().command)); }
    std::unique_ptr<CDiagObj> DetachSubject() { return m_chip.RemoveChild(Subject().GetId()); }

    // What a run says and does when all goes well.
    CEntries WorkEntries() const {
        const CEntries traced = {
            Trace("(chip): " + GetParam().verb + " upstream switch mux-2 channel = 1\n")};
        return traced + (GetParam().command == "enable-path" ? m_opened : m_closed);
    }
    void ExpectMissingDevice(const CAnswer& reply) {
        EXPECT_EQ(reply.bytes, Bytes{FAIL});
        ASSERT_EQ(m_journal.Entries().size(), 1U);
        EXPECT_EQ(m_journal.Entries()[0].first, 0x30U);
        EXPECT_THAT(m_journal.Entries()[0].second, m_missing_device);
    }

    const testing::Matcher<std::string> m_missing_device =
        testing::MatchesRegex(R"(i2c/path_commands\.h:[1-9][0-9]* Assert failed \(pDev != NULL\))");
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cSlaveCommand, testing::ValuesIn(CASES), CaseName);

TEST_P(EveryI2cSlaveCommand, SetsThePathAndSaysNoMore) {
    EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), WorkEntries());
}

TEST_P(EveryI2cSlaveCommand, ReportsAPathThatFails) {
    for (CJournalSwitch* sw : {&m_top, &m_mux}) {
        sw->FailAt(GetParam().operation);
        m_journal.Clear();
        EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{FAIL});
        EXPECT_EQ(m_journal.Entries().back(), Print(GetParam().error));
        EXPECT_EQ(m_journal.Entries().front(), WorkEntries().front());
    }
}

TEST_P(EveryI2cSlaveCommand, DoesNothingWithoutAChannel) {
    m_chip.m_i2c_ch = -1;
    EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_P(EveryI2cSlaveCommand, DoesNothingOnABusThatBecameAMaster) {
    m_mux.m_is_master = true;
    EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_P(EveryI2cSlaveCommand, ReadsNoArgument) {
    EXPECT_EQ(Send(Subject(), MSG_CALL, CNumbers{{1, 2}}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), WorkEntries());
}

TEST_P(EveryI2cSlaveCommand, FailsTheAssertionOutOfInvokeWhenDetached) {
    const std::unique_ptr<CDiagObj> node = DetachSubject();
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    EXPECT_THAT(ThrownText([&] { dynamic_cast<CDiagFunc&>(*node).Invoke(in, out); }),
                m_missing_device);
    EXPECT_EQ(out.GetHeader().len, 0);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_P(EveryI2cSlaveCommand, AnswersFailureWithTheAssertionTextWhenDetached) {
    const std::unique_ptr<CDiagObj> node = DetachSubject();
    ExpectMissingDevice(Send(dynamic_cast<CDiagMenu&>(*node), MSG_CALL));
}

TEST_P(EveryI2cSlaveCommand, AnswersFailureBelowADeviceThatIsNoSlave) {
    m_mux.AddChild(DetachSubject().release(), CDiagObj::NO_SORT);
    ExpectMissingDevice(Send(NodeAt(m_mux, GetParam().command), MSG_CALL));
}

TEST_P(EveryI2cSlaveCommand, WorksOnTheNearestSlaveAboveIt) {
    auto* menu = new CDiagMenu(TMENU, "paths", "a menu");
    m_chip.AddChild(menu, CDiagObj::NO_SORT);
    menu->AddChild(DetachSubject().release(), CDiagObj::NO_SORT);
    EXPECT_EQ(Send(NodeAt(*menu, GetParam().command), MSG_CALL).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), WorkEntries());
}

TEST_P(EveryI2cSlaveCommand, CatchesADeviceExceptionAndAnswersFailure) {
    m_mux.OnCall([] { throw CDiagException("chip %d is stuck", 7); });
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;

    EXPECT_NO_THROW(Subject().Invoke(in, out));

    ASSERT_EQ(out.GetHeader().len, 1);
    EXPECT_EQ(out.GetPayload()[0], FAIL);
    EXPECT_EQ(m_log.Texts(0x30), std::vector<std::string>{"chip 7 is stuck"});
}

TEST_P(EveryI2cSlaveCommand, LetsExceptionsOfOtherTypesPass) {
    m_mux.OnCall([] { throw std::runtime_error("not of the contract"); });
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    EXPECT_THROW(Subject().Invoke(in, out), std::runtime_error);
}

TEST_P(EveryI2cSlaveCommand, KeepsTestsFromTakingTheSlaveWhileItRuns) {
    bool during = false;
    m_mux.OnCall([&] { during = WouldWait(m_chip, DEV_LOCK_ACCESS); });
    Send(Subject(), MSG_CALL);
    EXPECT_TRUE(during);
    EXPECT_FALSE(WouldWait(m_chip, DEV_LOCK_ACCESS));
}

class I2cSlaveCommands : public CSlaveTest {};

TEST_F(I2cSlaveCommands, LeaveThePathOpenInBetween) {
    Send(NodeAt(m_chip, "enable-path"), MSG_CALL);
    EXPECT_TRUE(m_top.IsOpen(0));
    EXPECT_TRUE(m_mux.IsOpen(1));
    Send(NodeAt(m_mux, "trans"), MSG_CALL, std::string("rd"), uint8_t{0x50});
    EXPECT_TRUE(m_top.IsOpen(0));
    EXPECT_TRUE(m_mux.IsOpen(1));
    Send(NodeAt(m_chip, "clr-path"), MSG_CALL);
    EXPECT_FALSE(m_top.IsOpen(0));
    EXPECT_FALSE(m_mux.IsOpen(1));
}

}  // namespace
