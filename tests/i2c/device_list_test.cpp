// The list of addresses found on a bus.
#include "tests/i2c/bus_test.h"
#include "tests/support/fake_switch.h"

namespace {

using CAddresses = std::list<uint8_t>;

class I2cDeviceList : public CBusTest {};

TEST_F(I2cDeviceList, KeepsAddressesInOrderOfDiscovery) {
    m_bus.AddMyDeviceAddr(0x50);
    m_bus.AddMyDeviceAddr(0x20);
    m_bus.AddMyDeviceAddr(0x70);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x50, 0x20, 0x70}));
}

TEST_F(I2cDeviceList, KeepsADoubleAddressWhereItWasFirst) {
    m_bus.AddMyDeviceAddr(0x50);
    m_bus.AddMyDeviceAddr(0x20);
    m_bus.AddMyDeviceAddr(0x50);
    m_bus.AddMyDeviceAddr(0x20);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x50, 0x20}));
}

TEST_F(I2cDeviceList, TakesAnyByte) {
    m_bus.AddMyDeviceAddr(0x00);
    m_bus.AddMyDeviceAddr(0xFF);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x00, 0xFF}));
}

TEST_F(I2cDeviceList, TellsWhetherItHoldsAnAddress) {
    EXPECT_FALSE(m_bus.isOnMyDeviceList(0x50));
    m_bus.AddMyDeviceAddr(0x20);
    m_bus.AddMyDeviceAddr(0x50);
    EXPECT_TRUE(m_bus.isOnMyDeviceList(0x20));
    EXPECT_TRUE(m_bus.isOnMyDeviceList(0x50));
    EXPECT_FALSE(m_bus.isOnMyDeviceList(0x00));
    EXPECT_FALSE(m_bus.isOnMyDeviceList(0x51));
}

TEST_F(I2cDeviceList, IsHandedOutAsACopy) {
    m_bus.AddMyDeviceAddr(0x50);
    CAddresses copy = m_bus.GetMyDeviceAddrList();
    copy.push_back(0x51);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), CAddresses{0x50});
}

TEST_F(I2cDeviceList, CanBeCleared) {
    m_bus.AddMyDeviceAddr(0x50);
    m_bus.ClearMyDeviceAddrList();
    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
    EXPECT_FALSE(m_bus.isOnMyDeviceList(0x50));
    m_bus.AddMyDeviceAddr(0x50);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), CAddresses{0x50});
}

TEST_F(I2cDeviceList, IsShownInOneLineWithSmallAddressesPadded) {
    m_bus.AddMyDeviceAddr(0x50);
    m_bus.AddMyDeviceAddr(0x05);
    m_bus.AddMyDeviceAddr(0x7D);

    m_bus.ShowMyDeviceAddrList();

    const CLines expected = {
        Print("devices connected: "), Print("0x50 "), Print("0x 5 "), Print("0x7d "), Print("\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

TEST_F(I2cDeviceList, IsShownWhenEmpty) {
    m_bus.ShowMyDeviceAddrList();
    EXPECT_EQ(m_log.Lines(), (CLines{Print("devices connected: "), Print("\n")}));
}

TEST_F(I2cDeviceList, BelongsToOneBusAlone) {
    CScriptedBus other;
    m_bus.AddMyDeviceAddr(0x50);
    EXPECT_FALSE(other.isOnMyDeviceList(0x50));
}

TEST_F(I2cDeviceList, IsClearedTogetherWithThoseOfTheSwitchesAfterTheirAddressesWereRead) {
    CJournal journal;
    for (const auto& [name, addr] : {std::pair{"mux-b", 0x71}, std::pair{"mux-a", 0x70}}) {
        auto* sw = new CFakeSwitch(journal, name, static_cast<uint8_t>(addr));
        m_bus.AddChild(sw, CDiagObj::NO_SORT);
        sw->JournalAddressReads();
    }
    const std::string first = m_bus.GetChildren()[4]->GetName();
    const std::string second = m_bus.GetChildren()[5]->GetName();
    m_bus.AddMyDeviceAddr(0x50);

    m_bus.ClearAllDeviceAddrList();

    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
    const std::vector<CJournal::Entry> expected = {
        {CJournal::CALL, first + ": getI2cAddr()"},
        {CJournal::CALL, first + ": ClearAllDeviceAddrList()"},
        {CJournal::CALL, second + ": getI2cAddr()"},
        {CJournal::CALL, second + ": ClearAllDeviceAddrList()"},
    };
    EXPECT_EQ(journal.Entries(), expected);
}

TEST_F(I2cDeviceList, IsEmptyBeforeTheSwitchesAreAsked) {
    CJournal journal;
    auto* sw = new CFakeSwitch(journal, "mux", 0x70);
    m_bus.AddChild(sw, CDiagObj::NO_SORT);
    m_bus.AddMyDeviceAddr(0x50);
    unsigned int asked = 0;
    sw->OnCall([&] {
        ++asked;
        EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
    });

    m_bus.ClearAllDeviceAddrList();

    EXPECT_EQ(asked, 1U);
}

TEST_F(I2cDeviceList, IsClearedWithoutATransferOrAWord) {
    m_bus.AddMyDeviceAddr(0x50);
    m_bus.ClearAllDeviceAddrList();
    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
    EXPECT_TRUE(m_bus.Seen().empty());
    EXPECT_TRUE(m_log.Lines().empty());
}

}  // namespace
