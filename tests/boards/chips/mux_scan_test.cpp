// The channels of multiplexers as they are scanned: the way is opened and closed, and
// nothing else is touched.
#include <gmock/gmock.h>

#include "framework/diag_exception.h"
#include "i2c/diag_i2c_device.h"
#include "tests/boards/chips/mux_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using CTape = std::vector<std::string>;

// One multiplexer behind another one, a memory behind both, and one more beside the first.
class MuxScan : public CMuxTest {
  protected:
    MuxScan() {
        AddMemory(m_bus.Segment(), 0x50, 0x11);
        AddMemory(m_low.chip.Channel(6), 0x51, 0xC7);
        // From here on it is known that all of them are closed.
        m_low.driver.OpenWire(0);
        m_low.driver.CloseWay();
        m_bus.OpenWire(0);
        m_bus.ClearTape();
    }

    CMuxPair m_top = AddMux("pca9547", 0x77);
    CMuxPair m_beside = AddMux("pca9548", 0x76);
    CMuxPair m_low = AddMux(m_top, 1, "pca9548", 0x70);
};

TEST_F(MuxScan, HasAWireForEachChannel) {
    const std::vector<const CDiagMenu*> wires = m_low.driver.GetWires();
    ASSERT_EQ(wires.size(), 8U);
    for (size_t ch = 0; ch < wires.size(); ++ch) {
        EXPECT_EQ(wires[ch], m_low.driver.getChannelMenu(static_cast<int>(ch)));
    }
}

TEST_F(MuxScan, OpensTheWayFromTheTopAndClosesItFromTheBottom) {
    m_low.driver.OpenWire(6);
    EXPECT_EQ(m_bus.Tape(), (CTape{"[00 00 00] 77 w 09", "[09 00 00] 70 w 40"}));
    m_bus.ClearTape();
    EXPECT_TRUE(m_low.driver.CloseWay());
    EXPECT_EQ(m_bus.Tape(), (CTape{"[09 00 40] 70 w 00", "[09 00 00] 77 w 00"}));
}

TEST_F(MuxScan, AsksOnTheOpenWay) {
    m_low.driver.OpenWire(6);
    m_bus.ClearTape();
    EXPECT_EQ(m_low.driver.Ask(0x51, EScanAccess::RECEIVE_BYTE).kind, CScanAnswer::ACKNOWLEDGED);
    EXPECT_EQ(m_low.driver.Ask(0x20, EScanAccess::QUICK_WRITE).kind, CScanAnswer::SILENT);
    EXPECT_EQ(m_bus.Tape(), (CTape{"[09 00 40] 51 r c7", "[09 00 40] 20 w nak"}));
}

TEST_F(MuxScan, ClosesOtherWaysFirst) {
    m_beside.driver.SelChannel(3);
    m_bus.ClearTape();
    m_top.driver.OpenWire(1);
    EXPECT_EQ(m_bus.Tape(), (CTape{"[00 08 00] 76 w 00", "[00 00 00] 77 w 09"}));
    m_top.driver.CloseWay();

    m_beside.driver.SelChannel(3);
    m_bus.ClearTape();
    m_bus.OpenWire(0);
    EXPECT_EQ(m_bus.Tape(), CTape{"[00 08 00] 76 w 00"});
}

TEST_F(MuxScan, HasNothingToCloseWhereNothingIsOpen) {
    EXPECT_TRUE(m_low.driver.CloseWay());
    m_bus.OpenWire(0);
    EXPECT_THAT(m_bus.Tape(), IsEmpty());
}

TEST_F(MuxScan, OpensAndClosesWhateverThePathMode) {
    for (const uint8_t mode : std::initializer_list<uint8_t>{0, 2, 3}) {
        m_bus.SetSwMode(mode);
        m_bus.ClearTape();
        m_low.driver.OpenWire(6);
        EXPECT_TRUE(m_low.driver.CloseWay());
        EXPECT_EQ(m_bus.Tape(), (CTape{"[00 00 00] 77 w 09", "[09 00 00] 70 w 40",
                                       "[09 00 40] 70 w 00", "[09 00 00] 77 w 00"}));
    }
}

TEST_F(MuxScan, WritesNothingBehindAChipThatDoesNotOpen) {
    m_bus.Faults().Nack(0x77);
    const CLogCapture log;
    EXPECT_THROW(m_low.driver.OpenWire(6), CDiagException);
    for (const std::string& transfer : m_bus.Tape()) {
        EXPECT_EQ(transfer.find(" 70 "), std::string::npos) << transfer;
    }
}

TEST_F(MuxScan, LeavesNothingOpenWhenTheLastChipDoesNotOpen) {
    m_bus.Faults().Nack(0x70);
    const CLogCapture log;
    EXPECT_THROW(m_low.driver.OpenWire(6), CDiagException);
    EXPECT_EQ(m_top.chip.Control(), 0);
}

TEST_F(MuxScan, TellsOfALowerChipThatStaysOpen) {
    m_low.driver.OpenWire(6);
    m_bus.Faults().FailNth(1);
    const CLogCapture log;
    EXPECT_FALSE(m_low.driver.CloseWay());
    EXPECT_EQ(m_low.chip.Control(), 0x40);
    EXPECT_EQ(m_top.chip.Control(), 0);
}

TEST_F(MuxScan, KnowsWhatTheDescriptionHasOnEachChannel) {
    m_low.driver.SetNameAt(6, 0x51, "eeprom");
    EXPECT_EQ(m_low.driver.NameAt(6, 0x51), "eeprom");
    EXPECT_EQ(m_low.driver.NameAt(5, 0x51), "");
    EXPECT_EQ(m_low.driver.NameAt(6, 0x50), "");
}

// A bus that knows owners and cannot do everything.
class CParticularBus : public CTapedSimBus {
  public:
    using CTapedSimBus::CTapedSimBus;
    bool CanAsk(EScanAccess access) override { return access == EScanAccess::RECEIVE_BYTE; }
    std::string OwnerOf(uint8_t addr) override { return addr == 0x50 ? "at24" : ""; }
    bool HasOwned(uint8_t addr) override { return addr == 0x50; }
};

TEST(MuxScanBus, IsWhatTheBusAboveSays) {
    CParticularBus bus("i2c-0", "a bus", 100'000);
    auto* mux = new CMuxChip(*FindMuxPart("pca9548"), "mux", "multiplexer", 0, 0x70, -1);
    bus.AddChild(mux, CDiagObj::NO_SORT);
    EXPECT_FALSE(mux->CanAsk(EScanAccess::QUICK_WRITE));
    EXPECT_TRUE(mux->CanAsk(EScanAccess::RECEIVE_BYTE));
    EXPECT_EQ(mux->OwnerOf(0x50), "at24");
    EXPECT_EQ(mux->OwnerOf(0x51), "");
    EXPECT_TRUE(mux->HasOwned(0x50));
    EXPECT_FALSE(mux->HasOwned(0x51));
}

}  // namespace
