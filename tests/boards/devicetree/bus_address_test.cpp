#include "boards/devicetree/bus_address.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "boards/devicetree/device_tree.h"
#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/thrown_text.h"

namespace {

constexpr uint64_t ADDRESS = 0xF00010;

// The address of "/soc/bus/node" to the processor; `ranges` writes that of "/soc", which
// has one cell for an address and one for a size, below a root with two.
uint64_t AddressThrough(const std::function<void(CBlobBuilder&)>& ranges) {
    CBlobBuilder builder;
    builder.Cells("#address-cells", {2}).Cells("#size-cells", {2});
    builder.Begin("soc").Cells("#address-cells", {1}).Cells("#size-cells", {1});
    ranges(builder);
    builder.Begin("bus").Cells("#address-cells", {1}).Cells("#size-cells", {1}).Bytes("ranges", "");
    builder.Begin("node").End().End().End();
    const std::vector<uint8_t> blob = builder.Finish();
    const CDeviceTree tree("b.dtb", blob);
    return ProcessorAddress(*tree.NodeAt("/soc/bus/node"), ADDRESS);
}

uint64_t AddressWith(std::initializer_list<uint32_t> ranges) {
    return AddressThrough([&](CBlobBuilder& soc) { soc.Cells("ranges", ranges); });
}

}  // namespace

TEST(BusAddress, IsTheProcessorsBehindAllRanges) {
    EXPECT_EQ(AddressWith({0, 0xF, 0xFE000000, 0x1000000}), 0xF'FEF00010U);
    EXPECT_EQ(AddressWith({0x100, 0, 0, 0x10, 0xF00010, 1, 0x80000000, 0x100}), 0x1'80000000U);
}

TEST(BusAddress, IsTheSameBehindEmptyRanges) {
    EXPECT_EQ(AddressThrough([](CBlobBuilder& soc) { soc.Bytes("ranges", ""); }), ADDRESS);
}

TEST(BusAddress, IsMissingWhereNoRangeHasIt) {
    EXPECT_EQ(ThrownText([] {
                  AddressWith({0, 0, 0, 0xF00010, 0xF00011, 0, 0, 0x100});
              }),
              "/soc: no entry of property \"ranges\" has the address 0xf00010");
    EXPECT_EQ(ThrownText([] { AddressThrough([](CBlobBuilder&) {}); }),
              "/soc: no entry of property \"ranges\" has the address 0xf00010");
}

TEST(BusAddress, NeedsWholeEntries) {
    EXPECT_EQ(ThrownText([] {
                  AddressWith({0, 0, 0});
              }),
              "/soc: property \"ranges\" has 3 cells, should be a multiple of 4");
}
