// The registers of a simulated PHY.
#include "boards/mdio_sim/phy.h"

#include <gtest/gtest.h>
#include <linux/mii.h>

#include <initializer_list>

namespace {

using CWords = std::initializer_list<uint16_t>;

constexpr uint16_t LINK_AND_NEGOTIATED = BMSR_LSTATUS | BMSR_ANEGCOMPLETE;

class Phy : public testing::Test {
  protected:
    bool HasLink() { return (m_phy.Read(MII_BMSR) & BMSR_LSTATUS) != 0; }

    CPhy m_phy = CPhy(0x1234'5678);
};

}  // namespace

TEST_F(Phy, ComesUpWithItsDefaults) {
    EXPECT_EQ(m_phy.Read(0), 0x1140);
    EXPECT_EQ(m_phy.Read(1), 0x796D);
    EXPECT_EQ(m_phy.Read(2), 0x1234);
    EXPECT_EQ(m_phy.Read(3), 0x5678);
    EXPECT_EQ(m_phy.Read(4), 0x01E1);
    EXPECT_EQ(m_phy.Read(5), 0xC5E1);
    EXPECT_EQ(m_phy.Read(6), 0x000D);
    EXPECT_EQ(m_phy.Read(7), 0x2001);
    EXPECT_EQ(m_phy.Read(8), 0);
    EXPECT_EQ(m_phy.Read(9), 0x0300);
    EXPECT_EQ(m_phy.Read(10), 0x3C00);
    EXPECT_EQ(m_phy.Read(15), 0x3000);
    for (const uint16_t reg : CWords{11, 12, 13, 14, 16, 23, 31}) {
        EXPECT_EQ(m_phy.Read(reg), 0) << reg;
    }
}

TEST_F(Phy, KeepsTheBitsThatCanBeWrittenAndNoOthers) {
    struct CBits {
        uint16_t reg;
        uint16_t writable;
    };
    for (const auto& [reg, writable] : {CBits{0, 0x75E0},
                                        {4, 0xBFFF},
                                        {7, 0xB7FF},
                                        {9, 0xFF00},
                                        {16, 0xFFFF},
                                        {20, 0xFFFF},
                                        {31, 0xFFFF}}) {
        const uint16_t fixed = m_phy.Read(reg) & static_cast<uint16_t>(~writable);
        // Reset, restart and power-down do more than stay.
        m_phy.Write(reg, reg == MII_BMCR ? 0x75FF : 0xFFFF);
        EXPECT_EQ(m_phy.Read(reg), fixed | writable) << reg;
        m_phy.Write(reg, 0);
        EXPECT_EQ(m_phy.Read(reg), fixed) << reg;
    }
}

TEST_F(Phy, IgnoresWritesOfWhatIsReadOnly) {
    for (const uint16_t reg : CWords{1, 2, 3, 5, 6, 8, 10, 11, 12, 13, 14, 15}) {
        const uint16_t before = m_phy.Read(reg);
        m_phy.Write(reg, static_cast<uint16_t>(~before));
        EXPECT_EQ(m_phy.Read(reg), before) << reg;
    }
}

TEST_F(Phy, ClearsItsResetItselfAndHasItsDefaultsAgain) {
    for (const uint16_t reg : CWords{0, 4, 7, 9, 16, 31}) {
        m_phy.Write(reg, 0x0020);
    }
    m_phy.Write(MII_BMCR, BMCR_RESET | BMCR_PDOWN | BMCR_LOOPBACK);
    EXPECT_EQ(m_phy.Read(0), 0x1140);
    EXPECT_EQ(m_phy.Read(2), 0x1234);
    EXPECT_EQ(m_phy.Read(3), 0x5678);
    EXPECT_EQ(m_phy.Read(4), 0x01E1);
    EXPECT_EQ(m_phy.Read(7), 0x2001);
    EXPECT_EQ(m_phy.Read(9), 0x0300);
    EXPECT_EQ(m_phy.Read(16), 0);
    EXPECT_EQ(m_phy.Read(31), 0);
}

TEST_F(Phy, LatchesALinkThatWasDownUntilItIsRead) {
    EXPECT_TRUE(HasLink());
    m_phy.Write(MII_BMCR, BMCR_ANENABLE | BMCR_PDOWN);
    m_phy.Write(MII_BMCR, BMCR_ANENABLE);
    EXPECT_FALSE(HasLink());
    EXPECT_TRUE(HasLink());
    EXPECT_TRUE(HasLink());
}

TEST_F(Phy, HasNoLinkWhileItIsPoweredDown) {
    m_phy.Write(MII_BMCR, BMCR_ANENABLE | BMCR_PDOWN);
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(m_phy.Read(MII_BMSR) & LINK_AND_NEGOTIATED, 0);
    }
    EXPECT_EQ(m_phy.Read(MII_BMCR), BMCR_ANENABLE | BMCR_PDOWN);
    EXPECT_EQ(m_phy.Read(MII_PHYSID1), 0x1234);
}

TEST_F(Phy, LosesTheLinkForAMomentWheneverItNegotiatesAnew) {
    for (const uint16_t control : CWords{BMCR_RESET, BMCR_ANENABLE | BMCR_ANRESTART}) {
        m_phy.Write(MII_BMCR, control);
        EXPECT_FALSE(HasLink()) << control;
        EXPECT_TRUE(HasLink()) << control;
        EXPECT_EQ(m_phy.Read(MII_BMCR) & (BMCR_RESET | BMCR_ANRESTART), 0) << control;
    }
}

TEST_F(Phy, KeepsTheLinkWhenNothingOfItChanges) {
    m_phy.Write(MII_BMCR, BMCR_ANENABLE | BMCR_LOOPBACK | BMCR_ISOLATE);
    EXPECT_TRUE(HasLink());
}

TEST_F(Phy, HasNoPartnerToTellOfWithoutNegotiation) {
    m_phy.Write(MII_BMCR, BMCR_SPEED1000 | BMCR_FULLDPLX);
    m_phy.Write(MII_BMCR, BMCR_SPEED1000 | BMCR_FULLDPLX | BMCR_ANRESTART);
    EXPECT_FALSE(HasLink());
    EXPECT_EQ(m_phy.Read(MII_BMSR) & LINK_AND_NEGOTIATED, BMSR_LSTATUS);
    EXPECT_EQ(m_phy.Read(MII_LPA), 0);
    EXPECT_EQ(m_phy.Read(MII_EXPANSION), 0x0004);
    EXPECT_EQ(m_phy.Read(MII_STAT1000), 0);
}
