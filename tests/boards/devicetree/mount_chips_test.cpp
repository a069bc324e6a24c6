// The simulated chips of a mounted board, reached over the bus.
#include <numeric>

#include "tests/boards/devicetree/mount_test.h"
#include "tests/support/bus_access.h"

namespace {

using Bytes = std::vector<uint8_t>;

// Different bytes all over, also from one 256-byte block to the next.
Bytes Pattern(size_t size) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 256);
    }
    return bytes;
}

class MountChips : public CMountTest {
  protected:
    std::optional<Bytes> Read(uint8_t addr, const Bytes& command, uint8_t size) {
        return ReadBus(Bus("i2c-0"), addr, command, size);
    }
};

}  // namespace

TEST_F(MountChips, BeginBlankWithoutAnImage) {
    MountOnBus([](CBlobBuilder& bus) { bus.Device("dev", "atmel,24c02", 0x50).End(); });
    EXPECT_EQ(Read(0x50, {0}, 4), Bytes(4, 0xFF));
    EXPECT_EQ(BytesOf(m_folder.Path() / "state/i2c-0/0x50.bin"), Bytes(256, 0xFF));
}

TEST_F(MountChips, BeginWithTheImageOfTheirPlace) {
    const Bytes image = Pattern(8192);
    m_folder.Write("images/i2c-0/0x50.bin", image);
    MountOnBus([](CBlobBuilder& bus) { bus.Device("dev", "morva,mfg-eeprom", 0x50).End(); });
    // Two address bytes, the high one first.
    EXPECT_EQ(Read(0x50, {0x00, 0x00}, 16), Bytes(image.begin(), image.begin() + 16));
    EXPECT_EQ(Read(0x50, {0x12, 0x34}, 2), Bytes(image.begin() + 0x1234, image.begin() + 0x1236));
}

TEST_F(MountChips, KeepWhatTheirStateFolderHolds) {
    m_folder.Write("images/i2c-0/0x50.bin", Bytes(256, 0x11));
    m_folder.Write("state/i2c-0/0x50.bin", Bytes(256, 0x22));
    MountOnBus([](CBlobBuilder& bus) { bus.Device("dev", "atmel,24c02", 0x50).End(); });
    EXPECT_EQ(Read(0x50, {0}, 1), Bytes{0x22});
}

TEST_F(MountChips, WriteIntoTheirFile) {
    MountOnBus([](CBlobBuilder& bus) { bus.Device("dev", "atmel,24c02", 0x50).End(); });
    ASSERT_TRUE(WriteBus(Bus("i2c-0"), 0x50, {0x10, 0xAB, 0xCD}));
    const Bytes file = BytesOf(m_folder.Path() / "state/i2c-0/0x50.bin");
    EXPECT_EQ(file.at(0x10), 0xAB);
    EXPECT_EQ(file.at(0x11), 0xCD);
}

TEST_F(MountChips, TakeNoDataWhenTheyAreReadOnly) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("a", "atmel,24c02", 0x50).Bytes("read-only", "").End();
        bus.Device("b", "atmel,spd", 0x51).End();
    });
    EXPECT_FALSE(WriteBus(Bus("i2c-0"), 0x50, {0, 1}));
    EXPECT_FALSE(WriteBus(Bus("i2c-0"), 0x51, {0, 1}));
    EXPECT_EQ(Read(0x50, {0}, 1), Bytes{0xFF});
}

TEST_F(MountChips, AreKnownByThePartWhoeverMakesIt) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("a", "microchip,24c64", 0x50).End();
        bus.Device("b", "acme,24c512", 0x51).End();
        bus.Device("c", "acme,24c01", 0x52).End();
    });
    EXPECT_EQ(std::filesystem::file_size(m_folder.Path() / "state/i2c-0/0x50.bin"), 8192U);
    EXPECT_EQ(std::filesystem::file_size(m_folder.Path() / "state/i2c-0/0x51.bin"), 65536U);
    EXPECT_EQ(std::filesystem::file_size(m_folder.Path() / "state/i2c-0/0x52.bin"), 128U);
    EXPECT_TRUE(Warnings().empty());
}

TEST_F(MountChips, OfEveryKnownEepromPartAreThere) {
    const std::vector<std::pair<std::string, size_t>> parts = {
        {"24c01", 128},    {"24c02", 256},    {"24c04", 512},  {"24c08", 1024},
        {"24c16", 2048},   {"24c32", 4096},   {"24c64", 8192}, {"24c128", 16384},
        {"24c256", 32768}, {"24c512", 65536}, {"spd", 256},
    };
    for (const auto& [part, size] : parts) {
        SCOPED_TRACE(part);
        std::filesystem::remove_all(m_folder.Path() / "state");
        MountOnBus([&, compatible = "atmel," + part](CBlobBuilder& bus) {
            bus.Device("dev", compatible, 0x50).End();
        });
        EXPECT_TRUE(Warnings().empty());
        EXPECT_EQ(std::filesystem::file_size(m_folder.Path() / "state/i2c-0/0x50.bin"), size);
        EXPECT_TRUE(Read(0x50, size > 2048 ? Bytes{0, 0} : Bytes{0}, 1).has_value());
    }
}

