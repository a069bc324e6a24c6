#include "tests/i2c/bus_test.h"

namespace {

class I2cChkDev : public CBusTest {
  protected:
    CAnswer ChkDev(uint8_t addr) { return Send(Command("chk-dev"), MSG_CALL, addr); }
};

TEST_F(I2cChkDev, FindsADeviceThatAnswers) {
    m_bus.Answer({0x50});

    const CAnswer reply = ChkDev(0x50);

    EXPECT_EQ(reply.bytes, Bytes{SUCCESS});
    const CLines expected = {
        Print("check_dev: Check device with address = 0x50\n"),
        Print("         device with addr = 0x50 found \n"),
        Print("check_dev: exit\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

TEST_F(I2cChkDev, ReportsADeviceThatDoesNotAnswer) {
    m_bus.Answer({0x50});

    const CAnswer reply = ChkDev(0x51);

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    const CLines expected = {
        Print("check_dev: Check device with address = 0x51\n"),
        Print("         device with addr = 0x51 not found \n"),
        Print("check_dev: exit\n"),
        Print("   check device error!\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

TEST_F(I2cChkDev, ReadsOneByteFromARecordThatIsZeroOtherwise) {
    ChkDev(0x50);

    ASSERT_EQ(m_bus.Seen().size(), 1U);
    EXPECT_EQ(Describe(m_bus.Seen()[0]),
              "saddr=0x50 esaddr=0 cmd_sel=0 baddr_sel=0 cmd=0x0 baddr=0 data=set tsize=1 dir=1 "
              "xfer=0 rpec_en=0 wpec_en=0 switch_ch=0 errmsg=''");
}

TEST_F(I2cChkDev, AnnouncesTheDeviceBeforeTheTransfer) {
    CLines before;
    m_bus.OnTransfer([&](const CI2cXfrReq&) { before = m_log.Lines(); });

    ChkDev(0x50);

    EXPECT_EQ(before, CLines{Print("check_dev: Check device with address = 0x50\n")});
}

TEST_F(I2cChkDev, DoesNotPrintTheByteItReadsOrTheErrorTextOfTheTransfer) {
    m_bus.Expect({.saddr = 0x50, .read = true, .data = {0xA5}, .switch_ch = 0});
    m_bus.Expect({.saddr = 0x50,
                  .read = true,
                  .data = {0},
                  .ok = false,
                  .errmsg = "no acknowledge",
                  .switch_ch = 0});

    EXPECT_EQ(ChkDev(0x50).bytes, Bytes{SUCCESS});
    EXPECT_EQ(ChkDev(0x50).bytes, Bytes{FAIL});

    const CLines expected = {
        Print("check_dev: Check device with address = 0x50\n"),
        Print("         device with addr = 0x50 found \n"),
        Print("check_dev: exit\n"),
        Print("check_dev: Check device with address = 0x50\n"),
        Print("         device with addr = 0x50 not found \n"),
        Print("check_dev: exit\n"),
        Print("   check device error!\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

TEST_F(I2cChkDev, TriesAnyAddressThatFitsItsArgument) {
    for (const uint8_t addr : {uint8_t{0x00}, uint8_t{0x7E}, uint8_t{0x7F}, uint8_t{0xFF}}) {
        EXPECT_EQ(ChkDev(addr).bytes, Bytes{FAIL});
        EXPECT_EQ(m_bus.Seen().back().saddr, addr);
    }
    EXPECT_EQ(m_log.Texts(0xB0)[0], "check_dev: Check device with address = 0x0\n");
    EXPECT_EQ(m_log.Texts(0xB0)[12], "check_dev: Check device with address = 0xff\n");
}

TEST_F(I2cChkDev, LeavesTheAddressListAlone) {
    m_bus.Answer({0x50});
    m_bus.AddMyDeviceAddr(0x20);

    ChkDev(0x50);

    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), std::list<uint8_t>{0x20});
}

TEST_F(I2cChkDev, RefusesACallWithoutAddress) {
    const CAnswer reply = Send(Command("chk-dev"), MSG_CALL);

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(), CLines{ArgError(UnderflowText<uint8_t>())});
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cChkDev, IgnoresInputBehindTheAddress) {
    m_bus.Answer({0x50});

    const CAnswer reply = Send(Command("chk-dev"), MSG_CALL, CNumbers{{0x50, 0x51, 0x52}});

    EXPECT_EQ(reply.bytes, Bytes{SUCCESS});
    ASSERT_EQ(m_bus.Seen().size(), 1U);
    EXPECT_EQ(m_bus.Seen()[0].saddr, 0x50);
}

// The operation that the command calls may be another class's.
class CCheckingBus : public CScriptedBus {
  public:
    bool check_dev(uint8_t addr) override {
        checked.push_back(addr);
        return addr == 0x50;
    }
    std::vector<uint8_t> checked;
};

TEST_F(I2cChkDev, LeavesTheCheckToTheBus) {
    CCheckingBus bus;

    EXPECT_EQ(Send(NodeAt(bus, "chk-dev"), MSG_CALL, uint8_t{0x50}).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(m_log.Lines().empty());
    EXPECT_EQ(Send(NodeAt(bus, "chk-dev"), MSG_CALL, uint8_t{0x51}).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(), CLines{Print("   check device error!\n")});
    EXPECT_EQ(bus.checked, (Bytes{0x50, 0x51}));
    EXPECT_TRUE(bus.Seen().empty());
}

TEST_F(I2cChkDev, AnswersTheCallerOfItsOperationAsTheTransferWent) {
    m_bus.Answer({0x50});
    EXPECT_TRUE(m_bus.check_dev(0x50));
    EXPECT_FALSE(m_bus.check_dev(0x51));
    EXPECT_EQ(m_bus.Seen().size(), 2U);
}

}  // namespace
