// Programming when words come back wrong, transfers fail or paths do not open.
#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/i2c/param_eeprom_test.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Formatted(const char* format, uint32_t first, uint32_t second) {
    CFmtString text;
    text.printf(format, first, second);
    return text.c_str();
}
std::string VerifyText(uint32_t expected, uint32_t read) {
    return Formatted("Verify failed: expected 0x%08X, read 0x%08X\n", expected, read);
}

// The step that writes the word at `offset` of the compact table.
std::string StepOf(unsigned int offset) {
    switch (offset) {
        case 0:
            return "writeCRC";
        case 4:
            return "writeDimmVersionNum";
        case 8:
            return "setDimmTableLength";
        case 12:
            return "writeSignature";
        case 16:
            return "setNumEntriesHeader";
        case 20:
        case 80:
            return "writeManufacturerId";
        case 56:
        case 116:
            return "writeRevisions";
        case 60:
        case 120:
            return "writeNumRegisters";
        default:
            return (offset >= 64 && offset < 80) || offset >= 124 ? "writeAddrValues"
                                                                  : "writeDimmPartNum";
    }
}

// What is logged as an error when the word at `offset` fails with `text`.
std::vector<std::string> Chain(unsigned int offset, const std::string& text) {
    CFmtString place;
    place.printf("Write from slave dev 0x51 offset 0x%x failed: eeprom_write32_verify ", offset);
    return {place.c_str() + text, "CMB command failed: " + StepOf(offset) + " " + text,
            "CMB command failed: Invoke " + text};
}

class ParamEepromVerify : public CParamEepromTest {
  protected:
    const CTable m_table = CompactTable();
    const Bytes m_image = ImageOf(m_table);
    const std::vector<unsigned int> m_order = WordOrderOf(m_table);

    // The calls up to the `count`-th transfer; every word takes two.
    CCalls CallsUpTo(size_t count) {
        CCalls calls = VerifiedCalls(m_order);
        calls.resize(count / 2 * 3 + count % 2);
        return calls;
    }
    // Of transfer `index` on the way back.
    void FlipBitAt(size_t index, uint8_t bit = 1) {
        m_bus.AfterTransfer([index, bit](size_t i, const CI2cXfrReq& req) {
            if (i == index) {
                req.data[3] ^= bit;
            }
        });
    }
    // The words that are not to be written yet hold what the chip held before.
    void ExpectWrittenUpTo(size_t words) {
        for (size_t i = 0; i < m_order.size(); ++i) {
            const unsigned int at = m_order[i];
            EXPECT_EQ(Memory(at, 4), i < words
                                         ? Bytes(m_image.begin() + at, m_image.begin() + at + 4)
                                         : CEepromBus::InitialBytes(at, 4))
                << "word at " << at;
        }
    }
};

// At every word.
class ParamEepromVerifyAtWord : public ParamEepromVerify,
                                public testing::WithParamInterface<size_t> {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromVerifyAtWord, testing::Range<size_t>(0, 33));

TEST_P(ParamEepromVerifyAtWord, StopsWhereAnotherWordIsRead) {
    ASSERT_EQ(m_order.size(), 33U);
    MountParam();
    const unsigned int at = m_order[GetParam()];
    FlipBitAt(2 * GetParam() + 1);
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    const uint32_t word = WordAt(m_image, at);
    EXPECT_EQ(m_log.Texts(0x10), Chain(at, VerifyText(word, word ^ 1)));
    EXPECT_EQ(Calls(), CallsUpTo(2 * (GetParam() + 1)));
    ExpectWrittenUpTo(GetParam() + 1);
    EXPECT_THAT(m_log.Texts(0xB0), IsEmpty());
}

TEST_P(ParamEepromVerifyAtWord, StopsWhereAWriteFails) {
    MountParam();
    const unsigned int at = m_order[GetParam()];
    m_bus.FailAt(2 * GetParam());
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    Texts errors =
        Chain(at, VerifyText(WordAt(m_image, at), WordAt(CEepromBus::InitialBytes(at, 4), 0)));
    CFmtString device;
    device.printf("ERROR: Memory write failed (addr=%05u nBytes=4): no ack %zu", at,
                  2 * GetParam());
    CFmtString command;
    command.printf("Error during EEPROM write! offset = 0x%x ", at);
    errors.insert(errors.begin(), {device.c_str(), command.c_str()});
    EXPECT_EQ(m_log.Texts(0x10), errors);
    EXPECT_EQ(Calls(), CallsUpTo(2 * (GetParam() + 1)));
    ExpectWrittenUpTo(GetParam());
}

TEST_P(ParamEepromVerifyAtWord, StopsWhereAReadFails) {
    MountParam();
    const unsigned int at = m_order[GetParam()];
    m_bus.FailAt(2 * GetParam() + 1);
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    Texts errors = Chain(at, VerifyText(WordAt(m_image, at), 0xFFFFFFFF));
    CFmtString device;
    device.printf("ERROR: Memory read failed (addr=%05u nBytes=4): no ack %zu", at,
                  2 * GetParam() + 1);
    CFmtString command;
    command.printf("Error during EEPROM read! offset = 0x%x ", at);
    errors.insert(errors.begin(), {device.c_str(), command.c_str()});
    EXPECT_EQ(m_log.Texts(0x10), errors);
    EXPECT_EQ(Calls(), CallsUpTo(2 * (GetParam() + 1)));
    ExpectWrittenUpTo(GetParam() + 1);
}

