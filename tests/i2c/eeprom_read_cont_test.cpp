// "read-cont": the reads of its steps, and what becomes of a failed one.
#include <gmock/gmock.h>

#include "tests/i2c/eeprom_test.h"
#include "tests/support/bytes.h"
#include "tests/support/fake_clock.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class I2cEepromReadCont : public CEepromTest {
  protected:
    // Runs `steps` steps; each read takes a second.
    CAnswer RunSteps(uint32_t steps) { return Call("read-cont", steps); }
    static Bytes Answer(uint8_t code, uint32_t passed, uint32_t failed) {
        return CBytes().U8(code).U32(passed).U32(failed);
    }
    // A part that moves the first half of a step's 256 bytes in one transfer
    // and the other half in another; the clock moves with the first.
    void MountTicking(uint32_t mem_size) {
        Mount(Part(mem_size));
        Tick();
    }
    void Tick() {
        m_bus.OnTransfer([this](size_t, const CI2cXfrReq&) {
            m_half = !m_half;
            if (m_half) {
                m_clock.Advance(1000);
            }
        });
    }
    // Where the steps read, by the first transfer of each.
    CCalls Offsets() const {
        CCalls offsets;
        const CCalls calls = Calls();
        for (size_t i = 0; i < calls.size(); i += 2) {
            offsets.push_back(calls[i]);
        }
        return offsets;
    }

    CFakeClock m_clock;
    bool m_half = false;
};

TEST_F(I2cEepromReadCont, Reads256BytesAStep) {
    MountTicking(8192);
    EXPECT_EQ(RunSteps(2).bytes, Answer(SUCCESS, 2, 0));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+128", "RD 128+128", "RD 256+128", "RD 384+128"));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(I2cEepromReadCont, BeginsAgainAtTheEndOfTheMemory) {
    MountTicking(1024);
    EXPECT_EQ(RunSteps(6).bytes, Answer(SUCCESS, 6, 0));
    EXPECT_THAT(Offsets(), ElementsAre("RD 0+128", "RD 256+128", "RD 512+128", "RD 768+128",
                                       "RD 0+128", "RD 256+128"));
}

TEST_F(I2cEepromReadCont, ReadsA256BytePartFrom0EveryStep) {
    MountTicking(256);
    EXPECT_EQ(RunSteps(3).bytes, Answer(SUCCESS, 3, 0));
    EXPECT_THAT(Offsets(), ElementsAre("RD 0+128", "RD 0+128", "RD 0+128"));
}

TEST_F(I2cEepromReadCont, ReadsASmallerPartBeyondItsEnd) {
    MountTicking(128);
    EXPECT_EQ(RunSteps(2).bytes, Answer(SUCCESS, 2, 0));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+128", "RD 128+128", "RD 0+128", "RD 128+128"));
}

TEST_F(I2cEepromReadCont, AlternatesOnA300BytePart) {
    MountTicking(300);
    EXPECT_EQ(RunSteps(4).bytes, Answer(SUCCESS, 4, 0));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+128", "RD 128+128", "RD 256+128", "RD 384+128",
                                     "RD 0+128", "RD 128+128", "RD 256+128", "RD 384+128"));
}

TEST_F(I2cEepromReadCont, GoesOnToTheStepRightBelowTheEnd) {
    MountTicking(257);
    EXPECT_EQ(RunSteps(3).bytes, Answer(SUCCESS, 3, 0));
    EXPECT_THAT(Offsets(), ElementsAre("RD 0+128", "RD 256+128", "RD 0+128"));
}

TEST_F(I2cEepromReadCont, WrapsAfter65536Bytes) {
    for (const uint32_t mem_size : {65536U, 131072U}) {
        m_journal.Clear();
        MountTicking(mem_size);
        EXPECT_EQ(RunSteps(257).bytes, Answer(SUCCESS, 257, 0));
        const CCalls offsets = Offsets();
        ASSERT_EQ(offsets.size(), 257U);
        EXPECT_EQ(offsets[255], "RD 65280+128");
        EXPECT_EQ(offsets[256], "RD 0+128");
        m_bus.RemoveChild(Eeprom().GetId());
    }
}

TEST_F(I2cEepromReadCont, BeginsAt0InEveryRun) {
    MountTicking(8192);
    RunSteps(3);
    m_journal.Clear();
    RunSteps(1);
    EXPECT_THAT(Offsets(), ElementsAre("RD 0+128"));
}

TEST_F(I2cEepromReadCont, OpensAndClosesThePathInEveryStep) {
    MountBehindSwitch(Part(8192));
    Tick();
    EXPECT_EQ(RunSteps(2).bytes, Answer(SUCCESS, 2, 0));
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+128", "RD 128+128", CLOSE, SELECT, "RD 256+128",
                                     "RD 384+128", CLOSE));
}

// Failures.

