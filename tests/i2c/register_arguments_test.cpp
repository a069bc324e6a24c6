// What the four register commands have in common: their arguments, and a chip that throws.
#include <stdexcept>

#include "tests/i2c/register_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint8_t MISSING = MSG_ERR_MSGLEN;

class EveryI2cRegisterCommand : public CRegisterTest,
                                public testing::WithParamInterface<std::string> {
  protected:
    CDiagFunc& Subject() { return dynamic_cast<CDiagFunc&>(NodeAt(m_cpld, GetParam())); }
    void ExpectMissing(const CAnswer& reply) {
        EXPECT_EQ(reply.bytes, Bytes{MISSING});
        EXPECT_THAT(m_journal.Entries(), IsEmpty());
    }
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cRegisterCommand,
                         testing::Values("regpeek", "regpoke", "regset", "regclr"),
                         [](const auto& one) { return one.param; });

TEST_P(EveryI2cRegisterCommand, IsSilentWithoutArguments) {
    ExpectMissing(Send(Subject(), MSG_CALL));
}

TEST_P(EveryI2cRegisterCommand, IsSilentWithATextThatIsCutOff) {
    ExpectMissing(Send(Subject(), MSG_CALL, CNumbers{{0}}));
    ExpectMissing(Send(Subject(), MSG_CALL, CNumbers{{0, 4, 'm', 'o', 'd'}}));
}

TEST_P(EveryI2cRegisterCommand, CatchesAMissingArgumentItself) {
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    EXPECT_NO_THROW(Subject().Invoke(in, out));
    EXPECT_EQ(PayloadOf(out), Bytes{MISSING});
}

TEST_P(EveryI2cRegisterCommand, AnswersFailureWhenTheChipThrows) {
    m_cpld.OnAccess([] { throw CDiagException("chip %d is stuck", 7); });
    EXPECT_EQ(Send(Subject(), MSG_CALL, std::string("mode"), uint64_t{1}).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("chip 7 is stuck"));
}

TEST_P(EveryI2cRegisterCommand, LetsExceptionsOfOtherTypesPass) {
    m_cpld.OnAccess([] { throw std::runtime_error("not of the contract"); });
    COutMsg request(MSG_CALL);
    request << std::string("mode") << uint64_t{1};
    CInMsg in(request);
    COutMsg out;
    EXPECT_THROW(Subject().Invoke(in, out), std::runtime_error);
}

class EveryI2cRegisterCommandWithANumber : public EveryI2cRegisterCommand {};
INSTANTIATE_TEST_SUITE_P(, EveryI2cRegisterCommandWithANumber,
                         testing::Values("regpoke", "regset", "regclr"),
                         [](const auto& one) { return one.param; });

TEST_P(EveryI2cRegisterCommandWithANumber, IsSilentWithoutIt) {
    ExpectMissing(Send(Subject(), MSG_CALL, std::string("mode")));
    ExpectMissing(Send(Subject(), MSG_CALL, std::string("mode"), uint32_t{1}));
}

TEST_P(EveryI2cRegisterCommandWithANumber, MissesItBeforeItLooksForTheRegister) {
    ExpectMissing(Send(Subject(), MSG_CALL, std::string("nothing")));
    ExpectMissing(Send(Subject(), MSG_CALL, std::string("ctrl")));
}

}  // namespace
