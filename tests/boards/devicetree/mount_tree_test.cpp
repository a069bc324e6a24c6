// Where nodes of a description stand in the tree.
#include "tests/boards/devicetree/mount_test.h"

namespace {

using Names = std::vector<std::string>;
using namespace std::string_view_literals;

class MountTree : public CMountTest {};

}  // namespace

TEST_F(MountTree, HasTheModelAsItsRootsDescription) {
    CBlobBuilder builder;
    builder.Text("model", "TESTBOARD");
    EXPECT_STREQ(Mount(builder).GetDescription(), "TESTBOARD");
    EXPECT_EQ(NamesAt("/"), Names{"sim"});
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MountTree, ShowsBusesWhereverTheyAreHeld) {
    CBlobBuilder builder;
    builder.Begin("soc").Text("compatible", "simple-bus").Begin("group");
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "i2c-0").End();
    builder.End().End();
    builder.Begin("i2c@2").Text("compatible", "acme,new-i2c\0fsl-i2c"sv).End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c-0", "i2c@2", "sim"}));
    EXPECT_EQ(DescriptionAt("/i2c-0"), "fsl-i2c, simulated, 100000 Hz");
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MountTree, RunsABusAtItsClock) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Cells("clock-frequency", {400000}).End();
    Mount(builder);
    EXPECT_EQ(DescriptionAt("/i2c@1"), "fsl-i2c, simulated, 400000 Hz");
}

TEST_F(MountTree, ShowsEepromsAndDevicesThatHaveNoDriver) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("eeprom@50", "atmel,24c64", 0x50).Text("label", "fru").End();
        bus.Device("gpio@20", "acme,gpio", 0x20).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), (Names{"fru", "gpio@20"}));
    EXPECT_EQ(DescriptionAt("/i2c-0/fru"), "atmel,24c64 at 0x50: 8192 bytes");
    EXPECT_EQ(DescriptionAt("/i2c-0/gpio@20"), "acme,gpio at 0x20: no driver, plain slave");
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MountTree, ShowsEveryChannelOfAMultiplexerAndWhatHangsOnIt) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9544", 0x70).Text("label", "top");
        bus.Begin("i2c@2").Cells("reg", {2});
        bus.Device("mux@71", "nxp,pca9543", 0x71).Text("label", "low");
        bus.Begin("i2c@1").Cells("reg", {1});
        bus.Device("eeprom@50", "atmel,24c02", 0x50).End();
        bus.End().End().End().End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/top-0"), (Names{"ch0", "ch1", "ch2", "ch3"}));
    EXPECT_EQ(NamesAt("/i2c-0/top-0/ch2"), Names{"low-0"});
    EXPECT_EQ(NamesAt("/i2c-0/top-0/ch2/low-0"), (Names{"ch0", "ch1"}));
    EXPECT_EQ(NamesAt("/i2c-0/top-0/ch2/low-0/ch0"), Names{});
    EXPECT_EQ(NamesAt("/i2c-0/top-0/ch2/low-0/ch1"), Names{"eeprom@50"});
    EXPECT_EQ(DescriptionAt("/i2c-0/top-0/ch2"), "channel 2");
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MountTree, ShowsAModuleOnTheChannelThatItNames) {
    CBlobBuilder builder;
    // Both stand before the bus that they name.
    builder.Begin("sfp-left").Text("compatible", "sff,sfp").Cells("i2c-bus", {9}).End();
    builder.Begin("sfp-right").Text("compatible", "sff,sfp").Cells("i2c-bus", {8}).End();
    builder.Begin("i2c@2").Text("compatible", "fsl-i2c").Text("label", "i2c-1");
    builder.Cells("phandle", {8}).End();
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "i2c-0");
    builder.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
    builder.Begin("i2c@7").Cells("reg", {7}).Cells("phandle", {9}).End().End().End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch7"), Names{"sfp-left"});
    EXPECT_EQ(DescriptionAt("/i2c-0/mux-0/ch7/sfp-left"), "sff,sfp at 0x50: 256 bytes, read-only");
    EXPECT_EQ(NamesAt("/i2c-1"), Names{"sfp-right"});
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MountTree, NotesABusThatDoesNotSayWhichItIs) {
    CBlobBuilder builder;
    builder.Begin("i2c").Text("compatible", "fsl-i2c");
    builder.Device("eeprom@50", "atmel,24c02", 0x50).End().End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/i2c"), Names{"eeprom@50"});
    EXPECT_EQ(m_log.Texts(LW_INFO),
              Names{"/i2c: has no property \"reg\", which controller it is stays open\n"});
}

