// A probe that starts at a switch.
#include "tests/i2c/switch_probe_test.h"

namespace {

using CAddresses = std::list<uint8_t>;

class I2cSwitchProbe : public CSwitchProbeTest {
  protected:
    I2cSwitchProbe() : m_top(AddSwitch("top", 1, 0x70)) {}

    CJournalSwitch& m_top;
};

TEST_F(I2cSwitchProbe, FindsNothingOnEmptyChannels) {
    EXPECT_TRUE(m_top.probe(0));
    ExpectJournal(Sweep() + Upstream(m_top, {}) + EmptyChannel(m_top, 0, 0) +
                  EmptyChannel(m_top, 0, 1) + ChannelsClosed(m_top));
}

TEST_F(I2cSwitchProbe, ReadsOneByteFromRecordsThatAreZeroOtherwise) {
    EXPECT_TRUE(m_top.probe(0));
    ASSERT_EQ(m_bus.Seen().size(), 750U);
    for (size_t i = 0; i < m_bus.Seen().size(); ++i) {
        CI2cXfrReq req = m_bus.Seen()[i];
        EXPECT_EQ(req.saddr, i / 2 % 125 + 1);
        req.saddr = 0;
        EXPECT_EQ(Describe(req), std::string("saddr=0x0 esaddr=0 cmd_sel=") +
                                     (i % 2 == 0 ? "0" : "1") +
                                     " baddr_sel=0 cmd=0x0 baddr=0 data=set tsize=1 dir=1 xfer=0 "
                                     "rpec_en=0 wpec_en=0 switch_ch=0 errmsg=''");
    }
}

TEST_F(I2cSwitchProbe, FindsDevicesOnTheChannelTheyAreOn) {
    Place(0x01, {{&m_top, 0}});
    Place(0x50, {{&m_top, 1}});
    Place(0x7D, {{&m_top, 1}});
    Place(0x7E, {{&m_top, 1}});

    EXPECT_TRUE(m_top.probe(0));

    ExpectJournal(Sweep() + Upstream(m_top, {}) + ChannelOpened(m_top, 0, 0) +
                  Sweep({{0x01, Found(m_top, 0, 0x01)}}) + ChannelOpened(m_top, 0, 1) +
                  Sweep({{0x50, Found(m_top, 1, 0x50)}, {0x7D, Found(m_top, 1, 0x7D)}}) +
                  ChannelsClosed(m_top));
    EXPECT_EQ(m_top.GetMyDeviceAddrList(0), CAddresses{0x01});
    EXPECT_EQ(m_top.GetMyDeviceAddrList(1), (CAddresses{0x50, 0x7D}));
}

TEST_F(I2cSwitchProbe, FindsDevicesThatWantACommandFirst) {
    PlaceChoosy(0x2A, {{&m_top, 0}});

    EXPECT_TRUE(m_top.probe(0));

    ExpectJournal(Sweep() + Upstream(m_top, {}) + ChannelOpened(m_top, 0, 0) +
                  Sweep({}, {{0x2A, FoundByCommand(m_top, 0, 0x2A)}}) + EmptyChannel(m_top, 0, 1) +
                  ChannelsClosed(m_top));
    EXPECT_EQ(m_top.GetMyDeviceAddrList(0), CAddresses{0x2A});
}

TEST_F(I2cSwitchProbe, ListsWhatAnswersUpstream) {
    Place(0x20);
    Place(0x70);
    PlaceChoosy(0x0C);

    EXPECT_TRUE(m_top.probe(0));

    const CEntries upstream =
        Sweep({{0x20, {}}, {0x70, {}}},
              {{0x0C, {Print("         device with addr = 0xc found via send_data command\n")}}});
    const CEntries expected = upstream + Upstream(m_top, {0x0C, 0x20, 0x70});
    const CEntries begin(m_journal.Entries().begin(),
                         m_journal.Entries().begin() + static_cast<ptrdiff_t>(expected.size()));
    EXPECT_EQ(begin, expected);
    EXPECT_EQ(m_top.m_upstream_device_addr, (CAddresses{0x0C, 0x20, 0x70}));
}

TEST_F(I2cSwitchProbe, ListsUpstreamDevicesAnewEachTime) {
    m_top.AddUpstreamDeviceAddr(0x33);
    Place(0x20);
    EXPECT_TRUE(m_top.probe(0));
    EXPECT_TRUE(m_top.probe(0));
    EXPECT_EQ(m_top.m_upstream_device_addr, CAddresses{0x20});
}

TEST_F(I2cSwitchProbe, DoesNotReportOnItsChannelsWhatTheBusHasFound) {
    Place(0x20);
    PlaceChoosy(0x21);
    m_bus.AddMyDeviceAddr(0x20);
    m_bus.AddMyDeviceAddr(0x21);

    EXPECT_TRUE(m_top.probe(0));

    const CEntries by_command = {
        Print("         device with addr = 0x21 found via send_data command\n")};
    const CEntries channel = Sweep({{0x20, {}}}, {{0x21, {}}}) + m_nothing_found;
    ExpectJournal(Sweep({{0x20, {}}}, {{0x21, by_command}}) + Upstream(m_top, {0x20, 0x21}) +
                  ChannelOpened(m_top, 0, 0) + channel + ChannelOpened(m_top, 0, 1) + channel +
                  ChannelsClosed(m_top));
}

TEST_F(I2cSwitchProbe, StartsWithTheCommandOfTheSwitch) {
    Place(0x50, {{&m_top, 1}});

    EXPECT_EQ(Send(NodeAt(m_top, "probe"), MSG_CALL).bytes, Bytes{SUCCESS});

    ExpectJournal(Sweep() + Upstream(m_top, {}) + EmptyChannel(m_top, 0, 0) +
                  ChannelOpened(m_top, 0, 1) + Sweep({{0x50, Found(m_top, 1, 0x50)}}) +
                  ChannelsClosed(m_top));
}

TEST_F(I2cSwitchProbe, ClosesTheSwitchesBelowFirstWithTheCommandOfTheSwitch) {
    AddSwitch(m_top, 0, "mid", 2, 0x71, 0);
    EXPECT_EQ(Send(NodeAt(m_top, "probe"), MSG_CALL).bytes, Bytes{SUCCESS});
    const CEntries closed = {Call("top-1: SelChannel(0)"), Call("top-1: DisableChannels()"),
                             Call("read 1")};
    ASSERT_GE(m_journal.Entries().size(), closed.size());
    EXPECT_EQ(CEntries(m_journal.Entries().begin(), m_journal.Entries().begin() + 3), closed);
}

TEST_F(I2cSwitchProbe, IsKnownToBeRunning) {
    std::vector<bool> during;
    m_top.OnCall([&] { during.push_back(m_top.m_is_probing); });
    EXPECT_TRUE(m_top.probe(0));
    EXPECT_EQ(during, std::vector<bool>(3, true));
    EXPECT_FALSE(m_top.m_is_probing);
}

TEST_F(I2cSwitchProbe, IsKnownToBeRunningDuringItsTransfers) {
    size_t idle = 0;
    m_bus.OnTransfer([&](const CI2cXfrReq&) { idle += m_top.m_is_probing ? 0 : 1; });
    EXPECT_TRUE(m_top.probe(0));
    EXPECT_EQ(m_bus.Seen().size(), 750U);
    EXPECT_EQ(idle, 0U);
}

TEST_F(I2cSwitchProbe, AnnouncesNoPathInMode3) {
    m_top.SetPathConfigMode(3);
    m_journal.Clear();
    EXPECT_TRUE(m_top.probe(0));
    ExpectJournal(Sweep() + Upstream(m_top, {}) + EmptyChannel(m_top, 0, 0) +
                  EmptyChannel(m_top, 0, 1) + ChannelsClosed(m_top));
}

TEST_F(I2cSwitchProbe, GoesOnWhenTheChipFails) {
    m_top.Fail();
    EXPECT_TRUE(m_top.probe(0));
    ExpectJournal(Sweep() + Upstream(m_top, {}) + EmptyChannel(m_top, 0, 0) +
                  EmptyChannel(m_top, 0, 1) + ChannelsClosed(m_top));
}

TEST_F(I2cSwitchProbe, LooksAtNothingUpstreamWhenItIsCalledFromAbove) {
    m_top.AddUpstreamDeviceAddr(0x33);
    EXPECT_TRUE(m_top.probe(1));
    ExpectJournal(EmptyChannel(m_top, 1, 0) + EmptyChannel(m_top, 1, 1) + ChannelsClosed(m_top));
    EXPECT_EQ(m_top.m_upstream_device_addr, CAddresses{0x33});
}

TEST_F(I2cSwitchProbe, OnlyClosesASwitchWithoutChannels) {
    CJournalSwitch& bare = AddSwitch("bare", 2, 0x71, 0);
    EXPECT_TRUE(bare.probe(1));
    ExpectJournal(ChannelsClosed(bare));
}

// Below another switch

class I2cSwitchProbeBelowASwitch : public I2cSwitchProbe {
  protected:
    I2cSwitchProbeBelowASwitch() : m_mid(AddSwitch(m_top, 1, "mid", 2, 0x71, 1)) {}

