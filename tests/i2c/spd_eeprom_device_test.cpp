// What an SPD EEPROM is made of.
#include <gmock/gmock.h>

#include "tests/i2c/spd_eeprom_test.h"
#include "tests/support/bytes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SpdEepromDevice : public CSpdEepromTest {};

TEST_F(SpdEepromDevice, HasItsCommandBehindThoseOfAReadOnlyEeprom) {
    MountRecord(Spd());
    EXPECT_THAT(ChildNames(),
                ElementsAre("read", "memory", "rw-test", "read-cont", "show-spd-info"));
}

TEST_F(SpdEepromDevice, HasThePathCommandsFirstBehindASwitch) {
    MountRecordBehindSwitch(Spd());
    EXPECT_THAT(ChildNames(), ElementsAre("enable-path", "clr-path", "read", "memory", "rw-test",
                                          "read-cont", "show-spd-info"));
}

TEST_F(SpdEepromDevice, IsADeviceUnderItsOwnNameAndDescription) {
    MountRecord(Spd());
    EXPECT_EQ(Device().GetNodeType(), TDEVICE);
    EXPECT_STREQ(Device().GetName(), "record-eeprom");
    EXPECT_STREQ(Device().GetDescription(), "an EEPROM with a record");
}

TEST_F(SpdEepromDevice, HasNoIdentifierOfItsOwn) {
    MountRecord(Spd());
    EXPECT_EQ(Device().getDevId(), 0);
}

TEST_F(SpdEepromDevice, DescribesItsMemoryAsReadOnly) {
    MountRecord(Spd());
    EXPECT_EQ(Send(Command("memory"), MSG_QUERY).bytes,
              CBytes().U8(SUCCESS).U8(0x31).U64(0).U64(256).U8(1).Get());
}

TEST_F(SpdEepromDevice, DescribesItsCommand) {
    MountRecord(Spd());
    EXPECT_STREQ(Command("show-spd-info").GetDescription(), "Read and display SPD EEPROM contents");
    EXPECT_EQ(Command("show-spd-info").GetNodeType(), TFUNC);
    EXPECT_NE(dynamic_cast<CShowSpdEepromCmd*>(&Command("show-spd-info")), nullptr);
    EXPECT_THAT(DeclaredParamsOf(Command("show-spd-info")), IsEmpty());
}

TEST_F(SpdEepromDevice, SendsNothingWhileItIsBuilt) {
    MountRecordBehindSwitch(Spd());
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(SpdEepromDevice, IsKnownToItsCommandWhereverThatHangs) {
    MountRecordBehindSwitch(Spd());
    testing::internal::CaptureStdout();
    EXPECT_EQ(AskDetached("show-spd-info").bytes, Bytes{SUCCESS});
    testing::internal::GetCapturedStdout();
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+128", "RD 128+128", CLOSE));
}

}  // namespace
