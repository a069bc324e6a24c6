// What all commands of a bus have in common: how they find the bus, what an
// exception becomes, and which locks they take.
#include <stdexcept>

#include "framework/diag_exception.h"
#include "tests/i2c/bus_test.h"
#include "tests/support/fake_switch.h"
#include "tests/support/lock_probe.h"

namespace {

// A command and a request that it accepts.
struct CCase {
    std::string command;
    std::string text;  // first argument when not empty
    std::vector<uint8_t> numbers;
};
void PrintTo(const CCase& one, std::ostream* out) {
    *out << one.command;
}

CInMsg RequestOf(const CCase& one) {
    COutMsg request(MSG_CALL);
    if (!one.text.empty()) {
        request << one.text;
    }
    request << CNumbers{one.numbers};
    return CInMsg(request);
}

CAnswer Call(CDiagMenu& node, const CCase& one) {
    return one.text.empty() ? Send(node, MSG_CALL, CNumbers{one.numbers})
                            : Send(node, MSG_CALL, one.text, CNumbers{one.numbers});
}

const std::vector<CCase> ALL_CASES = {
    {"chk-dev", "", {0x50}},
    {"probe", "", {}},
    {"trans", "rd", {0x50, 0, 1}},
    {"set-sw-mode", "", {1}},
};
// Showing the modes runs through set-sw-mode too.
const CCase SHOW_MODES = {"set-sw-mode", "", {}};

std::vector<CCase> WithShowModes() {
    std::vector<CCase> cases = ALL_CASES;
    cases.push_back(SHOW_MODES);
    return cases;
}

std::string CaseName(const testing::TestParamInfo<CCase>& info) {
    std::string name = info.param.command + (info.param.numbers.empty() ? "_bare" : "");
    for (char& c : name) {
        c = c == '-' ? '_' : c;
    }
    return name;
}

class EveryI2cBusCommand : public CBusTest, public testing::WithParamInterface<CCase> {
  protected:
    EveryI2cBusCommand() : m_switch(*new CFakeSwitch(m_journal, "mux", 0x70)) {
        m_bus.AddChild(&m_switch, CDiagObj::NO_SORT);
        m_bus.Answer({0x50});
    }

    CDiagFunc& Subject() { return Func(GetParam().command); }

