// The channel commands of a switch.
#include <stdexcept>

#include "tests/i2c/switch_test.h"
#include "tests/support/lock_probe.h"

namespace {

// A command, an argument that it accepts, what it calls and what it says when
// that fails.
struct CCase {
    enum EWidth { NONE, BYTE, WORD };

    std::string command;
    EWidth width;
    uint32_t arg;
    std::string operation;
    std::string call;
    std::string error;
};
void PrintTo(const CCase& one, std::ostream* out) {
    *out << one.command;
}

const std::vector<CCase> CASES = {
    {"show-channels", CCase::NONE, 0, "ShowChannels", "ShowChannels()",
     "   Show Channels error!\n"},
    {"set-channel", CCase::BYTE, 200, "SetChannel", "SetChannel(200)",
     "   Enable Channel 200 error!\n"},
    {"clear-channel", CCase::BYTE, 3, "ClearChannel", "ClearChannel(3)",
     "   Clear Channel 3 error!\n"},
    {"set-channels", CCase::WORD, 0xDEADBEEF, "SetChannels", "SetChannels(3735928559)",
     "   Set Channels 0xdeadbeef error!\n"},
    {"clear-channels", CCase::WORD, 0x1A, "ClearChannels", "ClearChannels(26)",
     "   Clear Channels 0x1a error!\n"},
    {"sel-channel", CCase::BYTE, 255, "SelChannel", "SelChannel(255)",
     "   Select Channel 255 error!\n"},
    {"disable-channels", CCase::NONE, 0, "DisableChannels", "DisableChannels()",
     "   Disable Channels error!\n"},
};

std::vector<CCase> CasesWithArgument() {
    std::vector<CCase> cases;
    for (const CCase& one : CASES) {
        if (one.width != CCase::NONE) {
            cases.push_back(one);
        }
    }
    return cases;
}

std::string CaseName(const testing::TestParamInfo<CCase>& info) {
    return info.param.operation;
}

COutMsg RequestOf(const CCase& one) {
    COutMsg request(MSG_CALL);
    if (one.width == CCase::BYTE) {
        request << static_cast<uint8_t>(one.arg);
    } else if (one.width == CCase::WORD) {
        request << one.arg;
    }
    return request;
}

CAnswer Request(CDiagMenu& node, const CCase& one) {
    switch (one.width) {
        case CCase::BYTE:
            return Send(node, MSG_CALL, static_cast<uint8_t>(one.arg));
        case CCase::WORD:
            return Send(node, MSG_CALL, one.arg);
        default:
            return Send(node, MSG_CALL);
    }
}

// The switch is in mode 1 and below another one, so that a command which opened
// the path would show it.
class EveryI2cSwitchCommand : public CSwitchTest, public testing::WithParamInterface<CCase> {
  protected:
    EveryI2cSwitchCommand()
        : m_top(AddSwitch("top", 1, 0x70)), m_mux(AddSwitch(m_top, 1, "mux", 2, 0x71)) {}

    CDiagFunc& Subject() { return dynamic_cast<CDiagFunc&>(NodeAt(m_mux, GetParam().command)); }
    std::unique_ptr<CDiagObj> DetachSubject() { return m_mux.RemoveChild(Subject().GetId()); }

    void ExpectMissingDevice(const CAnswer& reply) {
        EXPECT_EQ(reply.bytes, Bytes{FAIL});
        ASSERT_EQ(m_journal.Entries().size(), 1U);
        EXPECT_EQ(m_journal.Entries()[0].first, 0x30U);
        EXPECT_TRUE(IsMissingDeviceText(m_journal.Entries()[0].second));
    }

    CJournalSwitch& m_top;
    CJournalSwitch& m_mux;
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cSwitchCommand, testing::ValuesIn(CASES), CaseName);

TEST_P(EveryI2cSwitchCommand, CallsItsOperationOnceAndSaysNothing) {
    EXPECT_EQ(Request(Subject(), GetParam()).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), CEntries{Call("mux-2: " + GetParam().call)});
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_P(EveryI2cSwitchCommand, ReportsAnOperationThatFailed) {
    m_mux.FailAt(GetParam().operation);
    EXPECT_EQ(Request(Subject(), GetParam()).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{Call("mux-2: " + GetParam().call), Print(GetParam().error)}));
}

