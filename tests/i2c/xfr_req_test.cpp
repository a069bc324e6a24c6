#include "i2c/i2c_xfr_req.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>

namespace {

// How long errmsg can be: one byte of it is the terminator.
constexpr size_t LONGEST = 255;

TEST(I2cXfrReq, StartsWithEveryFieldZero) {
    const CI2cXfrReq req;

    EXPECT_EQ(req.saddr, 0);
    EXPECT_EQ(req.esaddr, 0);
    EXPECT_EQ(req.cmd_sel, 0);
    EXPECT_EQ(req.baddr_sel, 0);
    EXPECT_EQ(req.cmd, 0);
    EXPECT_EQ(req.baddr, 0U);
    EXPECT_EQ(req.data, nullptr);
    EXPECT_EQ(req.tsize, 0);
    EXPECT_EQ(req.dir, 0);
    EXPECT_EQ(req.xfer, 0);
    EXPECT_EQ(req.rpec_en, 0);
    EXPECT_EQ(req.wpec_en, 0);
    EXPECT_EQ(req.switch_ch, 0);
    EXPECT_TRUE(std::all_of(std::begin(req.errmsg), std::end(req.errmsg),
                            [](char c) { return c == '\0'; }));
}

TEST(I2cXfrReq, HasFieldsOfTheAgreedTypes) {
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::saddr), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::esaddr), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::cmd_sel), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::baddr_sel), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::cmd), uint16_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::baddr), uint32_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::data), uint8_t*>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::tsize), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::dir), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::xfer), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::rpec_en), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::wpec_en), uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::switch_ch), int8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(CI2cXfrReq::errmsg), char[256]>));
}

TEST(I2cXfrReq, KeepsItsFieldsInTheAgreedOrder) {
    const size_t offsets[] = {
        offsetof(CI2cXfrReq, saddr),     offsetof(CI2cXfrReq, esaddr),
        offsetof(CI2cXfrReq, cmd_sel),   offsetof(CI2cXfrReq, baddr_sel),
        offsetof(CI2cXfrReq, cmd),       offsetof(CI2cXfrReq, baddr),
        offsetof(CI2cXfrReq, data),      offsetof(CI2cXfrReq, tsize),
        offsetof(CI2cXfrReq, dir),       offsetof(CI2cXfrReq, xfer),
        offsetof(CI2cXfrReq, rpec_en),   offsetof(CI2cXfrReq, wpec_en),
        offsetof(CI2cXfrReq, switch_ch), offsetof(CI2cXfrReq, errmsg),
    };
    EXPECT_EQ(offsets[0], 0U);
    EXPECT_TRUE(std::is_sorted(std::begin(offsets), std::end(offsets)));
}

TEST(I2cXfrReq, StoresAnErrorText) {
    CI2cXfrReq req;
    req.SetErrMsg("no acknowledge from 0x50");
    EXPECT_STREQ(req.errmsg, "no acknowledge from 0x50");
}

TEST(I2cXfrReq, StoresAnErrorTextThatJustFits) {
    CI2cXfrReq req;
    req.SetErrMsg(std::string(LONGEST, 'x').c_str());
    EXPECT_EQ(std::string(req.errmsg), std::string(LONGEST, 'x'));
}

TEST(I2cXfrReq, CutsAnErrorTextThatIsOneTooLong) {
    CI2cXfrReq req;
    req.SetErrMsg((std::string(LONGEST, 'x') + "y").c_str());
    EXPECT_EQ(std::string(req.errmsg), std::string(LONGEST, 'x'));
}

TEST(I2cXfrReq, CutsAnErrorTextThatIsFarTooLong) {
    CI2cXfrReq req;
    req.SetErrMsg(std::string(5000, 'z').c_str());
    EXPECT_EQ(std::string(req.errmsg), std::string(LONGEST, 'z'));
}

TEST(I2cXfrReq, LeavesNothingOfALongerErrorTextBehindAShortOne) {
    CI2cXfrReq req;
    req.SetErrMsg(std::string(LONGEST, 'x').c_str());
    req.SetErrMsg("short");
    EXPECT_STREQ(req.errmsg, "short");
}

TEST(I2cXfrReq, TakesAnEmptyErrorText) {
    CI2cXfrReq req;
    req.SetErrMsg("text");
    req.SetErrMsg("");
    EXPECT_STREQ(req.errmsg, "");
}

TEST(I2cXfrReq, DoesNotReadPercentSignsInAnErrorText) {
    CI2cXfrReq req;
    req.SetErrMsg("50%s of %n");
    EXPECT_STREQ(req.errmsg, "50%s of %n");
}

TEST(I2cXfrReq, ForgetsItsErrorText) {
    CI2cXfrReq req;
    req.SetErrMsg("text");
    req.ClrErrMsg();
    EXPECT_STREQ(req.errmsg, "");
}

TEST(I2cXfrReq, TouchesNoOtherFieldWithItsErrorText) {
    CI2cXfrReq req;
    req.saddr = 0x50;
    req.switch_ch = -1;
    req.SetErrMsg(std::string(5000, 'z').c_str());
    req.ClrErrMsg();
    EXPECT_EQ(req.saddr, 0x50);
    EXPECT_EQ(req.switch_ch, -1);
    EXPECT_EQ(req.data, nullptr);
}

}  // namespace
