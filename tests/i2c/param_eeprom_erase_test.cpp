// "erase-param-eeprom": how much it erases, and what it refuses.
#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/i2c/param_eeprom_test.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<unsigned int> WordsBelow(unsigned int length) {
    std::vector<unsigned int> offsets;
    for (unsigned int offset = 0; offset < length; offset += 4) {
        offsets.push_back(offset);
    }
    return offsets;
}

class ParamEepromErase : public CParamEepromTest {
  protected:
    // Everything but the first `count` bytes is as it was; those are 0xFF.
    void ExpectErased(size_t count) {
        EXPECT_EQ(Memory(0, count), Bytes(count, 0xFF));
        const size_t rest = CEepromBus::MEMORY_SIZE - count;
        EXPECT_TRUE(Memory(count, rest) == CEepromBus::InitialBytes(count, rest));
    }
};

TEST_F(ParamEepromErase, OverwritesTheStoredImage) {
    MountParam(Part(8192));
    CTable table = {.modules = {{.regs = {{1, 2}, {3, 4}, {5, 6}}}}};
    Store(ImageOf(table));
    ASSERT_EQ(ImageOf(table).size(), 88U);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    const CStory story = CStory()
                             .Says("Starting Parameter EEPROM Erase...\n")
                             .Reads({8})
                             .Says("Parameter EEPROM Erase finds table length 88...\n")
                             .Writes(WordsBelow(88));
    EXPECT_EQ(Story(), story.Entries());
    EXPECT_EQ(Transfers().size(), 1U + 22U);
    ExpectErased(88);
    EXPECT_EQ(m_clock.Sleeps(), 0U);
}

TEST_F(ParamEepromErase, WritesOnesInWords) {
    MountParam();
    StoreWord(8, 20);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    ASSERT_EQ(m_bus.Xfers().size(), 6U);
    for (size_t i = 1; i < m_bus.Xfers().size(); ++i) {
        EXPECT_EQ(m_bus.Xfers()[i].data, Bytes(4, 0xFF));
    }
}

TEST_F(ParamEepromErase, RejectsWhatItHasErased) {
    MountParam();
    Store(ImageOf(CompactTable()));
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    Forget();
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_log.Texts(0x40),
                ElementsAre("Parameter EEPROM Erase rejected, bad table length...\n"));
    EXPECT_THAT(Calls(), ElementsAre("RD 8+4"));
}

// Lengths.

class ParamEepromEraseRejects : public ParamEepromErase,
                                public testing::WithParamInterface<uint32_t> {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromEraseRejects,
                         testing::Values(0U, 16384U, 16385U, 65535U, 65536U, 65624U, 0x7FFFFFFFU,
                                         0x80000058U, 0xFFFFFFFFU));

TEST_P(ParamEepromEraseRejects, AStoredLengthThatIsNone) {
    MountParam(Part(65536));
    StoreWord(8, GetParam());
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    const CStory story = CStory()
                             .Says("Starting Parameter EEPROM Erase...\n")
                             .Reads({8})
                             .Warns("Parameter EEPROM Erase rejected, bad table length...\n");
    EXPECT_EQ(Story(), story.Entries());
    EXPECT_EQ(WordAt(Memory(8, 4), 0), GetParam());
    StoreWord(8, WordAt(CEepromBus::InitialBytes(8, 4), 0));
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
}

struct CErasure {
    uint32_t length;
    uint32_t words;
};
class ParamEepromEraseTakes : public ParamEepromErase,
                              public testing::WithParamInterface<CErasure> {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromEraseTakes,
                         testing::Values(CErasure{1, 1}, CErasure{4, 1}, CErasure{5, 2},
                                         CErasure{8, 2}, CErasure{86, 22}, CErasure{87, 22},
                                         CErasure{88, 22}, CErasure{89, 23}, CErasure{16380, 4095},
                                         CErasure{16383, 4096}),
                         [](const auto& erasure) {
                             return std::to_string(erasure.param.length) + "Bytes";
                         });

TEST_P(ParamEepromEraseTakes, WholeWordsUpToTheStoredLength) {
    MountParam(Part(65536));
    StoreWord(8, GetParam().length);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    const std::vector<unsigned int> words = WordsBelow(GetParam().length);
    ASSERT_EQ(words.size(), GetParam().words);
    CCalls calls = WriteCalls(words);
    calls.insert(calls.begin(), "RD 8+4");
    EXPECT_EQ(Calls(), calls);
    EXPECT_EQ(LinesWith("Parameter EEPROM Erase finds"),
              Texts{"Parameter EEPROM Erase finds table length " +
                    std::to_string(GetParam().length) + "...\n"});
    if (GetParam().words < 3) {
        StoreWord(8, WordAt(CEepromBus::InitialBytes(8, 4), 0));
    }
    ExpectErased(4 * words.size());
}

// No file, and nothing but the length counts.

TEST_F(ParamEepromErase, LooksAtNothingButTheLength) {
    MountParam();
    StoreWord(8, 64);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Calls().front(), "RD 8+4");
    ExpectErased(64);
    EXPECT_THAT(LinesWith("Parsing"), IsEmpty());
}

TEST_F(ParamEepromErase, DoesNotMindArguments) {
    MountParam();
    StoreWord(8, 64);
    EXPECT_EQ(Send(Command("erase-param-eeprom"), MSG_CALL, std::string("none.xml")).bytes,
              Bytes{SUCCESS});
    ExpectErased(64);
}

