// What the description has at the addresses of a wire, as who scans it is told.
#include "framework/bus_scan.h"
#include "tests/boards/devicetree/mount_test.h"

namespace {

class ScanNames : public CMountTest {
  protected:
    std::string NameAt(const std::string& path, size_t wire, uint8_t addr) {
        return dynamic_cast<const IBusScan&>(NodeAt(*m_root, path)).NameAt(wire, addr);
    }
};

TEST_F(ScanNames, AreThoseOfTheNodes) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("eeprom@50", "atmel,24c02", 0x50).Text("label", "mfg").End();
        bus.Device("thing@20", "acme,unknown", 0x20).End();
    });
    EXPECT_EQ(NameAt("/i2c-0", 0, 0x50), "mfg");
    EXPECT_EQ(NameAt("/i2c-0", 0, 0x20), MenusBelow(NodeAt(*m_root, "/i2c-0")).back());
    EXPECT_EQ(NameAt("/i2c-0", 0, 0x51), "");
}

TEST_F(ScanNames, StandAtEveryAddressOfAChip) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("eeprom@50", "atmel,24c16", 0x50).Text("label", "big").End();
    });
    for (uint8_t addr = 0x50; addr < 0x58; ++addr) {
        EXPECT_EQ(NameAt("/i2c-0", 0, addr), "big") << unsigned{addr};
    }
    EXPECT_EQ(NameAt("/i2c-0", 0, 0x58), "");
}

TEST_F(ScanNames, BelongToTheChannelThatTheChipHangsOn) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux-0");
        bus.Begin("i2c@2").Cells("reg", {2});
        bus.Device("eeprom@51", "atmel,24c02", 0x51).Text("label", "spd").End();
        bus.End().End();
    });
    EXPECT_EQ(NameAt("/i2c-0", 0, 0x70), "mux-0");
    EXPECT_EQ(NameAt("/i2c-0", 0, 0x51), "");
    EXPECT_EQ(NameAt("/i2c-0/mux-0", 2, 0x51), "spd");
    EXPECT_EQ(NameAt("/i2c-0/mux-0", 3, 0x51), "");
}

}  // namespace