TEST_F(MountTree, ShowsUnknownDevicesWithANote) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("codec@1a", "acme,codec\0acme,sound"sv, 0x1A).End();
        bus.Begin("bare@1b").Cells("reg", {0x1B}).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), (Names{"codec@1a", "bare@1b"}));
    EXPECT_EQ(DescriptionAt("/i2c-0/codec@1a"), "acme,codec at 0x1a: no driver, plain slave");
    EXPECT_EQ(DescriptionAt("/i2c-0/bare@1b"), "device at 0x1b: no driver, plain slave");
    EXPECT_EQ(m_log.Texts(LW_INFO).at(0),
              "/i2c@100/codec@1a: \"acme,codec\" is not known, mounted as a plain slave\n");
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MountTree, PutsAnUnknownDeviceOfSeveralAddressesAtTheFirst) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Begin("hdmi@3d").Text("compatible", "acme,hdmi").Cells("reg", {0x3D, 0x4D, 0x2D}).End();
    });
    EXPECT_EQ(DescriptionAt("/i2c-0/hdmi@3d"), "acme,hdmi at 0x3d: no driver, plain slave");
    EXPECT_EQ(Warnings(), Names{});
}

// Where other masters reach the controller, as a management controller's firmware does.
TEST_F(MountTree, LeavesOutTheAddressThatTheControllerHasAsASlave) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Begin("ipmb@10").Text("compatible", "ipmb-dev").Cells("reg", {0x4000'0010}).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), Names{});
    EXPECT_EQ(Warnings(), Names{});
    EXPECT_EQ(LeftOut(), Names{"/i2c@100/ipmb@10: \"ipmb-dev\" is an address of the controller "
                               "itself, as a slave\n"});
}

TEST_F(MountTree, ShowsWhatHangsBelowAnUnknownDevice) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "acme,mux", 0x70).Begin("i2c@0").Cells("reg", {0});
        bus.Device("eeprom@50", "atmel,24c02", 0x50).End().End().End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/mux@70"), Names{"i2c@0"});
    EXPECT_EQ(DescriptionAt("/i2c-0/mux@70/i2c@0/eeprom@50"),
              "atmel,24c02: below a device that is not known");
}

TEST_F(MountTree, FindsBusesBelowAnUnknownContainer) {
    CBlobBuilder builder;
    builder.Begin("fpga@0").Text("compatible", "acme,fpga");
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").End().End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c@1", "sim"}));
    EXPECT_EQ(DescriptionAt("/i2c@1"), "fsl-i2c, simulated, 100000 Hz");
    EXPECT_EQ(LeftOut(), Names{"/fpga@0: \"acme,fpga\" is not known\n"});
}

TEST_F(MountTree, TakesAControllerThatIsNotKnownByItsGenericName) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "acme,i2c");
    builder.Device("a@50", "atmel,24c02", 0x50).End().End();
    builder.Begin("i2c-bus").Text("compatible", "acme,bitbang").End();
    builder.Begin("i2c-thing@2").Text("compatible", "acme,thing").End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c@1", "i2c-bus", "sim"}));
    EXPECT_EQ(NamesAt("/i2c@1"), Names{"a@50"});
}

TEST_F(MountTree, NamesBusesByTheirAliases) {
    CBlobBuilder builder;
    builder.Begin("aliases")
        .Text("i2c3", "/soc/i2c@1")
        .Text("i2c7", "/soc/i2c@1")
        .Text("i2c0", "/soc/i2c@2")
        .Text("i2c04", "/soc/i2c@3")
        .Text("serial0", "/soc/i2c@3")
        .End();
    builder.Begin("soc").Text("compatible", "simple-bus");
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").End();
    builder.Begin("i2c@2").Text("compatible", "fsl-i2c").Text("label", "slow").End();
    builder.Begin("i2c@3").Text("compatible", "fsl-i2c").End().End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c-3", "slow", "i2c@3", "sim"}));
}

