#include <gtest/gtest.h>

#include "boards/devicetree/device_tree.h"
#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/thrown_text.h"

namespace {

std::string FaultOf(CBlobBuilder& builder) {
    const std::vector<uint8_t> blob = builder.Finish();
    return ThrownText([&blob] { const CDeviceTree tree("b.dtb", blob); });
}

}  // namespace

TEST(Phandles, MayNotStandInTwoNodes) {
    CBlobBuilder builder;
    builder.Begin("a").Cells("phandle", {5}).End().Begin("b").Cells("linux,phandle", {5}).End();
    EXPECT_EQ(FaultOf(builder), "b.dtb: phandle 0x5 stands in two nodes: /a and /b");
}

TEST(Phandles, AreNeitherZeroNorAllOnes) {
    CBlobBuilder zero;
    zero.Begin("a").Cells("phandle", {0}).End();
    EXPECT_EQ(FaultOf(zero), "b.dtb: /a: phandle 0x0 is not a handle");
    CBlobBuilder ones;
    ones.Begin("a").Cells("phandle", {0xFFFFFFFF}).End();
    EXPECT_EQ(FaultOf(ones), "b.dtb: /a: phandle 0xffffffff is not a handle");
}

TEST(Phandles, AreOneCell) {
    CBlobBuilder builder;
    builder.Begin("a").Cells("phandle", {1, 2}).End();
    EXPECT_EQ(FaultOf(builder),
              "b.dtb: /a: property \"phandle\" has 8 bytes, should be one cell of 4 bytes");
}

TEST(PhandleCircles, OfOneNodeAreRefused) {
    CBlobBuilder builder;
    builder.Begin("a").Cells("phandle", {1}).Cells("i2c-parent", {1}).End();
    EXPECT_EQ(FaultOf(builder), "b.dtb: property \"i2c-parent\" leads round in a circle: /a -> /a");
}

TEST(PhandleCircles, OfTwoMultiplexersThatHangOnEachOtherAreRefused) {
    CBlobBuilder builder;
    builder.Begin("mux-a").Cells("i2c-parent", {2});
    builder.Begin("i2c@0").Cells("phandle", {1}).End().End();
    builder.Begin("mux-b").Cells("i2c-parent", {1});
    builder.Begin("i2c@0").Cells("phandle", {2}).End().End();
    EXPECT_EQ(FaultOf(builder),
              "b.dtb: property \"i2c-parent\" leads round in a circle: "
              "/mux-a -> /mux-b/i2c@0 -> /mux-b -> /mux-a/i2c@0 -> /mux-a");
}

TEST(PhandleCircles, OfAModuleOnItsOwnChildAreRefused) {
    CBlobBuilder builder;
    builder.Begin("sfp").Cells("i2c-bus", {1}).Begin("bus").Cells("phandle", {1}).End().End();
    EXPECT_EQ(FaultOf(builder),
              "b.dtb: property \"i2c-bus\" leads round in a circle: /sfp -> /sfp/bus -> /sfp");
}

TEST(PhandleCircles, OfMdioMultiplexersAreRefused) {
    CBlobBuilder builder;
    builder.Begin("start").Cells("mdio-parent-bus", {1}).End();
    builder.Begin("a").Cells("phandle", {1}).Cells("mdio-parent-bus", {2}).End();
    builder.Begin("b").Cells("phandle", {2}).Cells("mdio-parent-bus", {1}).End();
    // "start" leads into the circle but is no part of it.
    EXPECT_EQ(FaultOf(builder),
              "b.dtb: property \"mdio-parent-bus\" leads round in a circle: /a -> /b -> /a");
}

TEST(PhandleCircles, ThroughASecondHandleOfAListAreRefused) {
    CBlobBuilder builder;
    builder.Begin("bus").Cells("phandle", {1}).End();
    builder.Begin("a").Cells("phandle", {2}).Cells("i2c-parent", {1, 2}).End();
    EXPECT_EQ(FaultOf(builder), "b.dtb: property \"i2c-parent\" leads round in a circle: /a -> /a");
}

TEST(PhandleCircles, OfManyNodesAreNamedInPart) {
    constexpr uint32_t NODES = 5000;
    CBlobBuilder builder(size_t{1} << 20);
    for (uint32_t i = 1; i <= NODES; ++i) {
        builder.Begin("n" + std::to_string(i)).Cells("phandle", {i});
        builder.Cells("i2c-parent", {i % NODES + 1}).End();
    }
    const std::string fault = FaultOf(builder);
    EXPECT_EQ(fault.find("b.dtb: property \"i2c-parent\" leads round in a circle: /n1 -> /n2 -> "),
              0U);
    const std::string tail = " -> /n16 -> ... -> /n1";
    EXPECT_EQ(fault.substr(fault.size() - tail.size()), tail);
}

TEST(PhandleChains, OfAnyLengthAreTakenWhenTheyEnd) {
    constexpr uint32_t NODES = 5000;
    CBlobBuilder builder(size_t{1} << 20);
    for (uint32_t i = 1; i < NODES; ++i) {
        builder.Begin("n").Cells("phandle", {i}).Cells("i2c-parent", {i + 1}).End();
    }
    builder.Begin("n").Cells("phandle", {NODES}).End();
    const std::vector<uint8_t> blob = builder.Finish();
    EXPECT_NO_THROW(CDeviceTree("b.dtb", blob));
}

TEST(PhandleChains, MayMeet) {
    CBlobBuilder builder;
    builder.Begin("bus").Cells("phandle", {1}).End();
    builder.Begin("a").Cells("i2c-bus", {1}).End().Begin("b").Cells("i2c-bus", {1}).End();
    const std::vector<uint8_t> blob = builder.Finish();
    EXPECT_NO_THROW(CDeviceTree("b.dtb", blob));
}

TEST(PhandleChains, OfNoHandleLeadNowhere) {
    CBlobBuilder builder;
    builder.Begin("a").Cells("i2c-bus", {77}).End();
    builder.Begin("b").Bytes("i2c-parent", "abc").End();
    builder.Begin("c").Bytes("mdio-parent-bus", "").End();
    const std::vector<uint8_t> blob = builder.Finish();
    EXPECT_NO_THROW(CDeviceTree("b.dtb", blob));
}
