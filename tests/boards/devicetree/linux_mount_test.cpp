#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "boards/chips/mux_chip.h"
#include "boards/devicetree/linux_hardware.h"
#include "tests/boards/devicetree/mount_test.h"
#include "tests/boards/devicetree/silent_i2c_dev.h"
#include "tests/boards/devicetree/sysfs_folder.h"
#include "tests/support/thrown_text.h"

namespace {

using Names = std::vector<std::string>;

}  // namespace

class LinuxMount : public CMountTest {
  protected:
    ~LinuxMount() override { m_root.reset(); }  // its buses close their devices

    CDiagMenu& MountLive(CBlobBuilder& builder, const CLinuxHardware::CBuses& buses = {}) {
        const std::vector<uint8_t> blob = builder.Finish();
        const CDeviceTree tree("b.dtb", blob);
        CLinuxHardware hardware(tree, m_sysfs.Sysfs(), buses, m_dev);
        m_root = MountBoard(tree, m_folder / "xml", hardware);
        return *m_root;
    }

    // Two buses; the one that is described first has the higher number.
    static void DescribeTwoBuses(CBlobBuilder& builder) {
        builder.Begin("soc").Text("compatible", "simple-bus");
        builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "first");
        builder.Device("eeprom@50", "atmel,24c02", 0x50).End().End();
        builder.Begin("i2c@2").Text("compatible", "acme,i2c").Text("label", "second").End();
        builder.End();
    }

    // A multiplexer at 0x70 of "/i2c@1" with an EEPROM on channel 2 and one on channel 3.
    static void DescribeMux(CBlobBuilder& builder) {
        builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
        builder.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "pca9548-4");
        builder.Begin("i2c@2").Cells("reg", {2});
        builder.Device("a@50", "atmel,24c02", 0x50).End().End();
        builder.Begin("i2c@3").Cells("reg", {3}).Cells("phandle", {9});
        builder.Device("b@54", "atmel,24c02", 0x54).End().End();
        builder.End().End();
    }

    CSysfsFolder m_sysfs;
    CSilentI2cDev m_dev;
};

TEST_F(LinuxMount, FindsTheAdapterOfEachNodeByWhatTheKernelSays) {
    m_sysfs.AddAdapter(3, "MPC adapter (2)", "/soc/i2c@2");
    m_sysfs.AddAdapter(7, "MPC adapter (1)", "/soc/i2c@1");
    m_sysfs.AddAdapter(0, "a USB adapter", "");
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"first", "second"}));
    EXPECT_EQ(DescriptionAt("/first"), "fsl-i2c, /dev/i2c-7, MPC adapter (1)");
    EXPECT_EQ(DescriptionAt("/second"), "acme,i2c, /dev/i2c-3, MPC adapter (2)");
    EXPECT_EQ(DescriptionAt("/first/eeprom@50"), "atmel,24c02 at 0x50: 256 bytes");
    EXPECT_EQ(m_dev.opened, (Names{"/dev/i2c-7", "/dev/i2c-3"}));
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(LinuxMount, TakesTheDeviceThatItIsToldInstead) {
    m_sysfs.AddAdapter(7, "MPC adapter (1)", "/soc/i2c@1");
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder, {{"/soc/i2c@1", "/dev/i2c-0"}, {"/soc/i2c@2", "/dev/i2c-12"}});
    EXPECT_EQ(DescriptionAt("/first"), "fsl-i2c, /dev/i2c-0");
    EXPECT_EQ(DescriptionAt("/second"), "acme,i2c, /dev/i2c-12");
    // Whether they are adapters is seen before anything is mounted.
    EXPECT_EQ(m_dev.opened, (Names{"/dev/i2c-0", "/dev/i2c-12", "/dev/i2c-0", "/dev/i2c-12"}));
}

TEST_F(LinuxMount, RefusesABusThatTheDescriptionHasNot) {
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    EXPECT_EQ(ThrownText([&] {
                  MountLive(builder, {{"/soc/i2c@9", "/dev/i2c-0"}});
              }),
              "--bus /soc/i2c@9=/dev/i2c-0: the description has no node /soc/i2c@9");
}