TEST_F(MountChips, OfEveryKnownMultiplexerAreThere) {
    const std::vector<std::pair<std::string, size_t>> parts = {
        {"pca9540", 2}, {"pca9542", 2}, {"pca9543", 2}, {"pca9544", 4},
        {"pca9545", 4}, {"pca9546", 4}, {"pca9547", 8}, {"pca9548", 8},
        {"pca9846", 4}, {"pca9847", 8}, {"pca9848", 8}, {"pca9849", 4},
    };
    for (const auto& [part, channels] : parts) {
        SCOPED_TRACE(part);
        MountOnBus([compatible = "nxp," + part](CBlobBuilder& bus) {
            bus.Device("dev", compatible, 0x70).End();
        });
        EXPECT_TRUE(Warnings().empty());
        EXPECT_EQ(NamesAt("/i2c-0/dev-0").size(), channels);
        EXPECT_TRUE(Read(0x70, {}, 1).has_value());
    }
}

TEST_F(MountChips, FollowTheirProperties) {
    const Bytes image = Pattern(1024);
    m_folder.Write("images/i2c-0/0x50.bin", image);
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("dev", "morva,param-eeprom", 0x50).Cells("size", {1024});
        bus.Cells("address-width", {8}).Cells("pagesize", {16}).End();
    });
    // One address byte reaches 256 bytes, so the chip answers four slave addresses.
    for (uint8_t block = 0; block < 4; ++block) {
        EXPECT_EQ(Read(static_cast<uint8_t>(0x50 + block), {5}, 1), Bytes{image[block * 256U + 5]});
    }
    EXPECT_EQ(Read(0x54, {5}, 1), std::nullopt);
    // A write wraps inside its page of 16 bytes.
    ASSERT_TRUE(WriteBus(Bus("i2c-0"), 0x50, {0x0F, 0xA1, 0xA2}));
    const Bytes file = BytesOf(m_folder.Path() / "state/i2c-0/0x50.bin");
    EXPECT_EQ(file[0x0F], 0xA1);
    EXPECT_EQ(file[0x00], 0xA2);
}

TEST_F(MountChips, OfModulesAreReadOnlySerialIds) {
    const Bytes image = Pattern(256);
    m_folder.Write("images/i2c-0/0x50.bin", image);
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
    builder.Cells("phandle", {1}).End();
    builder.Begin("sfp").Text("compatible", "sff,sfp").Cells("i2c-bus", {1}).End();
    Mount(builder);
    EXPECT_EQ(Read(0x50, {250}, 6), Bytes(image.begin() + 250, image.end()));
    EXPECT_FALSE(WriteBus(Bus("i2c-0"), 0x50, {0, 1}));
}

TEST_F(MountChips, BehindMultiplexersAnswerWhenTheWayIsOpen) {
    m_folder.Write("images/i2c-0/0x77/ch2/0x70/ch5/0x51.bin", Bytes(256, 0x5A));
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("top", "nxp,pca9547", 0x77).Begin("i2c@2").Cells("reg", {2});
        bus.Device("low", "nxp,pca9548", 0x70).Begin("i2c@5").Cells("reg", {5});
        bus.Device("dev", "atmel,24c02", 0x51).End().End().End().End().End();
    });
    CI2cDevice& bus = Bus("i2c-0");
    EXPECT_EQ(Read(0x51, {0}, 1), std::nullopt);
    ASSERT_TRUE(WriteBus(bus, 0x77, {0x08 | 2}));  // enable bit and channel
    EXPECT_EQ(Read(0x51, {0}, 1), std::nullopt);
    ASSERT_TRUE(WriteBus(bus, 0x70, {1U << 5}));  // a bit per channel
    EXPECT_EQ(Read(0x51, {0}, 1), Bytes{0x5A});
    ASSERT_TRUE(WriteBus(bus, 0x77, {0x00}));
    EXPECT_EQ(Read(0x51, {0}, 1), std::nullopt);
    EXPECT_TRUE(
        std::filesystem::exists(m_folder.Path() / "state/i2c-0/0x77/ch2/0x70/ch5/0x51.bin"));
}

TEST_F(MountChips, AreNotThereForDevicesThatAreDisabledOrNotKnown) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("off", "atmel,24c02", 0x50).Text("status", "disabled").End();
        bus.Device("gpio", "nxp,pca9555", 0x20).Text("status", "disabled").End();
        bus.Device("any", "acme,any", 0x21).End();
    });
    EXPECT_EQ(Read(0x50, {0}, 1), std::nullopt);
    EXPECT_EQ(Read(0x20, {}, 1), std::nullopt);
    EXPECT_EQ(Read(0x21, {}, 1), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path() / "state"));
}
