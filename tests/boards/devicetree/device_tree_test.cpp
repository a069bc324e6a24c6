#include "boards/devicetree/device_tree.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/thrown_text.h"

namespace {

std::string FaultOf(const std::vector<uint8_t>& blob) {
    return ThrownText([&blob] { const CDeviceTree tree("b.dtb", blob); });
}

std::vector<uint8_t> SmallBlob() {
    return CBlobBuilder()
        .Text("model", "small")
        .Begin("soc")
        .Device("i2c@100", "fsl-i2c", 0x100)
        .Cells("phandle", {7})
        .End()
        .End()
        .Finish();
}

void PutBigEndian32(std::vector<uint8_t>& blob, size_t offset, uint32_t value) {
    for (size_t i = 0; i < 4; ++i) {
        blob[offset + i] = static_cast<uint8_t>(value >> (24 - 8 * i));
    }
}

size_t StructureOf(const std::vector<uint8_t>& blob) {
    return fdt_off_dt_struct(blob.data());
}

}  // namespace

TEST(DeviceTree, HasTheNodesAndPropertiesOfItsBlob) {
    const std::vector<uint8_t> blob = SmallBlob();
    const CDeviceTree tree("b.dtb", blob);

    EXPECT_EQ(tree.Root().Name(), "");
    EXPECT_EQ(tree.Root().Path(), "/");
    EXPECT_EQ(tree.Root().Parent(), nullptr);
    ASSERT_EQ(tree.Root().Properties().size(), 1U);
    EXPECT_EQ(tree.Root().Properties()[0].name, "model");
    ASSERT_EQ(tree.Root().Children().size(), 1U);

    const CDeviceTreeNode& soc = *tree.Root().Children()[0];
    ASSERT_EQ(soc.Children().size(), 1U);
    const CDeviceTreeNode& bus = *soc.Children()[0];
    EXPECT_EQ(bus.Name(), "i2c@100");
    EXPECT_EQ(bus.Path(), "/soc/i2c@100");
    EXPECT_EQ(bus.Parent(), &soc);
    ASSERT_NE(bus.Find("reg"), nullptr);
    EXPECT_EQ(bus.Find("reg")->value.size(), 4U);
    EXPECT_EQ(bus.Find("label"), nullptr);
}

TEST(DeviceTree, GoesBackUpAfterADeepNode) {
    const std::vector<uint8_t> blob =
        CBlobBuilder().Begin("a").Begin("b").Begin("c").End().End().End().Begin("d").End().Finish();
    const CDeviceTree tree("b.dtb", blob);
    ASSERT_EQ(tree.Root().Children().size(), 2U);
    EXPECT_EQ(tree.Root().Children()[0]->Children()[0]->Children()[0]->Path(), "/a/b/c");
    EXPECT_EQ(tree.Root().Children()[1]->Path(), "/d");
}

TEST(DeviceTree, FindsNodesByTheirHandles) {
    const std::vector<uint8_t> blob = CBlobBuilder()
                                          .Begin("new")
                                          .Cells("phandle", {1})
                                          .End()
                                          .Begin("old")
                                          .Cells("linux,phandle", {2})
                                          .End()
                                          .Begin("both")
                                          .Cells("phandle", {3})
                                          .Cells("linux,phandle", {3})
                                          .End()
                                          .Finish();
    const CDeviceTree tree("b.dtb", blob);
    ASSERT_NE(tree.NodeOf(1), nullptr);
    ASSERT_NE(tree.NodeOf(2), nullptr);
    ASSERT_NE(tree.NodeOf(3), nullptr);
    EXPECT_EQ(tree.NodeOf(1)->Path(), "/new");
    EXPECT_EQ(tree.NodeOf(2)->Path(), "/old");
    EXPECT_EQ(tree.NodeOf(3)->Path(), "/both");
    EXPECT_EQ(tree.NodeOf(4), nullptr);
}

TEST(DeviceTree, ShowsUnprintableNodeNamesInOneLine) {
    const std::vector<uint8_t> blob = CBlobBuilder().Begin("a\nb\x80").End().Finish();
    EXPECT_EQ(CDeviceTree("b.dtb", blob).Root().Children()[0]->Path(), "/a?b?");
}

TEST(DeviceTreeFaults, NameAnEmptyFile) {
    EXPECT_EQ(FaultOf({}), "b.dtb: the file is empty");
}

TEST(DeviceTreeFaults, NameAFileThatIsNoDeviceTree) {
    const std::string want = "b.dtb: not a flattened device tree (it does not begin with d00dfeed)";
    EXPECT_EQ(FaultOf({0xD0, 0x0D, 0xFE}), want);
    EXPECT_EQ(FaultOf(std::vector<uint8_t>(4096, 0x55)), want);
    std::vector<uint8_t> blob = SmallBlob();
    std::reverse(blob.begin(), blob.begin() + 4);  // the other byte order
    EXPECT_EQ(FaultOf(blob), want);
}

