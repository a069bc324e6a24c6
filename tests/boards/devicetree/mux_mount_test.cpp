// Multiplexers of the description: names, channels, depth, and addresses that
// are seen through them.
#include "i2c/diag_i2c_switch.h"
#include "tests/boards/devicetree/eeprom_mount_test.h"

namespace {

using Names = std::vector<std::string>;

class MuxMount : public CEepromMountTest {
  protected:
    CDiagI2cSwitch& Switch(const std::string& path) {
        return dynamic_cast<CDiagI2cSwitch&>(NodeAt(*m_root, path));
    }
    // The names of two multiplexers at 0x70 and 0x71 with these labels.
    Names NamesOf(const std::string& first, const std::string& second) {
        MountOnBus([&](CBlobBuilder& bus) {
            bus.Device("a", "nxp,pca9548", 0x70).Text("label", first).End();
            bus.Device("b", "nxp,pca9548", 0x71).Text("label", second).End();
        });
        return NamesAt("/i2c-0");
    }
};

}  // namespace

TEST_F(MuxMount, TakesItsNumberFromTheLabel) {
    EXPECT_EQ(NamesOf("pca9547-0", "pca9547-7"), (Names{"pca9547-0", "pca9547-7"}));
    EXPECT_EQ(DescriptionAt("/i2c-0/pca9547-7"), "nxp,pca9548 at 0x71: multiplexer 7");
}

TEST_F(MuxMount, TakesTheFirstFreeNumberWithoutOne) {
    EXPECT_EQ(NamesOf("mux", "mux"), (Names{"mux-0", "mux-1"}));
    EXPECT_EQ(NamesOf("mux-0", "mux"), (Names{"mux-0", "mux-1"}));
    EXPECT_EQ(NamesOf("mux-1", "mux"), (Names{"mux-1", "mux-0"}));
    EXPECT_EQ(NamesOf("mux-1", "mux-1"), (Names{"mux-1", "mux-0"}));
}

TEST_F(MuxMount, LeavesTheNamesOfItsSiblingsAlone) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("eeprom@50", "atmel,24c02", 0x50).Text("label", "mux-0").End();
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux").End();
        bus.Device("eeprom@51", "atmel,24c02", 0x51).Text("label", "mux-1").End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), (Names{"mux-0", "mux-1", "mux-1-2"}));
}

TEST_F(MuxMount, KnowsTheChannelThatLeadsToIt) {
    MountBehindThree("atmel,24c02", 256);
    EXPECT_EQ(Switch("/i2c-0/top-0").GetUpStreamChannel(), -1);
    EXPECT_EQ(Switch("/i2c-0/top-0/ch1/middle-0").GetUpStreamChannel(), 1);
    EXPECT_EQ(Switch("/i2c-0/top-0/ch1/middle-0/ch2/low-0").GetUpStreamChannel(), 2);
}

TEST_F(MuxMount, GoesAsDeepAsTheDescription) {
    constexpr uint8_t LEVELS = 7;
    m_file = "i2c-0";
    std::string path = "/i2c-0";
    MountOnBus([&](CBlobBuilder& bus) {
        for (uint8_t level = 0; level < LEVELS; ++level) {
            bus.Device("mux", "nxp,pca9548", 0x70U + level).Text("label", "mux");
            bus.Begin("i2c@7").Cells("reg", {7});
            m_file /= "0x7" + std::to_string(level);
            m_file /= "ch7";
            path += "/mux-0/ch7";
        }
        bus.Device("dev", "atmel,24c02", 0x50).End();
        for (uint8_t level = 0; level < LEVELS; ++level) {
            bus.End().End();
        }
    });
    EXPECT_EQ(Warnings(), Names{});
    m_path = path + "/dev";
    m_file /= "0x50.bin";
    m_held = Pattern(256);
    Refill();
    EXPECT_EQ(Call("read", uint32_t{17}, uint32_t{40}).Code(), MSG_SUCCESS);
    EXPECT_EQ(m_log.Joined(LW_PRINT), Dump(17, 40));
    EXPECT_FALSE(Answers());
}

