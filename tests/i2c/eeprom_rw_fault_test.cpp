// "rw-test" when transfers, data or the path fail.
#include <gmock/gmock.h>

#include <cstdio>

#include "tests/i2c/eeprom_rw_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// The range 0 to 299: three transfers a phase, of which the first two are one
// chunk.
const CCalls CHUNKS = {"0+128", "128+128", "256+44"};

class I2cEepromRwFault : public CEepromRwTest {
  protected:
    // The line of the transfer that fails.
    static std::string TransferError(const std::string& operation, size_t index) {
        static const char* const PLACES[] = {"addr=00000 nBytes=128", "addr=00128 nBytes=128",
                                             "addr=00256 nBytes=44"};
        return "ERROR: Memory " + operation + " failed (" + PLACES[index % 3] + "): no ack " +
               std::to_string(index);
    }
    static std::string Mismatch(size_t addr, uint8_t expected, uint8_t observed) {
        char text[80];
        std::snprintf(text, sizeof text,
                      "ERROR: EEPROM data mismatch at addr.%u (exp.0x%02x obs.0x%02x)",
                      static_cast<unsigned int>(addr), expected, observed);
        return text;
    }
    // Inverts the bytes that the verify phase, transfers 6 to 8, reads at these addresses.
    void SpoilVerify(std::vector<size_t> addresses) {
        m_bus.AfterTransfer([this, addresses](size_t index, CI2cXfrReq& req) {
            const size_t first = m_bus.Xfers()[index].addr;
            for (const size_t addr : addresses) {
                if (index >= 6 && index < 9 && addr >= first && addr < first + req.tsize) {
                    req.data[addr - first] = static_cast<uint8_t>(~req.data[addr - first]);
                }
            }
        });
    }
    // The lines of mismatches at these addresses of the range 0 to 299.
    static Texts Mismatches(const std::vector<size_t>& addresses) {
        const Bytes pattern = Pattern(300);
        Texts texts;
        for (const size_t addr : addresses) {
            texts.push_back(Mismatch(addr, pattern[addr], static_cast<uint8_t>(~pattern[addr])));
        }
        return texts;
    }
    static std::vector<size_t> Range(size_t first, size_t end) {
        std::vector<size_t> range;
        for (size_t i = first; i < end; ++i) {
            range.push_back(i);
        }
        return range;
    }
};

class I2cEepromRwFaultAtTransfer : public I2cEepromRwFault,
                                   public testing::WithParamInterface<size_t> {
  protected:
    I2cEepromRwFaultAtTransfer() {
        MountBehindSwitch(Part(8192));
        m_bus.FailAt(GetParam());
    }
    static CCalls Bracketed(CCalls calls) {
        calls.insert(calls.begin(), SELECT);
        calls.emplace_back(CLOSE);
        return calls;
    }
};

// Transfers 0 to 2 save.
class I2cEepromRwSaveFault : public I2cEepromRwFaultAtTransfer {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwSaveFault, testing::Range<size_t>(0, 3));

