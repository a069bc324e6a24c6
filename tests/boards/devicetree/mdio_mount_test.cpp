// MDIO buses and PHYs of a description.
#include "t2080_mdio/diag_mdio_bus.h"
#include "tests/boards/devicetree/mount_test.h"

namespace {

using Names = std::vector<std::string>;
using namespace std::string_view_literals;

class MdioMount : public CMountTest {
  protected:
    static CBlobBuilder& BeginBus(CBlobBuilder& builder, const std::string& name) {
        return builder.Begin(name).Text("compatible", "fsl,fman-xmdio");
    }
};

}  // namespace

TEST_F(MdioMount, HasOneDeviceForAllBusesAndTheirPhys) {
    CBlobBuilder builder;
    builder.Begin("fman").Text("compatible", "fsl,fman");
    builder.Begin("mdio@1").Text("compatible", "fsl,fman-memac-mdio\0fsl,fman-xmdio"sv);
    builder.Device("phy@0", "ethernet-phy-ieee802.3-c22", 0).End();
    builder.Device("phy@1f", "ethernet-phy-ieee802.3-c22", 31).Text("label", "far").End().End();
    BeginBus(builder, "mdio@2").Text("label", "copper").End();
    builder.End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"mdio", "sim"}));
    EXPECT_NE(dynamic_cast<CDiagMdioBus*>(m_root->FindChild("mdio")), nullptr);
    EXPECT_EQ(NamesAt("/mdio"), (Names{"mdio@1", "copper"}));
    EXPECT_EQ(DescriptionAt("/mdio/mdio@1"), "fsl,fman-memac-mdio: port 0");
    EXPECT_EQ(DescriptionAt("/mdio/copper"), "fsl,fman-xmdio: port 1");
    EXPECT_EQ(DescriptionAt("/mdio/mdio@1/phy@0"),
              "ethernet-phy-ieee802.3-c22 at 0x0: port 0, device 0");
    EXPECT_EQ(DescriptionAt("/mdio/mdio@1/far"),
              "ethernet-phy-ieee802.3-c22 at 0x1f: port 0, device 31");
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MdioMount, HasNoDeviceWithoutABus) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"i2c@1", "sim"}));
}

TEST_F(MdioMount, TakesThePortThatABusHasOfItsOwn) {
    CBlobBuilder builder;
    BeginBus(builder, "mdio@1").Cells("cell-index", {15});
    builder.Device("phy@2", "ethernet-phy-ieee802.3-c22", 2).End().End();
    BeginBus(builder, "mdio@2").End();
    BeginBus(builder, "mdio@3").Cells("cell-index", {0}).End();
    Mount(builder);
    EXPECT_EQ(DescriptionAt("/mdio/mdio@1"), "fsl,fman-xmdio: port 15");
    EXPECT_EQ(DescriptionAt("/mdio/mdio@1/phy@2"),
              "ethernet-phy-ieee802.3-c22 at 0x2: port 15, device 2");
    EXPECT_EQ(DescriptionAt("/mdio/mdio@2"), "fsl,fman-xmdio: port 1");
    EXPECT_EQ(DescriptionAt("/mdio/mdio@3"), "fsl,fman-xmdio: port 0");
    EXPECT_EQ(Warnings(), Names{});
}

TEST_F(MdioMount, LeavesADisabledBusItsPort) {
    CBlobBuilder builder;
    BeginBus(builder, "mdio@1").Text("status", "disabled");
    builder.Device("phy@1", "ethernet-phy-ieee802.3-c22", 1).End().End();
    BeginBus(builder, "mdio@2");
    builder.Device("phy@2", "ethernet-phy-ieee802.3-c22", 2).Text("status", "disabled").End();
    builder.End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/mdio"), Names{"mdio@2"});
    EXPECT_EQ(DescriptionAt("/mdio/mdio@2"), "fsl,fman-xmdio: port 1");
    EXPECT_EQ(NamesAt("/mdio/mdio@2"), Names{});
    EXPECT_EQ(LeftOut(), (Names{"/mdio@1: \"fsl,fman-xmdio\" is disabled\n",
                                "/mdio@2/phy@2: \"ethernet-phy-ieee802.3-c22\" is disabled\n"}));
}