// Its locks, and which channels are open behind it, are kept by the one bus of the tree.
TEST_F(LinuxMount, MakesOneBusOfAnAdapterThatIsToldToBeAnothers) {
    m_sysfs.AddAdapter(3, "MPC adapter (2)", "/soc/i2c@2");
    m_sysfs.AddAdapter(7, "MPC adapter (1)", "/soc/i2c@1");
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder, {{"/soc/i2c@1", "/dev/i2c-3"}});
    EXPECT_EQ(DescriptionAt("/first"), "fsl-i2c, /dev/i2c-3, MPC adapter (2)");
    EXPECT_EQ(NamesAt("/"), Names{"first"});
    EXPECT_EQ(Warnings(), Names{"left out: /soc/i2c@2: its adapter was told to be the bus of "
                                "/soc/i2c@1, with --bus\n"});
}

TEST_F(LinuxMount, ExchangesTwoAdapters) {
    m_sysfs.AddAdapter(3, "MPC adapter (2)", "/soc/i2c@2");
    m_sysfs.AddAdapter(7, "MPC adapter (1)", "/soc/i2c@1");
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder, {{"/soc/i2c@1", "/dev/i2c-3"}, {"/soc/i2c@2", "/dev/i2c-7"}});
    EXPECT_EQ(DescriptionAt("/first"), "fsl-i2c, /dev/i2c-3, MPC adapter (2)");
    EXPECT_EQ(DescriptionAt("/second"), "acme,i2c, /dev/i2c-7, MPC adapter (1)");
}

TEST_F(LinuxMount, RefusesAnAdapterThatIsToldTwice) {
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    EXPECT_EQ(ThrownText([&] {
                  MountLive(builder, {{"/soc/i2c@1", "/dev/i2c-0"}, {"/soc/i2c@2", "/dev/i2c-0"}});
              }),
              "--bus /soc/i2c@2=/dev/i2c-0: that adapter is the bus of /soc/i2c@1 already");
}

TEST_F(LinuxMount, SaysWhichBusItWasToldInVain) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("status", "disabled").End();
    builder.Begin("i2c@2").Text("compatible", "fsl-i2c").End();
    MountLive(builder, {{"/i2c@1", "/dev/i2c-0"}, {"/i2c@2", "/dev/i2c-1"}});
    EXPECT_EQ(NamesAt("/"), Names{"i2c@2"});
    EXPECT_EQ(Warnings(),
              Names{"--bus /i2c@1=/dev/i2c-0: not used, the node is left out (/left-out tells "
                    "why), or is no bus, as a channel of a multiplexer\n"});
}

TEST_F(LinuxMount, RefusesABusThatIsNoAdapter) {
    m_dev.missing = {"/dev/i2c-5"};
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    EXPECT_EQ(ThrownText([&] {
                  MountLive(builder, {{"/soc/i2c@1", "/dev/i2c-5"}});
              }),
              "--bus /soc/i2c@1=/dev/i2c-5: /dev/i2c-5 cannot be opened: ENOENT (No such file or "
              "directory); is the kernel module i2c-dev loaded?");
}

TEST_F(LinuxMount, TakesANodesPathAsItMayBeTyped) {
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder, {{"/soc/i2c@1/", "/dev/i2c-5"}});
    EXPECT_EQ(DescriptionAt("/first"), "fsl-i2c, /dev/i2c-5");
    CBlobBuilder again;
    DescribeTwoBuses(again);
    EXPECT_EQ(ThrownText([&] {
                  MountLive(again, {{"/soc/i2c@1", "/dev/i2c-5"}, {"/soc/i2c@1/", "/dev/i2c-6"}});
              }),
              "--bus /soc/i2c@1/=/dev/i2c-6: the bus of that node is /dev/i2c-5 already");
}

