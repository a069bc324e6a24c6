// The command "type": 1G or 10G.
#include <gmock/gmock.h>

#include "tests/i2c/sfp_eeprom_test.h"

namespace {

using testing::ElementsAre;

class SfpEepromType : public CSfpEepromTest {
  protected:
    // What a module of these compliance codes is taken for.
    Bytes TypeOf(const Bytes& transceiver) {
        for (size_t i = 0; i < transceiver.size(); ++i) {
            m_bus.At(TRANSCEIVER_AT + i) = transceiver[i];
        }
        return Type().bytes;
    }
};

TEST_F(SfpEepromType, Is10ForA10GigabitCode) {
    MountRecord(Sfp());
    EXPECT_EQ(TypeOf({0x10, 0, 0, 0, 0, 0, 0, 0}), TypeAnswer(SUCCESS, 10));
}

TEST_F(SfpEepromType, Is1ForAGigabitCode) {
    MountRecord(Sfp());
    EXPECT_EQ(TypeOf({0, 0, 0, 0x08, 0, 0, 0, 0}), TypeAnswer(SUCCESS, 1));
}

TEST_F(SfpEepromType, Is10WithoutAnyCode) {
    MountRecord(Sfp());
    EXPECT_EQ(TypeOf(Bytes(8, 0)), TypeAnswer(SUCCESS, 10));
}

TEST_F(SfpEepromType, Is10ForBothCodes) {
    MountRecord(Sfp());
    EXPECT_EQ(TypeOf({0x20, 0, 0, 0x01, 0, 0, 0, 0}), TypeAnswer(SUCCESS, 10));
}

// Only the bits 0 and 4 to 7 of the first code stand for 10G.
TEST_F(SfpEepromType, GoesByFiveBitsOfTheFirstCode) {
    MountRecord(Sfp());
    for (unsigned int code = 1; code <= 255; ++code) {
        const bool fast = code >= 0x10 || code % 2 == 1;
        ASSERT_EQ(TypeOf({static_cast<uint8_t>(code), 0, 0, 0, 0, 0, 0, 0}),
                  TypeAnswer(SUCCESS, fast ? 10 : 1))
            << code;
    }
}

TEST_F(SfpEepromType, Is1ForAnyBitOfTheOtherCodesAlone) {
    MountRecord(Sfp());
    for (size_t bit = 8; bit < 64; ++bit) {
        Bytes codes(8);
        codes[bit / 8] = static_cast<uint8_t>(1U << bit % 8);
        ASSERT_EQ(TypeOf(codes), TypeAnswer(SUCCESS, 1)) << bit;
    }
}

TEST_F(SfpEepromType, DoesNotGoByTheBytesAroundTheCodes) {
    MountRecord(Sfp());
    Store(Bytes(SIZE, 0xFF));
    EXPECT_EQ(TypeOf(Bytes(8, 0)), TypeAnswer(SUCCESS, 10));
    EXPECT_EQ(TypeOf({0, 0, 0, 0, 0, 0, 0, 1}), TypeAnswer(SUCCESS, 1));
}

TEST_F(SfpEepromType, IsThatOfTheImages) {
    MountRecord(Sfp());
    Store(ImageNamed("sfp_1g"));
    EXPECT_EQ(Type().bytes, TypeAnswer(SUCCESS, 1));
    Store(ImageNamed("sfp_10g"));
    EXPECT_EQ(Type().bytes, TypeAnswer(SUCCESS, 10));
}

TEST_F(SfpEepromType, PrintsNothing) {
    MountRecord(Sfp());
    EXPECT_EQ(Type().Code(), SUCCESS);
    EXPECT_TRUE(Messages().empty());
}

// The path and failures.

TEST_F(SfpEepromType, OpensReadsAndCloses) {
    MountRecordBehindSwitch(Sfp(64));
    Store(ImageNamed("sfp_1g"));
    EXPECT_EQ(Type().bytes, TypeAnswer(SUCCESS, 1));
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+64", "RD 64+64", CLOSE));
}

TEST_F(SfpEepromType, HasNoValueWhenThePathCannotBeOpened) {
    MountRecordBehindSwitch(Sfp());
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Type().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, CANNOT_OPEN));
}

TEST_F(SfpEepromType, TakesAModuleThatDoesNotAnswerFor10AndFails) {
    MountRecordBehindSwitch(Sfp(64));
    Store(ImageNamed("sfp_1g"));
    m_bus.FailAt(0);
    EXPECT_EQ(Type().bytes, TypeAnswer(FAIL, 10));
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+64",
                            "0x10 ERROR: Memory read failed (addr=00000 nBytes=64): no ack 0",
                            "0x10 ERROR: Error during EEPROM read! addr = 0x0 ", CLOSE));
}

TEST_F(SfpEepromType, GoesByWhatWasReadWhenTheReadFailsLater) {
    MountRecordBehindSwitch(Sfp(64));
    Store(ImageNamed("sfp_1g"));
    m_bus.FailAt(1);
    EXPECT_EQ(Type().bytes, TypeAnswer(FAIL, 1));
}

TEST_F(SfpEepromType, TellsTheTypeThoughThePathCannotBeClosed) {
    MountRecordBehindSwitch(Sfp());
    Store(ImageNamed("sfp_1g"));
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Type().bytes, TypeAnswer(FAIL, 1));
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+128", CLOSE, CANNOT_CLOSE));
}

TEST_F(SfpEepromType, AnswersOneCodeWhenBothReadAndPathFail) {
    MountRecordBehindSwitch(Sfp());
    m_bus.FailAt(0);
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Type().bytes, TypeAnswer(FAIL, 10));
}

}  // namespace