    CJournal m_journal;
    CFakeSwitch& m_switch;
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cBusCommand, testing::ValuesIn(WithShowModes()), CaseName);

TEST_P(EveryI2cBusCommand, AnswersOneByte) {
    EXPECT_EQ(Call(Subject(), GetParam()).bytes, Bytes{SUCCESS});
}

TEST_P(EveryI2cBusCommand, FailsTheAssertionOutOfInvokeWhenDetached) {
    const std::unique_ptr<CDiagObj> node = Detach(GetParam().command);
    auto& command = dynamic_cast<CDiagFunc&>(*node);
    CInMsg in = RequestOf(GetParam());
    COutMsg out;
    try {
        command.Invoke(in, out);
        FAIL() << "nothing was thrown";
    } catch (const CDiagException& e) {
        EXPECT_TRUE(IsMissingDeviceText(e.what()));
    }
    EXPECT_EQ(out.GetHeader().len, 0);
    EXPECT_TRUE(m_log.Lines().empty());
}

TEST_P(EveryI2cBusCommand, AnswersFailureWithTheAssertionTextWhenDetached) {
    const std::unique_ptr<CDiagObj> node = Detach(GetParam().command);

    const CAnswer reply = Call(dynamic_cast<CDiagMenu&>(*node), GetParam());

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    ASSERT_EQ(m_log.Lines().size(), 1U);
    EXPECT_EQ(m_log.Lines()[0].first, 0x30U);
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_P(EveryI2cBusCommand, AnswersFailureBelowAMenuThatHasNoDeviceAboveIt) {
    CDiagMenu menu(TMENU, "shelf", "no device");
    menu.AddChild(Detach(GetParam().command).release(), CDiagObj::NO_SORT);

    const CAnswer reply = Call(NodeAt(menu, GetParam().command), GetParam());

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    ASSERT_EQ(m_log.Lines().size(), 1U);
    EXPECT_EQ(m_log.Lines()[0].first, 0x30U);
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
}

TEST_P(EveryI2cBusCommand, AnswersFailureBelowADeviceThatIsNoBus) {
    CDiagDevice device("fan", "no bus", TDEVICE);
    device.AddChild(Detach(GetParam().command).release(), CDiagObj::NO_SORT);

    const CAnswer reply = Call(NodeAt(device, GetParam().command), GetParam());

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    ASSERT_EQ(m_log.Lines().size(), 1U);
    EXPECT_EQ(m_log.Lines()[0].first, 0x30U);
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_P(EveryI2cBusCommand, WorksOnTheNearestBusAboveIt) {
    auto* menu = new CDiagMenu(TMENU, "shelf", "a menu of the bus");
    m_bus.AddChild(menu, CDiagObj::NO_SORT);
    menu->AddChild(Detach(GetParam().command).release(), CDiagObj::NO_SORT);

    EXPECT_EQ(Call(Command("shelf/" + GetParam().command), GetParam()).bytes, Bytes{SUCCESS});
    EXPECT_FALSE(m_bus.Seen().empty() && m_journal.Calls().empty());
}

TEST_P(EveryI2cBusCommand, CatchesADeviceExceptionAndAnswersFailure) {
    const auto fail = [] { throw CDiagException("bus %d is stuck", 7); };
    m_bus.OnTransfer([fail](const CI2cXfrReq&) { fail(); });
    m_switch.OnCall(fail);
    CInMsg in = RequestOf(GetParam());
    COutMsg out;

    EXPECT_NO_THROW(Subject().Invoke(in, out));

    ASSERT_EQ(out.GetHeader().len, 1);
    EXPECT_EQ(out.GetPayload()[0], FAIL);
    ASSERT_FALSE(m_log.Lines().empty());
    EXPECT_EQ(m_log.Lines().back(), ArgError("bus 7 is stuck"));
    EXPECT_EQ(m_log.Texts(0x30).size(), 1U);
}

TEST_P(EveryI2cBusCommand, LetsExceptionsOfOtherTypesPass) {
    const auto fail = [] { throw std::runtime_error("not of the contract"); };
    m_bus.OnTransfer([fail](const CI2cXfrReq&) { fail(); });
    m_switch.OnCall(fail);
    CInMsg in = RequestOf(GetParam());
    COutMsg out;
    EXPECT_THROW(Subject().Invoke(in, out), std::runtime_error);
}

TEST_P(EveryI2cBusCommand, LeavesTheBusLockAlone) {
    const CGuard<CMutex> guard(m_bus.m_lock);
    EXPECT_EQ(Call(Subject(), GetParam()).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(m_log.Texts(0x30).empty());
}

TEST_P(EveryI2cBusCommand, KeepsTestsFromTakingTheBusWhileItRuns) {
    // Looked at once, at the first thing the command does with its bus.
    std::vector<bool> during;
    const auto look = [&] {
        if (during.empty()) {
            during.push_back(WouldWait(m_bus, DEV_LOCK_ACCESS));
        }
    };
    m_bus.OnTransfer([look](const CI2cXfrReq&) { look(); });
    m_switch.OnCall(look);

    EXPECT_FALSE(WouldWait(m_bus, DEV_LOCK_ACCESS));
    Call(Subject(), GetParam());
    EXPECT_EQ(during, std::vector<bool>{true});
    EXPECT_FALSE(WouldWait(m_bus, DEV_LOCK_ACCESS));
}

class I2cBusCommands : public CBusTest {};

TEST_F(I2cBusCommands, ReadTheArgumentOfChkDevBeforeTheyLookForTheBus) {
    const std::unique_ptr<CDiagObj> node = Detach("chk-dev");

    const CAnswer reply = Send(dynamic_cast<CDiagMenu&>(*node), MSG_CALL);

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(), CLines{ArgError(UnderflowText<uint8_t>())});
}

TEST_F(I2cBusCommands, CatchAMissingArgumentThemselves) {
    for (const std::string name : {"chk-dev", "trans"}) {
        SCOPED_TRACE(name);
        m_log.Clear();
        CInMsg in{COutMsg(MSG_CALL)};
        COutMsg out;

        EXPECT_NO_THROW(Func(name).Invoke(in, out));

        ASSERT_EQ(out.GetHeader().len, 1);
        EXPECT_EQ(out.GetPayload()[0], FAIL);
        ASSERT_EQ(m_log.Lines().size(), 1U);
        EXPECT_EQ(m_log.Lines()[0].first, 0x30U);
    }
}

TEST_F(I2cBusCommands, LookForTheBusBeforeTheyReadTheArgumentsOfTrans) {
    const std::unique_ptr<CDiagObj> node = Detach("trans");

    const CAnswer reply = Send(dynamic_cast<CDiagMenu&>(*node), MSG_CALL);

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    ASSERT_EQ(m_log.Lines().size(), 1U);
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
}

TEST_F(I2cBusCommands, LookForTheBusBeforeTheyRefuseAMode) {
    const std::unique_ptr<CDiagObj> node = Detach("set-sw-mode");

    const CAnswer reply = Send(dynamic_cast<CDiagMenu&>(*node), MSG_CALL, uint8_t{9});

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    ASSERT_EQ(m_log.Lines().size(), 1U);
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
}

}  // namespace