TEST_F(MdioMount, LeavesOutThePhysOfAnotherController) {
    CBlobBuilder builder;
    builder.Begin("mdio@1").Text("compatible", "acme,mdio");
    builder.Device("phy@2", "ethernet-phy-ieee802.3-c22", 2).End().End();
    Mount(builder);
    EXPECT_EQ(Warnings(), Names{});
    EXPECT_EQ(LeftOut(), (Names{"/mdio@1: \"acme,mdio\" is not known\n",
                                "/mdio@1/phy@2: \"ethernet-phy-ieee802.3-c22\" is not on an MDIO "
                                "bus that is known\n"}));
}

TEST_F(MdioMount, TellsWhichPhyIsOutOfReach) {
    CBlobBuilder builder;
    BeginBus(builder, "mdio@1");
    builder.Device("phy@4", "ethernet-phy-ieee802.3-c45", 4).End().End();
    Mount(builder);
    EXPECT_EQ(DescriptionAt("/mdio/mdio@1/phy@4"),
              "ethernet-phy-ieee802.3-c45 at 0x4: port 0, device 4, clause 45: not yet supported");
}

TEST_F(MdioMount, ShowsWhatItDoesNotKnowWithANote) {
    CBlobBuilder builder;
    BeginBus(builder, "mdio@1").Device("switch@5", "acme,switch", 5).End().End();
    Mount(builder);
    EXPECT_EQ(DescriptionAt("/mdio/mdio@1/switch@5"), "acme,switch at 0x5: port 0, device 5");
    EXPECT_EQ(m_log.Texts(LW_INFO),
              Names{"/mdio@1/switch@5: \"acme,switch\" is not known, mounted as a plain node\n"});
}

TEST_F(MdioMount, KeepsItsNameAndThoseOfItsCommandsFree) {
    CBlobBuilder builder;
    builder.Begin("i2c@1").Text("compatible", "fsl-i2c").Text("label", "mdio").End();
    BeginBus(builder, "mdio@1").Text("label", "init").End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/"), (Names{"mdio-2", "mdio", "sim"}));
    EXPECT_EQ(NamesAt("/mdio"), Names{"init-2"});
}

TEST_F(MdioMount, LeavesOutABusWhosePortIsTakenOrNone) {
    CBlobBuilder builder;
    BeginBus(builder, "mdio@1").Cells("cell-index", {1}).End();
    BeginBus(builder, "mdio@2").End();
    BeginBus(builder, "mdio@3").Cells("cell-index", {16}).End();
    BeginBus(builder, "mdio@4").Cells("cell-index", {2, 3}).End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/mdio"), Names{"mdio@1"});
    EXPECT_EQ(Warnings(),
              (Names{"left out: /mdio@2: MDIO port 1 is already taken by /mdio@1\n",
                     "left out: /mdio@3: MDIO port 16, should be 0 to 15; \"cell-index\" tells "
                     "which it is\n",
                     "left out: /mdio@4: property \"cell-index\" has 8 bytes, should be one cell "
                     "of 4 bytes\n"}));
}

TEST_F(MdioMount, LeavesOutPhysOutOfRangeOrInOnePlace) {
    CBlobBuilder builder;
    BeginBus(builder, "mdio@1");
    builder.Device("phy@20", "ethernet-phy-ieee802.3-c22", 32).End();
    builder.Device("phy@1", "ethernet-phy-ieee802.3-c22", 1).End();
    builder.Device("phy@1b", "ethernet-phy-ieee802.3-c45", 1).End().End();
    Mount(builder);
    EXPECT_EQ(NamesAt("/mdio/mdio@1"), Names{"phy@1"});
    EXPECT_EQ(Warnings(),
              (Names{"left out: /mdio@1/phy@20: property \"reg\" is 0x20, should be an MDIO "
                     "address from 0x0 to 0x1f\n",
                     "left out: /mdio@1/phy@1b: address 0x1 is already taken by "
                     "/mdio@1/phy@1\n"}));
}

TEST_F(MdioMount, LeavesThePhyOfAnotherBusAlone) {
    CBlobBuilder builder;
    for (const char* bus : {"mdio@1", "mdio@2"}) {
        BeginBus(builder, bus);
        builder.Device("phy@1", "ethernet-phy-ieee802.3-c22", 1).End().End();
    }
    Mount(builder);
    EXPECT_EQ(NamesAt("/mdio/mdio@1"), Names{"phy@1"});
    EXPECT_EQ(NamesAt("/mdio/mdio@2"), Names{"phy@1"});
    EXPECT_EQ(Warnings(), Names{});
}
