#include "boards/devicetree/node_name.h"

#include <gtest/gtest.h>

#include "boards/devicetree/device_tree.h"
#include "tests/boards/devicetree/blob_builder.h"

TEST(WantedName, IsTheLabelElseTheNodeName) {
    const std::vector<uint8_t> blob = CBlobBuilder()
                                          .Begin("eeprom@50")
                                          .Text("label", "fru")
                                          .End()
                                          .Begin("eeprom@51")
                                          .Text("label", "")
                                          .End()
                                          .Begin("eeprom@52")
                                          .End()
                                          .Finish();
    const CDeviceTree tree("b.dtb", blob);
    EXPECT_EQ(WantedName(*tree.Root().Children()[0]), "fru");
    EXPECT_EQ(WantedName(*tree.Root().Children()[1]), "eeprom@51");
    EXPECT_EQ(WantedName(*tree.Root().Children()[2]), "eeprom@52");
}

TEST(TypeableName, KeepsWhatNeedsNoQuoting) {
    EXPECT_EQ(TypeableName("AZaz09_.@+,-"), "AZaz09_.@+,-");
}

TEST(TypeableName, ReplacesEverythingElse) {
    EXPECT_EQ(TypeableName("DIMM slot #1/a"), "DIMM_slot__1_a");
    EXPECT_EQ(TypeableName("\x01\xC3\xA4~"), "____");
}

TEST(TypeableName, IsNeverEmptyNorAWayThroughTheTree) {
    EXPECT_EQ(TypeableName(""), "_");
    EXPECT_EQ(TypeableName("."), "_.");
    EXPECT_EQ(TypeableName(".."), "_..");
    EXPECT_EQ(TypeableName("..."), "_...");
    EXPECT_EQ(TypeableName(".a"), ".a");
}

TEST(TypeableName, HasABound) {
    EXPECT_EQ(TypeableName(std::string(5000, 'x')).size(), 64U);
}

TEST(SplitNumber, TakesTheNumberOffTheEnd) {
    EXPECT_EQ(SplitNumber("pca9547-0").base, "pca9547");
    EXPECT_EQ(SplitNumber("pca9547-0").number, 0U);
    EXPECT_EQ(SplitNumber("slot-2-mux-17").base, "slot-2-mux");
    EXPECT_EQ(SplitNumber("slot-2-mux-17").number, 17U);
}

TEST(SplitNumber, LeavesANameWithoutANumberWhole) {
    for (const std::string name : {"mux", "mux-", "-3", "mux-a", "mux-3a", "mux-07", "mux-+1",
                                   "mux-4294967295", "mux-99999999999"}) {
        EXPECT_EQ(SplitNumber(name).base, name);
        EXPECT_EQ(SplitNumber(name).number, 0U);
    }
}
