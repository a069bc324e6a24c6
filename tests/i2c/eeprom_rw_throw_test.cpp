// "rw-test" on a bus that throws: whatever happens, the contents are put back.
#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/i2c/eeprom_rw_test.h"

namespace {

// The range 0 to 299: three transfers a phase, of which the first two are one
// chunk.
const CCalls CHUNKS = {"0+128", "128+128", "256+44"};

class I2cEepromRwThrow : public CEepromRwTest, public testing::WithParamInterface<size_t> {
  protected:
    I2cEepromRwThrow() { Mount(Part(8192)); }

    template <class Exception>
    void ThrowAt(size_t index) {
        m_bus.OnTransfer([index](size_t i, const CI2cXfrReq&) {
            if (i == index) {
                throw Exception("bus gone");
            }
        });
    }
};

class I2cEepromRwThrowInSave : public I2cEepromRwThrow {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwThrowInSave, testing::Range<size_t>(0, 3));

TEST_P(I2cEepromRwThrowInSave, HasNothingToRestore) {
    ThrowAt<std::runtime_error>(GetParam());
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    CCalls expected = FourPhases(CHUNKS);
    expected.resize(GetParam() + 1);
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Messages(), CLines{ArgError("bus gone")});
}

class I2cEepromRwThrowInWork : public I2cEepromRwThrow {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwThrowInWork, testing::Range<size_t>(3, 9));

TEST_P(I2cEepromRwThrowInWork, RestoresAndFails) {
    ThrowAt<std::runtime_error>(GetParam());
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(Calls(), CutAndRestored(CHUNKS, GetParam() + 1));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_EQ(Messages(), CLines{ArgError("bus gone")});
    EXPECT_FALSE(IsHeld(m_bus.m_lock));
}

class I2cEepromRwThrowInRestore : public I2cEepromRwThrow {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwThrowInRestore, testing::Range<size_t>(9, 12));

TEST_P(I2cEepromRwThrowInRestore, GoesOnWithTheNextChunk) {
    ThrowAt<CDiagException>(GetParam());
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    CCalls expected = FourPhases(CHUNKS);
    if (GetParam() == 9) {
        // The rest of the chunk is not tried.
        expected.erase(expected.begin() + 10);
    }
    EXPECT_EQ(Calls(), expected);
    const std::string place = GetParam() == 11 ? "256" : "0";
    EXPECT_EQ(Messages(), (CLines{ArgError("bus gone"),
                                  {0x10, "ERROR: Error during EEPROM restore at addr " + place}}));
}

}  // namespace
