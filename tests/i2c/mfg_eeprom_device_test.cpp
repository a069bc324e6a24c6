// What a manufacturing EEPROM is made of, and what its commands declare.
#include <gmock/gmock.h>

#include "i2c/mfg_eeprom_commands.h"
#include "tests/i2c/mfg_eeprom_test.h"
#include "tests/support/bytes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using CParams = std::vector<CDeclaredParam>;

class MfgEepromDevice : public CMfgEepromTest {};

TEST_F(MfgEepromDevice, HasItsCommandsBehindThoseOfAnEeprom) {
    MountRecord(Mfg());
    EXPECT_THAT(ChildNames(),
                ElementsAre("read", "write-byte", "memory", "rw-test", "read-cont",
                            "show-manuf-info", "get-serial-num", "get-board-info", "chk-mfg"));
}

TEST_F(MfgEepromDevice, HasThePathCommandsFirstBehindASwitch) {
    MountRecordBehindSwitch(Mfg());
    EXPECT_THAT(ChildNames(), ElementsAre("enable-path", "clr-path", "read", "write-byte", "memory",
                                          "rw-test", "read-cont", "show-manuf-info",
                                          "get-serial-num", "get-board-info", "chk-mfg"));
}

TEST_F(MfgEepromDevice, IsADeviceUnderItsOwnNameAndDescription) {
    MountRecord(Mfg());
    EXPECT_EQ(Device().GetNodeType(), TDEVICE);
    EXPECT_STREQ(Device().GetName(), "record-eeprom");
    EXPECT_STREQ(Device().GetDescription(), "an EEPROM with a record");
}

TEST_F(MfgEepromDevice, HasNoIdentifierOfItsOwn) {
    MountRecord(Mfg());
    EXPECT_EQ(Device().getDevId(), 0);
}

TEST_F(MfgEepromDevice, DescribesItsMemoryAsWritable) {
    MountRecord(Mfg());
    EXPECT_EQ(Send(Command("memory"), MSG_QUERY).bytes,
              CBytes().U8(SUCCESS).U8(0x31).U64(0).U64(8192).U8(0).Get());
}

TEST_F(MfgEepromDevice, DescribesItsCommands) {
    MountRecord(Mfg());
    EXPECT_STREQ(Command("show-manuf-info").GetDescription(),
                 "Read and display manufacturing EEPROM contents");
    EXPECT_STREQ(Command("get-serial-num").GetDescription(),
                 "Get Board Serial Number from manufacturing EEPROM");
    EXPECT_STREQ(Command("get-board-info").GetDescription(),
                 "Get attribute of board from manufacturing EEPROM");
    EXPECT_STREQ(Command("chk-mfg").GetDescription(), "Check Mfg Content test");
}

TEST_F(MfgEepromDevice, MakesItsCommandsOfTheirOwnClasses) {
    MountRecord(Mfg());
    EXPECT_NE(dynamic_cast<CShowManufEeprom*>(&Command("show-manuf-info")), nullptr);
    EXPECT_NE(dynamic_cast<CGetBoardSerial*>(&Command("get-serial-num")), nullptr);
    EXPECT_NE(dynamic_cast<CGetBoardInfo*>(&Command("get-board-info")), nullptr);
    EXPECT_NE(dynamic_cast<CCheckMfgTest*>(&Command("chk-mfg")), nullptr);
    EXPECT_NE(dynamic_cast<CDiagTest*>(&Command("chk-mfg")), nullptr);
    for (const char* name : {"show-manuf-info", "get-serial-num", "get-board-info"}) {
        EXPECT_EQ(Command(name).GetNodeType(), TFUNC) << name;
    }
}

TEST_F(MfgEepromDevice, DeclaresWhatItsCommandsAnswer) {
    MountRecord(Mfg());
    const CDeclaredParam serial = {"serialnum", "Board Serial Number", VT_STRING, 1};
    EXPECT_THAT(DeclaredParamsOf(Command("show-manuf-info")), IsEmpty());
    EXPECT_EQ(DeclaredParamsOf(Command("get-serial-num")), (CParams{serial}));
    EXPECT_EQ(DeclaredParamsOf(Command("get-board-info")),
              (CParams{serial, {"rstate", "Board RState (numeric)", 0x35, 1}}));
    EXPECT_THAT(DeclaredParamsOf(Command("chk-mfg")), IsEmpty());
}

TEST_F(MfgEepromDevice, SendsNothingWhileItIsBuilt) {
    MountRecordBehindSwitch(Mfg());
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(MfgEepromDevice, IsKnownToItsCommandsWhereverTheyHang) {
    MountRecordBehindSwitch(Mfg(96));
    Store(ImageNamed("mfg"));
    for (const char* name : {"show-manuf-info", "get-serial-num", "get-board-info"}) {
        m_journal.Clear();
        EXPECT_EQ(AskDetached(name).Code(), SUCCESS) << name;
        EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+96", CLOSE)) << name;
    }
}

TEST_F(MfgEepromDevice, IsLookedForByItsTest) {
    MountRecordBehindSwitch(Mfg());
    EXPECT_EQ(AskDetached("chk-mfg").bytes, Bytes{FAIL});
    EXPECT_THAT(Calls(), IsEmpty());
    ASSERT_THAT(m_log.Texts(LW_ERR_SW), SizeIs(1));
    ASSERT_FALSE(m_log.Texts(LW_ERR_SW).empty());
    EXPECT_TRUE(IsMissingDeviceText(m_log.Texts(LW_ERR_SW)[0]));
}

}  // namespace