TEST_P(I2cEepromRwSaveFault, EndsTheRunAndLeavesThePathOpen) {
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    CCalls expected = FourPhases(CHUNKS);
    expected.resize(GetParam() + 1);
    expected.insert(expected.begin(), SELECT);
    EXPECT_EQ(Calls(), expected);
    EXPECT_EQ(Messages(), (CLines{{0x10, TransferError("read", GetParam())},
                                  {0x10, "ERROR: Error during EEPROM save"}}));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

// Transfers 3 to 5 write.
class I2cEepromRwWriteFault : public I2cEepromRwFaultAtTransfer {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwWriteFault, testing::Range<size_t>(3, 6));

TEST_P(I2cEepromRwWriteFault, SkipsToTheRestore) {
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(Calls(), Bracketed(CutAndRestored(CHUNKS, GetParam() + 1)));
    EXPECT_EQ(Messages(), (CLines{{0x10, TransferError("write", GetParam())},
                                  {0x10, "ERROR: Error during EEPROM write"}}));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_EQ(Test().GetProgressDone(), 1200U);
}

// Transfers 6 to 8 verify.
class I2cEepromRwVerifyFault : public I2cEepromRwFaultAtTransfer {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwVerifyFault, testing::Range<size_t>(6, 9));

TEST_P(I2cEepromRwVerifyFault, SkipsToTheRestore) {
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(Calls(), Bracketed(CutAndRestored(CHUNKS, GetParam() + 1)));
    EXPECT_EQ(Messages(), (CLines{{0x10, TransferError("read", GetParam())},
                                  {0x10, "ERROR: Error during EEPROM verify"}}));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_EQ(Test().GetProgressDone(), 1200U);
}

// Transfers 9 to 11 restore.
class I2cEepromRwRestoreFault : public I2cEepromRwFaultAtTransfer {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromRwRestoreFault, testing::Range<size_t>(9, 12));

TEST_P(I2cEepromRwRestoreFault, GoesOnWithTheNextChunk) {
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    CCalls expected = FourPhases(CHUNKS);
    if (GetParam() == 9) {
        // The rest of the chunk is not tried.
        expected.erase(expected.begin() + 10);
    }
    EXPECT_EQ(Calls(), Bracketed(expected));
    const std::string place = GetParam() == 11 ? "256" : "0";
    EXPECT_EQ(Messages(), (CLines{{0x10, TransferError("write", GetParam())},
                                  {0x10, "ERROR: Error during EEPROM restore at addr " + place}}));

    // The bytes that were not written back are those of the test.
    const size_t lost = GetParam() == 9 ? 0 : (GetParam() == 10 ? 128 : 256);
    const size_t end = GetParam() == 11 ? 300 : 256;
    const Bytes pattern = Pattern(300);
    for (size_t addr = 0; addr < 300; ++addr) {
        const bool is_lost = addr >= lost && addr < end;
        EXPECT_EQ(m_bus.At(addr), is_lost ? pattern[addr] : CEepromBus::Initial(addr)) << addr;
    }
}

TEST_F(I2cEepromRwFault, KeepsTheFirst16RestoreFailures) {
    Mount(Part(8192));
    // 5120 bytes are 40 transfers a phase and 20 chunks; all of the restore fails.
    m_bus.FailWhen([](size_t index) { return index >= 120; });
    EXPECT_EQ(Run(0, 5119).bytes, Bytes{FAIL});
    // One transfer was tried of each chunk.
    EXPECT_THAT(m_bus.Xfers(), SizeIs(140));
    Texts restore;
    size_t transfers = 0;
    for (const std::string& text : m_log.Texts(0x10)) {
        if (text.find("restore") != std::string::npos) {
            restore.push_back(text);
        } else {
            ++transfers;
        }
    }
    EXPECT_EQ(transfers, 20U);
    ASSERT_THAT(restore, SizeIs(16));
    for (size_t i = 0; i < restore.size(); ++i) {
        EXPECT_EQ(restore[i],
                  "ERROR: Error during EEPROM restore at addr " + std::to_string(256 * i));
    }
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
}

TEST_F(I2cEepromRwFault, CountsRestoreFailuresAfreshInEveryRun) {
    Mount(Part(8192));
    for (int run = 0; run < 2; ++run) {
        m_log.Clear();
        const size_t first = m_bus.Xfers().size();
        m_bus.FailWhen([first](size_t index) { return index >= first + 96; });
        Run(0, 4095);
        EXPECT_THAT(m_log.Texts(0x10), SizeIs(2 * 16));
    }
}

// Mismatches.

TEST_F(I2cEepromRwFault, NamesEachMismatch) {
    Mount(Part(8192));
    SpoilVerify({3, 127, 128, 299});
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(m_log.Texts(0x10), Mismatches({3, 127, 128, 299}));
    EXPECT_EQ(Messages().size(), 4U);
    EXPECT_EQ(Calls(), FourPhases(CHUNKS));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromRwFault, NamesAMismatchByItsAddressInTheMemory) {
    Mount(Part(8192));
    m_bus.AfterTransfer([](size_t index, CI2cXfrReq& req) {
        if (index == 2) {
            req.data[2] = 0x5;
        }
    });
    EXPECT_EQ(Run(4096, 4100).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Texts(0x10), Texts{Mismatch(4098, Pattern(3)[2], 0x05)});
}

TEST_F(I2cEepromRwFault, ComparesOnAfter15Mismatches) {
    Mount(Part(8192));
    SpoilVerify(Range(0, 15));
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Texts(0x10), Mismatches(Range(0, 15)));
    EXPECT_EQ(Calls(), FourPhases(CHUNKS));
}