TEST_F(ParamEepromErase, LeavesNothingThatACheckPasses) {
    MountParam();
    EXPECT_EQ(Program(CompactTable()).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Check(CompactTable()).Code(), SUCCESS);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Check(CompactTable()).Code(), FAIL);
    ExpectErased(132);
}

TEST_F(ParamEepromErase, KeepsATestFromTakingTheDevice) {
    MountParam();
    StoreWord(8, 20);
    bool waits = true;
    m_bus.OnTransfer(
        [&](size_t, const CI2cXfrReq&) { waits = waits && WouldWait(Device(), DEV_LOCK_ACCESS); });
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_TRUE(waits);
}

// Failures.

TEST_F(ParamEepromErase, RejectsALengthThatCannotBeRead) {
    MountParam();
    StoreWord(8, 88);
    m_bus.FailAt(0);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_EQ(LogWithoutDebug(),
              (CLines{Failure("ERROR: Memory read failed (addr=00008 nBytes=4): no ack 0"),
                      Failure("Error during EEPROM read! offset = 0x8 "),
                      Warning("Parameter EEPROM Erase rejected, bad table length...\n")}));
    EXPECT_THAT(Calls(), ElementsAre("RD 8+4"));
}

TEST_F(ParamEepromErase, GoesOnAfterAFailedWrite) {
    MountParam();
    StoreWord(8, 88);
    m_bus.FailAt(3);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_log.Texts(0x10),
                ElementsAre("ERROR: Memory write failed (addr=00008 nBytes=4): no ack 3",
                            "Error during EEPROM write! offset = 0x8 "));
    EXPECT_EQ(Transfers().size(), 23U);
    EXPECT_EQ(WordAt(Memory(8, 4), 0), 88U);
    EXPECT_EQ(Memory(12, 76), Bytes(76, 0xFF));
}

TEST_F(ParamEepromErase, OpensAndClosesThePathForEveryWord) {
    MountParamBehindSwitch();
    StoreWord(8, 12);
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 8+4", CLOSE, SELECT, "WR 0+4", CLOSE, SELECT,
                                     "WR 4+4", CLOSE, SELECT, "WR 8+4", CLOSE));
}

TEST_F(ParamEepromErase, WritesNothingWhenThePathCannotBeOpened) {
    MountParamBehindSwitch();
    StoreWord(8, 12);
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT));
    EXPECT_EQ(Messages(),
              (CLines{ArgError("  Error when enabling I2C path!\n"),
                      Warning("Parameter EEPROM Erase rejected, bad table length...\n")}));
}

TEST_F(ParamEepromErase, TellsOfAPathThatCannotBeOpenedAnyMore) {
    MountParamBehindSwitch();
    StoreWord(8, 12);
    m_bus.AfterTransfer([this](size_t, const CI2cXfrReq&) { m_switch->FailAt("SelChannel"); });
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 8+4", CLOSE, SELECT, SELECT, SELECT));
    EXPECT_EQ(m_log.Texts(0x30), Texts(3, "  Error when enabling I2C path!\n"));
}

TEST_F(ParamEepromErase, TellsOfAPathThatCannotBeClosed) {
    MountParamBehindSwitch();
    StoreWord(8, 12);
    m_bus.AfterTransfer([this](size_t i, const CI2cXfrReq&) {
        if (i == 1) {
            m_switch->FailAt("DisableChannels");
        }
    });
    EXPECT_EQ(Erase().bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_log.Texts(0x30), Texts(3, "  Error when disabling I2C path!\n"));
    EXPECT_EQ(Memory(0, 12), Bytes(12, 0xFF));
}

TEST_F(ParamEepromErase, FailsWhenTheBusThrowsAtTheLength) {
    MountParam();
    StoreWord(8, 12);
    m_bus.OnTransfer([](size_t, const CI2cXfrReq&) { throw CDiagException("bus gone"); });
    EXPECT_EQ(Erase().bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x10), ElementsAre("CMB command failed: Invoke bus gone"));
}

TEST_F(ParamEepromErase, FailsWhenTheBusThrowsAtAWord) {
    MountParam();
    StoreWord(8, 12);
    m_bus.OnTransfer([](size_t i, const CI2cXfrReq&) {
        if (i == 2) {
            throw CDiagException("bus gone");
        }
    });
    EXPECT_EQ(Erase().bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x10), ElementsAre("CMB command failed: eraseEeprom bus gone",
                                               "CMB command failed: Invoke bus gone"));
    EXPECT_THAT(Calls(), ElementsAre("RD 8+4", "WR 0+4", "WR 4+4"));
}

TEST_F(ParamEepromErase, FailsWhenTheBusThrowsSomethingElse) {
    MountParam();
    StoreWord(8, 12);
    m_bus.OnTransfer([](size_t i, const CI2cXfrReq&) {
        if (i == 1) {
            throw std::runtime_error("not of the contract");
        }
    });
    EXPECT_EQ(Erase().bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x10),
                ElementsAre("CMB command failed: i2c/diag_param_eeprom:eraseEeprom unhandled "
                            "exception",
                            "Invoke failed"));
    EXPECT_FALSE(IsHeld(m_bus.m_lock));
}

}  // namespace
