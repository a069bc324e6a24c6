// Devices with ports in the tree: what they are, and the commands they have.
#include <type_traits>

#include "i2c/i2c_register_commands.h"
#include "tests/io/io_port_test.h"
#include "tests/support/declared_params.h"
#include "tests/support/virtual_slot.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> ChildrenOf(const CDiagObj& node) {
    std::vector<std::string> names;
    for (const CDiagObj* child : node.GetChildren()) {
        names.emplace_back(child->GetName());
    }
    return names;
}

using IoDevice = CIoPortTest;

TEST_F(IoDevice, IsARegisterDeviceWithItsOwnNameAndDescription) {
    EXPECT_STREQ(m_plain.GetName(), "gpio");
    EXPECT_STREQ(m_plain.GetDescription(), "plain ports");
    EXPECT_EQ(m_plain.GetNodeType(), TDEVICE);
    EXPECT_STREQ(m_expander.GetName(), "expander");
    EXPECT_STREQ(m_expander.GetDescription(), "ports of a chip");
    EXPECT_EQ(m_expander.GetNodeType(), TDEVICE);
    EXPECT_TRUE((std::is_base_of_v<CDiagRegisterDevice, CDiagIoDevice>));
    EXPECT_TRUE((std::is_base_of_v<CDiagI2cSlaveRegisterDevice, CDiagI2cIoDevice>));
}

TEST_F(IoDevice, StartsWithoutPorts) {
    EXPECT_EQ(m_plain.m_num_ports, 0);
    EXPECT_EQ(m_plain.m_port_width, 0);
    EXPECT_EQ(m_expander.m_num_ports, 0);
    EXPECT_EQ(m_expander.m_port_width, 0);
}

TEST_F(IoDevice, SaysAndDoesNothingWhenItIsCreated) {
    EXPECT_THAT(m_journal.Entries(), IsEmpty());
    EXPECT_THAT(m_bus.Seen(), IsEmpty());
}

TEST_F(IoDevice, HasItsPortCommandsBehindThoseOfItsRegisters) {
    const std::vector<std::string> names = ChildrenOf(m_plain);
    ASSERT_EQ(names.size(), 8U);
    EXPECT_EQ(names[6], "read-port");
    EXPECT_EQ(names[7], "write-port");
    EXPECT_THAT(names, testing::IsSupersetOf({"regpeek", "regpoke", "regset", "regclr"}));
}

TEST_F(IoDevice, HasItsPortCommandsBehindThoseOfThePathBelowASwitch) {
    EXPECT_THAT(ChildrenOf(m_expander),
                ElementsAre("regdump", "regtable", "regpeek", "regpoke", "regset", "regclr",
                            "enable-path", "clr-path", "read-port", "write-port"));
}

TEST_F(IoDevice, HasPortCommandsButNoPathCommandsOnARootBus) {
    const CI2cPorts device(m_journal, m_script, "new", "on a root bus", nullptr, &m_bus);
    EXPECT_THAT(ChildrenOf(device), ElementsAre("regdump", "regtable", "regpeek", "regpoke",
                                                "regset", "regclr", "read-port", "write-port"));
}

TEST_F(IoDevice, HasCommandsOfItsOwnClasses) {
    EXPECT_NE(dynamic_cast<CReadPortCmd*>(m_plain.FindChild("read-port")), nullptr);
    EXPECT_NE(dynamic_cast<CWritePortCmd*>(m_plain.FindChild("write-port")), nullptr);
    EXPECT_NE(dynamic_cast<CI2cReadPortCmd*>(m_expander.FindChild("read-port")), nullptr);
    EXPECT_NE(dynamic_cast<CI2cWritePortCmd*>(m_expander.FindChild("write-port")), nullptr);
    EXPECT_NE(dynamic_cast<CI2cSalvePeekRegCmd*>(m_expander.FindChild("regpeek")), nullptr);
}

TEST_F(IoDevice, DescribesItsCommandsAndTheirArguments) {
    using Params = std::vector<CDeclaredParam>;
    for (CDiagDevice* device :
         {static_cast<CDiagDevice*>(&m_plain), static_cast<CDiagDevice*>(&m_expander)}) {
        SCOPED_TRACE(device->GetName());
        const CDiagMenu& read = NodeAt(*device, "read-port");
        EXPECT_EQ(read.GetNodeType(), TFUNC);
        EXPECT_STREQ(read.GetDescription(), "Read I/O port");
        EXPECT_EQ(DeclaredParamsOf(read), (Params{{"port", "port number", VT_UINT8, PT_IN},
                                                  {"port", "Port value", VT_UINT8, PT_OUT}}));
        const CDiagMenu& write = NodeAt(*device, "write-port");
        EXPECT_EQ(write.GetNodeType(), TFUNC);
        EXPECT_STREQ(write.GetDescription(), "Write I/O port");
        EXPECT_EQ(DeclaredParamsOf(write), (Params{{"port", "port number", VT_UINT8, PT_IN},
                                                   {"val", "value", VT_UINT8, PT_IN},
                                                   {"msk", "mask", VT_UINT8, PT_IN}}));
    }
}

using ReadPort = uint32_t(int, uint8_t*);
using WritePort = uint32_t(int, uint8_t, uint8_t);

TEST(IoVirtualSlots, PlainPortsFollowRegisters) {
    EXPECT_EQ((SlotOf<bool(uint32_t, std::string)>(&CDiagIoDevice::dumpRegs)), 15U);
    EXPECT_EQ(SlotOf<ReadPort>(&CDiagIoDevice::ReadIoPort), 18U);
    EXPECT_EQ(SlotOf<WritePort>(&CDiagIoDevice::WriteIoPort), 19U);
    EXPECT_EQ(SlotAfter<CDiagIoDevice>(), 20U);
    EXPECT_TRUE(std::is_abstract_v<CDiagIoDevice>);
}

TEST(IoVirtualSlots, PortsOnAnI2cBusFollowRegisters) {
    EXPECT_EQ((SlotOf<bool(uint32_t, std::string)>(&CDiagI2cIoDevice::dumpRegs)), 15U);
    EXPECT_EQ(SlotOf<ReadPort>(&CDiagI2cIoDevice::ReadIoPort), 18U);
    EXPECT_EQ(SlotOf<WritePort>(&CDiagI2cIoDevice::WriteIoPort), 19U);
    EXPECT_EQ(SlotAfter<CDiagI2cIoDevice>(), 20U);
    EXPECT_TRUE(std::is_abstract_v<CDiagI2cIoDevice>);
}

}  // namespace