TEST_F(I2cEepromRwFault, EndsTheVerifyPhaseAtThe16thMismatch) {
    MountBehindSwitch(Part(8192));
    SpoilVerify(Range(0, 300));
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(m_log.Texts(0x10), Mismatches(Range(0, 16)));
    // The first chunk was read; the next is not.
    CCalls expected = CutAndRestored(CHUNKS, 8);
    expected.insert(expected.begin(), SELECT);
    expected.emplace_back(CLOSE);
    EXPECT_EQ(Calls(), expected);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromRwFault, CountsMismatchesOverAllChunks) {
    Mount(Part(8192));
    std::vector<size_t> spoiled = Range(100, 110);
    const std::vector<size_t> second = Range(260, 280);
    spoiled.insert(spoiled.end(), second.begin(), second.end());
    SpoilVerify(spoiled);
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    spoiled.resize(16);
    EXPECT_EQ(m_log.Texts(0x10), Mismatches(spoiled));
}

TEST_F(I2cEepromRwFault, FindsAByteThatWasNotWritten) {
    Mount(Part(8192));
    m_bus.AfterTransfer([this](size_t index, CI2cXfrReq&) {
        if (index == 1) {
            m_bus.At(21) ^= 0x80;
        }
    });
    EXPECT_EQ(Run(16, 31).bytes, Bytes{FAIL});
    const Bytes pattern = Pattern(16);
    EXPECT_EQ(m_log.Texts(0x10),
              Texts{Mismatch(21, pattern[5], static_cast<uint8_t>(pattern[5] ^ 0x80))});
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromRwFault, FailsForAMismatchThoughARestoreFailsToo) {
    Mount(Part(8192));
    SpoilVerify({5});
    m_bus.FailAt(9);
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    Texts expected = Mismatches({5});
    expected.push_back(TransferError("write", 9));
    expected.emplace_back("ERROR: Error during EEPROM restore at addr 0");
    EXPECT_EQ(m_log.Texts(0x10), expected);
}

// The path.

TEST_F(I2cEepromRwFault, TouchesNothingWhenThePathCannotBeOpened) {
    MountBehindSwitch(Part(8192));
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(Messages(), CLines{ArgError("  Error when enabling I2C path!\n")});
    EXPECT_THAT(Calls(), ElementsAre(SELECT));
    EXPECT_EQ(Test().GetProgressTotal(), 0U);
}

TEST_F(I2cEepromRwFault, FailsWhenThePathCannotBeClosed) {
    MountBehindSwitch(Part(8192));
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Test().GetStatus(), DS_FAILED);
    EXPECT_EQ(Messages(), CLines{ArgError("  Error when disabling I2C path!\n")});
    EXPECT_EQ(Calls().back(), CLOSE);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(I2cEepromRwFault, AnswersOnceWhenBothDataAndPathFail) {
    MountBehindSwitch(Part(8192));
    m_switch->FailAt("DisableChannels");
    m_bus.FailAt(3);
    EXPECT_EQ(Run(0, 299).bytes, Bytes{FAIL});
    EXPECT_EQ(Messages().back(), ArgError("  Error when disabling I2C path!\n"));
}

TEST_F(I2cEepromRwFault, CountsAsAFailureOfItsDevice) {
    Mount(Part(8192));
    m_bus.FailAt(0);
    Run(0, 1);
    EXPECT_EQ(Eeprom().GetFailures(), 1U);
    EXPECT_EQ(Eeprom().GetTestStatus(), DS_FAILED);
    EXPECT_EQ(Run(0, 1).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Eeprom().GetTestStatus(), DS_PASSED);
}

}  // namespace
