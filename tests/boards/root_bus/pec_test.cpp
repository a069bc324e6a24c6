// SMBus packet error checking of transfers.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "boards/root_bus/smbus_pec.h"
#include "tests/boards/root_bus/tape_bus.h"

namespace {

uint8_t PecOf(std::span<const uint8_t> bytes) {
    return CSmbusPec().Add(bytes).Get();
}
uint8_t PecOf(std::initializer_list<uint8_t> bytes) {
    return PecOf(std::span(bytes.begin(), bytes.size()));
}

TEST(SmbusPec, IsTheCrc8OfTheSmbus) {
    // The check value of this CRC: that of the digits 1 to 9.
    EXPECT_EQ(PecOf({'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xF4);
    EXPECT_EQ(PecOf({}), 0x00);
    EXPECT_EQ(PecOf({0x01}), 0x07);
}

TEST(SmbusPec, TakesAnAddressAsTheByteOnTheWire) {
    EXPECT_EQ(CSmbusPec().AddAddress(0x50, false).Get(), PecOf({0xA0}));
    EXPECT_EQ(CSmbusPec().AddAddress(0x50, true).Get(), PecOf({0xA1}));
}

class RootBusPec : public testing::Test {
  protected:
    RootBusPec() {
        m_req.saddr = 0x50;
        m_req.cmd_sel = 1;
        m_req.cmd = 0x12;
        m_req.data = m_data.data();
        m_req.tsize = 2;
    }

    CTapeBus m_bus;
    CI2cXfrReq m_req;
    std::array<uint8_t, 255> m_data{0x34, 0x56};
};

TEST_F(RootBusPec, IsAppendedToAWrite) {
    m_req.wpec_en = 1;
    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    const uint8_t pec = PecOf({0xA0, 0x12, 0x34, 0x56});
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x12, 0x34, 0x56, pec})});
}

TEST_F(RootBusPec, IsAppendedToAWriteOfTheLongestLength) {
    m_req.wpec_en = 1;
    m_req.cmd_sel = 2;
    m_req.tsize = 255;
    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    ASSERT_EQ(m_bus.Tape().size(), 1U);
    std::vector<uint8_t> wire = {0xA0};
    const std::vector<uint8_t>& written = m_bus.Tapes()[0][0].written;
    ASSERT_EQ(written.size(), 258U);
    wire.insert(wire.end(), written.begin(), written.end() - 1);
    EXPECT_EQ(written.back(), PecOf(wire));
}

TEST_F(RootBusPec, IsAppendedToACommandAlone) {
    m_req.wpec_en = 1;
    m_req.tsize = 0;
    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x12, PecOf({0xA0, 0x12})})});
}

TEST_F(RootBusPec, HasNoPlaceInAQuickCommand) {
    m_req.wpec_en = 1;
    m_req.rpec_en = 1;
    m_req.cmd_sel = 0;
    m_req.tsize = 0;
    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {})});
}

TEST_F(RootBusPec, IsReadAndCheckedOverBothAddressBytes) {
    m_req.rpec_en = 1;
    m_req.dir = 1;
    m_bus.AnswerRead({0x77, 0x88, PecOf({0xA0, 0x12, 0xA1, 0x77, 0x88})});
    EXPECT_TRUE(m_bus.I2cTrans(m_req)) << m_req.errmsg;
    EXPECT_EQ(m_bus.Tape(), (CTape{WriteOf(0x50, {0x12}), ReadOf(0x50, 3)}));
    EXPECT_EQ(m_data[0], 0x77);
    EXPECT_EQ(m_data[1], 0x88);
    EXPECT_EQ(m_data[2], 0x00);
}

TEST_F(RootBusPec, OfAPlainReadCoversItsOneAddressByte) {
    m_req.rpec_en = 1;
    m_req.dir = 1;
    m_req.cmd_sel = 0;
    m_bus.AnswerRead({0x77, 0x88, PecOf({0xA1, 0x77, 0x88})});
    EXPECT_TRUE(m_bus.I2cTrans(m_req)) << m_req.errmsg;
    EXPECT_EQ(m_bus.Tape(), CTape{ReadOf(0x50, 3)});
}

TEST_F(RootBusPec, OfTheLongestReadIsChecked) {
    m_req.rpec_en = 1;
    m_req.dir = 1;
    m_req.cmd_sel = 0;
    m_req.tsize = 255;
    std::vector<uint8_t> wire(256, 0x5A);
    wire[0] = 0xA1;
    std::vector<uint8_t> answer(wire.begin() + 1, wire.end());
    answer.push_back(PecOf(wire));
    m_bus.AnswerRead(answer);
    EXPECT_TRUE(m_bus.I2cTrans(m_req)) << m_req.errmsg;
    EXPECT_EQ(m_data[254], 0x5A);
}

TEST_F(RootBusPec, ThatIsWrongFailsTheReadAndKeepsTheDataBack) {
    m_req.rpec_en = 1;
    m_req.dir = 1;
    m_req.cmd_sel = 0;
    const uint8_t right = PecOf({0xA1, 0x77, 0x88});
    const auto wrong = static_cast<uint8_t>(right ^ 0x01U);
    m_bus.AnswerRead({0x77, 0x88, wrong});
    EXPECT_FALSE(m_bus.I2cTrans(m_req));
    char expected[80];
    std::snprintf(expected, sizeof expected,
                  "bad packet error code 0x%02x from 0x50, expected 0x%02x", unsigned{wrong},
                  unsigned{right});
    EXPECT_STREQ(m_req.errmsg, expected);
    EXPECT_EQ(m_data[0], 0x34);
}

TEST_F(RootBusPec, OfTheOtherDirectionIsIgnored) {
    m_req.rpec_en = 1;
    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    m_req.rpec_en = 0;
    m_req.wpec_en = 1;
    m_req.dir = 1;
    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    const std::vector<CTape> expected = {{WriteOf(0x50, {0x12, 0x34, 0x56})},
                                         {WriteOf(0x50, {0x12}), ReadOf(0x50, 2)}};
    EXPECT_EQ(m_bus.Tapes(), expected);
}

}  // namespace
