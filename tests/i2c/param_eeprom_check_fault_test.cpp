// "check-param-eeprom" when words cannot be read or the way to the chip is closed.
#include <gmock/gmock.h>

#include "tests/i2c/param_eeprom_check_test.h"

namespace {

using testing::IsEmpty;

class ParamEepromCheckFault : public CParamCheckTest {};

class ParamEepromCheckAtRead : public CParamCheckTest,
                               public testing::WithParamInterface<size_t> {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromCheckAtRead, testing::Range<size_t>(0, 33));

TEST_P(ParamEepromCheckAtRead, TakesOnesForAWordThatCannotBeReadAndGoesOn) {
    MountParam();
    Store(m_image);
    m_bus.FailAt(GetParam());
    const unsigned int at = WordOrderOf(m_table)[GetParam()];
    Bytes seen = m_image;
    SetWordAt(seen, at, 0xFFFFFFFF);
    const uint32_t computed = BitwiseCrc(std::span(seen).subspan(4));
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(FAIL, VERSION, computed));
    CFmtString device;
    device.printf("ERROR: Memory read failed (addr=%05u nBytes=4): no ack %zu", at, GetParam());
    EXPECT_EQ(LinesWith("ERR"), Texts{device.c_str()});
    EXPECT_EQ(LinesWith("Error during"),
              Texts{Formatted("Error during EEPROM read! offset = 0x%x ", at)});
    EXPECT_EQ(Calls(), ReadCalls(WordOrderOf(m_table)));
}

TEST_P(ParamEepromCheckAtRead, EndsWhereTheBusThrows) {
    MountParam();
    Store(m_image);
    m_bus.OnTransfer([](size_t i, const CI2cXfrReq&) {
        if (i == GetParam()) {
            throw CDiagException("bus gone");
        }
    });
    EXPECT_EQ(Check(m_table).bytes, Bytes{FAIL});
    const Texts errors = m_log.Texts(0x10);
    ASSERT_EQ(errors.size(), 2U);
    const unsigned int at = WordOrderOf(m_table)[GetParam()];
    const std::string step = at == 0                              ? "checkCRC"
                             : at == 4                            ? "checkDimmVersionNum"
                             : at == 8                            ? "checkDimmTableLength"
                             : at == 12                           ? "checkSignature"
                             : at == 16                           ? "checkNumEntriesHeader"
                             : at == 20 || at == 80               ? "checkManufacturerId"
                             : at == 56 || at == 116              ? "checkRevisions"
                             : at == 60 || at == 120              ? "checkNumRegisters"
                             : (at >= 64 && at < 80) || at >= 124 ? "checkAddrValues"
                                                                  : "checkDimmPartNum";
    EXPECT_EQ(errors[0], "CMB command failed: " + step + " bus gone");
    EXPECT_EQ(errors[1], "CMB command failed: Invoke bus gone");
    EXPECT_EQ(Calls().size(), GetParam() + 1);
    EXPECT_THAT(LoggedVerdict(), IsEmpty());
}

TEST_F(ParamEepromCheckFault, LeavesThePathOpenBehindAWordThatCannotBeRead) {
    MountParamBehindSwitch();
    Store(m_image);
    const size_t last = WordOrderOf(m_table).size() - 1;
    m_bus.FailAt(last);
    EXPECT_EQ(Check(m_table).Code(), FAIL);
    EXPECT_EQ(Calls().back(), "RD 0+4");
    EXPECT_TRUE(m_switch->IsOpen(CHANNEL));
}

TEST_F(ParamEepromCheckFault, ReadsNothingWhenThePathCannotBeOpened) {
    MountParamBehindSwitch();
    Store(m_image);
    m_switch->FailAt("SelChannel");
    const Bytes ones(m_image.size() - 4, 0xFF);
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(FAIL, VERSION, BitwiseCrc(ones)));
    EXPECT_THAT(Transfers(), IsEmpty());
    EXPECT_EQ(m_log.Texts(0x30), Texts(33, "  Error when enabling I2C path!\n"));
}

TEST_F(ParamEepromCheckFault, TrustsNoWordWhosePathCannotBeClosed) {
    MountParamBehindSwitch();
    Store(m_image);
    m_switch->FailAt("DisableChannels");
    const Bytes ones(m_image.size() - 4, 0xFF);
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(FAIL, VERSION, BitwiseCrc(ones)));
    EXPECT_EQ(m_log.Texts(0x30), Texts(33, "  Error when disabling I2C path!\n"));
}

}  // namespace
