// What is read out of sysfs, and what is left out of it.
#include "boards/linux/i2c_sysfs.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "tests/boards/linux/fake_sysfs.h"

namespace {

class I2cSysfs : public testing::Test {
  protected:
    std::vector<unsigned int> Numbers() const {
        std::vector<unsigned int> numbers;
        for (const i2c_adapter_t& adapter : m_fake.Sysfs().Adapters()) {
            numbers.push_back(adapter.number);
        }
        return numbers;
    }

    CFakeSysfs m_fake;
};

TEST_F(I2cSysfs, TellsTheAdaptersInOrderOfTheirNumbers) {
    m_fake.AddAdapter(10, "tenth");
    m_fake.AddAdapter(2, "second");
    m_fake.AddAdapter(0, "SMBus I801 adapter at efa0");
    EXPECT_EQ(Numbers(), (std::vector<unsigned int>{0, 2, 10}));
    const i2c_adapter_t first = m_fake.Sysfs().Adapters().front();
    EXPECT_EQ(first.name, "SMBus I801 adapter at efa0");
    EXPECT_EQ(first.dev_path, "/dev/i2c-0");
    EXPECT_EQ(first.of_node, "");
}

TEST_F(I2cSysfs, TellsTheNodeOfAnAdapter) {
    m_fake.AddAdapter(0, "MPC adapter");
    m_fake.SetNode(0, "../../../../firmware/devicetree/base/soc@ffe000000/i2c@118000");
    m_fake.AddAdapter(1, "MPC adapter");
    m_fake.SetNode(1, "/sys/firmware/devicetree/base/soc@ffe000000/i2c@118100");
    m_fake.AddAdapter(2, "of the root itself");
    m_fake.SetNode(2, "../firmware/devicetree/base");
    m_fake.AddAdapter(3, "of no tree");
    m_fake.SetNode(3, "../firmware/elsewhere");
    const std::vector<i2c_adapter_t> adapters = m_fake.Sysfs().Adapters();
    ASSERT_EQ(adapters.size(), 4U);
    EXPECT_EQ(adapters[0].of_node, "/soc@ffe000000/i2c@118000");
    EXPECT_EQ(adapters[1].of_node, "/soc@ffe000000/i2c@118100");
    EXPECT_EQ(adapters[2].of_node, "/");
    EXPECT_EQ(adapters[3].of_node, "");
}

TEST_F(I2cSysfs, FindsAdaptersBehindLinks) {
    m_fake.Write("../../../devices/pci0/i2c-4/name", "behind a link\n");
    m_fake.Link("i2c-4", "../../../devices/pci0/i2c-4");
    const std::optional<i2c_adapter_t> adapter = m_fake.Sysfs().Adapter(4);
    ASSERT_TRUE(adapter);
    EXPECT_EQ(adapter->name, "behind a link");
    EXPECT_EQ(Numbers(), (std::vector<unsigned int>{4}));
}

TEST_F(I2cSysfs, LeavesOutWhatIsNoAdapter) {
    m_fake.AddAdapter(1, "one");
    m_fake.AddChip("1-0050", "24c02", "at24");
    m_fake.Write("i2c-ELAN0001:00/name", "touchpad\n");
    m_fake.Write("i2c-/name", "no number\n");
    m_fake.Write("i2c-5x/name", "no number\n");
    m_fake.Write("i2c-99999999999/name", "too large a number\n");
    EXPECT_EQ(Numbers(), (std::vector<unsigned int>{1}));
}

TEST_F(I2cSysfs, TakesAnAdapterWithoutANameAsOneWithoutName) {
    std::filesystem::create_directories(m_fake.Devices() / "i2c-1");
    const std::optional<i2c_adapter_t> adapter = m_fake.Sysfs().Adapter(1);
    ASSERT_TRUE(adapter);
    EXPECT_EQ(adapter->name, "");
    EXPECT_FALSE(m_fake.Sysfs().Adapter(2));
}

TEST_F(I2cSysfs, TellsNothingWhereThereIsNone) {
    const CI2cSysfs sysfs("/nowhere");
    EXPECT_TRUE(sysfs.Adapters().empty());
    EXPECT_TRUE(sysfs.DrivenChips().empty());
    EXPECT_FALSE(sysfs.Adapter(0));
    EXPECT_FALSE(sysfs.ChannelOf(0, 0x70, 0));
    EXPECT_EQ(sysfs.DriverOf(0, 0x50), "");
}

TEST_F(I2cSysfs, TellsTheDriverOfAnAddress) {
    m_fake.AddChip("0-0050", "24c02", "at24");
    m_fake.AddChip("0-0051", "24c02", "");
    m_fake.AddChip("12-000a", "expander", "pca953x");
    const CI2cSysfs sysfs = m_fake.Sysfs();
    EXPECT_EQ(sysfs.DriverOf(0, 0x50), "at24");
    EXPECT_EQ(sysfs.DriverOf(0, 0x51), "");
    EXPECT_EQ(sysfs.DriverOf(0, 0x52), "");
    EXPECT_EQ(sysfs.DriverOf(1, 0x50), "");
    EXPECT_EQ(sysfs.DriverOf(12, 0x0A), "pca953x");
}

TEST_F(I2cSysfs, TakesOnlyLinksForDrivers) {
    m_fake.Write("0-0050/driver", "at24\n");
    std::filesystem::create_directories(m_fake.Devices() / "0-0051/driver");
    EXPECT_EQ(m_fake.Sysfs().DriverOf(0, 0x50), "");
    EXPECT_EQ(m_fake.Sysfs().DriverOf(0, 0x51), "");
}

TEST_F(I2cSysfs, TellsTheAdapterOfAMultiplexersChannel) {
    m_fake.AddChip("0-0070", "pca9548", "pca954x");
    m_fake.Link("0-0070/channel-0", "../i2c-4");
    m_fake.Link("0-0070/channel-7", "/sys/devices/somewhere/i2c-11");
    m_fake.Link("0-0070/channel-1", "../elsewhere");
    const CI2cSysfs sysfs = m_fake.Sysfs();
    EXPECT_EQ(sysfs.ChannelOf(0, 0x70, 0), 4U);
    EXPECT_EQ(sysfs.ChannelOf(0, 0x70, 7), 11U);
    EXPECT_EQ(sysfs.ChannelOf(0, 0x70, 1), std::nullopt);
    EXPECT_EQ(sysfs.ChannelOf(0, 0x70, 2), std::nullopt);
    EXPECT_EQ(sysfs.ChannelOf(0, 0x71, 0), std::nullopt);
}

TEST_F(I2cSysfs, TellsTheDriversThatMultiplexersConnectWith) {
    m_fake.AddChip("0-0070", "pca9548", "pca954x");
    m_fake.Link("i2c-4/mux_device", "../0-0070");
    m_fake.AddChip("4-0071", "pca9548", "pca954x");
    m_fake.Link("i2c-9/mux_device", "../4-0071");
    m_fake.Link("i2c-5/mux_device", "../0-0070");
    m_fake.AddChip("9-0050", "24c02", "at24");
    m_fake.AddChip("1-0051", "24c02", "at24");
    const CI2cSysfs sysfs = m_fake.Sysfs();
    EXPECT_EQ(sysfs.DriverAcrossMuxes(0, 0x50), "at24 at 9-0050");
    EXPECT_EQ(sysfs.DriverAcrossMuxes(4, 0x50), "at24 at 9-0050");
    EXPECT_EQ(sysfs.DriverAcrossMuxes(9, 0x70), "pca954x at 0-0070");
    EXPECT_EQ(sysfs.DriverAcrossMuxes(9, 0x50), "") << "its own";
    EXPECT_EQ(sysfs.DriverAcrossMuxes(5, 0x50), "") << "behind another channel";
    EXPECT_EQ(sysfs.DriverAcrossMuxes(0, 0x51), "") << "on another bus";
}

TEST_F(I2cSysfs, IsNotLedRoundInCircles) {
    m_fake.Link("i2c-4/mux_device", "../5-0070");
    m_fake.Link("i2c-5/mux_device", "../4-0070");
    m_fake.AddChip("4-0050", "24c02", "at24");
    EXPECT_EQ(m_fake.Sysfs().DriverAcrossMuxes(0, 0x50), "");
}

TEST_F(I2cSysfs, TellsWhichChipsAreDriven) {
    m_fake.AddChip("1-0050", "24c02", "at24");
    m_fake.AddChip("0-0070", "pca9548", "pca954x");
    m_fake.AddChip("0-0018", "jc42", "jc42");
    m_fake.AddChip("0-0051", "24c02", "");  // no driver is bound
    m_fake.AddChip("0-a050", "of 10 bits", "wide");
    m_fake.AddChip("0-50", "of another form", "odd");
    m_fake.AddChip("x-0050", "of another form", "odd");
    std::vector<std::string> found;
    for (const i2c_driven_chip_t& chip : m_fake.Sysfs().DrivenChips()) {
        found.push_back(std::to_string(chip.bus) + " " + std::to_string(chip.addr) + " " +
                        chip.name + " " + chip.driver);
    }
    EXPECT_EQ(found, (std::vector<std::string>{"0 24 jc42 jc42", "0 112 pca9548 pca954x",
                                               "1 80 24c02 at24"}));
}

TEST_F(I2cSysfs, KnowsTheNumberOfADeviceFile) {
    EXPECT_EQ(CI2cSysfs::NumberOf("/dev/i2c-3"), 3U);
    EXPECT_EQ(CI2cSysfs::NumberOf("/dev/i2c-12"), 12U);
    EXPECT_EQ(CI2cSysfs::NumberOf("/dev/ttyS0"), std::nullopt);
    EXPECT_EQ(CI2cSysfs::NumberOf("/dev/i2c-"), std::nullopt);
    EXPECT_EQ(CI2cSysfs::NumberOf(""), std::nullopt);
}

TEST_F(I2cSysfs, FollowsALinkToADeviceFile) {
    const CTempFolder folder;
    folder.Write("i2c-6", {});
    std::filesystem::create_symlink("i2c-6", folder / "i2c-board");
    EXPECT_EQ(CI2cSysfs::NumberOf((folder / "i2c-board").string()), 6U);
}

TEST_F(I2cSysfs, IsWhereTheEnvironmentSays) {
    ASSERT_EQ(::setenv("SYSFS_PATH", "/somewhere", 1), 0);
    EXPECT_EQ(CI2cSysfs::DefaultRoot(), "/somewhere");
    ASSERT_EQ(::setenv("SYSFS_PATH", "", 1), 0);
    EXPECT_EQ(CI2cSysfs::DefaultRoot(), "/sys");
    ASSERT_EQ(::unsetenv("SYSFS_PATH"), 0);
    EXPECT_EQ(CI2cSysfs::DefaultRoot(), "/sys");
}

}  // namespace
