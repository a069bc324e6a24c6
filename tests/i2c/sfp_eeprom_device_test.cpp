// What an SFP EEPROM is made of, and what its commands declare.
#include <gmock/gmock.h>

#include "i2c/sfp_eeprom_commands.h"
#include "tests/i2c/sfp_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using CParams = std::vector<CDeclaredParam>;

class SfpEepromDevice : public CSfpEepromTest {};

TEST_F(SfpEepromDevice, HasItsCommandsBehindThoseOfAReadOnlyEeprom) {
    MountRecord(Sfp());
    EXPECT_THAT(ChildNames(),
                ElementsAre("read", "memory", "rw-test", "read-cont", "show-eeprom-info", "type"));
}

TEST_F(SfpEepromDevice, HasThePathCommandsFirstBehindASwitch) {
    MountRecordBehindSwitch(Sfp());
    EXPECT_THAT(ChildNames(), ElementsAre("enable-path", "clr-path", "read", "memory", "rw-test",
                                          "read-cont", "show-eeprom-info", "type"));
}

TEST_F(SfpEepromDevice, IsADeviceUnderItsOwnNameAndDescription) {
    MountRecord(Sfp());
    EXPECT_EQ(Device().GetNodeType(), TDEVICE);
    EXPECT_STREQ(Device().GetName(), "record-eeprom");
    EXPECT_STREQ(Device().GetDescription(), "an EEPROM with a record");
}

TEST_F(SfpEepromDevice, HasNoIdentifierOfItsOwn) {
    MountRecord(Sfp());
    EXPECT_EQ(Device().getDevId(), 0);
}

TEST_F(SfpEepromDevice, DescribesItsMemoryAsReadOnly) {
    MountRecord(Sfp());
    EXPECT_EQ(Send(Command("memory"), MSG_QUERY).bytes,
              CBytes().U8(SUCCESS).U8(0x31).U64(0).U64(256).U8(1).Get());
}

TEST_F(SfpEepromDevice, DescribesItsCommands) {
    MountRecord(Sfp());
    EXPECT_STREQ(Command("show-eeprom-info").GetDescription(),
                 "Read and display SFP Serial ID EEPROM contents");
    EXPECT_STREQ(Command("type").GetDescription(), "Read SFP type: 1G or 10G");
}

TEST_F(SfpEepromDevice, MakesItsCommandsOfTheirOwnClasses) {
    MountRecord(Sfp());
    EXPECT_NE(dynamic_cast<CShowSfpEeprom*>(&Command("show-eeprom-info")), nullptr);
    EXPECT_NE(dynamic_cast<CSfpType*>(&Command("type")), nullptr);
    EXPECT_EQ(Command("show-eeprom-info").GetNodeType(), TFUNC);
    EXPECT_EQ(Command("type").GetNodeType(), TFUNC);
}

TEST_F(SfpEepromDevice, DeclaresWhatItsCommandsAnswer) {
    MountRecord(Sfp());
    EXPECT_THAT(DeclaredParamsOf(Command("show-eeprom-info")), IsEmpty());
    EXPECT_EQ(DeclaredParamsOf(Command("type")),
              (CParams{{"type", "1- SFP, 10 - SFP+", VT_INT32, 1}}));
}

TEST_F(SfpEepromDevice, SendsNothingWhileItIsBuilt) {
    MountRecordBehindSwitch(Sfp());
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(SfpEepromDevice, IsKnownToItsCommandsWhereverTheyHang) {
    MountRecordBehindSwitch(Sfp());
    for (const char* name : {"show-eeprom-info", "type"}) {
        m_journal.Clear();
        EXPECT_EQ(AskDetached(name).Code(), SUCCESS) << name;
        EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+128", CLOSE)) << name;
    }
}

}  // namespace
