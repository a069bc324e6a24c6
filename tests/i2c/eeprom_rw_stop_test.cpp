// "rw-test" when a stop is requested: what is still done, and what is answered.
#include <gmock/gmock.h>

#include "tests/i2c/eeprom_rw_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The range 0 to 299 takes three transfers a phase, of which the first two are
// one chunk; a request is seen at the end of the chunk.
const CCalls CHUNKS = {"0+128", "128+128", "256+44"};
constexpr size_t PER_PHASE = 3;

class I2cEepromRwStop : public CEepromRwTest {
  protected:
    void StopAt(size_t index) {
        m_bus.OnTransfer([this, index](size_t i, const CI2cXfrReq&) {
            if (i == index) {
                EXPECT_EQ(Send(Node("rw-test"), MSG_STOP).bytes, Bytes{SUCCESS});
            }
        });
    }
    // The transfers that have been made when a stop at transfer `index` is seen.
    static size_t SeenAfter(size_t index) { return index % PER_PHASE == 0 ? index + 2 : index + 1; }
};

class I2cEepromRwStopAtTransfer : public I2cEepromRwStop,
                                  public testing::WithParamInterface<size_t> {};

// While it saves.
class I2cEepromRwStopInSave : public I2cEepromRwStopAtTransfer {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwStopInSave, testing::Values(0, 1, 2));

TEST_P(I2cEepromRwStopInSave, EndsAtOnceAndLeavesThePathOpen) {
    MountBehindSwitch(Part(8192));
    StopAt(GetParam());
    EXPECT_EQ(Run(0, 299).bytes, Bytes{ABORTED});
    CCalls expected = FourPhases(CHUNKS);
    expected.resize(SeenAfter(GetParam()));
    expected.insert(expected.begin(), SELECT);
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Test().GetStatus(), DS_ABORTED);
    EXPECT_EQ(Test().GetProgressDone(), GetParam() < 2 ? 256U : 300U);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_THAT(Messages(), IsEmpty());
}

// While it writes and verifies.
class I2cEepromRwStopInWork : public I2cEepromRwStopAtTransfer {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwStopInWork, testing::Range<size_t>(3, 9));

TEST_P(I2cEepromRwStopInWork, RestoresAndAnswersAborted) {
    MountBehindSwitch(Part(8192));
    StopAt(GetParam());
    EXPECT_EQ(Run(0, 299).bytes, Bytes{ABORTED});
    CCalls expected = CutAndRestored(CHUNKS, SeenAfter(GetParam()));
    expected.insert(expected.begin(), SELECT);
    expected.emplace_back(CLOSE);
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Test().GetStatus(), DS_ABORTED);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_P(I2cEepromRwStopInWork, GoesOnCountingFromThreeQuarters) {
    Mount(Part(8192));
    const size_t restore = SeenAfter(GetParam());
    std::vector<uint64_t> done;
    m_bus.OnTransfer([&](size_t index, const CI2cXfrReq&) {
        if (index == GetParam()) {
            Send(Node("rw-test"), MSG_STOP);
        }
        if (index >= restore) {
            done.push_back(Test().GetProgressDone());
        }
    });
    Run(0, 299);
    EXPECT_THAT(done, ElementsAre(900, 900, 1156));
    EXPECT_EQ(Test().GetProgressDone(), 1200U);
}

// While it restores.
class I2cEepromRwStopInRestore : public I2cEepromRwStopAtTransfer {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwStopInRestore, testing::Range<size_t>(9, 12));

TEST_P(I2cEepromRwStopInRestore, TakesNoNotice) {
    MountBehindSwitch(Part(8192));
    StopAt(GetParam());
    EXPECT_EQ(Run(0, 299).bytes, Bytes{SUCCESS});
    CCalls expected = FourPhases(CHUNKS);
    expected.insert(expected.begin(), SELECT);
    expected.emplace_back(CLOSE);
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Test().GetStatus(), DS_PASSED);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromRwStop, RunsAgainAfterAStop) {
    Mount(Part(8192));
    StopAt(3);
    EXPECT_EQ(Run(0, 299).bytes, Bytes{ABORTED});
    EXPECT_EQ(Run(0, 299).bytes, Bytes{SUCCESS});
}

TEST_F(I2cEepromRwStop, FailsWhenTheContentsCannotBeRestored) {
    Mount(Part(8192));
    StopAt(3);
    // The stop is seen after transfer 4; the restore begins with 5.
    m_bus.FailAt(5);
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_THAT(m_log.Texts(0x10),
                ElementsAre("ERROR: Memory write failed (addr=00000 nBytes=128): no ack 5",
                            "ERROR: Error during EEPROM restore at addr 0"));
}

TEST_F(I2cEepromRwStop, FailsWhenThePathCannotBeClosed) {
    MountBehindSwitch(Part(8192));
    m_switch->FailAt("DisableChannels");
    StopAt(3);
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(Messages(), CLines{ArgError("  Error when disabling I2C path!\n")});
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromRwStop, OutranksAMismatchBeforeIt) {
    Mount(Part(8192));
    StopAt(8);
    m_bus.AfterTransfer([](size_t index, CI2cXfrReq& req) {
        if (index == 6) {
            req.data[1] ^= 0xFF;
        }
    });
    EXPECT_EQ(Run(0, 299).bytes, Bytes{ABORTED});
    EXPECT_EQ(Test().GetStatus(), DS_ABORTED);
    EXPECT_EQ(m_log.Texts(0x10).size(), 1U);
}

}  // namespace
