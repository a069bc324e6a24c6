// What "get-serial-num" and "get-board-info" answer.
#include <gmock/gmock.h>

#include "tests/i2c/mfg_eeprom_test.h"
#include "tests/support/bytes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MfgEepromAnswer : public CMfgEepromTest {
  protected:
    MfgEepromAnswer() { Store(ImageNamed("mfg")); }

    static Bytes SerialAnswer(const std::string& serial) {
        return CBytes().U8(SUCCESS).Text(serial).Get();
    }
    static Bytes InfoAnswer(const std::string& serial, uint32_t rstate) {
        return CBytes().U8(SUCCESS).Text(serial).U32(rstate).Get();
    }
    // What "get-board-info" makes of a revision state.
    Bytes InfoWithRstate(const Bytes& rstate) {
        Store(ImageWith(RSTATE_AT, rstate));
        return Ask("get-board-info").bytes;
    }
    // The serial number in a field of these bytes.
    static std::string Extracted(const std::string& field) {
        CTarnInventory record{};
        EXPECT_EQ(field.size(), record.serial_numb.size());
        std::copy(field.begin(), field.end(), record.serial_numb.begin());
        // Neighbours that could be taken for a part of it.
        record.num_32B_pages = 'X';
        record.product_num.fill('Y');
        return CDiagMfgEepromDevice::ExtractSerialNumber(record);
    }
};

constexpr const char* SERIAL = "MB2024A000123";
constexpr uint32_t R1A = 0x52310041;

TEST_F(MfgEepromAnswer, IsTheSerialNumber) {
    MountRecord(Mfg());
    EXPECT_EQ(Ask("get-serial-num").bytes, SerialAnswer(SERIAL));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MfgEepromAnswer, IsTheSerialNumberAndTheRevisionState) {
    MountRecord(Mfg());
    EXPECT_EQ(Ask("get-board-info").bytes, InfoAnswer(SERIAL, R1A));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MfgEepromAnswer, IsTheSameWhateverTheStep) {
    for (unsigned int step = 0; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        MountRecord(Mfg(static_cast<uint8_t>(step)));
        ASSERT_EQ(Ask("get-serial-num").bytes, SerialAnswer(SERIAL));
        ASSERT_EQ(Ask("get-board-info").bytes, InfoAnswer(SERIAL, R1A));
    }
}

// The serial number.

TEST_F(MfgEepromAnswer, HasAnEmptySerialNumberWhenNoByteIsPrintable) {
    MountRecord(Mfg());
    Store(ImageWith(SERIAL_AT, Bytes(13, 0xFF)));
    EXPECT_EQ(Ask("get-serial-num").bytes, SerialAnswer(""));
    EXPECT_EQ(Ask("get-board-info").bytes, InfoAnswer("", R1A));
}

TEST_F(MfgEepromAnswer, BeginsASerialNumberAtItsFirstPrintableByte) {
    MountRecord(Mfg());
    Store(ImageWith(SERIAL_AT,
                    "\xFF\xFF"
                    "2024A000123"));
    EXPECT_EQ(Ask("get-serial-num").bytes, SerialAnswer("2024A000123"));
    EXPECT_EQ(Ask("get-board-info").bytes, InfoAnswer("2024A000123", R1A));
}

TEST_F(MfgEepromAnswer, KeepsWhatCannotBePrintedBehindTheFirstPrintableByte) {
    MountRecord(Mfg());
    Store(ImageWith(SERIAL_AT,
                    "\x01 A \xFF\x7F"
                    "B\n\t    "));
    EXPECT_EQ(Ask("get-serial-num").bytes, SerialAnswer("A \xFF\x7F"
                                                        "B\n\t    "));
}

// A text in an answer is one of C, whatever the field holds behind its end.
TEST_F(MfgEepromAnswer, EndsASerialNumberAtAZeroByte) {
    MountRecord(Mfg());
    Store(ImageWith(SERIAL_AT, std::string("MB42\0\0\0\0\0\0\0\0X", 13)));
    EXPECT_EQ(Ask("get-serial-num").bytes, SerialAnswer("MB42"));
    EXPECT_EQ(Ask("get-board-info").bytes, InfoAnswer("MB42", R1A));
}

TEST_F(MfgEepromAnswer, ExtractsAllTheBytesOfTheField) {
    EXPECT_EQ(Extracted("MB2024A000123"), "MB2024A000123");
    EXPECT_EQ(Extracted("            Z"), "Z");
    EXPECT_EQ(Extracted("A            "), "A            ");
    EXPECT_EQ(Extracted(std::string("\0A\0\0\0\0\0\0\0\0\0\0\0", 13)),
              std::string("A\0\0\0\0\0\0\0\0\0\0\0", 12));
}

