// A stop that the operator asks for at every word of every command.
#include <gmock/gmock.h>

#include "host/run_stop.h"
#include "tests/i2c/param_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr size_t WORDS = 33;

class ParamEepromStop : public CParamEepromTest, public testing::WithParamInterface<size_t> {
  protected:
    ParamEepromStop() {
        MountParamBehindSwitch();
        m_bus.OnTransfer([this](size_t i, const CI2cXfrReq&) {
            if (i == m_stop_at) {
                m_stop.Request();
            }
        });
    }
    // Runs with a request to stop at transfer `index`.
    template <class Run>
    CAnswer StoppedAt(size_t index, Run&& run) {
        m_stop_at = index;
        const CRunStop::CScope scope(m_stop);
        return run();
    }
    const CTable m_table = CompactTable();
    const Bytes m_image = ImageOf(m_table);
    const std::vector<unsigned int> m_order = WordOrderOf(m_table);
    CRunStop m_stop;
    size_t m_stop_at = 0;
};

// Programming: each word but the last, at its write and at its read.
class ParamEepromStopProgram : public ParamEepromStop {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromStopProgram, testing::Range<size_t>(0, 2 * (WORDS - 1)));

TEST_P(ParamEepromStopProgram, EndsBehindTheWordAndSaysWhatIsLeft) {
    ASSERT_EQ(m_order.size(), WORDS);
    const size_t words = GetParam() / 2 + 1;
    EXPECT_EQ(StoppedAt(GetParam(), [this] { return Program(m_table); }).bytes, Bytes{ABORTED});
    EXPECT_EQ(Calls(), VerifiedPathCalls({m_order.begin(),
                                          m_order.begin() + static_cast<std::ptrdiff_t>(words)}));
    ASSERT_EQ(m_log.Texts(0x40).size(), 1U);
    EXPECT_THAT(m_log.Texts(0x40)[0], HasSubstr("incomplete"));
    EXPECT_THAT(m_log.Texts(0x40)[0], HasSubstr("a check will fail"));
    EXPECT_THAT(m_log.Texts(0x10), IsEmpty());
    // What is left is no image, and the next run makes it whole.
    EXPECT_EQ(Check(m_table).Code(), FAIL);
    EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, m_image.size()), m_image);
}

// The last word makes the image whole: there is nothing left to stop.
TEST_F(ParamEepromStop, ComesTooLateAtTheLastWordOfProgramming) {
    for (const size_t index : {2 * WORDS - 2, 2 * WORDS - 1}) {
        CRunStop stop;
        const size_t before = m_bus.Xfers().size();
        m_bus.OnTransfer([&](size_t i, const CI2cXfrReq&) {
            if (i == before + index) {
                stop.Request();
            }
        });
        Forget();
        const CRunStop::CScope scope(stop);
        EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
        EXPECT_TRUE(stop.IsRequested());
        EXPECT_THAT(m_log.Texts(0x40), IsEmpty());
        EXPECT_EQ(Memory(0, m_image.size()), m_image);
    }
}

TEST_F(ParamEepromStop, ThatCameBeforeProgrammingLeavesTheEepromAlone) {
    m_stop.Request();
    const CRunStop::CScope scope(m_stop);
    EXPECT_EQ(Program(m_table).bytes, Bytes{ABORTED});
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(ParamEepromStop, IsNotTakenForAnotherThreadsOne) {
    m_stop.Request();
    EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Check(m_table).Code(), SUCCESS);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
}

// Checking.
class ParamEepromStopCheck : public ParamEepromStop {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromStopCheck, testing::Range<size_t>(0, WORDS - 1));

TEST_P(ParamEepromStopCheck, EndsBehindTheWordWithoutAVerdict) {
    Store(m_image);
    EXPECT_EQ(StoppedAt(GetParam(), [this] { return Check(m_table); }).bytes, Bytes{ABORTED});
    CCalls calls;
    for (size_t i = 0; i <= GetParam(); ++i) {
        calls.insert(calls.end(), {SELECT, ReadCalls({m_order[i]})[0], CLOSE});
    }
    EXPECT_EQ(Calls(), calls);
    EXPECT_EQ(Memory(0, m_image.size()), m_image);
    EXPECT_THAT(LinesWith("EEPROM Parameters Verification"), IsEmpty());
    EXPECT_THAT(LinesWith("Parameter EEPROM Check ended"), IsEmpty());
    EXPECT_THAT(m_log.Texts(0x10), IsEmpty());
    EXPECT_EQ(Check(m_table).Code(), SUCCESS);
}

TEST_F(ParamEepromStop, ComesTooLateAtTheLastWordOfChecking) {
    Store(m_image);
    EXPECT_EQ(StoppedAt(WORDS - 1, [this] { return Check(m_table); }).bytes,
              CheckAnswer(SUCCESS, 3, WordAt(m_image, 0)));
}

TEST_F(ParamEepromStop, ThatCameBeforeCheckingReadsNothing) {
    m_stop.Request();
    const CRunStop::CScope scope(m_stop);
    EXPECT_EQ(Check(m_table).bytes, Bytes{ABORTED});
    EXPECT_THAT(Calls(), IsEmpty());
}

// Erasing: the read of the length, then every word but the last.
class ParamEepromStopErase : public ParamEepromStop {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromStopErase, testing::Range<size_t>(1, WORDS));

TEST_P(ParamEepromStopErase, EndsBehindTheWordAndSaysWhatIsLeft) {
    Store(m_image);
    EXPECT_EQ(StoppedAt(GetParam(), [this] { return Erase(); }).bytes, Bytes{ABORTED});
    const size_t erased = 4 * GetParam();
    EXPECT_EQ(Transfers().size(), 1 + GetParam());
    EXPECT_EQ(Memory(0, erased), Bytes(erased, 0xFF));
    EXPECT_EQ(Memory(erased, m_image.size() - erased),
              Bytes(m_image.begin() + static_cast<std::ptrdiff_t>(erased), m_image.end()));
    ASSERT_EQ(m_log.Texts(0x40).size(), 1U);
    EXPECT_THAT(m_log.Texts(0x40)[0], HasSubstr("a check will fail"));
    EXPECT_EQ(Check(m_table).Code(), FAIL);
}

TEST_F(ParamEepromStop, WhileTheLengthIsReadErasesNothing) {
    Store(m_image);
    EXPECT_EQ(StoppedAt(0, [this] { return Erase(); }).bytes, Bytes{ABORTED});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 8+4", CLOSE));
    EXPECT_THAT(m_log.Texts(0x40),
                ElementsAre("Erasing stopped before the first word, the EEPROM is as it was\n"));
    EXPECT_EQ(Check(m_table).Code(), SUCCESS);
}

TEST_F(ParamEepromStop, ThatCameBeforeErasingErasesNothing) {
    Store(m_image);
    m_stop.Request();
    const CRunStop::CScope scope(m_stop);
    EXPECT_EQ(Erase().bytes, Bytes{ABORTED});
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_THAT(m_log.Texts(0x40),
                ElementsAre("Erasing stopped before the first word, the EEPROM is as it was\n"));
}

TEST_F(ParamEepromStop, ComesTooLateAtTheLastWordOfErasing) {
    Store(m_image);
    EXPECT_EQ(StoppedAt(WORDS, [this] { return Erase(); }).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, m_image.size()), Bytes(m_image.size(), 0xFF));
    EXPECT_THAT(m_log.Texts(0x40), IsEmpty());
}

}  // namespace
