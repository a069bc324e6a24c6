// A run of "rw-test" that goes well: its phases, chunks, data and progress.
#include <gmock/gmock.h>

#include "tests/i2c/eeprom_rw_test.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class I2cEepromRwRun : public CEepromRwTest {};

TEST_F(I2cEepromRwRun, SavesWritesVerifiesAndRestores) {
    Mount(Part(8192));
    EXPECT_EQ(Run(16, 31).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 16+16", "WR 16+16", "RD 16+16", "WR 16+16"));
    EXPECT_EQ(Test().GetStatus(), DS_PASSED);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_THAT(Messages(), IsEmpty());
}

// A range from 0 on and the chunks it is moved in, by 128 bytes a transfer.
struct CRwRange {
    uint16_t end;
    CCalls chunks;
};
void PrintTo(const CRwRange& range, std::ostream* out) {
    *out << "0 to " << range.end;
}
class I2cEepromRwChunks : public CEepromRwTest, public testing::WithParamInterface<CRwRange> {};
INSTANTIATE_TEST_SUITE_P(
    , I2cEepromRwChunks,
    testing::Values(CRwRange{1, {"0+2"}}, CRwRange{254, {"0+128", "128+127"}},
                    CRwRange{255, {"0+128", "128+128"}},
                    // A chunk that ends right before the last address leaves that one out.
                    CRwRange{256, {"0+128", "128+128"}},
                    CRwRange{257, {"0+128", "128+128", "256+2"}},
                    CRwRange{299, {"0+128", "128+128", "256+44"}},
                    CRwRange{511, {"0+128", "128+128", "256+128", "384+128"}},
                    CRwRange{512, {"0+128", "128+128", "256+128", "384+128"}},
                    // As does a range of one address.
                    CRwRange{0, {}}));

TEST_P(I2cEepromRwChunks, AreTheSameInEveryPhase) {
    Mount(Part(8192));
    EXPECT_EQ(Run(0, GetParam().end).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Calls(), FourPhases(GetParam().chunks));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_EQ(Test().GetStatus(), DS_PASSED);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(I2cEepromRwRun, MovesChunksFromTheFirstAddressOn) {
    Mount(Part(8192, 255));
    EXPECT_EQ(Run(300, 600).bytes, Bytes{SUCCESS});
    // Chunks of 256 and 45 bytes, the first of them split by the transfer size;
    // a write from 300 on is split by the remainder of its address.
    const CCalls half = {"RD 300+255", "RD 555+1",   "RD 556+45", "WR 300+45",
                         "WR 345+90",  "WR 435+121", "WR 556+45"};
    CCalls expected = half;
    expected.insert(expected.end(), half.begin(), half.end());
    EXPECT_EQ(Calls(), expected);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromRwRun, ReachesAllOf65536Bytes) {
    Mount(Part(65536));
    EXPECT_EQ(Call("rw-test").bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), SizeIs(4 * 512));
    EXPECT_EQ(Calls().back(), "WR 65408+128");
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_EQ(Test().GetProgressDone(), 4U * 65536);
    EXPECT_EQ(Test().GetProgressTotal(), 4U * 65536);
}

// Data.

TEST_F(I2cEepromRwRun, WritesTheSameRandomBytesEveryTime) {
    Mount(Part(8192));
    for (int run = 0; run < 2; ++run) {
        Bytes written;
        m_bus.AfterTransfer([&](size_t, const CI2cXfrReq& req) {
            if (req.dir == 0 && written.size() < 300) {
                written.insert(written.end(), req.data, req.data + req.tsize);
            }
        });
        EXPECT_EQ(Run(10, 309).bytes, Bytes{SUCCESS});
        EXPECT_EQ(written, Pattern(300));
    }
}

TEST_F(I2cEepromRwRun, HasTheWholeRangeWrittenBeforeItVerifies) {
    Mount(Part(8192));
    Bytes around;
    m_bus.OnTransfer([&](size_t index, const CI2cXfrReq&) {
        if (index == 6) {
            around = Memory(255, 302);
        }
    });
    EXPECT_EQ(Run(256, 555).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Calls()[5], "WR 512+44");
    EXPECT_EQ(Calls()[6], "RD 256+128");
    Bytes expected = Pattern(300);
    expected.insert(expected.begin(), CEepromBus::Initial(255));
    expected.push_back(CEepromBus::Initial(556));
    EXPECT_EQ(around, expected);
}

TEST_F(I2cEepromRwRun, TouchesNoByteBehindTheLastWholeChunk) {
    Mount(Part(8192));
    std::vector<uint8_t> last;
    m_bus.AfterTransfer([&](size_t, const CI2cXfrReq&) { last.push_back(m_bus.At(256)); });
    EXPECT_EQ(Run(0, 256).bytes, Bytes{SUCCESS});
    EXPECT_EQ(last, Bytes(8, CEepromBus::Initial(256)));
}

// Progress.

TEST_F(I2cEepromRwRun, CountsTheBytesOfEachChunkInEachPhase) {
    Mount(Part(8192));
    std::vector<uint64_t> done;
    std::vector<uint64_t> total;
    m_bus.OnTransfer([&](size_t, const CI2cXfrReq&) {
        done.push_back(Test().GetProgressDone());
        total.push_back(Test().GetProgressTotal());
    });
    EXPECT_EQ(Run(0, 299).bytes, Bytes{SUCCESS});
    EXPECT_THAT(done, ElementsAre(0, 0, 256, 300, 300, 556, 600, 600, 856, 900, 900, 1156));
    EXPECT_EQ(total, std::vector<uint64_t>(12, 1200));
    EXPECT_EQ(Test().GetProgressDone(), 1200U);
}

TEST_F(I2cEepromRwRun, BeginsToRestoreAtThreeQuarters) {
    Mount(Part(8192));
    std::vector<uint64_t> done;
    m_bus.OnTransfer([&](size_t, const CI2cXfrReq&) { done.push_back(Test().GetProgressDone()); });
    // The byte that is left out counts in the total alone.
    EXPECT_EQ(Run(0, 256).bytes, Bytes{SUCCESS});
    EXPECT_THAT(done, ElementsAre(0, 0, 256, 256, 512, 512, 771, 771));
    EXPECT_EQ(Test().GetProgressDone(), 1027U);
    EXPECT_EQ(Test().GetProgressTotal(), 1028U);
}

// The path and the device.

TEST_F(I2cEepromRwRun, OpensThePathOnceAndClosesItAtTheEnd) {
    MountBehindSwitch(Part(8192));
    EXPECT_EQ(Run(0, 1).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+2", "WR 0+2", "RD 0+2", "WR 0+2", CLOSE));
}

TEST_F(I2cEepromRwRun, OpensThePathEvenForARangeOfOneAddress) {
    MountBehindSwitch(Part(8192));
    EXPECT_EQ(Run(7, 7).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, CLOSE));
    EXPECT_EQ(Test().GetProgressTotal(), 4U);
}

TEST_F(I2cEepromRwRun, HasItsDeviceToItself) {
    Mount(Part(8192));
    bool waits = false;
    m_bus.OnTransfer(
        [&](size_t, const CI2cXfrReq&) { waits = WouldWait(Eeprom(), DEV_LOCK_PROTECT); });
    EXPECT_EQ(Run(0, 1).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(waits);
}

TEST_F(I2cEepromRwRun, RunsOnAReadOnlyDeviceToo) {
    Mount(Part(8192), true);
    EXPECT_EQ(Run(0, 1).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 0+2", "WR 0+2", "RD 0+2", "WR 0+2"));
}

}  // namespace
