// Every kind of EEPROM behind three multiplexers, in every path mode.
#include "tests/boards/devicetree/eeprom_mount_test.h"

namespace {

struct CKind {
    std::string compatible;
    size_t size;
    bool writable;
};

const std::vector<CKind> KINDS = {
    {"atmel,24c01", 128, true},       {"atmel,24c02", 256, true},
    {"atmel,24c04", 512, true},       {"atmel,24c08", 1024, true},
    {"atmel,24c16", 2048, true},      {"atmel,24c32", 4096, true},
    {"atmel,24c64", 8192, true},      {"atmel,24c128", 16384, true},
    {"atmel,24c256", 32768, true},    {"atmel,24c512", 65536, true},
    {"morva,mfg-eeprom", 8192, true}, {"morva,param-eeprom", 8192, true},
    {"atmel,spd", 256, false},        {"sff,sfp", 256, false},
};

class EepromPath : public CEepromMountTest, public testing::WithParamInterface<int> {
  protected:
    void MountInMode(const CKind& kind) {
        MountBehindThree(kind.compatible, kind.size);
        SetMode(static_cast<uint8_t>(GetParam()));
        if (ByHand()) {
            OpenByHand();
        }
        m_log.Clear();
    }
    bool ByHand() const { return GetParam() == 0 || GetParam() == 3; }
    // What a command leaves: only mode 1 closes the way.
    bool StaysOpen() const { return GetParam() != 1; }
};

}  // namespace

TEST_P(EepromPath, LetsReadAndPeekReachEveryKind) {
    for (const CKind& kind : KINDS) {
        SCOPED_TRACE(kind.compatible);
        MountInMode(kind);
        const auto last = static_cast<uint32_t>(kind.size - 1);
        EXPECT_EQ(Call("read", uint32_t{5}, uint32_t{35}).Code(), MSG_SUCCESS);
        EXPECT_EQ(m_log.Joined(LW_PRINT), Dump(5, 35));
        EXPECT_EQ(Answers(), StaysOpen());
        m_log.Clear();
        EXPECT_EQ(Call("read", last - 2).Code(), MSG_SUCCESS);
        EXPECT_EQ(m_log.Joined(LW_PRINT), Dump(last - 2, 3));
        EXPECT_EQ(Peek(last - 9, last).bytes, Elements(last - 9, last));
        EXPECT_EQ(Answers(), StaysOpen());
        EXPECT_TRUE(Contents() == m_held);
    }
}

TEST_P(EepromPath, LetsWriteByteAndPokeReachEveryWritableKind) {
    for (const CKind& kind : KINDS) {
        if (!kind.writable) {
            continue;
        }
        SCOPED_TRACE(kind.compatible);
        MountInMode(kind);
        Bytes want = m_held;
        const size_t last = kind.size - 1;
        EXPECT_EQ(Call("write-byte", static_cast<uint32_t>(last), uint8_t{0xA5}).Code(),
                  MSG_SUCCESS);
        want[last] = 0xA5;
        EXPECT_TRUE(Contents() == want);
        EXPECT_EQ(Answers(), StaysOpen());
        EXPECT_EQ(Poke(0x5A, last - 3, last - 1).Code(), MSG_SUCCESS);
        want[last - 3] = want[last - 2] = want[last - 1] = 0x5A;
        EXPECT_TRUE(Contents() == want);
        EXPECT_EQ(Answers(), StaysOpen());
    }
}

TEST_P(EepromPath, LetsTheReadWriteTestPassAndLeaveEveryByte) {
    for (const CKind& kind : KINDS) {
        if (!kind.writable) {
            continue;
        }
        SCOPED_TRACE(kind.compatible);
        MountInMode(kind);
        const auto last = static_cast<uint16_t>(kind.size - 1);
        // From the middle of a page over page ends up to the memory's.
        EXPECT_EQ(Call("rw-test", static_cast<uint16_t>(last - 74), last).Code(), MSG_SUCCESS);
        EXPECT_TRUE(Contents() == m_held);
        EXPECT_EQ(Answers(), StaysOpen());
        EXPECT_TRUE(m_log.Texts(LW_ERR_TEST).empty()) << m_log.Joined(LW_ERR_TEST);
    }
}

TEST_P(EepromPath, LetsNothingIntoAReadOnlyKind) {
    for (const CKind& kind : KINDS) {
        if (kind.writable) {
            continue;
        }
        SCOPED_TRACE(kind.compatible);
        MountInMode(kind);
        EXPECT_EQ(NodeAt(*m_root, m_path).FindChild("write-byte"), nullptr);
        EXPECT_EQ(Poke(1, 0, 0).Code(), MSG_ERR_READONLY);
        EXPECT_EQ(Call("rw-test").Code(), MSG_ERR_FAIL);
        EXPECT_EQ(m_log.Texts(LW_ERR_TEST).back(), "ERROR: EEPROM not tested, it is read-only\n");
        EXPECT_TRUE(Contents() == m_held);
    }
}

INSTANTIATE_TEST_SUITE_P(InMode, EepromPath, testing::Values(0, 1, 2, 3),
                         testing::PrintToStringParamName());

namespace {

class EepromPathLost : public CEepromMountTest {
  protected:
    void SetUp() override {
        MountBehindThree("atmel,24c02", 256);
        SimBus().Faults().Nack(0x71);
    }
    std::string Error() const { return m_log.Texts(LW_ERR_TEST).back(); }
};

}  // namespace

TEST_F(EepromPathLost, IsSaidByPeekAndPoke) {
    EXPECT_EQ(Peek(0, 3).bytes, Bytes{MSG_ERR_FAIL});
    EXPECT_EQ(Error(), "peek (the I2C path could not be opened)\n");
    EXPECT_EQ(Poke(1, 0, 3).bytes, Bytes{MSG_ERR_FAIL});
    EXPECT_EQ(Error(), "poke (the I2C path could not be opened)\n");
    EXPECT_TRUE(Contents() == m_held);
}

TEST_F(EepromPathLost, KeepsTheReadWriteTestFromWriting) {
    EXPECT_EQ(Call("rw-test").Code(), MSG_ERR_FAIL);
    EXPECT_EQ(Error(),
              "ERROR: EEPROM not tested, its contents are untouched: the I2C path could not be "
              "opened\n");
    EXPECT_TRUE(Contents() == m_held);
}

TEST_F(EepromPathLost, OnTheWayBackIsSaidByPeek) {
    SimBus().Faults().Clear();
    ASSERT_EQ(Peek(0, 0).Code(), MSG_SUCCESS);  // now all are known to be closed
    // Three channels to select, one byte, then three multiplexers to close.
    SimBus().Faults().FailNth(3 + 1 + 2);
    EXPECT_EQ(Peek(0, 0).bytes, Bytes{MSG_ERR_FAIL});
    EXPECT_EQ(Error(), "peek (the I2C path could not be closed)\n");
}

TEST_F(EepromPathLost, IsClosedAfterAReadThatHasNoRoomForItsDump) {
    SimBus().Faults().Clear();
    EXPECT_EQ(Call("read", uint32_t{300}).Code(), MSG_ERR_FAIL);
    EXPECT_EQ(m_log.Texts(LW_ERR_SW), std::vector<std::string>{"malloc(-44) failed"});
    EXPECT_FALSE(Answers());
}
