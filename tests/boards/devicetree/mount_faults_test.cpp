// Nodes that cannot be mounted: one warning each, and the rest is there.
#include "tests/boards/devicetree/mount_test.h"
#include "tests/support/bus_access.h"
#include "tests/support/thrown_text.h"

namespace {

using Names = std::vector<std::string>;

class MountFaults : public CMountTest {
  protected:
    // Mounts the bad device beside a good one; returns the one warning.
    std::string WarningFor(const std::function<void(CBlobBuilder&)>& bad) {
        MountOnBus([&bad](CBlobBuilder& bus) {
            bad(bus);
            bus.Device("good@60", "atmel,24c02", 0x57).End();
        });
        EXPECT_EQ(NamesAt("/i2c-0"), Names{"good@60"});
        return Warning();
    }

    std::string Warning() const {
        EXPECT_EQ(Warnings().size(), 1U);
        return m_log.Joined(LW_WARN);
    }
};

}  // namespace

TEST_F(MountFaults, NameADeviceWithoutAnAddress) {
    EXPECT_EQ(WarningFor([](CBlobBuilder& bus) {
                  bus.Begin("dev").Text("compatible", "atmel,24c02").End();
              }),
              "left out: /i2c@100/dev: property \"reg\" is missing, should be one cell of 4 "
              "bytes\n");
}

TEST_F(MountFaults, NameAnAddressOfMoreThanOneCell) {
    EXPECT_EQ(WarningFor([](CBlobBuilder& bus) {
                  bus.Begin("dev").Text("compatible", "atmel,24c02").Cells("reg", {0, 0x50}).End();
              }),
              "left out: /i2c@100/dev: property \"reg\" has 8 bytes, should be one cell of 4 "
              "bytes\n");
}

TEST_F(MountFaults, NameAnAddressOutOfRange) {
    EXPECT_EQ(
        WarningFor([](CBlobBuilder& bus) { bus.Device("dev", "atmel,24c02", 0x80).End(); }),
        "left out: /i2c@100/dev: property \"reg\" is 0x80, should be a 7-bit address from 0x1 "
        "to 0x7f\n");
}

TEST_F(MountFaults, NameTheGeneralCallAddress) {
    EXPECT_EQ(WarningFor([](CBlobBuilder& bus) { bus.Device("dev", "acme,any", 0).End(); }),
              "left out: /i2c@100/dev: property \"reg\" is 0x0, should be a 7-bit address from "
              "0x1 to 0x7f\n");
}

TEST_F(MountFaults, NameBothNodesOfOneAddress) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("first@50", "atmel,24c02", 0x50).End();
        bus.Device("second@50", "acme,any", 0x50).End();
        bus.Device("third@51", "atmel,24c02", 0x51).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), (Names{"first@50", "third@51"}));
    EXPECT_EQ(Warning(),
              "left out: /i2c@100/second@50: address 0x50 is already taken by "
              "/i2c@100/first@50\n");
}

TEST_F(MountFaults, NameAnAddressThatALargerChipTakes) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("large@50", "atmel,24c08", 0x50).End();
        bus.Device("small@53", "atmel,24c02", 0x53).End();
        bus.Device("small@54", "atmel,24c02", 0x54).End();
    });
    EXPECT_EQ(NamesAt("/i2c-0"), (Names{"large@50", "small@54"}));
    EXPECT_EQ(Warning(),
              "left out: /i2c@100/small@53: address 0x53 is already taken by "
              "/i2c@100/large@50\n");
}

TEST_F(MountFaults, NameALargerChipThatBeginsInTheMiddle) {
    EXPECT_EQ(WarningFor([](CBlobBuilder& bus) { bus.Device("dev", "atmel,24c04", 0x51).End(); }),
              "left out: /i2c@100/dev: a chip of 2 addresses cannot begin at 0x51\n");
}

TEST_F(MountFaults, LeaveTheSameAddressOnTwoChannelsAlone) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c@0").Cells("reg", {0}).Device("a@50", "atmel,24c02", 0x50).End().End();
        bus.Begin("i2c@1").Cells("reg", {1}).Device("b@50", "atmel,24c02", 0x50).End().End();
        bus.End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch0"), Names{"a@50"});
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch1"), Names{"b@50"});
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MountFaults, NameAChannelThatTheChipDoesNotHave) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9544", 0x70).Text("label", "mux");
        bus.Begin("i2c@4").Cells("reg", {4}).Device("a@50", "atmel,24c02", 0x50).End().End();
        bus.Begin("i2c@3").Cells("reg", {3}).Device("b@50", "atmel,24c02", 0x50).End().End();
        bus.End();
    });
    EXPECT_EQ(NamesAt("/i2c-0/mux-0"), (Names{"ch0", "ch1", "ch2", "ch3"}));
    EXPECT_EQ(NamesAt("/i2c-0/mux-0/ch3"), Names{"b@50"});
    EXPECT_EQ(Warning(),
              "left out: /i2c@100/mux@70/i2c@4: property \"reg\" is 0x4, should be a channel "
              "from 0x0 to 0x3\n");
}

TEST_F(MountFaults, NameAChannelThatIsDescribedTwice) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("mux@70", "nxp,pca9548", 0x70).Text("label", "mux");
        bus.Begin("i2c@1").Cells("reg", {1}).End().Begin("again").Cells("reg", {1}).End().End();
    });
    EXPECT_EQ(Warning(),
              "left out: /i2c@100/mux@70/again: channel 1 is already described by "
              "/i2c@100/mux@70/i2c@1\n");
}

TEST_F(MountFaults, NameAnEepromThatCannotBe) {
    EXPECT_EQ(WarningFor([](CBlobBuilder& bus) {
                  bus.Device("dev", "atmel,24c64", 0x50).Cells("size", {1000}).End();
              }),
              "left out: /i2c@100/dev: property \"size\" is 1000, should be a power of two from "
              "16 to 524288\n");
}