TEST_P(EveryI2cSwitchCommand, ActsInEveryPathMode) {
    for (const uint8_t mode : Bytes{0, 1, 2, 3, 7}) {
        m_mux.SetPathConfigMode(mode);
        m_journal.Clear();
        EXPECT_EQ(Request(Subject(), GetParam()).bytes, Bytes{SUCCESS});
        EXPECT_EQ(m_journal.Entries(), CEntries{Call("mux-2: " + GetParam().call)});
    }
}

TEST_P(EveryI2cSwitchCommand, IgnoresInputBehindItsArgument) {
    COutMsg request = RequestOf(GetParam());
    request << uint8_t{9} << uint8_t{9};
    CInMsg in(request);
    COutMsg out;

    Subject().Invoke(in, out);

    ASSERT_EQ(out.GetHeader().len, 1);
    EXPECT_EQ(out.GetPayload()[0], SUCCESS);
    EXPECT_EQ(m_journal.Entries(), CEntries{Call("mux-2: " + GetParam().call)});
}

TEST_P(EveryI2cSwitchCommand, FailsTheAssertionOutOfInvokeWhenDetached) {
    const std::unique_ptr<CDiagObj> node = DetachSubject();
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    const std::string text = ThrownText([&] { dynamic_cast<CDiagFunc&>(*node).Invoke(in, out); });
    EXPECT_TRUE(IsMissingDeviceText(text));
    EXPECT_EQ(out.GetHeader().len, 0);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_P(EveryI2cSwitchCommand, LooksForTheSwitchBeforeItReadsItsArgument) {
    const std::unique_ptr<CDiagObj> node = DetachSubject();
    ExpectMissingDevice(Send(dynamic_cast<CDiagMenu&>(*node), MSG_CALL));
}

TEST_P(EveryI2cSwitchCommand, AnswersFailureBelowABusThatIsNoSwitch) {
    m_bus.AddChild(DetachSubject().release(), CDiagObj::NO_SORT);
    ExpectMissingDevice(Request(Command(GetParam().command), GetParam()));
}

TEST_P(EveryI2cSwitchCommand, WorksOnTheSwitchOfItsChannelMenu) {
    m_mux.getChannelMenu(0)->AddChild(DetachSubject().release(), CDiagObj::NO_SORT);
    EXPECT_EQ(Request(NodeAt(m_mux, "ch0/" + GetParam().command), GetParam()).bytes,
              Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), CEntries{Call("mux-2: " + GetParam().call)});
}

TEST_P(EveryI2cSwitchCommand, CatchesADeviceExceptionAndAnswersFailure) {
    m_mux.OnCall([] { throw CDiagException("chip %d is stuck", 7); });
    CInMsg in(RequestOf(GetParam()));
    COutMsg out;

    EXPECT_NO_THROW(Subject().Invoke(in, out));

    ASSERT_EQ(out.GetHeader().len, 1);
    EXPECT_EQ(out.GetPayload()[0], FAIL);
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{Call("mux-2: " + GetParam().call), ArgError("chip 7 is stuck")}));
}

TEST_P(EveryI2cSwitchCommand, LetsExceptionsOfOtherTypesPass) {
    m_mux.OnCall([] { throw std::runtime_error("not of the contract"); });
    CInMsg in(RequestOf(GetParam()));
    COutMsg out;
    EXPECT_THROW(Subject().Invoke(in, out), std::runtime_error);
}

TEST_P(EveryI2cSwitchCommand, LeavesTheLocksOfTheBussesAlone) {
    const CGuard<CMutex> own(m_mux.m_lock);
    const CGuard<CMutex> upper(m_bus.m_lock);
    EXPECT_EQ(Request(Subject(), GetParam()).bytes, Bytes{SUCCESS});
}