TEST_F(I2cEepromReadCont, CountsAFailedReadAndGoesOnBehindIt) {
    MountBehindSwitch(Part(8192));
    m_bus.OnTransfer([this](size_t index, const CI2cXfrReq&) {
        // The steps begin with transfers 0, 2 and 4; the second transfer of the
        // middle one fails.
        if (index % 2 == 0) {
            m_clock.Advance(1000);
        }
    });
    m_bus.FailAt(3);
    EXPECT_EQ(RunSteps(3).bytes, Answer(FAIL, 2, 1));
    const CLines expected = {
        {0x10, "ERROR: Memory read failed (addr=00384 nBytes=128): no ack 3"},
        {0x10, "ERROR: Failed to read 256 bytes at offset 256"},
    };
    EXPECT_EQ(Messages(), expected);
    EXPECT_THAT(Calls(),
                ElementsAre(SELECT, "RD 0+128", "RD 128+128", CLOSE, SELECT, "RD 256+128",
                            "RD 384+128", CLOSE, SELECT, "RD 512+128", "RD 640+128", CLOSE));
}

TEST_F(I2cEepromReadCont, NamesTheOffsetAtWhichAReadFailed) {
    MountTicking(512);
    m_bus.FailWhen([](size_t) { return true; });
    // Every step ends with its first transfer.
    m_bus.OnTransfer([this](size_t, const CI2cXfrReq&) { m_clock.Advance(1000); });
    EXPECT_EQ(RunSteps(3).bytes, Answer(FAIL, 0, 3));
    const CLines expected = {
        {0x10, "ERROR: Memory read failed (addr=00000 nBytes=128): no ack 0"},
        {0x10, "ERROR: Failed to read 256 bytes at offset 0"},
        {0x10, "ERROR: Memory read failed (addr=00256 nBytes=128): no ack 1"},
        {0x10, "ERROR: Failed to read 256 bytes at offset 256"},
        {0x10, "ERROR: Memory read failed (addr=00000 nBytes=128): no ack 2"},
        {0x10, "ERROR: Failed to read 256 bytes at offset 0"},
    };
    EXPECT_EQ(Messages(), expected);
}

TEST_F(I2cEepromReadCont, FailsAStepWhosePathCannotBeOpened) {
    MountBehindSwitch(Part(8192));
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(RunSteps(0).bytes, Answer(FAIL, 0, 1));
    EXPECT_EQ(Messages(), CLines{ArgError("  Error when enabling I2C path!\n")});
    EXPECT_THAT(Calls(), ElementsAre(SELECT));
}

TEST_F(I2cEepromReadCont, FailsAStepWhosePathCannotBeClosed) {
    MountBehindSwitch(Part(8192));
    m_switch->FailAt("DisableChannels");
    Tick();
    EXPECT_EQ(RunSteps(2).bytes, Answer(FAIL, 0, 2));
    const CLines expected(2, ArgError("  Error when disabling I2C path!\n"));
    CLines errors;
    for (const std::string& text : m_log.Texts(0x30)) {
        errors.push_back(ArgError(text));
    }
    EXPECT_EQ(errors, expected);
    // The next step still reads on.
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+128", "RD 128+128", CLOSE, SELECT, "RD 256+128",
                                     "RD 384+128", CLOSE));
}

TEST_F(I2cEepromReadCont, ReadsOnWhereItWasWhenThePathOpensAgain) {
    // Its second selection fails.
    class CFlakySwitch : public CJournalSwitch {
      public:
        explicit CFlakySwitch(CJournal& journal) : CJournalSwitch(journal, "mux", 0, 0x70, 4) {}
        int SelChannel(uint8_t ch) override {
            return CJournalSwitch::SelChannel(ch) != 0 && ++m_selections != 2 ? 1 : 0;
        }

      private:
        int m_selections = 0;
    };
    auto* sw = new CFlakySwitch(m_journal);
    MountBehind(sw, Part(8192));
    // Each path is opened and closed in half a second; one is not closed.
    sw->OnCall([this] { m_clock.Advance(500); });
    EXPECT_EQ(RunSteps(2).bytes, Answer(FAIL, 2, 1));
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+128", "RD 128+128", CLOSE, SELECT, SELECT,
                                     "RD 256+128", "RD 384+128", CLOSE));
}

TEST_F(I2cEepromReadCont, EndsBetweenTwoStepsWhenStopped) {
    Mount(Part(8192));
    m_bus.OnTransfer([this](size_t index, const CI2cXfrReq&) {
        if (index == 2) {
            EXPECT_EQ(Send(Node("read-cont"), MSG_STOP).bytes, Bytes{SUCCESS});
        }
    });
    EXPECT_EQ(RunSteps(60).bytes, Answer(ABORTED, 2, 0));
    EXPECT_EQ(Calls().back(), "RD 384+128");
}

// The device.

TEST_F(I2cEepromReadCont, HasItsDeviceAndAllBelowToItself) {
    MountTicking(8192);
    auto* below = new CDiagDevice("sensor", "below the EEPROM", TDEVICE);
    Eeprom().AddChild(below, CDiagObj::NO_SORT);
    std::vector<bool> waits;
    m_bus.OnTransfer([&](size_t, const CI2cXfrReq&) {
        waits = {WouldWait(Eeprom(), DEV_LOCK_PROTECT), WouldWait(*below, DEV_LOCK_PROTECT)};
    });
    EXPECT_EQ(RunSteps(0).bytes, Answer(SUCCESS, 1, 0));
    EXPECT_THAT(waits, ElementsAre(true, true));
}

}  // namespace