TEST_F(MuxMount, FindsItsChannelsInTheNodeThatIsThereForThem) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("gpio").Text("compatible", "acme,gpio").End();
        bus.Begin("i2c-mux").Begin("i2c@4").Cells("reg", {4});
        bus.Device("dev", "atmel,24c02", 0x50).End().End().End();
        bus.End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch4"), Names{"dev"});
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MuxMount, LeavesAChannelWithoutANumberOut) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c").Device("a", "atmel,24c02", 0x50).End().End();
        bus.Begin("i2c@1").Cells("reg", {1}).Device("b", "atmel,24c02", 0x50).End().End();
        bus.End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch1"), Names{"b"});
    EXPECT_EQ(Warnings(), Names{"left out: /i2c@100/mux@70/i2c: property \"reg\" is missing, "
                                "should be one cell of 4 bytes\n"});
}

TEST_F(MuxMount, LeavesADisabledChannelEmpty) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c@1").Cells("reg", {1}).Text("status", "disabled");
        bus.Device("a", "atmel,24c02", 0x50).End().End();
        bus.Begin("other@1").Cells("reg", {1}).Device("b", "atmel,24c02", 0x50).End().End();
        bus.End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch1"), Names{"b"});
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MuxMount, RefusesOneAddressTwiceOnAChannel) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c@1").Cells("reg", {1});
        bus.Device("large", "atmel,24c08", 0x54).End();
        bus.Device("inside", "atmel,24c04", 0x56).End();
        bus.Device("beside", "atmel,24c04", 0x50).End();
        bus.End().End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch1"), (Names{"large", "beside"}));
    EXPECT_EQ(Warnings(), Names{"left out: /i2c@100/mux@70/i2c@1/inside: address 0x56 is already "
                                "taken by /i2c@100/mux@70/i2c@1/large\n"});
}

TEST_F(MuxMount, TakesAllAddressesOfAChipOrNone) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("last", "atmel,24c02", 0x57).End();
        bus.Device("large", "atmel,24c16", 0x50).End();
        bus.Device("first", "atmel,24c02", 0x50).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), (Names{"last", "first"}));
    EXPECT_EQ(Warnings(), Names{"left out: /i2c@100/large: address 0x57 is already taken by "
                                "/i2c@100/last\n"});
}

TEST_F(MuxMount, WarnsOfAnAddressThatAnswersNearerToTheRootToo) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("top@70", "nxp,pca9548", 0x70).Text("label", "top");
        bus.Begin("i2c@1").Cells("reg", {1});
        bus.Device("low@71", "nxp,pca9548", 0x71).Text("label", "low");
        bus.Begin("i2c@2").Cells("reg", {2});
        bus.Device("as-root", "atmel,24c02", 0x50).End();
        bus.Device("as-mux", "acme,any", 0x70).End();
        bus.Device("own", "atmel,24c02", 0x52).End();
        bus.End().End();
        bus.Device("on-the-way", "atmel,24c02", 0x52).End();
        bus.End().End();
        // Stands last, but is there from the start.
        bus.Device("root", "atmel,24c02", 0x50).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/top-0/ch1/low-0/ch2"), (Names{"as-root", "as-mux", "own"}));
    const std::string at = "/i2c@100/top@70/i2c@1/low@71/i2c@2/";
    const std::string rest =
        ", which is nearer to the root bus: both answer while the path is "
        "open\n";
    EXPECT_EQ(
        Warnings(),
        (Names{at + "as-root: address 0x50 is also that of /i2c@100/root" + rest,
               at + "own: address 0x52 is also that of /i2c@100/top@70/i2c@1/on-the-way" + rest,
               at + "as-mux: address 0x70 is also that of /i2c@100/top@70" + rest}));
}

TEST_F(MuxMount, KeepsManyEqualNamesApart) {
    constexpr size_t BUSES = 300;
    CBlobBuilder builder(size_t{1} << 20);
    for (size_t bus = 0; bus < BUSES; ++bus) {
        builder.Begin("i2c@" + std::to_string(bus)).Text("compatible", "fsl-i2c");
        builder.Text("label", "i2c").Device("eeprom@50", "atmel,24c01", 0x50).End().End();
    }
    Mount(builder);
    EXPECT_EQ(Warnings(), Names{});
    const Names names = NamesAt("/");
    ASSERT_EQ(names.size(), BUSES + 1);
    EXPECT_EQ(names.front(), "i2c");
    EXPECT_EQ(names[1], "i2c-2");
    EXPECT_EQ(names[BUSES - 1], "i2c-300");
    EXPECT_EQ(NodeAt(*m_root, "/sim").FindChild("i2c-300.eeprom@50")->GetNodeType(), TARRAY_A);
}
