// What declaring an EEPROM to its bus saves: the library's writes from an odd
// address on cross the ends of pages, where a chip goes on at the start of the
// page and destroys what it holds.
#include <string>

#include "i2c/diag_i2c_eeprom_device.h"
#include "tests/boards/sim/sim_test.h"
#include "tests/support/request.h"

namespace {

// The library's EEPROM at a slave address of the bus.
class CPlacedEeprom : public CDiagI2cEepromDevice {
  public:
    CPlacedEeprom(const char* name, CI2cDevice& bus, i2c_eeprom_attr_t attr, uint8_t addr)
        : CDiagI2cEepromDevice(name, "an EEPROM", &bus, &attr, false, addr) {
        m_i2c_addr = addr;
    }
};

// One part, and a range that begins at an odd address and crosses pages.
struct CCase {
    const char* part;
    uint16_t first;
    uint16_t last;
};

void PrintTo(const CCase& c, std::ostream* out) {
    *out << c.part;
}

constexpr uint8_t ADDR = 0x50;

class SimAt24Pages : public CSimTest, public testing::WithParamInterface<CCase> {
  protected:
    SimAt24Pages()
        : m_part(*FindSimAt24Part(GetParam().part)),
          m_held(Pattern(m_part.size)),
          m_chip(AddAt24(m_part.name, ADDR, m_held)) {}

    // No two neighbouring bytes, rows or blocks alike.
    static CData Pattern(size_t size) {
        CData bytes(size);
        for (size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<uint8_t>(i * 7 + i / 256 * 5 + 1);
        }
        return bytes;
    }

    void Declare() {
        m_bus.DeclareEeprom({ADDR, m_part.addresses, m_part.addr_bytes, m_part.page});
    }

    // The device for the 64 KiB at most that memory addresses of the library reach.
    CPlacedEeprom& Mount() {
        i2c_eeprom_attr_t attr{};
        attr.mem_size = std::min<uint32_t>(m_part.size, 0x10000);
        attr.mem_addr_size = m_part.addr_bytes;
        attr.wr_pg_size = static_cast<uint8_t>(std::min<uint16_t>(m_part.page, 128));
        attr.xfer_size = attr.wr_pg_size;
        auto* eeprom = new CPlacedEeprom("eeprom", m_bus, attr, ADDR);
        m_bus.AddChild(eeprom, CDiagObj::NO_SORT);
        return *eeprom;
    }
    uint8_t RunTest() {
        return Send(NodeAt(Mount(), "rw-test"), MSG_CALL, GetParam().first, GetParam().last).Code();
    }

    CData Contents() { return BytesOf(m_chip.Memory().Path()); }
    // How many bytes differ from what the chip held, in the range and outside.
    struct CChanges {
        size_t inside = 0;
        size_t outside = 0;
    };
    CChanges Changes() {
        const CData now = Contents();
        CChanges changes;
        for (size_t i = 0; i < now.size(); ++i) {
            const bool inside = i >= GetParam().first && i <= GetParam().last;
            (inside ? changes.inside : changes.outside) += now[i] != m_held[i] ? 1U : 0U;
        }
        return changes;
    }

    const sim_at24_part_t& m_part;
    const CData m_held;
    CSimAt24& m_chip;
};

TEST_P(SimAt24Pages, AreKeptByTheReadWriteTestOfADeclaredPart) {
    Declare();
    EXPECT_EQ(RunTest(), MSG_SUCCESS);
    EXPECT_EQ(Contents(), m_held);
}

TEST_P(SimAt24Pages, AreDestroyedByTheReadWriteTestOfAPartThatIsNotDeclared) {
    EXPECT_EQ(RunTest(), MSG_ERR_FAIL);
    EXPECT_GT(Changes().inside + Changes().outside, 0U);
}

TEST_P(SimAt24Pages, TakeEveryByteOfAWriteToADeclaredPart) {
    Declare();
    const auto [part, first, last] = GetParam();
    const CData fresh(last + 1U - first, 0xA5);
    EXPECT_TRUE(Mount().WriteMemory(first, fresh.data(), static_cast<uint16_t>(fresh.size())));
    CData expected = m_held;
    std::copy(fresh.begin(), fresh.end(), expected.begin() + first);
    EXPECT_EQ(Contents(), expected);
}

TEST_P(SimAt24Pages, LoseBytesOutsideAWriteToAPartThatIsNotDeclared) {
    const auto [part, first, last] = GetParam();
    const CData fresh(last + 1U - first, 0xA5);
    EXPECT_TRUE(Mount().WriteMemory(first, fresh.data(), static_cast<uint16_t>(fresh.size())));
    EXPECT_GT(Changes().outside, 0U);
}

// Each range begins behind the middle of a page, so that its first chunk is
// longer than what is left of the page.
INSTANTIATE_TEST_SUITE_P(OfParts, SimAt24Pages,
                         testing::Values(CCase{"24c01", 5, 60}, CCase{"24c02", 13, 90},
                                         CCase{"24c32", 21, 90}, CCase{"24c64", 0x1F15, 0x1FFE},
                                         CCase{"24c256", 0x7FB7, 0x7FFF},
                                         CCase{"24c512", 0xFEE1, 0xFFFF},
                                         CCase{"24c1024", 0x00E1, 0x01FF}),
                         [](const auto& test) { return std::string(test.param.part); });

// Parts of one address byte whose range lies behind several slave addresses:
// only the bus knows those.
class SimAt24Blocks : public SimAt24Pages {};

TEST_P(SimAt24Blocks, AreKeptByTheReadWriteTestOfADeclaredPart) {
    Declare();
    EXPECT_EQ(RunTest(), MSG_SUCCESS);
    EXPECT_EQ(Contents(), m_held);
}

TEST_P(SimAt24Blocks, AreAllReachedThroughADeclaredPart) {
    Declare();
    CPlacedEeprom& eeprom = Mount();
    CData now(m_part.size);
    EXPECT_TRUE(eeprom.ReadMemory(0, now.data(), static_cast<uint16_t>(now.size())));
    EXPECT_EQ(now, m_held);
}

TEST_P(SimAt24Blocks, AreNotReachedThroughAPartThatIsNotDeclared) {
    CPlacedEeprom& eeprom = Mount();
    CData now(m_part.size);
    EXPECT_TRUE(eeprom.ReadMemory(0, now.data(), static_cast<uint16_t>(now.size())));
    EXPECT_NE(now, m_held);
}

INSTANTIATE_TEST_SUITE_P(OfParts, SimAt24Blocks,
                         testing::Values(CCase{"24c04", 0xED, 0x1FF}, CCase{"24c08", 0x1ED, 0x213},
                                         CCase{"24c16", 0x6FB, 0x7FF}),
                         [](const auto& test) { return std::string(test.param.part); });

}  // namespace