// As those that are switched by GPIOs are described: they stand on no bus.
TEST_F(LinuxMount, MountsTheChannelsOfAMultiplexerThatIsNotOnItsBus) {
    m_sysfs.AddAdapter(4, "i2c-0-mux (chan_id 0)", "/i2c-mux/i2c@0");
    CBlobBuilder builder;
    builder.Begin("aliases").Text("i2c7", "/i2c-mux/i2c@0").End();
    builder.Begin("i2c-mux").Text("compatible", "i2c-mux-gpio");
    builder.Begin("i2c@0").Cells("reg", {0});
    builder.Device("a@50", "atmel,24c02", 0x50).End().End();
    builder.Begin("i2c@1").Cells("reg", {1});
    builder.Device("b@50", "atmel,24c02", 0x50).End().End();
    builder.Begin("i2c@2").Cells("reg", {2}).End().End();
    MountLive(builder, {{"/i2c-mux/i2c@1", "/dev/i2c-9"}});
    EXPECT_EQ(NamesAt("/"), (Names{"i2c-7", "i2c@1"}));
    EXPECT_EQ(DescriptionAt("/i2c-7"), "bus, /dev/i2c-4, i2c-0-mux (chan_id 0)");
    EXPECT_EQ(DescriptionAt("/i2c-7/a@50"), "atmel,24c02 at 0x50: 256 bytes");
    EXPECT_EQ(DescriptionAt("/i2c@1/b@50"), "atmel,24c02 at 0x50: 256 bytes");
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(LinuxMount, MountsTheBusesThatTheKernelMakesOfAChipThatIsNotKnown) {
    m_sysfs.AddAdapter(0, "MPC adapter", "/i2c@1");
    m_sysfs.AddAdapter(5, "i2c-0-mux (chan_id 0)", "/i2c@1/mux@70/i2c@0");
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
    builder.Device("mux@70", "acme,mux", 0x70);
    builder.Begin("i2c@0").Cells("reg", {0});
    builder.Device("a@50", "atmel,24c02", 0x50).End().End();
    builder.Begin("i2c@1").Cells("reg", {1});
    builder.Device("b@50", "atmel,24c02", 0x50).End().End();
    builder.End().End();
    MountLive(builder);
    EXPECT_EQ(DescriptionAt("/i2c-0/mux@70/i2c@0"), "bus, /dev/i2c-5, i2c-0-mux (chan_id 0)");
    EXPECT_EQ(DescriptionAt("/i2c-0/mux@70/i2c@0/a@50"), "atmel,24c02 at 0x50: 256 bytes");
    EXPECT_EQ(DescriptionAt("/i2c-0/mux@70/i2c@1/b@50"),
              "atmel,24c02: below a device that is not known");
    EXPECT_EQ(m_dev.opened, (Names{"/dev/i2c-0", "/dev/i2c-5"}));
}

TEST_F(LinuxMount, NeverGuessesAnAdapter) {
    m_sysfs.AddAdapter(0, "MPC adapter", "");
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder);
    EXPECT_EQ(NamesAt("/"), Names{});
    EXPECT_EQ(m_dev.opened, Names{});
    EXPECT_EQ(Warnings(),
              Names{"left out: /soc/i2c@1: the kernel has no I2C adapter for this node; which one "
                    "it is can be told with --bus /soc/i2c@1=/dev/i2c-N\n"});
    // What no driver of the kernel took may be anything.
    EXPECT_EQ(LeftOut().at(1), "/soc/i2c@2: \"acme,i2c\" is not known\n");
}

TEST_F(LinuxMount, LeavesOutABusThatCannotBeOpened) {
    m_sysfs.AddAdapter(7, "MPC adapter", "/soc/i2c@1");
    m_sysfs.AddAdapter(8, "MPC adapter", "/soc/i2c@2");
    m_dev.missing = {"/dev/i2c-7"};
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder);
    EXPECT_EQ(NamesAt("/"), Names{"second"});
    ASSERT_EQ(Warnings().size(), 1U);
    EXPECT_EQ(Warnings()[0].find("left out: /soc/i2c@1: "), 0U) << Warnings()[0];
    EXPECT_NE(Warnings()[0].find("/dev/i2c-7"), std::string::npos) << Warnings()[0];
    EXPECT_NE(Warnings()[0].find("No such file or directory"), std::string::npos) << Warnings()[0];
}

