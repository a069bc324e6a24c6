// The bus of the simulated driver.
#include "boards/mdio_sim/phy_bus.h"

#include <gtest/gtest.h>
#include <linux/mii.h>

#include <memory>
#include <thread>
#include <vector>

namespace {

class PhyBus : public testing::Test {
  protected:
    uint32_t IdentifierOf(uint16_t phy_id) {
        return static_cast<uint32_t>(m_bus.Read(phy_id, MII_PHYSID1)) << 16 |
               m_bus.Read(phy_id, MII_PHYSID2);
    }

    CPhyBus m_bus;
};

// The address block of the maker, which the identifier holds from its third bit on, the
// bits of each byte the other way round.
uint32_t MakerOf(uint32_t identifier) {
    uint32_t maker = 0;
    for (uint32_t bit = 2; bit < 24; ++bit) {
        if ((identifier >> (33 - bit) & 1) != 0) {
            maker |= 1U << (16 - bit / 8 * 8 + bit % 8);
        }
    }
    return maker;
}

}  // namespace

TEST_F(PhyBus, HasThePhysOfTheDefaultBoard) {
    EXPECT_EQ(IdentifierOf(0 << 5 | 1), 0x0229'0911U);
    EXPECT_EQ(IdentifierOf(0 << 5 | 2), 0x0229'0912U);
    EXPECT_EQ(IdentifierOf(1 << 5 | 3), 0x0229'0920U);
}

TEST_F(PhyBus, HasPhysOfAMakerOfLocalUse) {
    // 02-51-42: its second bit, which says so, is not in an identifier.
    EXPECT_EQ(MakerOf(IdentifierOf(0x23)) | 0x02'00'00, 0x02'51'42U);
}

TEST_F(PhyBus, HasNobodyElsewhere) {
    std::vector<uint16_t> answering;
    for (uint32_t phy_id = 0; phy_id <= 0xFFFF; ++phy_id) {
        const auto id = static_cast<uint16_t>(phy_id);
        if (m_bus.Read(id, MII_PHYSID1) != 0xFFFF) {
            answering.push_back(id);
        }
    }
    EXPECT_EQ(answering, (std::vector<uint16_t>{0x01, 0x02, 0x23}));
}

TEST_F(PhyBus, TakesWritesWhereNobodyIs) {
    m_bus.Write(0x24, 16, 0x1234);
    EXPECT_EQ(m_bus.Read(0x24, 16), 0xFFFF);
}

TEST_F(PhyBus, KeepsItsPhysApart) {
    m_bus.Write(0x01, 16, 0x1111);
    m_bus.Write(0x23, 16, 0x3333);
    EXPECT_EQ(m_bus.Read(0x01, 16), 0x1111);
    EXPECT_EQ(m_bus.Read(0x02, 16), 0);
    EXPECT_EQ(m_bus.Read(0x23, 16), 0x3333);
}

TEST_F(PhyBus, ServesThreadsOneByOne) {
    constexpr int ACCESSES = 5'000;
    std::vector<std::thread> threads;
    for (uint16_t reg = 16; reg < 20; ++reg) {
        threads.emplace_back([this, reg] {
            for (uint16_t number = 1; number <= ACCESSES; ++number) {
                m_bus.Write(0x01, reg, number);
                ASSERT_EQ(m_bus.Read(0x01, reg), number);
                m_bus.Write(0x01, MII_BMCR, BMCR_ANENABLE | BMCR_ANRESTART);
                m_bus.Read(0x01, MII_BMSR);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
