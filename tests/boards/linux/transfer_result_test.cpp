// Whatever the kernel answers: a transfer has succeeded when every message was moved, and
// else it is told what was tried, where, and what the kernel says.
#include <cerrno>

#include "tests/boards/linux/linux_bus_test.h"
#include "tests/support/fake_clock.h"

namespace {

class LinuxBusResult : public CLinuxBusTest {
  protected:
    // How a read of two bytes ends on its own, and how behind a command byte.
    std::string TextOfOne(int result) { return TextOf(result, 0); }
    std::string TextOfTwo(int result) { return TextOf(result, 1); }
    CI2cResult ResultOfOne(int result) {
        m_dev.transfers = {result};
        return Bus().Move(std::span(m_msgs).subspan(1));
    }
    CI2cResult ResultOfTwo(int result) {
        m_dev.transfers = {result};
        return Bus().Move(m_msgs);
    }

  private:
    std::string TextOf(int result, uint8_t cmd_sel) {
        m_dev.transfers = {result};
        EXPECT_FALSE(Read(cmd_sel, 0, 2));
        EXPECT_EQ(Bus().GetLastError(), m_errmsg);
        return m_errmsg;
    }

    std::array<uint8_t, 3> m_bytes{};
    std::array<CI2cMsg, 2> m_msgs{CI2cMsg{0x50, false, std::span(m_bytes).first(1)},
                                  CI2cMsg{0x50, true, std::span(m_bytes).subspan(1)}};
};

TEST_F(LinuxBusResult, IsGoodWhenEveryMessageWasMoved) {
    EXPECT_TRUE(ResultOfOne(1).IsOk());
    EXPECT_TRUE(ResultOfTwo(2).IsOk());
}

TEST_F(LinuxBusResult, TakesAShortCountForAMissingAcknowledge) {
    const CI2cResult of_one = ResultOfOne(0);
    EXPECT_EQ(of_one.outcome, I2C_NO_ADDR_ACK);
    EXPECT_EQ(of_one.msg, 0U);
    const CI2cResult none = ResultOfTwo(0);
    EXPECT_EQ(none.outcome, I2C_NO_ADDR_ACK);
    EXPECT_EQ(none.msg, 0U);
    const CI2cResult half = ResultOfTwo(1);
    EXPECT_EQ(half.outcome, I2C_NO_ADDR_ACK);
    EXPECT_EQ(half.msg, 1U);
}

TEST_F(LinuxBusResult, TellsHowManyMessagesWereMoved) {
    EXPECT_EQ(TextOfOne(0),
              "no acknowledge from 0x50: read 2 bytes on /dev/i2c-3: 0 of 1 message moved");
    EXPECT_EQ(TextOfTwo(0),
              "no acknowledge from 0x50: write 1 byte, read 2 bytes on /dev/i2c-3: 0 of 2 messages "
              "moved");
    EXPECT_EQ(TextOfTwo(1),
              "no acknowledge from 0x50 at the repeated start: write 1 byte, read 2 bytes on "
              "/dev/i2c-3: 1 of 2 messages moved");
}

TEST_F(LinuxBusResult, DoesNotBelieveInMoreMessagesThanThereWere) {
    EXPECT_EQ(ResultOfOne(2).outcome, I2C_OTHER);
    EXPECT_EQ(TextOfTwo(3),
              "0x50: write 1 byte, read 2 bytes on /dev/i2c-3: 3 of 2 messages moved");
}

TEST_F(LinuxBusResult, TakesThreeErrorsForAMissingAcknowledge) {
    for (const int error : {ENXIO, EREMOTEIO, ETIMEDOUT}) {
        const CI2cResult one = ResultOfOne(-error);
        EXPECT_EQ(one.outcome, I2C_NO_ADDR_ACK) << error;
        EXPECT_EQ(one.msg, 0U) << error;
        const CI2cResult two = ResultOfTwo(-error);
        EXPECT_EQ(two.outcome, I2C_NO_ADDR_ACK) << error;
        EXPECT_EQ(two.msg, 0U) << error;
    }
}

TEST_F(LinuxBusResult, TellsWhichErrorTheMissingAcknowledgeWas) {
    EXPECT_EQ(TextOfOne(-ENXIO),
              "no acknowledge from 0x50: read 2 bytes on /dev/i2c-3: ENXIO (No such device or "
              "address)");
    EXPECT_EQ(TextOfTwo(-ENXIO),
              "no acknowledge from 0x50: write 1 byte, read 2 bytes on /dev/i2c-3: ENXIO (No such "
              "device or address)");
    EXPECT_EQ(TextOfOne(-EREMOTEIO),
              "no acknowledge from 0x50: read 2 bytes on /dev/i2c-3: EREMOTEIO (Remote I/O error)");
    EXPECT_EQ(TextOfOne(-ETIMEDOUT),
              "no acknowledge from 0x50: read 2 bytes on /dev/i2c-3: ETIMEDOUT (Connection timed "
              "out), or the clock is held low");
}

TEST_F(LinuxBusResult, KnowsLostArbitration) {
    EXPECT_EQ(ResultOfTwo(-EAGAIN).outcome, I2C_ARB_LOST);
    EXPECT_EQ(TextOfOne(-EAGAIN),
              "arbitration lost: 0x50: read 2 bytes on /dev/i2c-3: EAGAIN (Resource temporarily "
              "unavailable)");
}

TEST_F(LinuxBusResult, KnowsAStuckBus) {
    EXPECT_EQ(ResultOfTwo(-EBUSY).outcome, I2C_BUS_STUCK);
    EXPECT_EQ(
        TextOfOne(-EBUSY),
        "bus stuck low: 0x50: read 2 bytes on /dev/i2c-3: EBUSY (Device or resource busy), the "
        "bus does not become free");
}

TEST_F(LinuxBusResult, TellsOfEveryOtherErrorByNameAndText) {
    const std::array<std::pair<int, const char*>, 12> texts = {{
        {EBADMSG, "EBADMSG (Bad message), bad packet error code"},
        {EFAULT, "EFAULT (Bad address)"},
        {EINVAL, "EINVAL (Invalid argument)"},
        {EIO, "EIO (Input/output error)"},
        {ENODEV, "ENODEV (No such device), the adapter is gone"},
        {ENOMEM, "ENOMEM (Cannot allocate memory)"},
        {ENOSYS, "ENOSYS (Function not implemented)"},
        {ENOTTY, "ENOTTY (Inappropriate ioctl for device)"},
        {EOPNOTSUPP, "EOPNOTSUPP (Operation not supported) by the adapter"},
        {EPERM, "EPERM (Operation not permitted)"},
        {EPROTO, "EPROTO (Protocol error), the slave does not answer as SMBus has it"},
        {ESHUTDOWN,
         "ESHUTDOWN (Cannot send after transport endpoint shutdown), the adapter is suspended"},
    }};
    for (const auto& [error, text] : texts) {
        EXPECT_EQ(TextOfOne(-error), std::string("0x50: read 2 bytes on /dev/i2c-3: ") + text);
        EXPECT_EQ(TextOfTwo(-error),
                  std::string("0x50: write 1 byte, read 2 bytes on /dev/i2c-3: ") + text);
        EXPECT_EQ(ResultOfTwo(-error).outcome, I2C_OTHER) << text;
    }
}

TEST_F(LinuxBusResult, IsAFailureForEveryErrorThereIs) {
    for (int error = 1; error < 134; ++error) {
        m_dev.transfers = std::deque<int>(10, -error);
        EXPECT_FALSE(Read(0, 0, 2)) << error;
        EXPECT_NE(m_errmsg.find(" on /dev/i2c-3: "), std::string::npos) << m_errmsg;
        EXPECT_NE(m_errmsg.find("0x50"), std::string::npos) << m_errmsg;
    }
}

TEST_F(LinuxBusResult, NamesAnErrorThatHasNoNameByItsNumber) {
    EXPECT_EQ(TextOfOne(-4000), "0x50: read 2 bytes on /dev/i2c-3: 4000 (Unknown error 4000)");
}

TEST_F(LinuxBusResult, TellsThatEmptyReadsAreOftenNotSupported) {
    m_dev.transfers = {-EOPNOTSUPP};
    EXPECT_FALSE(Read(0, 0, 0));
    EXPECT_EQ(
        m_errmsg,
        "0x50: quick read on /dev/i2c-3: EOPNOTSUPP (Operation not supported) by the adapter, "
        "many cannot read without data");
}

TEST_F(LinuxBusResult, NamesWhatWasWritten) {
    m_dev.transfers = {-EREMOTEIO};
    EXPECT_FALSE(Write(2, 0, 8));
    EXPECT_EQ(
        m_errmsg,
        "no acknowledge from 0x50: write 10 bytes on /dev/i2c-3: EREMOTEIO (Remote I/O error)");
}

// The adapter's own timeout, which is often a whole second, is over by then.
TEST_F(LinuxBusResult, DoesNotAskAgainAfterTheAdaptersTimeout) {
    CFakeClock clock;
    EXPECT_TRUE(Write(1, 0, 1));
    m_dev.on_transfer = [&clock] { clock.Advance(1000); };
    m_dev.calls.clear();
    m_dev.transfers = {-ETIMEDOUT};
    EXPECT_FALSE(Read(1, 0, 1));
    EXPECT_EQ(m_dev.calls.size(), 1U);
}

TEST_F(LinuxBusResult, AsksAgainWhileAWriteCycleMayRun) {
    CFakeClock clock;
    EXPECT_TRUE(Write(1, 0, 1));
    m_dev.transfers = {-ENXIO, -EREMOTEIO, 0};
    EXPECT_TRUE(Read(1, 0, 1));
    EXPECT_EQ(clock.Sleeps(), 3U);
}

TEST_F(LinuxBusResult, TellsHowOftenItAsked) {
    CFakeClock clock;
    EXPECT_TRUE(Write(1, 0, 1));
    m_dev.transfers = std::deque<int>(26, -ENXIO);
    EXPECT_FALSE(Read(0, 0, 1));
    EXPECT_EQ(m_errmsg,
              "no acknowledge from 0x50, asked 25 more times after a write: read 1 byte on "
              "/dev/i2c-3: ENXIO (No such device or address)");
}

}  // namespace
