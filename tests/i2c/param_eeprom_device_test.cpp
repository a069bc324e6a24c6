// What a parameter EEPROM is made of: its children in order, and what its
// commands declare.
#include <gmock/gmock.h>

#include "i2c/param_eeprom_check_cmd.h"
#include "i2c/param_eeprom_erase_cmd.h"
#include "i2c/param_eeprom_program_cmd.h"
#include "tests/i2c/param_eeprom_test.h"
#include "tests/support/declared_params.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using CParams = std::vector<CDeclaredParam>;

class ParamEepromDevice : public CParamEepromTest {
  protected:
    Texts ChildNames() {
        Texts names;
        for (const CDiagObj* child : Device().GetChildren()) {
            names.emplace_back(child->GetName());
        }
        return names;
    }
    const CParams m_file_name = {
        {"xml_filename", "xml file name containing Dimm table", VT_STRING, 0x10}};
};

TEST_F(ParamEepromDevice, HasItsCommandsBehindThoseOfAnEeprom) {
    MountParam();
    EXPECT_THAT(ChildNames(),
                ElementsAre("read", "write-byte", "memory", "rw-test", "read-cont",
                            "prog-param-eeprom", "check-param-eeprom", "erase-param-eeprom"));
}

TEST_F(ParamEepromDevice, HasThePathCommandsFirstBehindASwitch) {
    MountParamBehindSwitch();
    EXPECT_THAT(ChildNames(), ElementsAre("enable-path", "clr-path", "read", "write-byte", "memory",
                                          "rw-test", "read-cont", "prog-param-eeprom",
                                          "check-param-eeprom", "erase-param-eeprom"));
}

TEST_F(ParamEepromDevice, IsADeviceUnderItsOwnNameAndDescription) {
    MountParam();
    EXPECT_EQ(Device().GetNodeType(), TDEVICE);
    EXPECT_STREQ(Device().GetName(), "param-eeprom");
    EXPECT_STREQ(Device().GetDescription(), "a parameter EEPROM");
}

TEST_F(ParamEepromDevice, DescribesItsCommands) {
    MountParam();
    EXPECT_STREQ(Command("prog-param-eeprom").GetDescription(),
                 "Writes a Dimm table on parameter eeprom specified by path of XML file passed");
    EXPECT_STREQ(Command("check-param-eeprom").GetDescription(),
                 "Checks the Dimm table on parameter eeprom specified by path of XML file passed");
    EXPECT_STREQ(Command("erase-param-eeprom").GetDescription(),
                 "Erases the Dimm table on parameter eeprom");
}

TEST_F(ParamEepromDevice, MakesItsCommandsOfTheirOwnClasses) {
    MountParam();
    EXPECT_NE(dynamic_cast<CParamEepromCmdWrite*>(&Command("prog-param-eeprom")), nullptr);
    EXPECT_NE(dynamic_cast<CParamEepromCmdCheck*>(&Command("check-param-eeprom")), nullptr);
    EXPECT_NE(dynamic_cast<CParamEepromCmdErase*>(&Command("erase-param-eeprom")), nullptr);
    for (const char* name : {"prog-param-eeprom", "check-param-eeprom", "erase-param-eeprom"}) {
        EXPECT_NE(dynamic_cast<CParamEepromCmd*>(&Command(name)), nullptr);
        EXPECT_EQ(Command(name).GetNodeType(), TFUNC);
    }
}

TEST_F(ParamEepromDevice, DeclaresTheFileThatIsProgrammed) {
    MountParam();
    EXPECT_EQ(DeclaredParamsOf(Command("prog-param-eeprom")), m_file_name);
}

TEST_F(ParamEepromDevice, DeclaresTheFileThatIsCheckedAndWhatIsAnswered) {
    MountParam();
    CParams expected = m_file_name;
    expected.push_back({"version", "XML Version", VT_UINT32, 1});
    expected.push_back({"crc32", "Computed CRC value", VT_UINT32 | VF_HEX | VF_PAD, 1});
    EXPECT_EQ(DeclaredParamsOf(Command("check-param-eeprom")), expected);
}

TEST_F(ParamEepromDevice, DeclaresNothingForErasing) {
    MountParam();
    EXPECT_EQ(DeclaredParamsOf(Command("erase-param-eeprom")), CParams{});
}

TEST_F(ParamEepromDevice, SendsNothingWhileItIsBuilt) {
    MountParamBehindSwitch();
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(ParamEepromDevice, HasTheSizeOfItsAttributesOrOfAnEepromWithoutAny) {
    MountParam(Part(2048));
    EXPECT_EQ(Device().GetMemSize(), 2048U);
    const CTestParamEeprom plain(m_bus, nullptr, -1);
    EXPECT_EQ(plain.GetMemSize(), 8192U);
}

}  // namespace
