// How "trans" reads its arguments: what it prints of each, what it takes for
// one that is missing, and what it refuses.
#include "tests/i2c/trans_test.h"

namespace {

class I2cTransArguments : public CTransTest {};

const CLogCapture::Line RD = Print("I2C: trans type = rd\n");
const CLogCapture::Line WR = Print("I2C: trans type = wr\n");
const CLogCapture::Line ADDR_50 = Print("I2C: dev addr = 0x50\n");
const CLogCapture::Line NO_COMMAND = Print("I2C: no command(s)\n");
const CLogCapture::Line TRANSFER_50 = Print("(trans:Invoke): transfer  dev addr = 0x50\n");
const CLogCapture::Line MISMATCH = ArgError("ERROR: data_size and # of data mismatched!\n");
const CLogCapture::Line CMD_SIZE = ArgError("ERROR: cmd_size arg must be less than 0!\n");

// The rows of a read of no bytes.
const CLines EMPTY_ROWS = {
    Print("----------- 00 01 02 03 04 05 06 07   08 09 0A 0B 0C 0D 0E 0F\n"),
    Print("data 0-15: "),
    Print(" \n"),
};

CLines operator+(CLines lines, const CLines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

// Direction

TEST_F(I2cTransArguments, RefusesACallWithoutAny) {
    const CAnswer reply = Send(Command("trans"), MSG_CALL);
    ExpectRefusal(reply, {ArgError(UnderflowText<std::string>())});
}

TEST_F(I2cTransArguments, RefusesADirectionThatIsCutShort) {
    const CAnswer half_a_length = Send(Command("trans"), MSG_CALL, uint8_t{0});
    ExpectRefusal(half_a_length, {ArgError(UnderflowText<std::string>({0}))});
    m_log.Clear();
    const CAnswer half_a_text = Send(Command("trans"), MSG_CALL, CNumbers{{0, 2, 'r'}});
    ExpectRefusal(half_a_text, {ArgError(UnderflowText<std::string>({0, 2, 'r'}))});
}

TEST_F(I2cTransArguments, RefusesADirectionThatIsNeitherReadNorWrite) {
    for (const std::string direction :
         {"", "r", "w", "rdx", "wrx", "rdwr", "RD", "Wr", " rd", "rd ", "read", "0"}) {
        m_log.Clear();
        SCOPED_TRACE("direction '" + direction + "'");
        ExpectRefusal(Trans(direction, {0x50, 0, 4}),
                      {Print("I2C: trans type = " + direction + "\n"), ADDR_50,
                       ArgError("ERROR: rd_wr arg must be \"rd\" or \"wr\"!\n")});
    }
}

TEST_F(I2cTransArguments, ComparesTheWholeDirectionEvenBehindAZeroByte) {
    ExpectRefusal(Trans(std::string("rd\0x", 4), {0x50}),
                  {RD, ADDR_50, ArgError("ERROR: rd_wr arg must be \"rd\" or \"wr\"!\n")});
}

TEST_F(I2cTransArguments, PrintsPercentSignsOfADirectionAsTheyAre) {
    ExpectRefusal(Trans("%s%n%d", {}), {Print("I2C: trans type = %s%n%d\n"),
                                        ArgError("ERROR: Must be provide slave address!\n")});
}

TEST_F(I2cTransArguments, PrintsALongDirectionWhole) {
    const std::string direction(700, 'd');
    ExpectRefusal(Trans(direction, {}), {Print("I2C: trans type = " + direction + "\n"),
                                         ArgError("ERROR: Must be provide slave address!\n")});
}

// Address

TEST_F(I2cTransArguments, RefusesACallWithoutAddress) {
    for (const std::string direction : {"rd", "wr"}) {
        m_log.Clear();
        ExpectRefusal(Trans(direction, {}), {Print("I2C: trans type = " + direction + "\n"),
                                             ArgError("ERROR: Must be provide slave address!\n")});
    }
}

TEST_F(I2cTransArguments, MissesTheAddressBeforeItLooksAtTheDirection) {
    ExpectRefusal(Trans("sideways", {}), {Print("I2C: trans type = sideways\n"),
                                          ArgError("ERROR: Must be provide slave address!\n")});
}

TEST_F(I2cTransArguments, PrintsTheAddressInHexadecimal) {
    m_bus.Answer({0x05, 0xFF});
    Trans("wr", {0x05});
    Trans("wr", {0xFF});
    const CLines expected = {
        WR,         Print("I2C: dev addr = 0x5\n"),
        NO_COMMAND, Print("(trans:Invoke): transfer  dev addr = 0x5\n"),
        WR,         Print("I2C: dev addr = 0xff\n"),
        NO_COMMAND, Print("(trans:Invoke): transfer  dev addr = 0xff\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

// Command size

TEST_F(I2cTransArguments, TakesNoCommandAndNoDataWhenOnlyTheAddressIsGiven) {
    m_bus.Expect({.saddr = 0x50, .read = true});
    m_bus.Expect({.saddr = 0x50});

    EXPECT_EQ(Trans("rd", {0x50}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_log.Lines(), (CLines{RD, ADDR_50, NO_COMMAND, TRANSFER_50} + EMPTY_ROWS));

    m_log.Clear();
    EXPECT_EQ(Trans("wr", {0x50}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_log.Lines(), (CLines{WR, ADDR_50, NO_COMMAND, TRANSFER_50}));
}

TEST_F(I2cTransArguments, PrintsACommandSizeOf0ThatWasGiven) {
    m_bus.Expect({.saddr = 0x50});

    EXPECT_EQ(Trans("wr", {0x50, 0}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines(),
              (CLines{WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND, TRANSFER_50}));
}

TEST_F(I2cTransArguments, RefusesACommandSizeAbove2) {
    for (const uint8_t size : Bytes{3, 4, 32, 127, 128, 255}) {
        for (const std::string direction : {"rd", "wr"}) {
            m_log.Clear();
            ExpectRefusal(Trans(direction, {0x50, size}),
                          {Print("I2C: trans type = " + direction + "\n"), ADDR_50,
                           Print("I2C: cmd size = " + std::to_string(size) + "\n"), CMD_SIZE});
        }
    }
}

TEST_F(I2cTransArguments, PrintsTheFirstCommandByteBeforeItRefusesTheCommandSize) {
    ExpectRefusal(Trans("rd", {0x50, 3, 0x12}), {RD, ADDR_50, Print("I2C: cmd size = 3\n"),
                                                 Print("I2C: cmd[0] = 0x12\n"), CMD_SIZE});
}

TEST_F(I2cTransArguments, ReadsNothingBehindTheFirstCommandByteOfARefusedCommandSize) {
    ExpectRefusal(
        Trans("wr", {0x50, 255, 0x12, 0x34, 1, 0x56}),
        {WR, ADDR_50, Print("I2C: cmd size = 255\n"), Print("I2C: cmd[0] = 0x12\n"), CMD_SIZE});
}

// Command bytes

TEST_F(I2cTransArguments, TakesOneCommandByte) {
    m_bus.Expect({.saddr = 0x50, .cmd_sel = 1, .cmd = 0xAB});

    EXPECT_EQ(Trans("wr", {0x50, 1, 0xAB}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines(), (CLines{WR, ADDR_50, Print("I2C: cmd size = 1\n"),
                                     Print("I2C: cmd[0] = 0xab\n"), TRANSFER_50}));
}

TEST_F(I2cTransArguments, TakesAMissingSingleCommandByteFor0) {
    m_bus.Expect({.saddr = 0x50, .read = true, .cmd_sel = 1, .cmd = 0});

    EXPECT_EQ(Trans("rd", {0x50, 1}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines(),
              (CLines{RD, ADDR_50, Print("I2C: cmd size = 1\n"), TRANSFER_50} + EMPTY_ROWS));
}

TEST_F(I2cTransArguments, TakesTwoCommandBytes) {
    m_bus.Expect({.saddr = 0x50, .cmd_sel = 2, .cmd = 0x3412});

    OutputOf([this] { EXPECT_EQ(Trans("wr", {0x50, 2, 0x12, 0x34}).bytes, Bytes{SUCCESS}); });

    EXPECT_EQ(m_log.Lines(),
              (CLines{WR, ADDR_50, Print("I2C: cmd size = 2\n"), Print("I2C: cmd[0] = 0x12\n"),
                      Print("I2C: cmd[1] = 0x34\n"), TRANSFER_50}));
}

TEST_F(I2cTransArguments, GoesOnToTheTransferWhenTheSecondCommandByteIsMissing) {
    m_bus.Expect({.saddr = 0x50, .read = true, .cmd_sel = 2, .cmd = 0x12});

    OutputOf([this] { EXPECT_EQ(Trans("rd", {0x50, 2, 0x12}).bytes, Bytes{SUCCESS}); });

    EXPECT_EQ(m_log.Lines(), (CLines{RD, ADDR_50, Print("I2C: cmd size = 2\n"),
                                     Print("I2C: cmd[0] = 0x12\n"), TRANSFER_50} +
                              EMPTY_ROWS));
}

TEST_F(I2cTransArguments, GoesOnToTheTransferWhenBothCommandBytesAreMissing) {
    m_bus.Expect({.saddr = 0x50, .cmd_sel = 2, .cmd = 0});

    OutputOf([this] { EXPECT_EQ(Trans("wr", {0x50, 2}).bytes, Bytes{SUCCESS}); });

    EXPECT_EQ(m_log.Lines(), (CLines{WR, ADDR_50, Print("I2C: cmd size = 2\n"), TRANSFER_50}));
}

// Data size

TEST_F(I2cTransArguments, FindsTheDataSizeBehindTheCommandBytesThereAre) {
    m_bus.Expect({.saddr = 0x50, .data = {0x77}});
    m_bus.Expect({.saddr = 0x50, .cmd_sel = 1, .cmd = 0x12, .data = {0x77}});
    m_bus.Expect({.saddr = 0x50, .cmd_sel = 2, .cmd = 0x3412, .data = {0x77}});
    const CLines tail = {Print("I2C: data size = 1\n"), Print("I2C: data[0] = 0x77\n"),
                         TRANSFER_50};

    EXPECT_EQ(Trans("wr", {0x50, 0, 1, 0x77}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_log.Lines(),
              (CLines{WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND} + tail));

    m_log.Clear();
    EXPECT_EQ(Trans("wr", {0x50, 1, 0x12, 1, 0x77}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(
        m_log.Lines(),
        (CLines{WR, ADDR_50, Print("I2C: cmd size = 1\n"), Print("I2C: cmd[0] = 0x12\n")} + tail));

    m_log.Clear();
    OutputOf([this] {
        EXPECT_EQ(Trans("wr", {0x50, 2, 0x12, 0x34, 1, 0x77}).bytes, Bytes{SUCCESS});
    });
    EXPECT_EQ(m_log.Lines(), (CLines{WR, ADDR_50, Print("I2C: cmd size = 2\n"),
                                     Print("I2C: cmd[0] = 0x12\n"), Print("I2C: cmd[1] = 0x34\n")} +
                              tail));
}

TEST_F(I2cTransArguments, PrintsADataSizeOf0ThatWasGiven) {
    m_bus.Expect({.saddr = 0x50});

    EXPECT_EQ(Trans("wr", {0x50, 0, 0}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines(), (CLines{WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND,
                                     Print("I2C: data size = 0\n"), TRANSFER_50}));
}

TEST_F(I2cTransArguments, TakesTheDataSizeForAReadWithoutData) {
    m_bus.Expect({.saddr = 0x50, .read = true, .data = {1, 2, 3, 4}});

    EXPECT_EQ(Trans("rd", {0x50, 0, 4}).bytes, Bytes{SUCCESS});

    const CLines head = {RD,
                         ADDR_50,
                         Print("I2C: cmd size = 0\n"),
                         NO_COMMAND,
                         Print("I2C: data size = 4\n"),
                         TRANSFER_50};
    const CLines lines = m_log.Lines();
    ASSERT_GE(lines.size(), head.size());
    EXPECT_EQ(CLines(lines.begin(), lines.begin() + 6), head);
}

// Data

TEST_F(I2cTransArguments, PrintsEachByteOfAWrite) {
    m_bus.Expect({.saddr = 0x50, .data = {0x00, 0x05, 0xFF}});

    EXPECT_EQ(Trans("wr", {0x50, 0, 3, 0x00, 0x05, 0xFF}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines(),
              (CLines{WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND,
                      Print("I2C: data size = 3\n"), Print("I2C: data[0] = 0x0\n"),
                      Print("I2C: data[1] = 0x5\n"), Print("I2C: data[2] = 0xff\n"), TRANSFER_50}));
}

TEST_F(I2cTransArguments, RefusesAWriteWithTooFewBytesAfterPrintingThose) {
    ExpectRefusal(
        Trans("wr", {0x50, 0, 3, 0x11, 0x22}),
        {WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND, Print("I2C: data size = 3\n"),
         Print("I2C: data[0] = 0x11\n"), Print("I2C: data[1] = 0x22\n"), MISMATCH});
}

TEST_F(I2cTransArguments, RefusesAWriteWithoutAnyOfItsBytes) {
    ExpectRefusal(Trans("wr", {0x50, 0, 1}), {WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND,
                                              Print("I2C: data size = 1\n"), MISMATCH});
}

TEST_F(I2cTransArguments, RefusesAWriteWithTwoCommandBytesBeforeAnythingReachesStandardOutput) {
    const std::string output = OutputOf([this] {
        ExpectRefusal(Trans("wr", {0x50, 2, 0x12, 0x34, 2, 0x11}),
                      {WR, ADDR_50, Print("I2C: cmd size = 2\n"), Print("I2C: cmd[0] = 0x12\n"),
                       Print("I2C: cmd[1] = 0x34\n"), Print("I2C: data size = 2\n"),
                       Print("I2C: data[0] = 0x11\n"), MISMATCH});
    });
    EXPECT_EQ(output, "");
}

TEST_F(I2cTransArguments, TakesAWriteOf32Bytes) {
    const Bytes data = Counting({}, 0x40, 32);
    m_bus.Expect({.saddr = 0x50, .data = data});

    EXPECT_EQ(Trans("wr", Counting({0x50, 0, 32}, 0x40, 32)).bytes, Bytes{SUCCESS});

    const CLines lines = m_log.Lines();
    ASSERT_EQ(lines.size(), 4U + 1 + 32 + 1);
    EXPECT_EQ(lines[4], Print("I2C: data size = 32\n"));
    EXPECT_EQ(lines[5], Print("I2C: data[0] = 0x40\n"));
    EXPECT_EQ(lines[15], Print("I2C: data[10] = 0x4a\n"));
    EXPECT_EQ(lines[36], Print("I2C: data[31] = 0x5f\n"));
    EXPECT_EQ(lines[37], TRANSFER_50);
}

TEST_F(I2cTransArguments, RefusesAWriteOf33BytesEvenWhenAllAreThere) {
    const CAnswer reply = Trans("wr", Counting({0x50, 0, 33}, 0x40, 33));

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    EXPECT_TRUE(m_bus.Seen().empty());
    const CLines lines = m_log.Lines();
    ASSERT_EQ(lines.size(), 4U + 1 + 32 + 1);
    EXPECT_EQ(lines[4], Print("I2C: data size = 33\n"));
    EXPECT_EQ(lines[36], Print("I2C: data[31] = 0x5f\n"));
    EXPECT_EQ(lines[37], MISMATCH);
}

TEST_F(I2cTransArguments, RefusesAWriteOf255BytesAfterTheFirst32) {
    const CAnswer reply = Trans("wr", Counting({0x50, 0, 255}, 0, 255));

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    EXPECT_TRUE(m_bus.Seen().empty());
    const CLines lines = m_log.Lines();
    ASSERT_EQ(lines.size(), 4U + 1 + 32 + 1);
    EXPECT_EQ(lines[36], Print("I2C: data[31] = 0x1f\n"));
    EXPECT_EQ(lines[37], MISMATCH);
}

TEST_F(I2cTransArguments, RefusesATooLongWriteOnceWhenItsBytesRunOutToo) {
    ExpectRefusal(Trans("wr", {0x50, 0, 200, 0x11}),
                  {WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND,
                   Print("I2C: data size = 200\n"), Print("I2C: data[0] = 0x11\n"), MISMATCH});
}

// Too much of it

TEST_F(I2cTransArguments, IgnoresInputBehindTheDataOfAWrite) {
    m_bus.Expect({.saddr = 0x50, .cmd_sel = 1, .cmd = 0x12, .data = {0x11, 0x22}});

    EXPECT_EQ(Trans("wr", {0x50, 1, 0x12, 2, 0x11, 0x22, 0x33, 0x44}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines(),
              (CLines{WR, ADDR_50, Print("I2C: cmd size = 1\n"), Print("I2C: cmd[0] = 0x12\n"),
                      Print("I2C: data size = 2\n"), Print("I2C: data[0] = 0x11\n"),
                      Print("I2C: data[1] = 0x22\n"), TRANSFER_50}));
}

TEST_F(I2cTransArguments, IgnoresInputBehindADataSizeOf0) {
    m_bus.Expect({.saddr = 0x50});

    EXPECT_EQ(Trans("wr", {0x50, 0, 0, 0x11}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines(), (CLines{WR, ADDR_50, Print("I2C: cmd size = 0\n"), NO_COMMAND,
                                     Print("I2C: data size = 0\n"), TRANSFER_50}));
}

TEST_F(I2cTransArguments, IgnoresInputBehindTheDataSizeOfARead) {
    m_bus.Expect({.saddr = 0x50, .read = true, .data = {0xAA}});

    EXPECT_EQ(Trans("rd", {0x50, 0, 1, 0x11, 0x22}).bytes, Bytes{SUCCESS});

    const CLines lines = m_log.Lines();
    ASSERT_GE(lines.size(), 6U);
    EXPECT_EQ(lines[4], Print("I2C: data size = 1\n"));
    EXPECT_EQ(lines[5], TRANSFER_50);
}

TEST_F(I2cTransArguments, TakesAsManyValuesAsItDeclares) {
    m_bus.Expect({.saddr = 0x50, .cmd_sel = 2, .cmd = 0x3412, .data = Counting({}, 0x40, 32)});
    // One text and 38 numbers, the last of them left over.
    const Bytes numbers = Counting({0x50, 2, 0x12, 0x34, 32}, 0x40, 33);
    ASSERT_EQ(numbers.size(), Command("trans").GetChildren().size() - 1);

    OutputOf([&] { EXPECT_EQ(Trans("wr", numbers).bytes, Bytes{SUCCESS}); });
}

}  // namespace
