// A root bus as it is scanned.
#include <gmock/gmock.h>

#include "framework/diag_exception.h"
#include "tests/boards/root_bus/tape_bus.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A device below the bus that can be scanned, as a multiplexer is.
class CClosable : public CDiagDevice, public IBusScan {
  public:
    explicit CClosable(bool closes)
        : CDiagDevice("mux-0", "a multiplexer", TDEVICE), m_closes(closes) {}
    std::vector<const CDiagMenu*> GetWires() const override { return {}; }
    void OpenWire(size_t) override {}
    bool CloseWay() override {
        ++closed;
        return m_closes;
    }
    bool CanAsk(EScanAccess) override { return false; }
    CScanAnswer Ask(uint8_t, EScanAccess) override { return {}; }
    std::string OwnerOf(uint8_t) override { return {}; }
    bool HasOwned(uint8_t) override { return false; }
    std::string NameAt(size_t, uint8_t) const override { return {}; }

    unsigned int closed = 0;

  private:
    const bool m_closes;
};

class RootBusScan : public testing::Test {
  protected:
    CTapeBus m_bus;
};

TEST_F(RootBusScan, IsOneWire) {
    EXPECT_THAT(m_bus.GetWires(), ElementsAre(&m_bus));
}

TEST_F(RootBusScan, AsksEveryAddressByAnEmptyWriteOrByReadingOneByte) {
    std::vector<CTape> expected;
    for (unsigned int addr = 0; addr <= 0x7F; ++addr) {
        const auto slave = static_cast<uint8_t>(addr);
        EXPECT_EQ(m_bus.Ask(slave, EScanAccess::QUICK_WRITE).kind, CScanAnswer::ACKNOWLEDGED);
        EXPECT_EQ(m_bus.Ask(slave, EScanAccess::RECEIVE_BYTE).kind, CScanAnswer::ACKNOWLEDGED);
        expected.push_back({WriteOf(slave, {})});
        expected.push_back({ReadOf(slave, 1)});
    }
    EXPECT_EQ(m_bus.Tapes(), expected);
}

TEST_F(RootBusScan, TellsSilenceFromAFailureOfTheBus) {
    m_bus.Answer(CI2cResult::NoAddrAck(0));
    EXPECT_EQ(m_bus.Ask(0x50, EScanAccess::RECEIVE_BYTE).kind, CScanAnswer::SILENT);
    const std::vector<std::pair<CI2cResult, std::string>> failures = {
        {CI2cResult::BusStuck(), "bus stuck low"},
        {CI2cResult::ArbLost(), "arbitration lost"},
        {CI2cResult::Other("the adapter is gone"), "the adapter is gone"}};
    for (const auto& [failure, reason] : failures) {
        m_bus.Answer(failure);
        const CScanAnswer answer = m_bus.Ask(0x50, EScanAccess::QUICK_WRITE);
        EXPECT_EQ(answer.kind, CScanAnswer::FAILED) << reason;
        EXPECT_EQ(answer.reason, reason);
        EXPECT_EQ(m_bus.GetLastError(), reason);
    }
}

TEST_F(RootBusScan, GivesOneReasonForAllAddressesThatFailAlike) {
    const std::string reason = "quick write on /dev/i2c-0: EIO (Input/output error)";
    m_bus.Answer(CI2cResult::Other("0x50: " + reason));
    EXPECT_EQ(m_bus.Ask(0x50, EScanAccess::QUICK_WRITE).reason, reason);
    EXPECT_EQ(m_bus.GetLastError(), "0x50: " + reason);
    CI2cResult stuck = CI2cResult::BusStuck();
    stuck.text = "0x51: " + reason;
    m_bus.Answer(stuck);
    EXPECT_EQ(m_bus.Ask(0x51, EScanAccess::QUICK_WRITE).reason, "bus stuck low: " + reason);
}

TEST_F(RootBusScan, WaitsForAMemoryThatStoresAPage) {
    uint8_t data = 0xAB;
    CI2cXfrReq write;
    write.saddr = 0x50;
    write.data = &data;
    write.tsize = 1;
    ASSERT_TRUE(m_bus.I2cTrans(write));
    m_bus.Answer(CI2cResult::NoAddrAck(0));
    EXPECT_EQ(m_bus.Ask(0x50, EScanAccess::RECEIVE_BYTE).kind, CScanAnswer::ACKNOWLEDGED);
    EXPECT_EQ(m_bus.Tapes().size(), 3U);
}

TEST_F(RootBusScan, DoesNotTakeAQuickWriteForOneThatIsStored) {
    EXPECT_EQ(m_bus.Ask(0x50, EScanAccess::QUICK_WRITE).kind, CScanAnswer::ACKNOWLEDGED);
    m_bus.Answer(CI2cResult::NoAddrAck(0));
    EXPECT_EQ(m_bus.Ask(0x50, EScanAccess::QUICK_WRITE).kind, CScanAnswer::SILENT);
    EXPECT_EQ(m_bus.Tapes().size(), 2U);
}

TEST_F(RootBusScan, ClosesTheMultiplexersOnIt) {
    auto* mux = new CClosable(true);
    m_bus.AddChild(mux, CDiagObj::NO_SORT);
    m_bus.OpenWire(0);
    EXPECT_EQ(mux->closed, 1U);
    EXPECT_THAT(m_bus.Tapes(), IsEmpty());
}

TEST_F(RootBusScan, IsRefusedWhileAMultiplexerStaysOpen) {
    m_bus.AddChild(new CClosable(false), CDiagObj::NO_SORT);
    try {
        m_bus.OpenWire(0);
        FAIL() << "a picture of two wires at once";
    } catch (const CDiagException& e) {
        EXPECT_STREQ(e.what(), "mux-0 does not close its channels");
    }
}

TEST_F(RootBusScan, KnowsWhatTheDescriptionHasAtAnAddress) {
    m_bus.SetNameAt(0x50, "eeprom");
    EXPECT_EQ(m_bus.NameAt(0, 0x50), "eeprom");
    EXPECT_EQ(m_bus.NameAt(0, 0x51), "");
}

TEST_F(RootBusScan, CanDoAllAndHasNoOwnersUnlessABoardKnowsBetter) {
    EXPECT_TRUE(m_bus.CanAsk(EScanAccess::QUICK_WRITE));
    EXPECT_TRUE(m_bus.CanAsk(EScanAccess::RECEIVE_BYTE));
    EXPECT_EQ(m_bus.OwnerOf(0x50), "");
}

}  // namespace
