// A new bus: what it is and which commands it brings.
#include "tests/i2c/bus_test.h"
#include "tests/support/declared_params.h"

namespace {

constexpr unsigned int UINT8 = 1;
constexpr unsigned int STRING = 8;
constexpr unsigned int REQUIRED = 0;
constexpr unsigned int OPTIONAL = 0x10;

class I2cBus : public CBusTest {};

TEST_F(I2cBus, IsADeviceWithItsOwnNameAndDescription) {
    EXPECT_STREQ(m_bus.GetName(), "i2c-0");
    EXPECT_STREQ(m_bus.GetDescription(), "scripted bus");
    EXPECT_EQ(m_bus.GetNodeType(), TDEVICE);
}

TEST_F(I2cBus, StartsAsAMasterWithoutClassNameAndAddresses) {
    EXPECT_TRUE(m_bus.m_is_master);
    EXPECT_EQ(m_bus.my_class_name, "");
    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
}

TEST_F(I2cBus, StartsUnlocked) {
    EXPECT_NO_THROW({ const CGuard<CMutex> guard(m_bus.m_lock); });
}

TEST_F(I2cBus, HasFourCommandsInThisOrder) {
    std::vector<std::pair<std::string, std::string>> commands;
    for (CDiagObj* child : m_bus.GetChildren()) {
        EXPECT_EQ(child->GetNodeType(), TFUNC) << child->GetName();
        EXPECT_NE(dynamic_cast<CDiagFunc*>(child), nullptr) << child->GetName();
        EXPECT_EQ(child->GetParent(), &m_bus) << child->GetName();
        commands.emplace_back(child->GetName(), child->GetDescription());
    }
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"chk-dev", "check an I2c device"},
        {"probe", "probe I2c devices"},
        {"trans", "transfer an I2c command"},
        {"set-sw-mode", "Set I2c Switch mode"},
    };
    EXPECT_EQ(commands, expected);
}

TEST_F(I2cBus, SaysAndTransfersNothingWhenItIsCreated) {
    const CScriptedBus another("i2c-1");
    EXPECT_TRUE(m_log.Lines().empty());
    EXPECT_TRUE(m_bus.Seen().empty());
    EXPECT_TRUE(another.Seen().empty());
}

TEST_F(I2cBus, DeclaresTheArgumentOfChkDev) {
    const std::vector<CDeclaredParam> expected = {{"addr", "device address", UINT8, REQUIRED}};
    EXPECT_EQ(DeclaredParamsOf(Command("chk-dev")), expected);
}

TEST_F(I2cBus, DeclaresNoArgumentOfProbe) {
    EXPECT_TRUE(Command("probe").GetChildren().empty());
}

TEST_F(I2cBus, DeclaresTheOptionalArgumentOfSetSwMode) {
    const std::vector<CDeclaredParam> expected = {{"mode", "0-3", UINT8, OPTIONAL}};
    EXPECT_EQ(DeclaredParamsOf(Command("set-sw-mode")), expected);
}

TEST_F(I2cBus, DeclaresThe39ArgumentsOfTransWithoutATenthDataByte) {
    const std::vector<CDeclaredParam> expected = {
        {"rdwr", "rd/wr", STRING, REQUIRED},
        {"addr", "address", UINT8, REQUIRED},
        {"cmd-size", "command size", UINT8, REQUIRED},
        {"cmd|data-size", "command or data_size", UINT8, OPTIONAL},
        {"cmd|data-size|data", "command or data_size or data", UINT8, OPTIONAL},
        {"data_size|data", "data_size/data", UINT8, OPTIONAL},
        {"data1", "data1", UINT8, OPTIONAL},
        {"data2", "data2", UINT8, OPTIONAL},
        {"data3", "data3", UINT8, OPTIONAL},
        {"data4", "data4", UINT8, OPTIONAL},
        {"data5", "data5", UINT8, OPTIONAL},
        {"data6", "data6", UINT8, OPTIONAL},
        {"data7", "data7", UINT8, OPTIONAL},
        {"data8", "data8", UINT8, OPTIONAL},
        {"data9", "data9", UINT8, OPTIONAL},
        {"data11", "data11", UINT8, OPTIONAL},
        {"data12", "data12", UINT8, OPTIONAL},
        {"data13", "data13", UINT8, OPTIONAL},
        {"data14", "data14", UINT8, OPTIONAL},
        {"data15", "data15", UINT8, OPTIONAL},
        {"data16", "data16", UINT8, OPTIONAL},
        {"data17", "data17", UINT8, OPTIONAL},
        {"data18", "data18", UINT8, OPTIONAL},
        {"data19", "data19", UINT8, OPTIONAL},
        {"data20", "data20", UINT8, OPTIONAL},
        {"data21", "data21", UINT8, OPTIONAL},
        {"data22", "data22", UINT8, OPTIONAL},
        {"data23", "data23", UINT8, OPTIONAL},
        {"data24", "data24", UINT8, OPTIONAL},
        {"data25", "data25", UINT8, OPTIONAL},
        {"data26", "data26", UINT8, OPTIONAL},
        {"data27", "data27", UINT8, OPTIONAL},
        {"data28", "data28", UINT8, OPTIONAL},
        {"data29", "data29", UINT8, OPTIONAL},
        {"data30", "data30", UINT8, OPTIONAL},
        {"data31", "data31", UINT8, OPTIONAL},
        {"data32", "data32", UINT8, OPTIONAL},
        {"data33", "data33", UINT8, OPTIONAL},
        {"data34", "data34", UINT8, OPTIONAL},
    };
    ASSERT_EQ(expected.size(), 39U);
    EXPECT_EQ(DeclaredParamsOf(Command("trans")), expected);
}

}  // namespace