    const CEntries m_opened = {Print("(mid-2): enable upstream switch top-1 channel = 1\n"),
                               Call("top-1: SelChannel(1)")};
    CJournalSwitch& m_mid;
};

TEST_F(I2cSwitchProbeBelowASwitch, OpensTheUpstreamSwitchAndLeavesItOpen) {
    EXPECT_TRUE(m_mid.probe(0));
    ExpectJournal(m_opened + Sweep() + Upstream(m_mid, {}) + EmptyChannel(m_mid, 0, 0) +
                  ChannelsClosed(m_mid));
    EXPECT_TRUE(m_top.IsOpen(1));
    EXPECT_FALSE(m_mid.IsOpen(0));
}

TEST_F(I2cSwitchProbeBelowASwitch, LeavesTheUpstreamSwitchMarkedAsProbing) {
    bool when_opened = false;
    m_top.OnCall([&] { when_opened = m_top.m_is_probing; });
    EXPECT_TRUE(m_mid.probe(0));
    EXPECT_TRUE(when_opened);
    EXPECT_TRUE(m_top.m_is_probing);
    EXPECT_FALSE(m_mid.m_is_probing);
}

TEST_F(I2cSwitchProbeBelowASwitch, OpensNothingAboveTheUpstreamSwitch) {
    CJournalSwitch& low = AddSwitch(m_mid, 0, "low", 3, 0x72, 1);
    EXPECT_TRUE(low.probe(0));
    const CEntries opened = {Print("(low-3): enable upstream switch mid-2 channel = 0\n"),
                             Call("mid-2: SelChannel(0)")};
    ExpectJournal(opened + Sweep() + Upstream(low, {}) + EmptyChannel(low, 0, 0) +
                  ChannelsClosed(low));
    EXPECT_TRUE(m_mid.m_is_probing);
    EXPECT_FALSE(m_top.m_is_probing);
}

TEST_F(I2cSwitchProbeBelowASwitch, DoesNotReportOnItsChannelsWhatItSawUpstream) {
    Place(0x20);
    PlaceChoosy(0x21, {{&m_top, 1}});
    Place(0x50, {{&m_top, 1}, {&m_mid, 0}});

    EXPECT_TRUE(m_mid.probe(0));

    const CEntries by_command = {
        Print("         device with addr = 0x21 found via send_data command\n")};
    ExpectJournal(m_opened + Sweep({{0x20, {}}}, {{0x21, by_command}}) +
                  Upstream(m_mid, {0x20, 0x21}) + ChannelOpened(m_mid, 0, 0) +
                  Sweep({{0x20, {}}, {0x50, Found(m_mid, 0, 0x50)}}, {{0x21, {}}}) +
                  ChannelsClosed(m_mid));
    EXPECT_EQ(m_mid.GetMyDeviceAddrList(0), CAddresses{0x50});
}

TEST_F(I2cSwitchProbeBelowASwitch, GoesOnWhenTheUpstreamSwitchFails) {
    m_top.Fail();
    EXPECT_TRUE(m_mid.probe(0));
    ExpectJournal(m_opened + Sweep() + Upstream(m_mid, {}) + EmptyChannel(m_mid, 0, 0) +
                  ChannelsClosed(m_mid));
}

}  // namespace