TEST_F(MountTree, LeavesOutWhatIsDisabledAndListsItOnRequest) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("status", "disabled");
    builder.Device("eeprom@50", "atmel,24c02", 0x50).End().End();
    builder.Begin("i2c@2").Text("compatible", "fsl-i2c").Text("status", "okay");
    builder.Device("a@50", "atmel,24c02", 0x50).Text("status", "disabled").End();
    builder.Device("b@50", "atmel,24c64", 0x50).Text("status", "ok").End().End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c@2", "sim"}));
    EXPECT_EQ(NamesAt("/i2c@2"), Names{"b@50"});
    EXPECT_EQ(DescriptionAt("/i2c@2/b@50"), "atmel,24c64 at 0x50: 8192 bytes");
    EXPECT_EQ(Warnings(), Names{});
    EXPECT_EQ(LeftOut(), (Names{"/i2c@1: \"fsl-i2c\" is disabled\n",
                                "/i2c@2/a@50: \"atmel,24c02\" is disabled\n"}));
    EXPECT_EQ(m_log.Texts(LW_INFO).back(),
              "2 nodes of the description are not in the tree: see /left-out\n");
}

TEST_F(MountTree, ListsWhatCannotBeMountedBesideTheWarning) {
    MountOnBus([](CBlobBuilder& bus) { bus.Begin("bad@50").End(); });
    ASSERT_EQ(Warnings().size(), 1U);
    EXPECT_EQ("left out: " + LeftOut().at(0), Warnings()[0]);
}

TEST_F(MountTree, SaysThatNothingIsLeftOut) {
    MountOnBus([](CBlobBuilder&) {});
    EXPECT_EQ(LeftOut(), Names{"nothing: the tree has all of the description\n"});
}

TEST_F(MountTree, NamesSiblingsApart) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("eeprom@50", "atmel,24c02", 0x50).Text("label", "module eeprom").End();
        bus.Device("eeprom@51", "atmel,24c02", 0x51).Text("label", "module/eeprom").End();
        bus.Device("eeprom@52", "atmel,24c02", 0x52).Text("label", "probe").End();
    });
    // A bus has a command "probe" of its own.
    EXPECT_EQ(NamesAt("/i2c-0"), (Names{"module_eeprom", "module_eeprom-2", "probe-2"}));
}

TEST_F(MountTree, NamesBusesApartWhereverTheyAre) {
    CBlobBuilder builder;
    for (const std::string name : {"fpga@0", "fpga@1"}) {
        builder.Begin(name).Text("compatible", "acme,fpga").Begin("i2c@1");
        builder.Text("compatible", "fsl-i2c").Device("eeprom@50", "atmel,24c02", 0x50).End();
        builder.End().End();
    }
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c@1", "i2c@1-2", "sim"}));
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path() / "state/i2c@1/0x50.bin"));
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path() / "state/i2c@1-2/0x50.bin"));
}

TEST_F(MountTree, KeepsTheNameOfTheSimulationFree) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "sim").End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"sim-2", "sim"}));
}

TEST_F(MountTree, ShowsTheContentsOfEveryMemoryBelowTheSimulation) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("eeprom@50", "atmel,24c02", 0x50).Text("label", "fru").End();
        bus.Device("gpio@20", "nxp,pca9555", 0x20).End();
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c@3").Cells("reg", {3});
        bus.Device("eeprom@50", "atmel,24c02", 0x50).Text("label", "fru").End().End().End();
    });
    Names arrays;
    for (const CDiagObj* child : m_root->FindChild("sim")->GetChildren()) {
        if (child->GetNodeType() == TARRAY_A) {
            arrays.emplace_back(child->GetName());
        }
    }
    EXPECT_EQ(arrays, (Names{"i2c-0.fru", "i2c-0.mux-0.ch3.fru"}));
}
