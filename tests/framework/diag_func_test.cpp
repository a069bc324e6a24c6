#include "framework/diag_func.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include "framework/diag_exception.h"
#include "framework/diag_param.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Body = std::function<void(CInMsg&, COutMsg&)>;

class CBodyCmd : public CDiagFunc {
  public:
    explicit CBodyCmd(Body body)
        : CDiagFunc("command", "does as told", 0), m_body(std::move(body)) {}
    void Invoke(CInMsg& in, COutMsg& out) override {
        ++m_invoked;
        m_body(in, out);
    }
    int Invoked() const { return m_invoked; }

  private:
    const Body m_body;
    int m_invoked = 0;
};

void Succeed(CInMsg&, COutMsg& out) {
    out << uint8_t{0};
}

TEST(Func, IsACommandNode) {
    const CBodyCmd command(Succeed);
    EXPECT_EQ(command.GetNodeType(), TFUNC);
    EXPECT_STREQ(command.GetName(), "command");
    EXPECT_STREQ(command.GetDescription(), "does as told");
}

TEST(Func, HandsACallToItsBody) {
    CBodyCmd command([](CInMsg& in, COutMsg& out) {
        std::string rdwr;
        uint8_t addr = 0;
        in >> rdwr >> addr;
        EXPECT_EQ(rdwr, "rd");
        EXPECT_EQ(in.GetLen(), 0U);
        out << uint8_t{0} << addr;
    });
    EXPECT_THAT(Send(command, MSG_CALL, std::string("rd"), uint8_t{0x50}).bytes,
                ElementsAre(0, 0x50));
    EXPECT_EQ(command.Invoked(), 1);
}

TEST(Func, TellsItsBodyThatOptionalArgumentsWereLeftOut) {
    CBodyCmd command(
        [](CInMsg& in, COutMsg& out) { out << static_cast<uint8_t>(in.GetLen() == 0 ? 0 : 2); });
    EXPECT_THAT(Send(command, MSG_CALL).bytes, ElementsAre(0));
    EXPECT_THAT(Send(command, MSG_CALL, uint8_t{1}).bytes, ElementsAre(2));
}

TEST(Func, LooksAtTheMessageTypeWithoutRoutingFlags) {
    CBodyCmd command(Succeed);
    EXPECT_THAT(Send(command, static_cast<EMsgType>(MSG_CALL | 0xC000)).bytes, ElementsAre(0));
}

TEST(Func, LogsAnExceptionThatLeavesItsBodyAndAnswersFailure) {
    const CLogCapture log;
    CBodyCmd command([](CInMsg&, COutMsg&) { throw CDiagException("no bus at %d", 3); });
    EXPECT_THAT(Send(command, MSG_CALL).bytes, ElementsAre(2));
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].first, 0x30U);
    EXPECT_THAT(log.Lines()[0].second, HasSubstr("no bus at 3"));
}

TEST(Func, LogsAStandardExceptionJustSo) {
    const CLogCapture log;
    CBodyCmd command([](CInMsg&, COutMsg&) { throw std::runtime_error("50% %s %n"); });
    EXPECT_THAT(Send(command, MSG_CALL).bytes, ElementsAre(2));
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].first, 0x30U);
    EXPECT_THAT(log.Lines()[0].second, HasSubstr("50% %s %n"));
}

TEST(Func, LogsAnythingElseThatIsThrown) {
    const CLogCapture log;
    CBodyCmd command([](CInMsg&, COutMsg&) { throw 42; });
    EXPECT_THAT(Send(command, MSG_CALL).bytes, ElementsAre(2));
    ASSERT_EQ(log.Texts(LW_ERR_SW).size(), 1U);
    EXPECT_NE(log.Texts(LW_ERR_SW)[0], "");
}

TEST(Func, DiscardsWhatWasAnsweredBeforeTheException) {
    CBodyCmd command([](CInMsg&, COutMsg& out) {
        out << uint8_t{0} << "half an answer";
        throw CDiagException("and then");
    });
    EXPECT_THAT(Send(command, MSG_CALL).bytes, ElementsAre(2));
}

TEST(Func, AnswersFailureWhenItsBodyOverfillsTheAnswer) {
    CBodyCmd command([](CInMsg&, COutMsg& out) {
        for (;;) {
            out << uint64_t{0};
        }
    });
    EXPECT_THAT(Send(command, MSG_CALL).bytes, ElementsAre(2));
}

TEST(Func, AnswersFailureWhenAnArgumentIsMissing) {
    const CLogCapture log;
    CBodyCmd command([](CInMsg& in, COutMsg& out) {
        uint32_t mask = 0;
        in >> mask;
        out << uint8_t{0};
    });
    EXPECT_THAT(Send(command, MSG_CALL, uint8_t{1}).bytes, ElementsAre(2));
    EXPECT_EQ(log.Texts(LW_ERR_SW).size(), 1U);
}

TEST(Func, RefusesMessagesThatAreNoCall) {
    const CLogCapture log;
    CBodyCmd command(Succeed);
    for (const EMsgType type : {MSG_PEEKV, MSG_POKEV, MSG_START, MSG_STOP, MSG_NULL}) {
        EXPECT_THAT(Send(command, type).bytes, ElementsAre(MSG_ERR_MSGTYPE)) << type;
    }
    EXPECT_EQ(command.Invoked(), 0);
}

class CDescribedCmd : public CBodyCmd {
  public:
    CDescribedCmd() : CBodyCmd(Succeed) {}
    void Query(COutMsg& out) override { out << uint16_t{0x1234} << "described"; }
};

TEST(Func, AnswersAQueryWithSuccessAndItsDescription) {
    CDescribedCmd command;
    EXPECT_EQ(Send(command, MSG_QUERY).bytes,
              CBytes().U8(MSG_SUCCESS).U16(0x1234).Text("described").Get());
    EXPECT_EQ(command.Invoked(), 0);
}

TEST(Func, LogsNothingOfItsOwnWhenAllIsWell) {
    const CLogCapture log;
    CBodyCmd command(Succeed);
    Send(command, MSG_CALL);
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(Func, SendsItsTextsToTheLogUnchanged) {
    const CLogCapture log;
    const CBodyCmd command(Succeed);
    command.SendLog(LW_PRINT, "data 0-15: %2x \n", 5U);
    EXPECT_THAT(log.Lines(), ElementsAre(CLogCapture::Line{0xB0, "data 0-15:  5 \n"}));
}

TEST(Func, HoldsItsParametersInDeclaredOrder) {
    CBodyCmd command(Succeed);
    for (const char* name : {"rdwr", "addr", "cmd-size"}) {
        command.AddChild(new CDiagParam(VT_UINT8, name, name, PT_IN), CDiagObj::NO_SORT);
    }
    ASSERT_EQ(command.GetChildren().size(), 3U);
    EXPECT_STREQ(command.GetChildren()[0]->GetName(), "rdwr");
    EXPECT_STREQ(command.GetChildren()[2]->GetName(), "cmd-size");
}

}  // namespace
