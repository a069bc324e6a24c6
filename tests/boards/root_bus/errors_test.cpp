// What a failed transfer leaves behind: errmsg, the last error, a debug line.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/boards/root_bus/tape_bus.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

namespace {

constexpr unsigned int LW_BUS_ERROR = 0x91;

class RootBusErrors : public testing::Test {
  protected:
    // The errmsg of a write of two command and two data bytes that ends so.
    std::string TextOf(CI2cResult result, uint8_t dir = 0) {
        m_bus.Answer(std::move(result));
        m_req = {};
        m_req.saddr = 0x50;
        m_req.dir = dir;
        m_req.cmd_sel = 2;
        m_req.data = m_data.data();
        m_req.tsize = 2;
        m_req.wpec_en = 1;
        EXPECT_FALSE(m_bus.I2cTrans(m_req));
        return m_req.errmsg;
    }

    CTapeBus m_bus;
    CI2cXfrReq m_req;
    std::array<uint8_t, 2> m_data{};
};

TEST_F(RootBusErrors, NameTheAddressThatDidNotAcknowledge) {
    EXPECT_EQ(TextOf(CI2cResult::NoAddrAck(0)), "no acknowledge from 0x50");
}

TEST_F(RootBusErrors, TellWhenOnlyTheRepeatedStartWasNotAcknowledged) {
    EXPECT_EQ(TextOf(CI2cResult::NoAddrAck(1), 1),
              "no acknowledge from 0x50 at the repeated start");
}

TEST_F(RootBusErrors, CountCommandAndDataBytesApart) {
    EXPECT_EQ(TextOf(CI2cResult::NoDataAck(0, 1)), "0x50 did not acknowledge command byte 1");
    EXPECT_EQ(TextOf(CI2cResult::NoDataAck(0, 2)), "0x50 did not acknowledge data byte 0");
    EXPECT_EQ(TextOf(CI2cResult::NoDataAck(0, 3)), "0x50 did not acknowledge data byte 1");
    EXPECT_EQ(TextOf(CI2cResult::NoDataAck(0, 4)),
              "0x50 did not acknowledge the packet error code");
}

TEST_F(RootBusErrors, TellOfTheBusItself) {
    EXPECT_EQ(TextOf(CI2cResult::BusStuck()), "bus stuck low");
    EXPECT_EQ(TextOf(CI2cResult::ArbLost()), "arbitration lost");
    EXPECT_EQ(TextOf(CI2cResult::Other("the adapter is gone")), "the adapter is gone");
}

TEST_F(RootBusErrors, TellWhatTheBusHasToSayBesides) {
    CI2cResult result = CI2cResult::NoAddrAck(0);
    result.text = "the adapter timed out";
    EXPECT_EQ(TextOf(std::move(result)), "no acknowledge from 0x50: the adapter timed out");
}

TEST_F(RootBusErrors, AreCutToWhatTheRecordHolds) {
    const std::string text(300, 'x');
    EXPECT_EQ(TextOf(CI2cResult::Other(text)), text.substr(0, 255));
}

TEST_F(RootBusErrors, AreLoggedAsOneHardwareDebugLine) {
    const CLogCapture log;
    TextOf(CI2cResult::NoAddrAck(0));
    const std::vector<CLogCapture::Line> expected = {
        {LW_BUS_ERROR, "(i2c-0:I2cTrans): no acknowledge from 0x50\n"}};
    EXPECT_EQ(log.Lines(), expected);
}

TEST_F(RootBusErrors, NameTheOperationInTheDebugLine) {
    const CLogCapture log;
    m_bus.Answer(CI2cResult::BusStuck());
    EXPECT_FALSE(m_bus.smb_send_byte(-1, 0x50, 1));
    EXPECT_EQ(log.Joined(LW_BUS_ERROR), "(i2c-0:smb_send_byte): bus stuck low\n");
}

TEST_F(RootBusErrors, AreNotLoggedForASuccess) {
    const CLogCapture log;
    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    EXPECT_TRUE(log.Lines().empty());
}

TEST_F(RootBusErrors, StayPeekableUntilTheNextSuccess) {
    CDiagMenu& node = NodeAt(m_bus, "last-error");
    EXPECT_EQ(Send(node, MSG_PEEKV).bytes, CBytes().U8(0).Text("").Get());

    TextOf(CI2cResult::BusStuck());
    EXPECT_EQ(Send(node, MSG_PEEKV).bytes, CBytes().U8(0).Text("bus stuck low").Get());

    EXPECT_TRUE(m_bus.I2cTrans(m_req));
    EXPECT_STREQ(m_req.errmsg, "");
    EXPECT_EQ(Send(node, MSG_PEEKV).bytes, CBytes().U8(0).Text("").Get());
}

TEST_F(RootBusErrors, CannotBePokedAway) {
    TextOf(CI2cResult::BusStuck());
    const CAnswer reply = Send(NodeAt(m_bus, "last-error"), MSG_POKEV, std::string("fine"));
    EXPECT_EQ(reply.Code(), MSG_ERR_READONLY);
    EXPECT_EQ(m_bus.GetLastError(), "bus stuck low");
}

}  // namespace
