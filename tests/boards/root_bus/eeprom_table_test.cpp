// Which EEPROMs a root bus can be told of.
#include "boards/root_bus/eeprom_table.h"

#include "tests/boards/root_bus/eeprom_test.h"
#include "tests/support/thrown_text.h"

namespace {

class RootBusEeproms : public CRootBusEepromTest {
  protected:
    std::string RefusalOf(const eeprom_geometry_t& part) {
        return ThrownText([&] { m_bus.DeclareEeprom(part); });
    }
    // The pieces that a write of 64 bytes from 0 on goes out in.
    size_t PiecesOf(uint8_t addr, uint8_t cmd_sel) {
        const size_t before = m_bus.Tapes().size();
        EXPECT_TRUE(Trans(Request(addr, cmd_sel, 0, 64))) << m_errmsg;
        return m_bus.Tapes().size() - before;
    }
};

TEST_F(RootBusEeproms, AreOfAnyNumber) {
    for (uint8_t addr = 0; addr < 0x80; ++addr) {
        m_bus.DeclareEeprom({addr, 1, 1, 8});
        m_bus.DeclareEeprom({addr, 1, 2, 32});
    }
    for (uint8_t addr = 0; addr < 0x80; ++addr) {
        EXPECT_EQ(PiecesOf(addr, 1), 8U);
        EXPECT_EQ(PiecesOf(addr, 2), 2U);
    }
}

TEST_F(RootBusEeproms, BeginAtASlaveAddressOfSevenBits) {
    EXPECT_EQ(RefusalOf({0x80, 1, 1, 8}),
              "an EEPROM cannot begin at slave address 0x80: 7 bits at most");
    m_bus.DeclareEeprom({0x7F, 1, 1, 8});
}

TEST_F(RootBusEeproms, AnswerAPowerOfTwoOfAddresses) {
    for (const int addresses : {0, 3, 6, 255}) {
        EXPECT_EQ(RefusalOf({0x50, static_cast<uint8_t>(addresses), 1, 8}),
                  "the EEPROM at 0x50 cannot answer " + std::to_string(addresses) +
                      " addresses: not a power of two");
    }
}

TEST_F(RootBusEeproms, BeginAtAMultipleOfTheirAddresses) {
    EXPECT_EQ(RefusalOf({0x51, 2, 1, 16}), "an EEPROM of 2 addresses cannot begin at 0x51");
    EXPECT_EQ(RefusalOf({0x54, 8, 1, 16}), "an EEPROM of 8 addresses cannot begin at 0x54");
    EXPECT_EQ(RefusalOf({0x7C, 8, 1, 16}), "an EEPROM of 8 addresses cannot begin at 0x7c");
    m_bus.DeclareEeprom({0x78, 8, 1, 16});
}

TEST_F(RootBusEeproms, TakeOneOrTwoAddressBytes) {
    EXPECT_EQ(RefusalOf({0x50, 1, 0, 8}),
              "the EEPROM at 0x50 cannot take 0 memory address bytes: 1 or 2");
    EXPECT_EQ(RefusalOf({0x50, 1, 3, 8}),
              "the EEPROM at 0x50 cannot take 3 memory address bytes: 1 or 2");
}

TEST_F(RootBusEeproms, HavePagesThatLieInOneBlock) {
    EXPECT_EQ(RefusalOf({0x50, 1, 1, 0}),
              "the EEPROM at 0x50 cannot have pages of 0 bytes: a power of two up to 256");
    EXPECT_EQ(RefusalOf({0x50, 2, 1, 512}),
              "the EEPROM at 0x50 cannot have pages of 512 bytes: a power of two up to 256");
    EXPECT_EQ(RefusalOf({0x50, 1, 2, 48}),
              "the EEPROM at 0x50 cannot have pages of 48 bytes: a power of two up to 65536");
    m_bus.DeclareEeprom({0x50, 2, 1, 256});
    m_bus.DeclareEeprom({0x50, 1, 2, 512});
}

TEST_F(RootBusEeproms, ThatAreAddressedAlikeShareTheSmallestPage) {
    m_bus.DeclareEeprom({0x50, 1, 2, 32});
    m_bus.DeclareEeprom({0x50, 1, 2, 16});
    m_bus.DeclareEeprom({0x50, 1, 2, 64});
    EXPECT_EQ(PiecesOf(0x50, 2), 4U);
}

TEST_F(RootBusEeproms, ShareTheSmallestPageAtAllTheirAddresses) {
    m_bus.DeclareEeprom({0x50, 4, 1, 16});
    m_bus.DeclareEeprom({0x50, 4, 1, 8});
    for (uint8_t addr = 0x50; addr < 0x54; ++addr) {
        EXPECT_EQ(PiecesOf(addr, 1), 8U);
    }
}

TEST_F(RootBusEeproms, AreToldApartByTheirAddressBytes) {
    m_bus.DeclareEeprom({0x50, 1, 1, 8});
    m_bus.DeclareEeprom({0x50, 1, 2, 32});
    EXPECT_EQ(PiecesOf(0x50, 1), 8U);
    EXPECT_EQ(PiecesOf(0x50, 2), 2U);
}

// Such parts hang on different channels; the bus sees their addresses only.
TEST_F(RootBusEeproms, InsideTheAddressesOfAnotherShareItsPages) {
    m_bus.DeclareEeprom({0x56, 1, 1, 8});
    m_bus.DeclareEeprom({0x54, 4, 1, 16});
    m_bus.DeclareEeprom({0x50, 8, 1, 32});
    m_bus.DeclareEeprom({0x52, 2, 1, 16});
    for (uint8_t addr = 0x50; addr < 0x58; ++addr) {
        EXPECT_EQ(PiecesOf(addr, 1), 8U);
    }
}

TEST_F(RootBusEeproms, InsideTheAddressesOfAnotherKeepTheirPlaces) {
    m_bus.DeclareEeprom({0x50, 8, 1, 16});
    m_bus.DeclareEeprom({0x52, 2, 1, 16});
    m_bus.DeclareEeprom({0x57, 1, 1, 16});
    const auto sent_to = [this](uint8_t addr, uint16_t cmd) {
        EXPECT_TRUE(Trans(Request(addr, 1, cmd, 1))) << m_errmsg;
        return m_bus.Tapes().back();
    };
    EXPECT_EQ(sent_to(0x52, 0x1FF), sent_to(0x50, 0x3FF));
    EXPECT_EQ(sent_to(0x57, 0x10), sent_to(0x50, 0x710));
}

TEST_F(RootBusEeproms, ThatAreRefusedChangeNothing) {
    m_bus.DeclareEeprom({0x54, 4, 1, 16});
    EXPECT_NE(RefusalOf({0x54, 4, 1, 3}), "");
    EXPECT_EQ(PiecesOf(0x50, 1), 1U);
    EXPECT_EQ(PiecesOf(0x54, 1), 4U);
}

}  // namespace
