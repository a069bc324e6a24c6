#include "boards/devicetree/node_name.h"

#include <gtest/gtest.h>

#include <set>

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

TEST(UniqueName, CountsFromTwo) {
    const std::set<std::string> names = {"spd", "spd-2", "spd-4"};
    const auto taken = [&names](const std::string& name) { return names.count(name) != 0; };
    EXPECT_EQ(UniqueName("spd", taken), "spd-3");
    EXPECT_EQ(UniqueName("fru", taken), "fru");
}
