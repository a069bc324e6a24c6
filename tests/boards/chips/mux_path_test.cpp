// Paths through real selections: who was selected, in which order, and what was
// open at each transfer.
#include "i2c/DiagI2cSlaveDevice.h"
#include "tests/boards/chips/mux_test.h"

namespace {

using CTape = std::vector<std::string>;

// A slave that reads one byte of memory address 0.
class CProbeSlave : public CDiagI2cSlaveDevice {
  public:
    CProbeSlave(CI2cDevice& bus, int8_t ch, uint8_t addr)
        : CDiagI2cSlaveDevice("slave", "a memory", &bus) {
        m_i2c_ch = ch;
        m_i2c_addr = addr;
    }
    int Read() {
        byte_t byte = 0;
        CI2cXfrReq req;
        req.saddr = m_i2c_addr;
        req.switch_ch = m_i2c_ch;
        req.dir = 1;
        req.cmd_sel = 1;
        req.data = &byte;
        req.tsize = 1;
        return m_i2cDev->I2cTrans(req) ? byte : -1;
    }
};

// Three switches in a row, a memory behind the last.
class MuxPath : public CMuxTest {
  protected:
    MuxPath() {
        AddMemory(m_low.chip.Channel(6), 0x51, 0xC7);
        m_slave = new CProbeSlave(m_low.driver, 6, 0x51);
        m_low.driver.getChannelMenu(6)->AddChild(m_slave, CDiagObj::NO_SORT);
        // From here on it is known that all of them are closed.
        m_slave->EnablePath();
        m_slave->ClearPath();
        m_bus.ClearTape();
    }

