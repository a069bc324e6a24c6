// "read" and "write" of the MDIO bus: the record that reaches the driver, and the answer.
#include <cerrno>

#include "tests/support/bytes.h"
#include "tests/t2080_mdio/mdio_bus_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// How port and device reach the driver.
struct CPacking {
    uint32_t port;
    uint32_t device;
    uint16_t phy_id;
};

const std::vector<CPacking> PACKINGS = {
    {0, 0, 0x0000},          {1, 3, 0x0023},          {0, 31, 0x001F},      {15, 31, 0x01FF},
    {0x7FF, 31, 0xFFFF},     {0, 32, 0x0020},         {2, 35, 0x0063},      {1, 35, 0x0023},
    {0x800, 0, 0x0000},      {0x801, 1, 0x0021},      {0, 0x12345, 0x2345}, {0xFFFFFFFF, 0, 0xFFE0},
    {0, 0xFFFFFFFF, 0xFFFF}, {0x80000000, 4, 0x0004},
};

class MdioBusAccess : public CMdioBusTest {
  protected:
    MdioBusAccess() { Init(); }
};

TEST_F(MdioBusAccess, ReadsARegister) {
    m_driver.SetRegister(0x23, 2, 0xBEEF);
    EXPECT_EQ(Read(1, 3, 2).bytes, CBytes().U8(SUCCESS).U16(0xBEEF).Get());
    EXPECT_THAT(m_driver.Calls(), ElementsAre(CMdioCall{SIOCGMIIREG, 0x23, 2, 0, 0}));
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(MdioBusAccess, WritesARegister) {
    EXPECT_EQ(Write(1, 3, 2, 0xBEEF).bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_driver.Calls(), ElementsAre(CMdioCall{SIOCSMIIREG, 0x23, 2, 0xBEEF, 0}));
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(MdioBusAccess, BeginsEveryReadWithAnEmptyRecord) {
    m_driver.SetRegister(0x23, 2, 0xFFFF);
    Read(1, 3, 2);
    Write(1, 3, 2, 0x1234);
    Read(1, 3, 2);
    EXPECT_THAT(m_driver.Calls(), ElementsAre(CMdioCall{SIOCGMIIREG, 0x23, 2, 0, 0},
                                              CMdioCall{SIOCSMIIREG, 0x23, 2, 0x1234, 0},
                                              CMdioCall{SIOCGMIIREG, 0x23, 2, 0, 0}));
}

TEST_F(MdioBusAccess, KeepsTheDriverOpenInBetween) {
    Read(1, 3, 2);
    Write(1, 3, 2, 1);
    m_driver.FailIoctl(EIO);
    Read(1, 3, 2);
    EXPECT_THAT(m_driver.Files(), ElementsAre("open /dev/fsl-fman_xmdio_us"));
    EXPECT_TRUE(m_bus->CheckOperational());
}

TEST_F(MdioBusAccess, PacksPortAndDeviceIntoSixteenBits) {
    for (const CPacking& packing : PACKINGS) {
        SCOPED_TRACE(std::to_string(packing.port) + " " + std::to_string(packing.device));
        EXPECT_EQ(Read(packing.port, packing.device, 1).Code(), SUCCESS);
        EXPECT_EQ(m_driver.Calls().back(), (CMdioCall{SIOCGMIIREG, packing.phy_id, 1, 0, 0}));
        EXPECT_EQ(Write(packing.port, packing.device, 1, 9).Code(), SUCCESS);
        EXPECT_EQ(m_driver.Calls().back(), (CMdioCall{SIOCSMIIREG, packing.phy_id, 1, 9, 0}));
    }
}

TEST_F(MdioBusAccess, PassesEveryOffsetOn) {
    for (const uint16_t offset : std::vector<uint16_t>{0, 31, 32, 0x8000, 0xFFFF}) {
        EXPECT_EQ(Read(0, 1, offset).Code(), SUCCESS);
        EXPECT_EQ(m_driver.Calls().back().reg_num, offset);
        EXPECT_EQ(Write(0, 1, offset, 0).Code(), SUCCESS);
        EXPECT_EQ(m_driver.Calls().back().reg_num, offset);
    }
}

TEST_F(MdioBusAccess, OfAProgramCutsTheOffsetToSixteenBits) {
    uint16_t data = 0;
    m_driver.SetRegister(0x23, 2, 0x0141);
    EXPECT_TRUE(m_bus->Read(1, 3, 0x10002, data));
    EXPECT_EQ(data, 0x0141);
    EXPECT_TRUE(m_bus->Write(1, 3, 0x20003, 7));
    EXPECT_EQ(m_driver.Calls().back(), (CMdioCall{SIOCSMIIREG, 0x23, 3, 7, 0}));
}

TEST_F(MdioBusAccess, TakesAnyResultButANegativeOneForSuccess) {
    m_driver.SetIoctlResult(5);
    m_driver.SetRegister(0x23, 2, 0x0141);
    EXPECT_EQ(Read(1, 3, 2).bytes, CBytes().U8(SUCCESS).U16(0x0141).Get());
    EXPECT_EQ(Write(1, 3, 2, 1).bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

// What the driver refuses

TEST_F(MdioBusAccess, TellsEveryErrorOfTheDriverAndTriesOnce) {
    for (int err = 1; err <= EHWPOISON; ++err) {
        SCOPED_TRACE(err);
        m_driver.FailIoctl(err);
        m_log.Clear();
        EXPECT_EQ(Write(1, 3, 2, 4).bytes, Bytes{FAIL});
        EXPECT_EQ(m_log.Lines(), Lines{SystemError(err)});
        m_log.Clear();
        const CAnswer reply = Read(1, 3, 2);
        EXPECT_EQ(reply.Code(), FAIL);
        EXPECT_EQ(reply.bytes.size(), 3U);
        EXPECT_EQ(m_log.Lines(), Lines{SystemError(err)});
        EXPECT_EQ(m_driver.Calls().size(), static_cast<size_t>(2 * err));
    }
}

TEST_F(MdioBusAccess, OfAProgramTellsWhetherItSucceeded) {
    uint16_t data = 0x55AA;
    m_driver.FailIoctl(ETIMEDOUT);
    EXPECT_FALSE(m_bus->Read(1, 3, 2, data));
    EXPECT_EQ(data, 0x55AA);
    EXPECT_FALSE(m_bus->Write(1, 3, 2, 1));
    m_driver.FailIoctl(0);
    EXPECT_TRUE(m_bus->Write(1, 3, 2, 1));
    EXPECT_TRUE(m_bus->Read(1, 3, 2, data));
    EXPECT_EQ(data, 1);
}

// Missing arguments

TEST_F(MdioBusAccess, NeedsAllItsArguments) {
    const auto missing = [this](const CAnswer& reply) {
        EXPECT_EQ(reply.bytes, Bytes{FAIL});
        EXPECT_EQ(m_log.Lines().size(), 1U);
        EXPECT_EQ(m_log.Texts(0x30).size(), 1U);
        m_log.Clear();
    };
    for (const char* command : {"read", "write"}) {
        SCOPED_TRACE(command);
        missing(Send(Command(command), MSG_CALL));
        missing(Send(Command(command), MSG_CALL, uint32_t{1}));
        missing(Send(Command(command), MSG_CALL, uint32_t{1}, uint32_t{3}));
        missing(Send(Command(command), MSG_CALL, uint32_t{1}, uint32_t{3}, uint8_t{2}));
    }
    missing(Send(Command("write"), MSG_CALL, uint32_t{1}, uint32_t{3}, uint16_t{2}));
    EXPECT_THAT(m_driver.Calls(), IsEmpty());
}

// Before "init"

using MdioBusWithoutInit = CMdioBusTest;

TEST_F(MdioBusWithoutInit, ReadsNothing) {
    const CAnswer reply = Read(1, 3, 2);
    EXPECT_EQ(reply.Code(), FAIL);
    EXPECT_EQ(reply.bytes.size(), 3U);
    EXPECT_EQ(m_log.Lines(), m_not_operational);
    EXPECT_THAT(m_driver.Calls(), IsEmpty());
}

TEST_F(MdioBusWithoutInit, WritesNothing) {
    EXPECT_EQ(Write(1, 3, 2, 1).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(), m_not_operational);
    EXPECT_THAT(m_driver.Calls(), IsEmpty());
}

TEST_F(MdioBusWithoutInit, KeepsQuietWhenAsked) {
    EXPECT_FALSE(m_bus->bOperational(true));
    EXPECT_THAT(m_log.Lines(), IsEmpty());
    EXPECT_FALSE(m_bus->bOperational(false));
    EXPECT_EQ(m_log.Lines(), m_not_operational);
}

TEST_F(MdioBusWithoutInit, GoesByWhetherTheDeviceIsOperational) {
    Init();
    m_bus->SetOperational(false);
    EXPECT_EQ(Write(1, 3, 2, 1).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Lines(), m_not_operational);
    m_bus->SetOperational(true);
    EXPECT_EQ(Write(1, 3, 2, 1).bytes, Bytes{SUCCESS});
}

}  // namespace
