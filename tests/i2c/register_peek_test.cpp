// "regpeek" of a register device: values, whole arrays, dumps, and what is answered when
// the chip, the path or the response buffer fails.
#include "tests/i2c/register_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class I2cRegisterPeek : public CRegisterTest {
  protected:
    static Bytes Answer(uint8_t code, const std::string& text) {
        return CBytes().U8(code).Text(text);
    }
    static CEntries ReadCtrl(std::initializer_list<int> indices) {
        CEntries entries;
        for (const int index : indices) {
            entries += Access("read ctrl[" + std::to_string(index) + "]");
        }
        return entries;
    }
    // What an array of 16-bit registers reads as.
    static std::string Zeros(size_t count) {
        std::string text = "0x0000";
        while (--count != 0) {
            text += " 0x0000";
        }
        return text;
    }
};

TEST_F(I2cRegisterPeek, ReadsAPlainRegisterWithThePathOpen) {
    EXPECT_EQ(Peek("status").bytes, Answer(SUCCESS, "0x5"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access("read status[0]") + m_path_closed);
}

TEST_F(I2cRegisterPeek, ReadsOneElementOfAnArray) {
    EXPECT_EQ(Peek("ctrl[2]").bytes, Answer(SUCCESS, "0x0333"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + ReadCtrl({2}) + m_path_closed);
}

TEST_F(I2cRegisterPeek, ReadsTheFirstAndTheLastElement) {
    EXPECT_EQ(Peek("ctrl[0]").bytes, Answer(SUCCESS, "0x0001"));
    EXPECT_EQ(Peek("ctrl[0x3]").bytes, Answer(SUCCESS, "0x4444"));
}

TEST_F(I2cRegisterPeek, JoinsTheElementsOfAnArrayByBlanks) {
    EXPECT_EQ(Peek("ctrl").bytes, Answer(SUCCESS, "0x0001 0x0022 0x0333 0x4444"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + ReadCtrl({0, 1, 2, 3}) + m_path_closed);
}

TEST_F(I2cRegisterPeek, ShowsAValueInTheTypeAndFormatOfItsRegister) {
    m_cpld.m_data["limit[0]"] = static_cast<uint64_t>(-40);
    EXPECT_EQ(Peek("limit").bytes, Answer(SUCCESS, "-40"));
    EXPECT_EQ(Peek("mode").bytes, Answer(SUCCESS, "0x80"));
}

TEST_F(I2cRegisterPeek, LetsAPlainRegisterHaveTheIndexZero) {
    EXPECT_EQ(Peek("status[0]").bytes, Answer(SUCCESS, "0x5"));
}

TEST_F(I2cRegisterPeek, ReadsWhateverIsNamedInFull) {
    EXPECT_EQ(Peek("cause").bytes, Answer(SUCCESS, "0x11"));
    EXPECT_EQ(Peek("reset").bytes, Answer(SUCCESS, "0x0"));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_F(I2cRegisterPeek, NeedsNoPathOnARootBus) {
    CTestRegisterChip chip(m_journal, "new", &m_table, &m_bus);
    chip.m_data["status[0]"] = 0x7;
    EXPECT_EQ(Send(NodeAt(chip, "regpeek"), MSG_CALL, std::string("status")).bytes,
              Answer(SUCCESS, "0x7"));
    EXPECT_EQ(m_journal.Entries(), CEntries{Call("new: read status[0]")});
}

// What cannot be read

TEST_F(I2cRegisterPeek, RefusesAnIndexBehindTheEndAndClosesThePath) {
    EXPECT_EQ(Peek("ctrl[4]").bytes, Answer(FAIL, "???"));
    EXPECT_EQ(m_journal.Entries(),
              m_path_opened + CEntries{ArgError("ctrl[4] invalid index, valid range 0 to 3")} +
                  m_path_closed);
}

TEST_F(I2cRegisterPeek, RefusesAnIndexOfAPlainRegister) {
    EXPECT_EQ(Peek("status[1]").bytes, Answer(FAIL, "???"));
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("status[1] invalid index, valid range 0 to 0"));
    EXPECT_TRUE(IsPathClosed());
}

TEST_F(I2cRegisterPeek, RefusesARegisterWithoutElements) {
    EXPECT_EQ(Peek("none").bytes, Answer(FAIL, "???"));
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("none[0] invalid index, valid range 0 to -1"));
    EXPECT_TRUE(IsPathClosed());
}

TEST_F(I2cRegisterPeek, AnswersQuestionMarksForAFailedReadAndClosesThePath) {
    m_cpld.FailAt("read status[0]");
    EXPECT_EQ(Peek("status").bytes, Answer(FAIL, "???"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access("read status[0]") + m_path_closed);
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_F(I2cRegisterPeek, AnswersQuestionMarksForAValueThatHasNoText) {
    EXPECT_EQ(Peek("serial").bytes, Answer(FAIL, "???"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access("read serial[0]") + m_path_closed);
}

TEST_F(I2cRegisterPeek, KeepsTheElementsBeforeAFailedOneAndReadsNoFurther) {
    m_cpld.FailAt("read ctrl[2]");
    EXPECT_EQ(Peek("ctrl").bytes, Answer(FAIL, "0x0001 0x0022 ???"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + ReadCtrl({0, 1, 2}) + m_path_closed);
}

TEST_F(I2cRegisterPeek, PutsNoBlankBeforeAFailedFirstElement) {
    m_cpld.FailAt("read ctrl[0]");
    EXPECT_EQ(Peek("ctrl").bytes, Answer(FAIL, "???"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + ReadCtrl({0}) + m_path_closed);
}

TEST_F(I2cRegisterPeek, StopsAtAnElementThatHasNoText) {
    Entry("serial").num_regs = 3;
    EXPECT_EQ(Peek("serial").bytes, Answer(FAIL, "???"));
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access("read serial[0]") + m_path_closed);
}

// The path

TEST_F(I2cRegisterPeek, ReadsNothingWhenThePathCannotBeOpened) {
    FailToOpen();
    EXPECT_EQ(Peek("status").bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_cannot_open);
}

TEST_F(I2cRegisterPeek, OpensThePathBeforeItLooksAtTheIndex) {
    FailToOpen();
    EXPECT_EQ(Peek("ctrl[4]").bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_cannot_open);
}

TEST_F(I2cRegisterPeek, AnswersASecondByteWhenThePathCannotBeClosed) {
    m_top.FailAt("DisableChannels");
    EXPECT_EQ(Peek("status").bytes, CBytes().U8(SUCCESS).Text("0x5").U8(FAIL).Get());
    EXPECT_EQ(m_journal.Entries().back(), m_cannot_disable.front());
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
}

TEST_F(I2cRegisterPeek, AnswersASecondByteAfterAFailedReadToo) {
    FailToClose();
    m_cpld.FailAt("read status[0]");
    EXPECT_EQ(Peek("status").bytes, CBytes().U8(FAIL).Text("???").U8(FAIL).Get());
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
}

TEST_F(I2cRegisterPeek, LogsTheIndexBeforeThePathThatCannotBeClosed) {
    FailToClose();
    EXPECT_EQ(Peek("ctrl[9]").bytes, CBytes().U8(FAIL).Text("???").U8(FAIL).Get());
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("ctrl[9] invalid index, valid range 0 to 3",
                                               "  Error when disabling I2C path!\n"));
}

// The response buffer: one code byte, two bytes of length, the text

TEST_F(I2cRegisterPeek, FillsTheResponseToItsLastByte) {
    const CAnswer reply = Peek("wide");
    EXPECT_EQ(reply.bytes, Answer(SUCCESS, Zeros(146)));
    EXPECT_EQ(reply.bytes.size(), CDiagMsg::PAYLOAD_SIZE);
    EXPECT_EQ(reply.resp_code, MSG_SUCCESS);
}

TEST_F(I2cRegisterPeek, TellsThatTheValuesDoNotFitAndClosesThePath) {
    Entry("wide").num_regs = 147;
    const CAnswer reply = Peek("wide");
    EXPECT_EQ(reply.bytes, Answer(SUCCESS, "Too many values to display"));
    EXPECT_EQ(reply.resp_code, MSG_ERR_MSGLEN);
    EXPECT_TRUE(IsPathClosed());
    EXPECT_THAT(m_journal.Calls(), testing::Contains("cpld: read wide[146]"));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_F(I2cRegisterPeek, KeepsTheCodeOfAFailedReadBeforeValuesThatDoNotFit) {
    Entry("wide").num_regs = 200;
    m_cpld.FailAt("read wide[199]");
    const CAnswer reply = Peek("wide");
    EXPECT_EQ(reply.bytes, Answer(FAIL, "Too many values to display"));
    EXPECT_EQ(reply.resp_code, MSG_ERR_MSGLEN);
}

TEST_F(I2cRegisterPeek, AnswersASecondByteBehindValuesThatDoNotFit) {
    FailToClose();
    Entry("wide").num_regs = 147;
    EXPECT_EQ(Peek("wide").bytes,
              CBytes().U8(SUCCESS).Text("Too many values to display").U8(FAIL).Get());
}

// Names that are no register

TEST_F(I2cRegisterPeek, DumpsWhatTheNameMatchesAndAnswersNoText) {
    EXPECT_EQ(Peek("st").bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Calls().front(), "cpld: dump 176 'st'");
    EXPECT_THAT(m_journal.Calls(), testing::Contains("cpld: read status[0]"));
    EXPECT_THAT(m_log.Joined(0xB0), testing::HasSubstr("0x5"));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
    EXPECT_TRUE(IsPathClosed());
}

TEST_F(I2cRegisterPeek, DumpsByTheWholeTextThatWasTyped) {
    EXPECT_EQ(Peek("m?de").bytes, Bytes{SUCCESS});
    EXPECT_EQ(Peek("statu[5]").bytes, Bytes{FAIL});
    EXPECT_THAT(m_journal.Calls(), testing::Contains("cpld: dump 176 'm?de'"));
    EXPECT_THAT(m_journal.Calls(), testing::Contains("cpld: dump 176 'statu[5]'"));
}

TEST_F(I2cRegisterPeek, NamesAnUnknownRegisterWithoutItsIndex) {
    EXPECT_EQ(Peek("nothing[3]").bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), Access("dump 176 'nothing[3]'") + m_path_opened + m_path_closed +
                                       CEntries{ArgError("No register named nothing")});
}

TEST_F(I2cRegisterPeek, NamesARegisterWhoseDumpFailed) {
    m_cpld.FailAt("read status[0]");
    EXPECT_EQ(Peek("st").bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries().back(), ArgError("No register named st"));
}

TEST_F(I2cRegisterPeek, TellsOfThePathBeforeTheNameThatWasNotDumped) {
    FailToOpen();
    EXPECT_EQ(Peek("st").bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), Access("dump 176 'st'") + m_path_opened + m_cannot_open +
                                       CEntries{ArgError("No register named st")});
}

TEST_F(I2cRegisterPeek, FailsAfterADumpWhosePathCannotBeClosed) {
    FailToClose();
    EXPECT_EQ(Peek("st").bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30),
                ElementsAre("  Error when clearing I2C path!\n", "No register named st"));
}

TEST_F(I2cRegisterPeek, TakesAMalformedIndexForPartOfTheName) {
    EXPECT_EQ(Peek("ctrl[x]").bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("No register named ctrl[x]"));
}

TEST_F(I2cRegisterPeek, FindsNothingWithoutATable) {
    CTestRegisterChip chip(m_journal, "new", nullptr, &m_bus);
    EXPECT_EQ(Send(NodeAt(chip, "regpeek"), MSG_CALL, std::string("ctrl")).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("No register named ctrl"));
}

}  // namespace
