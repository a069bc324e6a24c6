// A register device in the tree: what it is, and the commands it has.
#include "tests/i2c/register_test.h"
#include "tests/support/declared_params.h"
#include "tests/support/lock_probe.h"

namespace {

using Names = std::vector<std::string>;
using Params = std::vector<CDeclaredParam>;

Names ChildrenOf(const CDiagObj& node) {
    Names names;
    for (const CDiagObj* child : node.GetChildren()) {
        names.emplace_back(child->GetName());
    }
    return names;
}

class I2cRegisterDevice : public CRegisterTest {
  protected:
    const Names m_register_commands{"regdump", "regtable", "regpeek",
                                    "regpoke", "regset",   "regclr"};
};

TEST_F(I2cRegisterDevice, IsADeviceWithItsOwnNameAndDescription) {
    EXPECT_STREQ(m_cpld.GetName(), "cpld");
    EXPECT_STREQ(m_cpld.GetDescription(), "a register chip");
    EXPECT_EQ(m_cpld.GetNodeType(), TDEVICE);
    EXPECT_NE(dynamic_cast<CDiagRegisterDevice*>(static_cast<CDiagObj*>(&m_cpld)), nullptr);
}

TEST_F(I2cRegisterDevice, StartsWithItsBusAndWithoutAddressAndChannel) {
    const CTestRegisterChip chip(m_journal, "new", &m_table, &m_mux);
    EXPECT_EQ(chip.m_i2cDev, &m_mux);
    EXPECT_EQ(chip.m_i2c_addr, 0xFF);
    EXPECT_EQ(chip.m_i2c_ch, -1);
}

TEST_F(I2cRegisterDevice, SaysAndTransfersNothingWhenItIsCreated) {
    const CTestRegisterChip chip(m_journal, "new", &m_table, &m_mux);
    EXPECT_TRUE(m_journal.Entries().empty());
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cRegisterDevice, HasItsOwnCommandsBehindThoseItLeavesAsTheyAre) {
    Names expected = m_register_commands;
    expected.insert(expected.end(), {"enable-path", "clr-path"});
    EXPECT_EQ(ChildrenOf(m_cpld), expected);
}

TEST_F(I2cRegisterDevice, HasNoPathCommandsOnARootBus) {
    const CTestRegisterChip chip(m_journal, "new", &m_table, &m_bus);
    EXPECT_EQ(ChildrenOf(chip), m_register_commands);
}

TEST_F(I2cRegisterDevice, HasPathCommandsBelowAnyBusThatIsNoMaster) {
    CScriptedBus bus;
    bus.m_is_master = false;
    const CTestRegisterChip chip(m_journal, "new", &m_table, &bus);
    EXPECT_EQ(chip.GetChildren().size(), 8U);
}

TEST_F(I2cRegisterDevice, HasTheSameCommandsWithoutATable) {
    const CTestRegisterChip chip(m_journal, "new", nullptr, &m_bus);
    EXPECT_EQ(ChildrenOf(chip), m_register_commands);
}

TEST_F(I2cRegisterDevice, HasCommandsOfItsOwnClasses) {
    EXPECT_NE(dynamic_cast<CI2cSalvePeekRegCmd*>(m_cpld.FindChild("regpeek")), nullptr);
    EXPECT_NE(dynamic_cast<CI2cSalvePokeRegCmd*>(m_cpld.FindChild("regpoke")), nullptr);
    EXPECT_NE(dynamic_cast<CI2cSalveSetBitsRegCmd*>(m_cpld.FindChild("regset")), nullptr);
    EXPECT_NE(dynamic_cast<CI2cSalveClrBitsRegCmd*>(m_cpld.FindChild("regclr")), nullptr);
    EXPECT_NE(dynamic_cast<CEnableI2cPathCmd*>(m_cpld.FindChild("enable-path")), nullptr);
    EXPECT_NE(dynamic_cast<CClearI2cPathCmd*>(m_cpld.FindChild("clr-path")), nullptr);
}

TEST_F(I2cRegisterDevice, DescribesItsCommands) {
    const std::map<std::string, std::string> expected = {
        {"regpeek", "Peek Register Value"},
        {"regpoke", "Poke Register Value"},
        {"regset", "Set Bits in a Register"},
        {"regclr", "Clear Bits in a Register"},
        {"enable-path", "enable I2c switch path for the device"},
        {"clr-path", "clear I2c switch path for the device"},
    };
    for (const auto& [name, description] : expected) {
        const CDiagMenu& command = RegCommand(name);
        EXPECT_EQ(command.GetDescription(), description);
        EXPECT_EQ(command.GetNodeType(), TFUNC);
        EXPECT_EQ(command.GetParent(), &m_cpld);
    }
}

TEST_F(I2cRegisterDevice, DeclaresTheArgumentsOfItsCommands) {
    const CDeclaredParam name{"regname", "Register Name", VT_STRING, PT_IN};
    const CDeclaredParam mask{"mask", "Bit mask to set", 0x17, PT_IN};
    EXPECT_EQ(DeclaredParamsOf(RegCommand("regpeek")),
              (Params{name, {"regvalue", "Register Value", VT_STRING, PT_OUT}}));
    EXPECT_EQ(DeclaredParamsOf(RegCommand("regpoke")),
              (Params{name, {"regvalue", "Register Value", 0x17, PT_IN}}));
    EXPECT_EQ(DeclaredParamsOf(RegCommand("regset")), (Params{name, mask}));
    EXPECT_EQ(DeclaredParamsOf(RegCommand("regclr")), (Params{name, mask}));
    EXPECT_TRUE(DeclaredParamsOf(RegCommand("enable-path")).empty());
    EXPECT_TRUE(DeclaredParamsOf(RegCommand("clr-path")).empty());
}

TEST_F(I2cRegisterDevice, IsAloneWithARegisterCommandWhileItRuns) {
    bool shut_out = false;
    m_cpld.OnAccess([&] { shut_out = WouldWait(m_cpld, DEV_LOCK_PROTECT); });
    for (const char* command : {"regpeek", "regpoke", "regset", "regclr"}) {
        SCOPED_TRACE(command);
        shut_out = false;
        EXPECT_EQ(Send(RegCommand(command), MSG_CALL, std::string("mode"), uint64_t{1}).Code(), 0);
        EXPECT_TRUE(shut_out);
        EXPECT_FALSE(WouldWait(m_cpld, DEV_LOCK_ACCESS));
    }
}

TEST_F(I2cRegisterDevice, IsSharedByThePathCommandsAndKeptFromTests) {
    bool shut_out = true;
    bool tests_shut_out = false;
    m_mux.OnCall([&] {
        shut_out = WouldWait(m_cpld, DEV_LOCK_PROTECT);
        tests_shut_out = WouldWait(m_cpld, DEV_LOCK_ACCESS);
    });
    for (const char* command : {"enable-path", "clr-path"}) {
        SCOPED_TRACE(command);
        shut_out = true;
        tests_shut_out = false;
        EXPECT_EQ(Send(RegCommand(command), MSG_CALL).bytes, Bytes{SUCCESS});
        EXPECT_FALSE(shut_out);
        EXPECT_TRUE(tests_shut_out);
        EXPECT_FALSE(WouldWait(m_cpld, DEV_LOCK_ACCESS));
    }
}

TEST_F(I2cRegisterDevice, IsActedOnByItsRegisterCommandsWhereverTheyHang) {
    for (const char* command : {"regpeek", "regpoke", "regset", "regclr"}) {
        SCOPED_TRACE(command);
        std::unique_ptr<CDiagObj> node = m_cpld.RemoveChild(RegCommand(command).GetId());
        m_on_bus.AddChild(node.release(), CDiagObj::NO_SORT);
        m_journal.Clear();
        EXPECT_EQ(
            Send(NodeAt(m_on_bus, command), MSG_CALL, std::string("mode"), uint64_t{1}).Code(), 0);
        ASSERT_FALSE(m_journal.Entries().empty());
        EXPECT_EQ(m_journal.Entries().front(), m_path_opened.front());
    }
}

}  // namespace