TEST_F(LinuxMount, ShowsWhichChipsAreTheKernels) {
    m_sysfs.AddAdapter(7, "MPC adapter", "/soc/i2c@1");
    m_sysfs.AddDriver(7, 0x50, "at24", "24c02");
    CBlobBuilder builder;
    DescribeTwoBuses(builder);
    MountLive(builder);
    EXPECT_EQ(DescriptionAt("/first/eeprom@50"),
              "atmel,24c02 at 0x50 (the kernel's: driver at24): 256 bytes");
}

TEST_F(LinuxMount, DrivesAMultiplexerThatTheKernelLeavesAlone) {
    m_sysfs.AddAdapter(0, "MPC adapter", "/i2c@1");
    CBlobBuilder builder;
    DescribeMux(builder);
    MountLive(builder);
    EXPECT_NE(dynamic_cast<CMuxChip*>(FindByPath(*m_root, "/i2c-0/pca9548-4")), nullptr);
    EXPECT_EQ(DescriptionAt("/i2c-0/pca9548-4/ch2/a@50"), "atmel,24c02 at 0x50: 256 bytes");
    EXPECT_EQ(m_dev.opened, Names{"/dev/i2c-0"});
}

// On the bus the kernel has chips at the same addresses.
TEST_F(LinuxMount, TakesNothingBehindAMultiplexerOfItsOwnForTheKernels) {
    m_sysfs.AddAdapter(0, "MPC adapter", "/i2c@1");
    m_sysfs.AddDriver(0, 0x50, "at24", "24c02");
    m_sysfs.AddDriver(0, 0x71, "pca954x", "pca9548");
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
    builder.Device("mux@70", "nxp,pca9548", 0x70).Begin("i2c@2").Cells("reg", {2});
    builder.Device("a@50", "atmel,24c02", 0x50).End();
    builder.Device("low@71", "nxp,pca9548", 0x71).Text("label", "low-1").End();
    builder.End().End().End();
    MountLive(builder);
    EXPECT_EQ(DescriptionAt("/i2c-0/mux@70-0/ch2/a@50"), "atmel,24c02 at 0x50: 256 bytes");
    EXPECT_NE(dynamic_cast<CMuxChip*>(FindByPath(*m_root, "/i2c-0/mux@70-0/ch2/low-1")), nullptr);
}