TEST_F(MountFaults, NameAnAddressWidthThatCannotBe) {
    EXPECT_EQ(WarningFor([](CBlobBuilder& bus) {
                  bus.Device("dev", "atmel,24c64", 0x50).Cells("address-width", {12}).End();
              }),
              "left out: /i2c@100/dev: property \"address-width\" is 12, should be 8 or 16\n");
}

TEST_F(MountFaults, NameAPageThatCannotBe) {
    EXPECT_EQ(WarningFor([](CBlobBuilder& bus) {
                  bus.Device("dev", "atmel,24c01", 0x50).Cells("pagesize", {256}).End();
              }),
              "left out: /i2c@100/dev: property \"pagesize\" is 256, should be a power of two "
              "from 1 to 128\n");
}

TEST_F(MountFaults, NameAModuleThatIsNowhere) {
    CBlobBuilder builder;
    builder.Begin("dangling").Text("compatible", "sff,sfp").Cells("i2c-bus", {77}).End();
    builder.Begin("astray").Text("compatible", "sff,sfp").Cells("i2c-bus", {1}).End();
    builder.Begin("without").Text("compatible", "sff,sfp").End();
    builder.Begin("memory").Cells("phandle", {1}).End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), Names{"sim"});
    EXPECT_EQ(Warnings(),
              (Names{"left out: /dangling: property \"i2c-bus\" names no node (phandle 0x4d), "
                     "should be a mounted I2C bus or channel\n",
                     "left out: /astray: property \"i2c-bus\" names /memory (phandle 0x1), "
                     "should be a mounted I2C bus or channel\n",
                     "left out: /without: property \"i2c-bus\" is missing, should be one cell "
                     "of 4 bytes\n"}));
}

TEST_F(MountFaults, NameTwoModulesInOneCage) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Cells("phandle", {1}).End();
    builder.Begin("sfp-a").Text("compatible", "sff,sfp").Cells("i2c-bus", {1}).End();
    builder.Begin("sfp-b").Text("compatible", "sff,sfp").Cells("i2c-bus", {1}).End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/i2c@1"), Names{"sfp-a"});
    EXPECT_EQ(Warning(), "left out: /sfp-b: address 0x50 is already taken by /sfp-a\n");
}

TEST_F(MountFaults, NameDevicesThatStandInTheWrongPlace) {
    CBlobBuilder builder;
    builder.Device("eeprom@50", "atmel,24c02", 0x50).End();
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c");
    builder.Device("mdio@10", "fsl,fman-xmdio", 0x10).End().End();
    Mount(builder);
    EXPECT_EQ(Warnings(), (Names{"left out: /eeprom@50: \"atmel,24c02\" does not stand on a bus "
                                 "that it could answer on\n",
                                 "left out: /i2c@1/mdio@10: \"fsl,fman-xmdio\" is not a device "
                                 "on an I2C bus\n"}));
}

TEST_F(MountFaults, NameAClockThatNoBusRunsAt) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Cells("clock-frequency", {0}).End();
    builder.Begin("i2c@2").Text("compatible", "fsl-i2c").End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c@2", "sim"}));
    EXPECT_EQ(Warning(),
              "left out: /i2c@1: property \"clock-frequency\" is 0, should be 1 to 5000000\n");
}

TEST_F(MountFaults, OfAnImageEndTheStartAndNameTheFile) {
    m_folder.Write("images/i2c-0/0x50.bin", std::vector<uint8_t>(255));
    EXPECT_EQ(
        ThrownText([&] {
            MountOnBus([](CBlobBuilder& bus) { bus.Device("dev", "atmel,24c02", 0x50).End(); });
        }),
        "/i2c@100/dev: " + (m_folder.Path() / "images/i2c-0/0x50.bin").string() +
            ": has 255 bytes, the chip has 256");
}

TEST_F(MountFaults, OfAStateFileEndTheStartAndNameTheRemedy) {
    const auto file = m_folder.Write("state/i2c-0/0x50.bin", std::vector<uint8_t>(300));
    EXPECT_EQ(
        ThrownText([&] {
            MountOnBus([](CBlobBuilder& bus) { bus.Device("dev", "atmel,24c02", 0x50).End(); });
        }),
        "/i2c@100/dev: " + file.string() +
            " holds 300 bytes, but the chip has 256; remove it to have it made anew");
}

TEST_F(MountFaults, LeaveNoChipBehind) {
    MountOnBus([](CBlobBuilder& bus) {
        bus.Device("dev", "atmel,24c02", 0x50).Bytes("label", "endless").End();
    });
    EXPECT_EQ(Warning(),
              "left out: /i2c@100/dev: property \"label\" has no zero byte at its end, should be a "
              "string that ends in one\n");
    EXPECT_EQ(ReadBus(Bus("i2c-0"), 0x50, {0}, 1), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path() / "state"));
}

TEST_F(MountFaults, AreOneLineWhateverTheBlobHolds) {
    CBlobBuilder builder;
    builder.Text("model", "two\nlines");
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c");
    builder.Device("a\nb", "acme\n,24c02", 0x99).End();
    builder.Device("c\nd", "sff,sfp", 0x20).Text("label", "x\ny").End().End();
    builder.Device("e\nf", "acme\n,24c02", 0x50).End();
    Mount(builder);
    EXPECT_STREQ(m_root->GetDescription(), "two?lines");
    EXPECT_EQ(Warnings().size(), 3U);
    for (const std::string& warning : Warnings()) {
        EXPECT_EQ(warning.find('\n'), warning.size() - 1) << warning;
    }
}
