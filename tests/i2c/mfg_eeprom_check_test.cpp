// The test "chk-mfg", run by requests.
#include <gmock/gmock.h>

#include "framework/diag_test_base.h"
#include "tests/i2c/mfg_eeprom_test.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MfgEepromCheck : public CMfgEepromTest {
  protected:
    MfgEepromCheck() {
        Store(ImageNamed("mfg"));
        MountRecordBehindSwitch(Mfg(32));
    }
    CAnswer Check() { return Ask("chk-mfg"); }
    ETestStatus Status() { return dynamic_cast<CDiagTestBase&>(Command("chk-mfg")).GetStatus(); }
};

TEST_F(MfgEepromCheck, IsUntestedBeforeItsFirstRun) {
    EXPECT_EQ(Status(), DS_UNTESTED);
}

TEST_F(MfgEepromCheck, PassesAGoodRecord) {
    EXPECT_EQ(Check().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Status(), DS_PASSED);
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+32", "RD 32+32", "RD 64+32", CLOSE));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MfgEepromCheck, PassesWhateverTheStep) {
    for (unsigned int step = 0; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        MountRecord(Mfg(static_cast<uint8_t>(step)));
        ASSERT_EQ(Check().bytes, Bytes{SUCCESS});
        ASSERT_EQ(Status(), DS_PASSED);
    }
}

TEST_F(MfgEepromCheck, PrintsNothingOfTheRecord) {
    EXPECT_EQ(Check().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Printed(), "");
}

TEST_F(MfgEepromCheck, FailsWhenThePathCannotBeOpened) {
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Check().bytes, Bytes{FAIL});
    EXPECT_EQ(Status(), DS_FAILED);
    EXPECT_THAT(Story(), ElementsAre(SELECT, CANNOT_OPEN));
}

TEST_F(MfgEepromCheck, FailsAFailedReadAndLeavesThePathOpen) {
    m_bus.FailAt(2);
    EXPECT_EQ(Check().bytes, Bytes{FAIL});
    EXPECT_EQ(Status(), DS_FAILED);
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+32", "RD 32+32", "RD 64+32",
                            "0x10 ERROR: Memory read failed (addr=00064 nBytes=32): no ack 2",
                            "0x10 Error during EEPROM read! addr = 0x40 "));
    EXPECT_TRUE(m_switch->IsOpen(CHANNEL));
}

TEST_F(MfgEepromCheck, FailsAWrongChecksumAndLeavesThePathOpen) {
    m_bus.At(5) ^= 0x01;
    EXPECT_EQ(Check().bytes, Bytes{FAIL});
    EXPECT_EQ(Status(), DS_FAILED);
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+32", "RD 32+32", "RD 64+32",
                            "0x10 EEPROM checksum error: calculated 0x5083, stored 0x4534"));
    EXPECT_TRUE(m_switch->IsOpen(CHANNEL));
}

TEST_F(MfgEepromCheck, FailsABlankChip) {
    Store(Bytes(SIZE, 0xFF));
    EXPECT_EQ(Check().bytes, Bytes{FAIL});
    EXPECT_EQ(Status(), DS_FAILED);
}

TEST_F(MfgEepromCheck, FailsWhenThePathCannotBeClosed) {
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Check().bytes, Bytes{FAIL});
    EXPECT_EQ(Status(), DS_FAILED);
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+32", "RD 32+32", "RD 64+32", CLOSE, CANNOT_CLOSE));
}

TEST_F(MfgEepromCheck, PassesAgainWhenTheRecordIsMended) {
    m_bus.At(5) ^= 0x01;
    EXPECT_EQ(Check().bytes, Bytes{FAIL});
    m_bus.At(5) ^= 0x01;
    EXPECT_EQ(Check().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Status(), DS_PASSED);
}

TEST_F(MfgEepromCheck, HoldsTheDeviceWhileItRuns) {
    bool waits = false;
    m_bus.OnTransfer(
        [&](size_t, const CI2cXfrReq&) { waits = WouldWait(Device(), DEV_LOCK_ACCESS); });
    EXPECT_EQ(Check().bytes, Bytes{SUCCESS});
    EXPECT_TRUE(waits);
    EXPECT_FALSE(WouldWait(Device(), DEV_LOCK_ACCESS));
}

}  // namespace
