// The simulated bus: what a transfer does, what it costs, and its faults.
#include "boards/sim/sim_bus.h"

#include "boards/root_bus/smbus_pec.h"
#include "tests/boards/sim/sim_test.h"
#include "tests/support/bytes.h"
#include "tests/support/request.h"

namespace {

class SimBus : public CSimTest {};

TEST_F(SimBus, MovesAsMuchAsARecordCanAskFor) {
    EXPECT_EQ(m_bus.GetMaxTransSize(), 255U);
    AddAt24("24c02", 0x50, Counting(256));
    CData expected = Counting(255);
    EXPECT_EQ(Read(0x50, {0x00}, 255), expected);
}

TEST_F(SimBus, WithoutChipsAnswersNothing) {
    EXPECT_FALSE(Answers(0x50));
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50");
}

TEST_F(SimBus, IsABusMaster) {
    EXPECT_TRUE(m_bus.m_is_master);
}

TEST_F(SimBus, CountsTheTimeOfAReadBehindARepeatedStart) {
    AddAt24("24c02", 0x50);
    Read(0x50, {0x00}, 4);
    // start, address, command; start, address, four bytes; stop
    const uint64_t bits = 1 + 9 + 9 + 1 + 9 + 4 * 9 + 1;
    EXPECT_EQ(m_bus.GetWireNs(), bits * 10'000);
    EXPECT_EQ(m_bus.GetTransfers(), 1U);
    EXPECT_EQ(m_bus.GetBytes(), 7U);
}

TEST_F(SimBus, CountsOnlyWhatAFailedTransferSent) {
    Answers(0x50);
    EXPECT_EQ(m_bus.GetWireNs(), uint64_t{1 + 9 + 1} * 10'000);
    EXPECT_EQ(m_bus.GetTransfers(), 1U);
    EXPECT_EQ(m_bus.GetBytes(), 1U);

    AddAt24("spd", 0x51);
    Write(0x51, {0x00}, {1, 2, 3});  // refused at the first data byte
    EXPECT_EQ(m_bus.GetBytes(), 1U + 3U);
}

TEST_F(SimBus, CountsTheTimeAtItsOwnClock) {
    CSimBus fast("i2c-1", "fast bus", 400'000);
    EXPECT_FALSE(fast.smb_write_quick(-1, 0x50));
    EXPECT_EQ(fast.GetWireNs(), 11U * 2'500);
}

TEST_F(SimBus, CountsPollsApartFromTransfers) {
    AddAt24("24c02", 0x50);
    EXPECT_TRUE(Write(0x50, {0x00}, {1}));
    EXPECT_TRUE(Answers(0x50));
    EXPECT_EQ(m_bus.GetTransfers(), 2U);
    EXPECT_EQ(m_bus.GetPolls(), 5U);
}

TEST_F(SimBus, APollIsNotTheTransferThatIsMeantToFail) {
    AddAt24("24c02", 0x50);
    m_bus.Faults().FailNth(3);
    EXPECT_TRUE(Write(0x50, {0x00}, {1}));
    EXPECT_EQ(Read(0x50, {0x00}, 1), CData{1});
    EXPECT_EQ(m_bus.GetPolls(), 5U);
    EXPECT_TRUE(Read(0x50, {0x00}, 1).empty());
    EXPECT_EQ(m_errmsg, "arbitration lost");
}

TEST_F(SimBus, ShowsItsCountersAsReadOnlyNodes) {
    Answers(0x50);
    EXPECT_EQ(Send(NodeAt(m_bus, "transfers"), MSG_PEEKV).bytes, CBytes().U8(0).U64(1).Get());
    EXPECT_EQ(Send(NodeAt(m_bus, "bytes"), MSG_PEEKV).bytes, CBytes().U8(0).U64(1).Get());
    EXPECT_EQ(Send(NodeAt(m_bus, "wire-time-ns"), MSG_PEEKV).bytes,
              CBytes().U8(0).U64(110'000).Get());
    EXPECT_EQ(Send(NodeAt(m_bus, "transfers"), MSG_POKEV, uint64_t{5}).Code(), MSG_ERR_READONLY);
    EXPECT_EQ(m_bus.GetTransfers(), 1U);
}

TEST_F(SimBus, CarriesTheSmbusOperationsToItsChips) {
    AddAt24("24c02", 0x50, Counting(256));
    uint8_t byte = 0;
    uint16_t word = 0;
    EXPECT_TRUE(m_bus.smb_send_byte(-1, 0x50, 0x40));
    EXPECT_TRUE(m_bus.smb_receive_byte(-1, 0x50, &byte));
    EXPECT_EQ(byte, 0x40);
    EXPECT_TRUE(m_bus.smb_write_word(-1, 0x50, 0x20, 0xABCD));
    EXPECT_TRUE(m_bus.smb_read_byte(-1, 0x50, 0x21, &byte));
    EXPECT_EQ(byte, 0xAB);
    EXPECT_TRUE(m_bus.smb_read_word(-1, 0x50, 0x20, &word));
    EXPECT_EQ(word, 0xABCD);
    EXPECT_TRUE(m_bus.smb_write_byte(-1, 0x50, 0x22, 0x77));
    EXPECT_TRUE(m_bus.smb_read_byte(-1, 0x50, 0x22, &byte));
    EXPECT_EQ(byte, 0x77);

    std::array<uint8_t, 4> block{1, 2, 3, 4};
    EXPECT_TRUE(m_bus.smb_block_write(-1, 0x50, 0x30, 4, block.data()));
    block = {};
    EXPECT_TRUE(m_bus.smb_block_read(-1, 0x50, 0x30, 4, block.data()));
    EXPECT_EQ(block, (std::array<uint8_t, 4>{1, 2, 3, 4}));
    EXPECT_FALSE(m_bus.smb_block_read(-1, 0x50, 0x30, 3, block.data()));
    EXPECT_EQ(m_bus.GetLastError(), "0x50 announced a block of 4 bytes, not of 3");
}

TEST_F(SimBus, FindsItsChipsByAProbe) {
    AddAt24("24c02", 0x50);
    AddAt24("24c04", 0x52);
    AddMux("pca9547", 0x70);
    EXPECT_TRUE(m_bus.probe(0));
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (std::list<uint8_t>{0x50, 0x52, 0x53, 0x70}));
}

class SimBusFaults : public SimBus {
  protected:
    SimBusFaults() {
        AddAt24("24c02", 0x50, Counting(256));
        AddAt24("24c02", 0x51, Counting(256));
    }
};

TEST_F(SimBusFaults, AddressThatDoesNotAcknowledge) {
    m_bus.Faults().Nack(0x50);
    EXPECT_TRUE(Read(0x50, {0x10}, 1).empty());
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50");
    EXPECT_EQ(Read(0x51, {0x10}, 1), CData{0x10});
}

TEST_F(SimBusFaults, StuckBus) {
    m_bus.Faults().Stick();
    EXPECT_FALSE(Answers(0x51));
    EXPECT_EQ(m_errmsg, "bus stuck low");
    EXPECT_FALSE(Answers(0x51));
    EXPECT_EQ(m_bus.GetTransfers(), 2U);
    EXPECT_EQ(m_bus.GetBytes(), 0U);
}

TEST_F(SimBusFaults, FlippedBitOfAReadByte) {
    m_bus.Faults().Flip(0x50, 2, 7);
    EXPECT_EQ(Read(0x50, {0x10}, 4), (CData{0x10, 0x11, 0x92, 0x13}));
    EXPECT_EQ(Read(0x50, {0x10}, 2), (CData{0x10, 0x11}));
    EXPECT_EQ(Read(0x51, {0x10}, 4), (CData{0x10, 0x11, 0x12, 0x13}));
    m_bus.Faults().Flip(0x50, 0, 0);
    EXPECT_EQ(Read(0x50, {0x10}, 3), (CData{0x11, 0x11, 0x92}));
}

TEST_F(SimBusFaults, FlippedBitIsCaughtByPacketErrorChecking) {
    const auto pec_of = [](uint8_t byte) {
        return CSmbusPec().AddAddress(0x52, false).Add(0x10).AddAddress(0x52, true).Add(byte).Get();
    };
    CData image = Counting(256);
    image[0x11] = pec_of(0x10);
    AddAt24("24c02", 0x52, image);
    uint8_t byte = 0;
    CI2cXfrReq req;
    req.saddr = 0x52;
    req.dir = 1;
    req.cmd_sel = 1;
    req.cmd = 0x10;
    req.data = &byte;
    req.tsize = 1;
    req.rpec_en = 1;
    EXPECT_TRUE(m_bus.I2cTrans(req)) << req.errmsg;
    EXPECT_EQ(byte, 0x10);

    m_bus.Faults().Flip(0x52, 0, 3);
    EXPECT_FALSE(m_bus.I2cTrans(req));
    CFmtString expected;
    expected.printf("bad packet error code 0x%02x from 0x52, expected 0x%02x", pec_of(0x10),
                    pec_of(0x18));
    EXPECT_STREQ(req.errmsg, expected.c_str());
}

TEST_F(SimBusFaults, FailingNthTransferFromNow) {
    m_bus.Faults().FailNth(3);
    EXPECT_TRUE(Answers(0x50));
    EXPECT_TRUE(Answers(0x50));
    EXPECT_FALSE(Answers(0x50));
    EXPECT_EQ(m_errmsg, "arbitration lost");
    EXPECT_TRUE(Answers(0x50));
    m_bus.Faults().FailNth(1);
    EXPECT_FALSE(Answers(0x50));
}

TEST_F(SimBusFaults, TransferThatFailsReachesNoChip) {
    m_bus.Faults().FailNth(1);
    EXPECT_FALSE(Write(0x50, {0x10}, {0x99}));
    EXPECT_EQ(Read(0x50, {0x10}, 1), CData{0x10});
}

TEST_F(SimBusFaults, AreAllClearedAtOnce) {
    CSimFaults& faults = m_bus.Faults();
    faults.Nack(0x50);
    faults.Stick();
    faults.Flip(0x51, 0, 0);
    faults.FailNth(1);
    faults.Clear();
    EXPECT_TRUE(faults.Describe().empty());
    EXPECT_EQ(Read(0x50, {0x10}, 1), CData{0x10});
    EXPECT_EQ(Read(0x51, {0x10}, 1), CData{0x10});
}

TEST_F(SimBusFaults, AreDescribedOneByOne) {
    CSimFaults& faults = m_bus.Faults();
    faults.FailNth(2);
    faults.Flip(0x51, 3, 7);
    faults.Nack(0x50);
    faults.Nack(0x05);
    faults.Stick();
    const std::vector<std::string> expected = {
        "a line is stuck low",
        "no acknowledge from 0x05",
        "no acknowledge from 0x50",
        "bit 7 of byte 3 read from 0x51 arrives wrong",
        "transfer 2 from now loses the arbitration",
    };
    EXPECT_EQ(faults.Describe(), expected);
    Answers(0x51);
    EXPECT_EQ(faults.Describe().back(), "transfer 1 from now loses the arbitration");
    Answers(0x51);
    EXPECT_EQ(faults.Describe().size(), 4U);
}

}  // namespace