TEST_P(EveryI2cSwitchCommand, KeepsTestsFromTakingTheSwitchWhileItRuns) {
    bool during = false;
    m_mux.OnCall([&] { during = WouldWait(m_mux, DEV_LOCK_ACCESS); });
    Request(Subject(), GetParam());
    EXPECT_TRUE(during);
    EXPECT_FALSE(WouldWait(m_mux, DEV_LOCK_ACCESS));
}

class EveryI2cSwitchCommandWithArgument : public EveryI2cSwitchCommand {};
INSTANTIATE_TEST_SUITE_P(, EveryI2cSwitchCommandWithArgument,
                         testing::ValuesIn(CasesWithArgument()), CaseName);

TEST_P(EveryI2cSwitchCommandWithArgument, RefusesACallWithoutIt) {
    const std::string text =
        GetParam().width == CCase::BYTE ? UnderflowText<uint8_t>() : UnderflowText<uint32_t>();
    EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), CEntries{ArgError(text)});
}

class I2cSwitchCommands : public CSwitchTest {};

TEST_F(I2cSwitchCommands, RefuseAMaskThatIsCutShort) {
    CJournalSwitch& mux = AddSwitch("mux", 1, 0x70);
    for (const std::string command : {"set-channels", "clear-channels"}) {
        m_journal.Clear();
        EXPECT_EQ(Send(NodeAt(mux, command), MSG_CALL, CNumbers{{1, 2, 3}}).bytes, Bytes{FAIL});
        EXPECT_EQ(m_journal.Entries(), CEntries{ArgError(UnderflowText<uint32_t>({1, 2, 3}))});
    }
}

TEST_F(I2cSwitchCommands, ChangeTheChannelsThatTheyName) {
    CJournalSwitch& mux = AddSwitch("mux", 1, 0x70, 4);
    const auto open = [&mux] {
        std::string text;
        for (int ch = 0; ch < 4; ++ch) {
            text += mux.IsOpen(ch) ? '1' : '-';
        }
        return text;
    };
    Send(NodeAt(mux, "set-channel"), MSG_CALL, uint8_t{2});
    EXPECT_EQ(open(), "--1-");
    Send(NodeAt(mux, "set-channels"), MSG_CALL, uint32_t{0x9});
    EXPECT_EQ(open(), "1-11");
    Send(NodeAt(mux, "clear-channel"), MSG_CALL, uint8_t{0});
    EXPECT_EQ(open(), "--11");
    Send(NodeAt(mux, "clear-channels"), MSG_CALL, uint32_t{0x4});
    EXPECT_EQ(open(), "---1");
    Send(NodeAt(mux, "sel-channel"), MSG_CALL, uint8_t{1});
    EXPECT_EQ(open(), "-1--");
    Send(NodeAt(mux, "disable-channels"), MSG_CALL);
    EXPECT_EQ(open(), "----");
}

// The commands that a switch has from the bus work on the switch.

TEST_F(I2cSwitchCommands, CheckADeviceThroughTheSwitch) {
    CJournalSwitch& mux = AddSwitch("mux", 1, 0x70);
    m_bus.Answer({0x50});
    EXPECT_EQ(Send(NodeAt(mux, "chk-dev"), MSG_CALL, uint8_t{0x50}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Send(NodeAt(mux, "chk-dev"), MSG_CALL, uint8_t{0x51}).bytes, Bytes{FAIL});
    ASSERT_EQ(m_bus.Seen().size(), 2U);
    EXPECT_EQ(m_bus.Seen()[0].saddr, 0x50);
}

TEST_F(I2cSwitchCommands, TransferThroughTheSwitch) {
    CJournalSwitch& mux = AddSwitch("mux", 1, 0x70);
    m_bus.Expect({.saddr = 0x50, .data = {0x11, 0x22}});
    const CAnswer reply =
        Send(NodeAt(mux, "trans"), MSG_CALL, std::string("wr"), CNumbers{{0x50, 0, 2, 0x11, 0x22}});
    EXPECT_EQ(reply.bytes, Bytes{SUCCESS});
    EXPECT_TRUE(m_journal.Calls().empty());
}

}  // namespace