TEST(DeviceTreeFaults, NameAHeaderThatIsNotWhole) {
    std::vector<uint8_t> blob = SmallBlob();
    blob.resize(39);
    EXPECT_EQ(FaultOf(blob), "b.dtb: truncated: 39 bytes do not hold the header of 40");
}

TEST(DeviceTreeFaults, NameBothSizesOfATruncatedBlob) {
    std::vector<uint8_t> blob = SmallBlob();
    const size_t whole = blob.size();
    blob.resize(whole - 1);
    EXPECT_EQ(FaultOf(blob), "b.dtb: truncated: the header says " + std::to_string(whole) +
                                 " bytes, there are " + std::to_string(whole - 1));
}

TEST(DeviceTreeFaults, EveryTruncationIsRefused) {
    const std::vector<uint8_t> whole = SmallBlob();
    for (size_t size = 0; size < whole.size(); ++size) {
        const std::vector<uint8_t> blob(whole.begin(),
                                        whole.begin() + static_cast<ptrdiff_t>(size));
        EXPECT_EQ(FaultOf(blob).substr(0, 7), "b.dtb: ") << size;
    }
}

TEST(DeviceTreeFaults, NameAStructureThatIsDamaged) {
    std::vector<uint8_t> blob = SmallBlob();
    PutBigEndian32(blob, StructureOf(blob) + 8, 0x77);  // where the first property begins
    EXPECT_EQ(FaultOf(blob), "b.dtb: damaged: libfdt says FDT_ERR_BADSTRUCTURE");
}

TEST(DeviceTreeFaults, NameAVersionThatIsNotKnown) {
    std::vector<uint8_t> blob = SmallBlob();
    PutBigEndian32(blob, 24, 99);  // the oldest version it is compatible with
    EXPECT_EQ(FaultOf(blob), "b.dtb: damaged: libfdt says FDT_ERR_BADVERSION");
}

TEST(DeviceTreeFaults, NameAVersionThatIsTooOld) {
    std::vector<uint8_t> blob = SmallBlob();
    PutBigEndian32(blob, 20, 15);
    PutBigEndian32(blob, 24, 2);
    EXPECT_EQ(FaultOf(blob), "b.dtb: version 15, should be 16 or later");
}

TEST(DeviceTreeFaults, NameABlobWithoutARoot) {
    std::vector<uint8_t> blob = SmallBlob();
    PutBigEndian32(blob, StructureOf(blob), FDT_END);
    EXPECT_EQ(FaultOf(blob), "b.dtb: damaged structure: there is no root node");
}

TEST(DeviceTreeFaults, TakeASizeThatIsLargerThanTheTree) {
    std::vector<uint8_t> blob = SmallBlob();
    blob.resize(blob.size() + 100, 0xEE);  // a page of flash, say
    EXPECT_NO_THROW(CDeviceTree("b.dtb", blob));
}

TEST(DeviceTreeFaults, RefuseAnAddressThatEightDoesNotDivide) {
    const std::vector<uint8_t> blob = SmallBlob();
    std::vector<uint8_t> shifted(blob.size() + 4);
    std::copy(blob.begin(), blob.end(), shifted.begin() + 4);
    const auto misaligned = std::span<const uint8_t>(shifted).subspan(4);
    EXPECT_NE(
        ThrownText([&] { const CDeviceTree tree("b.dtb", misaligned); }).find("Assert failed"),
        std::string::npos);
}

TEST(DeviceTreeBounds, TakeNodesAsDeepAsTheLimitAndNoDeeper) {
    const auto nested = [](size_t depth) {
        CBlobBuilder builder;
        for (size_t i = 1; i < depth; ++i) {
            builder.Begin("n");
        }
        for (size_t i = 1; i < depth; ++i) {
            builder.End();
        }
        return builder.Finish();
    };
    const std::vector<uint8_t> deepest = nested(CDeviceTree::MAX_DEPTH);
    EXPECT_NO_THROW(CDeviceTree("b.dtb", deepest));
    EXPECT_EQ(FaultOf(nested(CDeviceTree::MAX_DEPTH + 1)), "b.dtb: nodes more than 32 deep");
}

TEST(DeviceTreeBounds, TakeAsManyNodesAsTheLimitAndNoMore) {
    const auto many = [](size_t nodes) {
        CBlobBuilder builder(size_t{1} << 20);
        for (size_t i = 1; i < nodes; ++i) {
            builder.Begin("n").End();
        }
        return builder.Finish();
    };
    const std::vector<uint8_t> most = many(CDeviceTree::MAX_NODES);
    EXPECT_NO_THROW(CDeviceTree("b.dtb", most));
    EXPECT_EQ(FaultOf(many(CDeviceTree::MAX_NODES + 1)), "b.dtb: more than 16384 nodes");
}