TEST_F(LinuxMount, FindsPortsWhereTheProcessorHasThem) {
    CBlobBuilder builder;
    builder.Cells("#address-cells", {1}).Cells("#size-cells", {1});
    builder.Begin("soc").Cells("ranges", {0, 0xFE00'0000, 0x10'0000});
    builder.Cells("#address-cells", {1}).Cells("#size-cells", {1});
    builder.Begin("io@2000").Cells("reg", {0x2000, 4}).End().End();
    const std::vector<uint8_t> blob = builder.Finish();
    const CDeviceTree tree("b.dtb", blob);
    CLinuxHardware hardware(tree, m_sysfs.Sysfs(), {}, m_dev);
    const ports_file_t ports = hardware.PortsFile(*tree.NodeAt("/soc/io@2000"), 0x2000, 4);
    EXPECT_EQ(ports.file, "/dev/mem");
    EXPECT_EQ(ports.offset, 0xFE00'2000U);
}

TEST_F(LinuxMount, LeavesOutAChannelWhoseAdapterIsToldToBeAnotherBus) {
    m_sysfs.AddAdapter(0, "MPC adapter", "/i2c@1");
    m_sysfs.AddDriver(0, 0x70, "pca954x", "pca9548");
    m_sysfs.AddChannel(0, 0x70, 2, 11);
    m_sysfs.AddChannel(0, 0x70, 3, 12);
    CBlobBuilder builder;
    DescribeMux(builder);
    builder.Begin("i2c@8").Text("compatible", "fsl-i2c").Text("label", "other").End();
    MountLive(builder, {{"/i2c@8", "/dev/i2c-11"}});
    EXPECT_EQ(NamesAt("/i2c-0/pca9548-4"), Names{"ch3"});
    EXPECT_EQ(DescriptionAt("/other"), "fsl-i2c, /dev/i2c-11");
}

TEST_F(LinuxMount, TakesTheChannelsOfTheKernelsMultiplexerForBuses) {
    m_sysfs.AddAdapter(0, "MPC adapter", "/i2c@1");
    m_sysfs.AddDriver(0, 0x70, "pca954x", "pca9548");
    m_sysfs.AddChannel(0, 0x70, 2, 11);
    m_sysfs.AddChannel(0, 0x70, 3, 12);
    m_sysfs.AddAdapter(11, "i2c-0-mux (chan_id 2)", "/i2c@1/mux@70/i2c@2");
    m_sysfs.AddDriver(11, 0x50, "at24", "24c02");
    CBlobBuilder builder;
    DescribeMux(builder);
    builder.Begin("cage").Text("compatible", "sff,sfp").Cells("i2c-bus", {9}).End();
    MountLive(builder);
    EXPECT_EQ(NamesAt("/i2c-0"), Names{"pca9548-4"});
    EXPECT_EQ(DescriptionAt("/i2c-0/pca9548-4"),
              "nxp,pca9548 at 0x70 (the kernel's: driver pca954x): multiplexer");
    EXPECT_EQ(NamesAt("/i2c-0/pca9548-4"), (Names{"ch2", "ch3"}));
    EXPECT_EQ(DescriptionAt("/i2c-0/pca9548-4/ch2"),
              "channel 2, /dev/i2c-11, i2c-0-mux (chan_id 2)");
    EXPECT_EQ(DescriptionAt("/i2c-0/pca9548-4/ch2/a@50"),
              "atmel,24c02 at 0x50 (the kernel's: driver at24): 256 bytes");
    EXPECT_EQ(DescriptionAt("/i2c-0/pca9548-4/ch3/b@54"), "atmel,24c02 at 0x54: 256 bytes");
    EXPECT_EQ(NamesAt("/i2c-0/pca9548-4/ch3"), (Names{"b@54", "cage"}));
    EXPECT_EQ(m_dev.opened, (Names{"/dev/i2c-0", "/dev/i2c-11", "/dev/i2c-12"}));
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(LinuxMount, LeavesOutAChannelThatTheKernelHasNot) {
    m_sysfs.AddAdapter(0, "MPC adapter", "/i2c@1");
    m_sysfs.AddDriver(0, 0x70, "pca954x", "pca9548");
    m_sysfs.AddChannel(0, 0x70, 3, 12);
    CBlobBuilder builder;
    DescribeMux(builder);
    MountLive(builder);
    EXPECT_EQ(NamesAt("/i2c-0/pca9548-4"), Names{"ch3"});
    EXPECT_EQ(Warnings(), Names{"left out: /i2c@1/mux@70/i2c@2: the kernel has no adapter for "
                                "channel 2\n"});
}

TEST_F(LinuxMount, WarnsOfAnAddressThatAnswersAlsoInFrontOfTheKernelsMultiplexer) {
    m_sysfs.AddAdapter(0, "MPC adapter", "/i2c@1");
    m_sysfs.AddDriver(0, 0x70, "pca954x", "pca9548");
    m_sysfs.AddChannel(0, 0x70, 0, 1);
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c");
    builder.Device("near@50", "atmel,24c02", 0x50).End();
    builder.Device("mux@70", "nxp,pca9548", 0x70).Begin("i2c@0").Cells("reg", {0});
    builder.Device("far@50", "atmel,24c02", 0x50).End().End().End().End();
    MountLive(builder);
    EXPECT_EQ(Warnings(),
              Names{"/i2c@1/mux@70/i2c@0/far@50: address 0x50 is also that of /i2c@1/near@50, "
                    "which is nearer to the root bus: both answer while the path is open\n"});
}