    CMuxPair m_top = AddMux("pca9547", 0x77);
    CMuxPair m_mid = AddMux(m_top, 1, "pca9548", 0x70);
    CMuxPair m_low = AddMux(m_mid, 2, "pca9547", 0x71);
    CProbeSlave* m_slave;
};

const CTape OPENED = {"[00 00 00] 77 w 09", "[09 00 00] 70 w 04", "[09 04 00] 71 w 0e"};

TEST_F(MuxPath, OpensFromTheTopAndClosesFromTheBottom) {
    ASSERT_TRUE(m_slave->EnablePath());
    EXPECT_EQ(m_bus.Tape(), OPENED);
    m_bus.ClearTape();

    EXPECT_EQ(m_slave->Read(), 0xC7);
    EXPECT_EQ(m_bus.Tape(), CTape{"[09 04 0e] 51 w 00 51 r c7"});
    m_bus.ClearTape();

    ASSERT_TRUE(m_slave->ClearPath());
    EXPECT_EQ(m_bus.Tape(),
              (CTape{"[09 04 0e] 71 w 00", "[09 04 00] 70 w 00", "[09 00 00] 77 w 00"}));
    EXPECT_EQ(m_slave->Read(), -1);
}

TEST_F(MuxPath, IsOpenedAndClosedByTheSlavesCommands) {
    EXPECT_EQ(Call(*m_slave, "enable-path").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_bus.Tape(), OPENED);
    EXPECT_EQ(Call(*m_slave, "clr-path").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_bus.Tape().size(), 6U);
}

TEST_F(MuxPath, StaysOpenInModeTwo) {
    m_bus.SetSwMode(2);
    ASSERT_TRUE(m_slave->EnablePath());
    ASSERT_TRUE(m_slave->ClearPath());
    EXPECT_EQ(m_bus.Tape(), OPENED);
    EXPECT_EQ(m_slave->Read(), 0xC7);
}

TEST_F(MuxPath, IsTheOperatorsOwnInModeZero) {
    m_bus.SetSwMode(0);
    ASSERT_TRUE(m_slave->EnablePath());
    EXPECT_EQ(m_slave->Read(), -1);
    Call(m_top.driver, "sel-channel", uint8_t{1});
    Call(m_mid.driver, "sel-channel", uint8_t{2});
    Call(m_low.driver, "sel-channel", uint8_t{6});
    EXPECT_EQ(m_slave->Read(), 0xC7);
    m_bus.ClearTape();
    ASSERT_TRUE(m_slave->ClearPath());
    EXPECT_TRUE(m_bus.Tape().empty());
}

TEST_F(MuxPath, IsOnlyAnnouncedInModeThree) {
    m_bus.SetSwMode(3);
    const CLogCapture log;
    EXPECT_EQ(m_slave->Read(), -1);
    EXPECT_EQ(m_bus.Tape(), CTape{"[00 00 00] 51 w 00 51 r 00 nak"});
    EXPECT_EQ(log.Texts(LW_INFO), CTape{"Setting up I2C path for deivce. end channel=6\n"});
}

TEST_F(MuxPath, EndsWhereASwitchDoesNotAnswer) {
    CMuxChip missing(*FindMuxPart("pca9548"), "missing", "multiplexer", 0, 0x72, 4);
    auto* below = new CMuxChip(*FindMuxPart("pca9547"), "below", "multiplexer", 0, 0x73, 1);
    missing.getChannelMenu(1)->AddChild(below, CDiagObj::NO_SORT);
    m_top.driver.getChannelMenu(4)->AddChild(&missing, CDiagObj::NO_SORT);

    EXPECT_FALSE(below->EnablePath(0));
    EXPECT_EQ(m_bus.Tape(), (CTape{"[00 00 00] 77 w 0c", "[0c 00 00] 72 w 00 nak",
                                   "[0c 00 00] 72 r 00 nak", "[0c 00 00] 72 w 02 nak"}));
    m_top.driver.getChannelMenu(4)->RemoveChild(missing.GetId()).release();
}

TEST_F(MuxPath, OpensAgainAfterAProbeThatBeganBelow) {
    m_top.driver.SelChannel(1);
    m_mid.driver.SelChannel(2);
    m_low.driver.probe(0);
    m_bus.ClearTape();
    ASSERT_TRUE(m_slave->EnablePath());
    EXPECT_EQ(m_slave->Read(), 0xC7);
}

TEST_F(MuxPath, IsTheOnlyOneOnItsBus) {
    const CMuxPair other = AddMux("pca9548", 0x74);
    AddMemory(other.chip.Channel(3), 0x51, 0x00);
    Call(other.driver, "set-channel", uint8_t{3});
    m_bus.ClearTape();
    ASSERT_TRUE(m_slave->EnablePath());
    EXPECT_EQ(m_slave->Read(), 0xC7) << "alone on the wire";
    EXPECT_EQ(m_bus.Tape().front(), "[00 00 00 08] 74 w 00");
    ASSERT_TRUE(m_slave->ClearPath());
    m_bus.ClearTape();
    ASSERT_TRUE(m_slave->EnablePath());
    EXPECT_EQ(m_bus.Tape().size(), 3U) << "what is closed is not closed again";
}

TEST_F(MuxPath, IsNotOpenedBesideOneThatCannotBeClosed) {
    const CMuxPair other = AddMux("pca9548", 0x74);
    m_bus.Faults().FailNth(1);
    const CLogCapture log;
    EXPECT_FALSE(m_slave->EnablePath());
    EXPECT_EQ(m_bus.Tape(), (CTape{"[00 00 00 00] 74 w 00 nak", "[00 00 00 00] 74 r 00"}));
    EXPECT_EQ(log.Texts(LW_ERR_TEST),
              CTape{std::string(other.driver.GetName()) +
                    "(0x74): cannot close the channels: arbitration lost\n"});
    EXPECT_TRUE(m_slave->EnablePath());
}

TEST_F(MuxPath, ClosesWhatMayBeOpenOnTheChannel) {
    Call(*m_slave, "enable-path");
    m_bus.ClearTape();
    Call(m_top.driver, "sel-channel", uint8_t{1});
    EXPECT_EQ(m_bus.Tape(), (CTape{"[09 04 0e] 77 w 09", "[09 04 0e] 70 w 00"}));
    EXPECT_EQ(m_slave->Read(), -1);
}

TEST_F(MuxPath, IsFoundByAProbeOfTheBusAlsoWhenItWasOpen) {
    Call(*m_slave, "enable-path");
    ASSERT_EQ(Call(m_bus, "probe").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_low.driver.GetMyDeviceAddrList(6).front(), 0x51);
    EXPECT_EQ(m_top.driver.GetMyDeviceAddrList(1), std::list<uint8_t>{0x70});
}

TEST_F(MuxPath, IsFoundByAProbeOfTheThirdSwitch) {
    const CLogCapture log;
    ASSERT_EQ(Call(m_low.driver, "probe").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_low.driver.GetMyDeviceAddrList(6), std::list<uint8_t>{0x51});
    EXPECT_TRUE(log.Texts(LW_ERR_TEST).empty());
}

TEST_F(MuxPath, OfASwitchThatDoesNotAnswerCannotBeProbed) {
    auto* missing = new CMuxChip(*FindMuxPart("pca9548"), "missing", "multiplexer", 0, 0x72, 4);
    m_top.driver.getChannelMenu(4)->AddChild(missing, CDiagObj::NO_SORT);
    EXPECT_EQ(Call(*missing, "probe").Code(), MSG_ERR_FAIL);
}

TEST_F(MuxPath, IsProbedFromASwitchWithoutWhatItsBusShows) {
    AddMemory(m_bus.Segment(), 0x50, 1);
    m_top.driver.AddMyDeviceAddr(5, 0x2A);  // gone since
    const CLogCapture log;
    ASSERT_EQ(Call(m_top.driver, "probe").Code(), MSG_SUCCESS);
    const std::string text = log.Joined(LW_PRINT);
    EXPECT_NE(text.find("pca9547-0 (lvl=0):: devices from  parents: 0x50 0x77 \n"),
              std::string::npos)
        << text;
    EXPECT_EQ(text.find("0x50 found"), std::string::npos) << text;
    EXPECT_EQ(m_top.driver.GetMyDeviceAddrList(1), std::list<uint8_t>{0x70});
    EXPECT_TRUE(m_top.driver.GetMyDeviceAddrList(5).empty());
}

TEST_F(MuxPath, IsProbedBehindAChannelThatWasOpenBefore) {
    for (const auto& [mux, ch] : {std::pair(m_top, 1), {m_mid, 2}, {m_low, 6}}) {
        ASSERT_EQ(mux.driver.SelChannel(static_cast<uint8_t>(ch)), 1);
    }
    ASSERT_EQ(Call(m_low.driver, "probe").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_low.driver.GetMyDeviceAddrList(6), std::list<uint8_t>{0x51});
}

TEST_F(MuxPath, IsProbedUnderTheRightChannel) {
    AddMemory(m_bus.Segment(), 0x50, 1);
    AddMemory(m_top.chip.Channel(1), 0x52, 2);
    ASSERT_EQ(Call(m_bus, "probe").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (std::list<uint8_t>{0x77, 0x50}));
    const auto found = [](const CMuxPair& mux) {
        std::vector<std::pair<unsigned int, unsigned int>> all;
        for (unsigned int ch = 0; ch < mux.chip.Channels(); ++ch) {
            for (const uint8_t addr : mux.driver.GetMyDeviceAddrList(static_cast<uint8_t>(ch))) {
                all.emplace_back(ch, addr);
            }
        }
        return all;
    };
    using CFound = std::vector<std::pair<unsigned int, unsigned int>>;
    EXPECT_EQ(found(m_top), (CFound{{1, 0x52}, {1, 0x70}}));
    EXPECT_EQ(found(m_mid), (CFound{{2, 0x71}}));
    // Two levels up a switch looks under its own upstream channel's number, 2,
    // and misses what hangs on channel 1 there: that is found again here.
    CFound low;
    for (unsigned int ch = 0; ch < 8; ++ch) {
        if (ch == 6) {
            low.emplace_back(ch, 0x51);
        }
        low.emplace_back(ch, 0x52);
        low.emplace_back(ch, 0x70);
    }
    EXPECT_EQ(found(m_low), low);
}

}  // namespace
