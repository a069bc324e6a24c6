// What an EEPROM device is made of: its children, their parameters, and what
// it takes from its attributes.
#include <gmock/gmock.h>

#include "i2c/i2c_eeprom_commands.h"
#include "i2c/i2c_eeprom_memory.h"
#include "i2c/i2c_eeprom_read_cont.h"
#include "i2c/i2c_eeprom_rw_test.h"
#include "tests/i2c/eeprom_test.h"
#include "tests/support/bytes.h"
#include "tests/support/declared_params.h"
#include "tests/support/virtual_slot.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using CParams = std::vector<CDeclaredParam>;

class I2cEepromDevice : public CEepromTest {
  protected:
    static Texts ChildNames(const CDiagObj& node) {
        Texts names;
        for (const CDiagObj* child : node.GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }
};

TEST_F(I2cEepromDevice, HasItsFiveNodesInOrder) {
    Mount(Part(8192));
    EXPECT_THAT(ChildNames(Eeprom()),
                ElementsAre("read", "write-byte", "memory", "rw-test", "read-cont"));
}

TEST_F(I2cEepromDevice, HasNoWriteCommandWhenReadOnly) {
    Mount(Part(8192), true);
    EXPECT_THAT(ChildNames(Eeprom()), ElementsAre("read", "memory", "rw-test", "read-cont"));
}

TEST_F(I2cEepromDevice, HasThePathCommandsFirstBehindASwitch) {
    MountBehindSwitch(Part(8192));
    EXPECT_THAT(ChildNames(Eeprom()), ElementsAre("enable-path", "clr-path", "read", "write-byte",
                                                  "memory", "rw-test", "read-cont"));
}

TEST_F(I2cEepromDevice, DescribesItsNodes) {
    Mount(Part(8192));
    EXPECT_STREQ(Node("read").GetDescription(), "read EEPROM");
    EXPECT_STREQ(Node("write-byte").GetDescription(), "write EEPROM");
    EXPECT_STREQ(Node("memory").GetDescription(), "EEPROM memory area");
    EXPECT_STREQ(Node("rw-test").GetDescription(), "EEPROM read/write test");
    EXPECT_STREQ(Node("read-cont").GetDescription(),
                 "Read EEPROM continuously for specified amount of time");
}

TEST_F(I2cEepromDevice, MakesItsNodesOfTheirOwnClasses) {
    Mount(Part(8192));
    EXPECT_NE(dynamic_cast<CDiagI2cEepromReadCmd*>(&Node("read")), nullptr);
    EXPECT_NE(dynamic_cast<CDiagI2cEepromWriteCmd*>(&Node("write-byte")), nullptr);
    EXPECT_NE(dynamic_cast<CI2cEepromMemory*>(&Node("memory")), nullptr);
    EXPECT_NE(dynamic_cast<CDiagI2cEepromReadWriteTest*>(&Node("rw-test")), nullptr);
    EXPECT_NE(dynamic_cast<CDiagI2cEepromReadCont*>(&Node("read-cont")), nullptr);
}

TEST_F(I2cEepromDevice, IsADeviceUnderItsOwnNameAndDescription) {
    const CTestEeprom& eeprom = Mount(Part(8192));
    EXPECT_EQ(eeprom.GetNodeType(), TDEVICE);
    EXPECT_STREQ(eeprom.GetName(), "eeprom");
    EXPECT_STREQ(eeprom.GetDescription(), "an EEPROM");
}

TEST_F(I2cEepromDevice, TellsTheIdentifierOfItsCreator) {
    EXPECT_EQ(Mount(Part(8192)).getDevId(), CTestEeprom::DEV_ID);
}

TEST_F(I2cEepromDevice, SendsNothingWhileItIsBuilt) {
    MountBehindSwitch(Part(8192));
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_TRUE(m_log.Lines().empty());
}

TEST_F(I2cEepromDevice, DeclaresTheArgumentsOfRead) {
    Mount(Part(8192));
    EXPECT_EQ(DeclaredParamsOf(Node("read")),
              (CParams{{"addr", "EEPROM read address", VT_UINT32, 0},
                       {"length", "Byte size", VT_INT32, 0x10}}));
}

TEST_F(I2cEepromDevice, DeclaresTheArgumentsOfWriteByte) {
    Mount(Part(8192));
    EXPECT_EQ(DeclaredParamsOf(Node("write-byte")),
              (CParams{{"addr", "EEPROM write address", VT_UINT32, 0},
                       {"data", "Data value", VT_UINT8, 0}}));
}

TEST_F(I2cEepromDevice, DeclaresTheArgumentsOfTheReadWriteTest) {
    Mount(Part(8192));
    EXPECT_EQ(DeclaredParamsOf(Node("rw-test")),
              (CParams{{"start", "Start address (dflt=0)", VT_UINT16, 0x10},
                       {"end", "End address (dflt=EEPROM size-1)", VT_UINT16, 0x10}}));
}

TEST_F(I2cEepromDevice, LeavesTheArgumentsOfReadContToTheTimedTest) {
    class CPlainTimedTest : public CTimedTest {
      public:
        CPlainTimedTest() : CTimedTest("plain", "nothing of its own", "", true) {}
        bool TestExecute() override { return true; }
    };
    const CPlainTimedTest plain;
    Mount(Part(8192));
    EXPECT_THAT(ChildNames(Node("read-cont")), ElementsAre("duration", "passed", "failed"));
    EXPECT_STREQ(Node("read-cont").GetChildren()[0]->GetDescription(),
                 plain.GetChildren()[0]->GetDescription());
}

TEST_F(I2cEepromDevice, DescribesItsMemoryToTheShell) {
    Mount(Part(8192));
    EXPECT_EQ(Node("memory").GetNodeType(), TARRAY_A);
    EXPECT_EQ(Send(Node("memory"), MSG_QUERY).bytes,
              CBytes().U8(SUCCESS).U8(0x31).U64(0).U64(8192).U8(0).Get());
}

TEST_F(I2cEepromDevice, DescribesTheMemoryOfAReadOnlyPartAsReadOnly) {
    Mount(Part(256), true);
    EXPECT_EQ(Send(Node("memory"), MSG_QUERY).bytes,
              CBytes().U8(SUCCESS).U8(0x31).U64(0).U64(256).U8(1).Get());
}

TEST_F(I2cEepromDevice, AddsNoVirtualOperations) {
    EXPECT_EQ(SlotAfter<CDiagI2cEepromDevice>(), SlotAfter<CDiagDevice>());
    EXPECT_EQ((SlotOf<bool(uint16_t, byte_t*, uint16_t)>(&CDiagI2cEepromDevice::ReadMemory)),
              NOT_VIRTUAL);
    EXPECT_EQ((SlotOf<bool(uint16_t, const byte_t*, uint16_t)>(&CDiagI2cEepromDevice::WriteMemory)),
              NOT_VIRTUAL);
}

TEST_F(I2cEepromDevice, ReplacesTheElementOperationsOfItsMemory) {
    EXPECT_EQ((SlotOf<void(uint64_t, const byte_t&)>(&CI2cEepromMemory::Set)), 9U);
    EXPECT_EQ(SlotOf<byte_t(uint64_t)>(&CI2cEepromMemory::Get), 10U);
    EXPECT_EQ(SlotAfter<CI2cEepromMemory>(), 12U);
}

// Without a record of attributes.

TEST_F(I2cEepromDevice, Holds8192BytesUnlessToldOtherwise) {
    MountWithoutAttributes();
    EXPECT_EQ(Send(Node("memory"), MSG_QUERY).bytes,
              CBytes().U8(SUCCESS).U8(0x31).U64(0).U64(8192).U8(0).Get());
}

TEST_F(I2cEepromDevice, MovesByteByByteHighAddressFirstUnlessToldOtherwise) {
    CTestEeprom& eeprom = MountWithoutAttributes();
    Bytes data(3);
    EXPECT_TRUE(eeprom.ReadMemory(0x1234, data.data(), 3));
    ASSERT_THAT(m_bus.Xfers(), SizeIs(3));
    EXPECT_EQ(m_bus.Xfers()[0].req.cmd_sel, 2);
    EXPECT_EQ(m_bus.Xfers()[0].req.cmd, 0x3412);
    EXPECT_THAT(Calls(), ElementsAre("RD 4660+1", "RD 4661+1", "RD 4662+1"));
}

TEST_F(I2cEepromDevice, TestsAllItsBytesUnlessToldOtherwise) {
    MountWithoutAttributes();
    EXPECT_EQ(Call("rw-test").bytes, Bytes{SUCCESS});
    // 8192 single bytes in each of four phases.
    ASSERT_THAT(m_bus.Xfers(), SizeIs(4 * 8192));
    EXPECT_EQ(Calls().front(), "RD 0+1");
    EXPECT_EQ(Calls()[8191], "RD 8191+1");
    EXPECT_EQ(Calls()[8192], "WR 0+1");
    EXPECT_EQ(Calls().back(), "WR 8191+1");
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromDevice, KeepsACopyOfItsAttributes) {
    i2c_eeprom_attr_t attr = Part(256, 16);
    CTestEeprom eeprom(m_bus, &attr, false, -1);
    attr = Part(65536, 1);
    attr.addrh_first = false;
    Bytes data(16);
    EXPECT_TRUE(eeprom.ReadMemory(0x0102, data.data(), 16));
    ASSERT_THAT(m_bus.Xfers(), SizeIs(1));
    EXPECT_EQ(m_bus.Xfers()[0].req.cmd, 0x0201);
}

}  // namespace
