// An EEPROM's contents as plain bytes.
#include "framework/raw_memory.h"
#include "host/diag_tree.h"
#include "tests/boards/devicetree/eeprom_mount_test.h"
#include "tests/support/thrown_text.h"

namespace {

class EepromRaw : public CEepromMountTest {
  protected:
    IRawMemory& Raw() { return dynamic_cast<IRawMemory&>(*FindByPath(*m_root, m_path)); }
    Bytes ReadRaw(uint32_t offset, size_t size) {
        Bytes bytes(size);
        Raw().ReadRaw(offset, bytes);
        return bytes;
    }
};

}  // namespace

TEST_F(EepromRaw, TellsItsMeasures) {
    MountOnRoot("atmel,24c256", 32768);
    EXPECT_EQ(Raw().GetRawSize(), 32768U);
    EXPECT_EQ(Raw().GetRawPage(), 64U);
    EXPECT_FALSE(Raw().IsRawReadOnly());
    MountOnRoot("atmel,spd", 256);
    EXPECT_TRUE(Raw().IsRawReadOnly());
}

TEST_F(EepromRaw, MovesAllOf64KiBThroughThePath) {
    MountBehindThree("atmel,24c512", 65536);
    EXPECT_TRUE(ReadRaw(0, 65536) == m_held);
    EXPECT_FALSE(Answers());
    Bytes other = m_held;
    std::reverse(other.begin(), other.end());
    Raw().WriteRaw(0, other);
    EXPECT_TRUE(Contents() == other);
    EXPECT_FALSE(Answers());
}

TEST_F(EepromRaw, MovesWhatIsAskedForAndNoMore) {
    MountOnRoot("atmel,24c64", 8192);
    EXPECT_EQ(ReadRaw(8190, 2), Bytes(m_held.end() - 2, m_held.end()));
    EXPECT_EQ(ReadRaw(0, 0), Bytes{});
    Raw().WriteRaw(32, Bytes(64, 0xEE));
    Bytes want = m_held;
    std::fill(want.begin() + 32, want.begin() + 96, 0xEE);
    EXPECT_EQ(Contents(), want);
}

TEST_F(EepromRaw, WritesOverPageEndsWithoutHarmToTheirNeighbours) {
    for (const auto& [part, size] :
         {std::pair("atmel,24c16", size_t{2048}), std::pair("atmel,24c64", size_t{8192}),
          std::pair("atmel,24c512", size_t{65536})}) {
        SCOPED_TRACE(part);
        MountOnRoot(part, size);
        Bytes want = m_held;
        std::fill(want.begin() + 243, want.begin() + 800, 0xEE);
        Raw().WriteRaw(243, Bytes(800 - 243, 0xEE));
        EXPECT_TRUE(Contents() == want);
    }
}

TEST_F(EepromRaw, RefusesWhatLiesOutside) {
    MountOnRoot("atmel,24c64", 8192);
    EXPECT_EQ(ThrownText([&] { ReadRaw(8190, 3); }),
              "/i2c-0/dev: cannot read 0x1ffe to 0x2000: outside the memory");
    EXPECT_EQ(ThrownText([&] { Raw().WriteRaw(0xFFFFFFFF, Bytes(2)); }),
              "/i2c-0/dev: cannot write 0xffffffff to 0x100000000: outside the memory");
    EXPECT_EQ(Contents(), m_held);
}

TEST_F(EepromRaw, RefusesToWriteWhatIsReadOnly) {
    MountOnRoot("atmel,spd", 256);
    EXPECT_EQ(ThrownText([&] { Raw().WriteRaw(0, Bytes(1)); }), "/i2c-0/dev: is read-only");
    EXPECT_EQ(Contents(), m_held);
}

TEST_F(EepromRaw, SaysWhatFailedAndWhere) {
    MountBehindThree("atmel,24c64", 8192);
    SimBus().Faults().Nack(0x50);
    EXPECT_EQ(ThrownText([&] { ReadRaw(16, 16); }),
              m_path + ": cannot read 0x0010 to 0x001f: a transfer failed");
    EXPECT_EQ(ThrownText([&] { Raw().WriteRaw(0, Bytes(8192)); }),
              m_path + ": cannot write 0x0000 to 0x1fff: a transfer failed");
    SimBus().Faults().Clear();
    EXPECT_FALSE(Answers()) << "a failure leaves the path open";
    SimBus().Faults().Nack(0x72);
    EXPECT_EQ(ThrownText([&] { ReadRaw(0, 1); }),
              m_path + ": cannot read 0x0000 to 0x0000: the I2C path could not be opened");
}
