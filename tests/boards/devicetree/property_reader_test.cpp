#include "boards/devicetree/property_reader.h"

#include <gtest/gtest.h>

#include "boards/devicetree/device_tree.h"
#include "tests/boards/devicetree/blob_builder.h"
#include "tests/support/thrown_text.h"

namespace {

using namespace std::string_view_literals;

class PropertyReader : public testing::Test {
  protected:
    const CDeviceTreeNode& Node() { return *m_tree.Root().Children()[0]; }

    template <class Read>
    std::string FaultOf(Read read, std::string_view name) {
        return ThrownText([&] { read(Node(), name); });
    }

    const std::vector<uint8_t> m_blob = CBlobBuilder()
                                            .Begin("dev@1")
                                            .Cells("one", {0x12345678})
                                            .Cells("three", {1, 2, 0x80000000})
                                            .Bytes("none", "")
                                            .Bytes("odd", "\0\0\0\0\1"sv)
                                            .Text("text", "abc")
                                            .Text("texts", "abc\0\0de"sv)
                                            .Text("blank", "")
                                            .Bytes("open", "abc")
                                            .Bytes("half-open", "abc\0de"sv)
                                            .End()
                                            .Finish();
    const CDeviceTree m_tree{"b.dtb", m_blob};
};

}  // namespace

TEST_F(PropertyReader, ReadsACellMostSignificantByteFirst) {
    EXPECT_EQ(ReadU32(Node(), "one"), 0x12345678U);
    EXPECT_EQ(RequireU32(Node(), "one"), 0x12345678U);
}

TEST_F(PropertyReader, TellsThatACellIsNotThere) {
    EXPECT_EQ(ReadU32(Node(), "absent"), std::nullopt);
    EXPECT_EQ(FaultOf(RequireU32, "absent"),
              "/dev@1: property \"absent\" is missing, should be one cell of 4 bytes");
}

TEST_F(PropertyReader, RefusesACellOfAnotherLength) {
    EXPECT_EQ(FaultOf(ReadU32, "three"),
              "/dev@1: property \"three\" has 12 bytes, should be one cell of 4 bytes");
    EXPECT_EQ(FaultOf(RequireU32, "none"),
              "/dev@1: property \"none\" has 0 bytes, should be one cell of 4 bytes");
}

TEST_F(PropertyReader, ReadsCells) {
    EXPECT_EQ(ReadCells(Node(), "three"), (std::vector<uint32_t>{1, 2, 0x80000000}));
    EXPECT_TRUE(ReadCells(Node(), "absent").empty());
    EXPECT_EQ(FaultOf(ReadCells, "odd"),
              "/dev@1: property \"odd\" has 5 bytes, should be one or more cells of 4 bytes");
    EXPECT_EQ(FaultOf(ReadCells, "none"),
              "/dev@1: property \"none\" has 0 bytes, should be one or more cells of 4 bytes");
}

TEST_F(PropertyReader, ReadsOneString) {
    EXPECT_EQ(ReadString(Node(), "text"), "abc");
    EXPECT_EQ(ReadString(Node(), "blank"), "");
    EXPECT_EQ(ReadString(Node(), "absent"), std::nullopt);
    EXPECT_EQ(FaultOf(ReadString, "texts"),
              "/dev@1: property \"texts\" has 3 strings, should be one string");
}

TEST_F(PropertyReader, ReadsAListOfStrings) {
    EXPECT_EQ(ReadStrings(Node(), "texts"), (std::vector<std::string>{"abc", "", "de"}));
    EXPECT_TRUE(ReadStrings(Node(), "absent").empty());
}

TEST_F(PropertyReader, RefusesAStringWithoutItsEnd) {
    EXPECT_EQ(FaultOf(ReadString, "open"),
              "/dev@1: property \"open\" has no zero byte at its end, should be a string that ends "
              "in one");
    EXPECT_EQ(FaultOf(ReadStrings, "half-open"),
              "/dev@1: property \"half-open\" has no zero byte at its end, should be a string that "
              "ends in one");
    EXPECT_EQ(FaultOf(ReadStrings, "none"),
              "/dev@1: property \"none\" has 0 bytes, should be a string that ends in a zero byte");
}

TEST_F(PropertyReader, TakesAnyValueForYes) {
    EXPECT_TRUE(ReadBool(Node(), "none"));
    EXPECT_TRUE(ReadBool(Node(), "one"));
    EXPECT_FALSE(ReadBool(Node(), "absent"));
}