TEST_F(MfgEepromAnswer, TakesBytesFrom0x21To0x7EForPrintable) {
    for (int byte = 0; byte <= 255; ++byte) {
        const std::string field = std::string(12, ' ') + static_cast<char>(byte);
        const bool printable = byte >= 0x21 && byte <= 0x7E;
        EXPECT_EQ(Extracted(field), printable ? field.substr(12) : "") << byte;
    }
}

// The revision state as a number.

TEST_F(MfgEepromAnswer, PacksThreeCharactersWithoutTheBlank) {
    MountRecord(Mfg());
    EXPECT_EQ(InfoWithRstate({'R', '1', 'A', ' '}),
              InfoAnswer(SERIAL, (0x52U << 24) + (0x31U << 16) + 0x41U));
}

TEST_F(MfgEepromAnswer, PacksFourCharacters) {
    MountRecord(Mfg());
    EXPECT_EQ(InfoWithRstate({'R', '1', 'A', 'B'}),
              InfoAnswer(SERIAL, (0x52U << 24) + (0x31U << 16) + (0x41U << 8) + 0x42U));
}

TEST_F(MfgEepromAnswer, DecidesByTheFourthByteAlone) {
    MountRecord(Mfg());
    for (unsigned int fourth = 0; fourth <= 255; ++fourth) {
        const uint32_t expected = fourth > 0x20 ? 0x52314100U + fourth : 0x52310041U;
        ASSERT_EQ(InfoWithRstate({'R', '1', 'A', static_cast<uint8_t>(fourth)}),
                  InfoAnswer(SERIAL, expected))
            << fourth;
    }
}

TEST_F(MfgEepromAnswer, TakesTheBytesOfARevisionStateForUnsigned) {
    MountRecord(Mfg());
    EXPECT_EQ(InfoWithRstate(Bytes(7, 0xFF)), InfoAnswer(SERIAL, 0xFFFFFFFF));
    EXPECT_EQ(InfoWithRstate({0xFF, 0xFE, 0xFD, 0x00}), InfoAnswer(SERIAL, 0xFFFE00FD));
    EXPECT_EQ(InfoWithRstate(Bytes(7, 0x00)), InfoAnswer(SERIAL, 0));
}

TEST_F(MfgEepromAnswer, LeavesTheRestOfARevisionStateOut) {
    MountRecord(Mfg());
    EXPECT_EQ(InfoWithRstate({'R', '1', 'A', ' ', 'Z', 'Z', 'Z'}), InfoAnswer(SERIAL, R1A));
}

// Failures, the same for both commands.

class MfgEepromRefusal : public CMfgEepromTest, public testing::WithParamInterface<const char*> {
  protected:
    MfgEepromRefusal() {
        Store(ImageNamed("mfg"));
        MountRecordBehindSwitch(Mfg(32));
    }
};
INSTANTIATE_TEST_SUITE_P(, MfgEepromRefusal, testing::Values("get-serial-num", "get-board-info"),
                         NameOfText);

TEST_P(MfgEepromRefusal, ComesNotWhenAllGoesWell) {
    EXPECT_EQ(Ask(GetParam()).Code(), SUCCESS);
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+32", "RD 32+32", "RD 64+32", CLOSE));
}

TEST_P(MfgEepromRefusal, ComesAtOnceWhenThePathCannotBeOpened) {
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Ask(GetParam()).bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, CANNOT_OPEN));
}

TEST_P(MfgEepromRefusal, LeavesThePathOpenAfterAFailedRead) {
    m_bus.FailAt(1);
    EXPECT_EQ(Ask(GetParam()).bytes, Bytes{FAIL});
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+32", "RD 32+32",
                            "0x10 ERROR: Memory read failed (addr=00032 nBytes=32): no ack 1",
                            "0x10 Error during EEPROM read! addr = 0x20 "));
    EXPECT_TRUE(m_switch->IsOpen(CHANNEL));
}

TEST_P(MfgEepromRefusal, LeavesThePathOpenAfterAWrongChecksum) {
    m_bus.At(5) ^= 0x01;
    EXPECT_EQ(Ask(GetParam()).bytes, Bytes{FAIL});
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+32", "RD 32+32", "RD 64+32",
                            "0x10 EEPROM checksum error: calculated 0x5083, stored 0x4534"));
    EXPECT_TRUE(m_switch->IsOpen(CHANNEL));
}

TEST_P(MfgEepromRefusal, HasNoValueWhenThePathCannotBeClosed) {
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Ask(GetParam()).bytes, Bytes{FAIL});
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+32", "RD 32+32", "RD 64+32", CLOSE, CANNOT_CLOSE));
}

}  // namespace