TEST_P(ParamEepromVerifyAtWord, StopsWhereTheBusThrowsAText) {
    MountParam();
    for (const size_t transfer : {2 * GetParam(), 2 * GetParam() + 1}) {
        Forget();
        const size_t thrown = m_bus.Xfers().size() + transfer;
        m_bus.OnTransfer([thrown](size_t i, const CI2cXfrReq&) {
            if (i == thrown) {
                throw CDiagException("100%% gone");
            }
        });
        EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
        EXPECT_EQ(m_log.Texts(0x10), Chain(m_order[GetParam()], "100% gone"));
        EXPECT_EQ(Transfers().size(), transfer + 1);
        EXPECT_FALSE(IsHeld(m_bus.m_lock));
    }
}

TEST_P(ParamEepromVerifyAtWord, StopsWhereTheBusThrowsSomethingElse) {
    MountParam();
    for (const size_t transfer : {2 * GetParam(), 2 * GetParam() + 1}) {
        Forget();
        const size_t thrown = m_bus.Xfers().size() + transfer;
        m_bus.OnTransfer([thrown](size_t i, const CI2cXfrReq&) {
            if (i == thrown) {
                throw std::runtime_error("not of the contract");
            }
        });
        EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
        EXPECT_THAT(
            m_log.Texts(0x10),
            ElementsAre("CMB command failed: i2c/diag_param_eeprom:eeprom_write32_verify unhandled "
                        "exception",
                        "CMB command failed: i2c/diag_param_eeprom:" + StepOf(m_order[GetParam()]) +
                            " unhandled exception",
                        "Invoke failed"));
        EXPECT_EQ(Transfers().size(), transfer + 1);
        EXPECT_FALSE(IsHeld(m_bus.m_lock));
    }
}

// A failure that does no harm.

TEST_F(ParamEepromVerify, GoesOnAfterAFailedWriteOfWhatIsThereAlready) {
    MountParam();
    Store(m_image);
    m_bus.FailAt(0);
    EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_log.Texts(0x10),
                ElementsAre("ERROR: Memory write failed (addr=00004 nBytes=4): no ack 0",
                            "Error during EEPROM write! offset = 0x4 "));
    EXPECT_EQ(Calls(), VerifiedCalls(m_order));
    EXPECT_EQ(Memory(0, m_image.size()), m_image);
}

TEST_F(ParamEepromVerify, WritesAgainAfterAFailure) {
    MountParam();
    FlipBitAt(7);
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, m_image.size()), m_image);
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(SUCCESS, 3, WordAt(m_image, 0)));
}

// The way to the chip.

class ParamEepromProgramPath : public ParamEepromVerify {
  protected:
    ParamEepromProgramPath() { MountParamBehindSwitch(); }

    const CLogCapture::Line m_enabling = {0x30, "  Error when enabling I2C path!\n"};
    const CLogCapture::Line m_disabling = {0x30, "  Error when disabling I2C path!\n"};
};

TEST_F(ParamEepromProgramPath, MovesNothingWhenItCannotBeOpened) {
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Texts(0x30), (Texts{m_enabling.second, m_enabling.second}));
    EXPECT_EQ(m_log.Texts(0x10), Chain(4, VerifyText(3, 0xFFFFFFFF)));
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "sleep 5", SELECT));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

TEST_F(ParamEepromProgramPath, FailsAtTheFirstWordWhenItCannotBeClosed) {
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    EXPECT_EQ(m_log.Texts(0x30), (Texts{m_disabling.second, m_disabling.second}));
    EXPECT_EQ(m_log.Texts(0x10), Chain(4, VerifyText(3, 0xFFFFFFFF)));
    EXPECT_EQ(Calls(), VerifiedPathCalls({4}));
    EXPECT_EQ(WordAt(Memory(4, 4), 0), 3U);
}

TEST_F(ParamEepromProgramPath, IsLeftOpenByAFailedRead) {
    m_bus.FailAt(1);
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    CCalls calls = VerifiedPathCalls({4});
    calls.pop_back();
    EXPECT_EQ(Calls(), calls);
    EXPECT_TRUE(m_switch->IsOpen(CHANNEL));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_F(ParamEepromProgramPath, IsClosedAfterAFailedWrite) {
    m_bus.FailAt(0);
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    EXPECT_EQ(Calls(), VerifiedPathCalls({4}));
    EXPECT_FALSE(m_switch->IsOpen(CHANNEL));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_F(ParamEepromProgramPath, TellsOfBothAFailedWriteAndAPathThatCannotBeClosed) {
    m_bus.FailAt(0);
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Program(m_table).bytes, Bytes{FAIL});
    CLines lines;
    for (const CLogCapture::Line& line : Messages()) {
        if (line.first == 0x10 || line.first == 0x30) {
            lines.push_back(line);
        }
    }
    const Texts chain = Chain(4, VerifyText(3, 0xFFFFFFFF));
    EXPECT_EQ(lines,
              (CLines{Failure("ERROR: Memory write failed (addr=00004 nBytes=4): no ack 0"),
                      Failure("Error during EEPROM write! offset = 0x4 "), m_disabling, m_disabling,
                      Failure(chain[0]), Failure(chain[1]), Failure(chain[2])}));
}

TEST_F(ParamEepromProgramPath, IsNotTouchedBeforeTheTableIsRead) {
    EXPECT_EQ(Program((m_folder / "none.xml").string()).bytes, Bytes{FAIL});
    EXPECT_THAT(Calls(), IsEmpty());
}

// The wait.

TEST_F(ParamEepromVerify, WaitsFiveMillisecondsForEveryWord) {
    MountParam();
    const uint64_t before = m_clock.NowMs();
    EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_clock.NowMs() - before, 5 * m_order.size());
}

TEST_F(ParamEepromVerify, KeepsATestFromTakingTheDevice) {
    MountParam();
    bool waits = true;
    m_bus.OnTransfer(
        [&](size_t, const CI2cXfrReq&) { waits = waits && WouldWait(Device(), DEV_LOCK_ACCESS); });
    EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(waits);
}

}  // namespace
