// Writing to what a driver of the kernel owns.
#include <cerrno>
#include <thread>

#include "framework/diag_log_word.h"
#include "host/consent.h"
#include "tests/boards/linux/linux_bus_test.h"
#include "tests/support/log_capture.h"

namespace {

class LinuxBusOwnership : public CLinuxBusTest {
  protected:
    // An operator who is asked in the test's thread.
    CConsent Operator(bool answer) {
        return CConsent([this, answer](const std::string& what) {
            m_questions.push_back(what);
            return answer;
        });
    }
    void LetDriverOwnTheAddress() {
        m_fake_sysfs.AddChip("3-0050", "24c02", "at24");
        m_dev.owned = {0x50};
    }

    std::vector<std::string> m_questions;
};

TEST_F(LinuxBusOwnership, IsNobodysWithoutADriver) {
    m_fake_sysfs.AddChip("3-0050", "24c02", "");
    m_fake_sysfs.AddChip("4-0050", "24c02", "at24");
    const CConsent consent = Operator(false);
    EXPECT_TRUE(Write(1, 0, 1));
    EXPECT_TRUE(m_questions.empty());
    EXPECT_EQ(Bus().OwnerOf(0x50), "");
}

TEST_F(LinuxBusOwnership, RefusesToWriteWhereNobodyCanBeAsked) {
    LetDriverOwnTheAddress();
    EXPECT_FALSE(Write(1, 0, 2));
    EXPECT_EQ(m_errmsg,
              "0x50: write 3 bytes on /dev/i2c-3: a kernel driver uses the address (at24); "
              "diagsh --force writes all the same");
    EXPECT_EQ(m_dev.Call(), "slave 0x50");
}

TEST_F(LinuxBusOwnership, WarnsOfWhatWasNotWritten) {
    LetDriverOwnTheAddress();
    const CLogCapture log;
    EXPECT_FALSE(Write(1, 0, 2));
    EXPECT_EQ(log.Joined(LW_WARN), m_errmsg + "\n");
}

TEST_F(LinuxBusOwnership, AsksTheOperator) {
    LetDriverOwnTheAddress();
    const CConsent consent = Operator(true);
    EXPECT_TRUE(Write(1, 0, 1));
    EXPECT_EQ(m_questions, (std::vector<std::string>{
                               "write to 0x50 on /dev/i2c-3, which a kernel driver uses (at24)"}));
    EXPECT_EQ(m_dev.calls.back(), "rdwr {addr 0x50 flags 0x0 len 2 00 11}");
}

TEST_F(LinuxBusOwnership, AsksOnceForAllWritesOfACommand) {
    LetDriverOwnTheAddress();
    const CConsent consent = Operator(true);
    EXPECT_TRUE(Write(1, 0, 1));
    EXPECT_TRUE(Write(2, 5, 7));
    EXPECT_EQ(m_questions.size(), 1U);
}

TEST_F(LinuxBusOwnership, DoesWhatTheOperatorSays) {
    LetDriverOwnTheAddress();
    const CConsent consent = Operator(false);
    EXPECT_FALSE(Write(1, 0, 1));
    EXPECT_EQ(m_dev.Call(), "slave 0x50");
}

TEST_F(LinuxBusOwnership, LetsEverybodyRead) {
    LetDriverOwnTheAddress();
    const CConsent consent = Operator(false);
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_TRUE(Read(1, 0, 1));
    EXPECT_TRUE(Read(2, 0, 1));
    EXPECT_TRUE(Read(2, 0, 1));
    EXPECT_TRUE(m_questions.empty());
    const std::string narrow = "rdwr {addr 0x50 flags 0x0 len 1 00} {addr 0x50 flags 0x1 len 1}";
    const std::string wide = "rdwr {addr 0x50 flags 0x0 len 2 00 00} {addr 0x50 flags 0x1 len 1}";
    EXPECT_EQ(m_dev.calls, (std::vector<std::string>{"rdwr {addr 0x50 flags 0x1 len 1}", narrow,
                                                     "slave 0x50", wide, wide}));
}

// To a register chip the second byte is what to write to the register of the first.
TEST_F(LinuxBusOwnership, CountsASecondByteBeforeAReadAsAWriteUnlessItIsAnEeproms) {
    m_fake_sysfs.AddChip("3-0050", "pca9555", "pca953x");
    m_dev.owned = {0x50};
    EXPECT_TRUE(Read(1, 0, 1));
    EXPECT_FALSE(Read(2, 0x5A02, 1));
    EXPECT_EQ(m_errmsg,
              "0x50: write 2 bytes, read 1 byte on /dev/i2c-3: a kernel driver uses the address "
              "(pca953x); diagsh --force writes all the same");
    const CConsent consent = Operator(true);
    EXPECT_TRUE(Read(2, 0x5A02, 1));
    EXPECT_EQ(m_questions.size(), 1U);
}

// To a multiplexer already the first one is: it selects the channels.
TEST_F(LinuxBusOwnership, CountsAByteBeforeAReadOfAMultiplexerAsAWrite) {
    m_fake_sysfs.AddChip("3-0070", "pca9548", "pca954x");
    m_dev.owned = {0x70};
    uint8_t byte = 0;
    EXPECT_FALSE(Bus().smb_read_byte(-1, 0x70, 0x04, &byte));
    EXPECT_TRUE(Bus().smb_receive_byte(-1, 0x70, &byte));
    EXPECT_TRUE(Bus().smb_read_byte(-1, 0x71, 0x04, &byte));
    m_dev.calls.clear();
    m_dev.owned = {0x71};
    EXPECT_FALSE(Bus().smb_read_byte(-1, 0x71, 0x04, &byte));
    EXPECT_EQ(m_dev.Call(), "slave 0x71");
}

TEST_F(LinuxBusOwnership, CountsAProcessCallAsAWrite) {
    LetDriverOwnTheAddress();
    std::array<uint8_t, 32> block{};
    EXPECT_FALSE(Bus().smb_block_process_call(-1, 0x50, 0x10, 4, block.data()));
    EXPECT_EQ(m_dev.Call(), "slave 0x50");
}

// Others may use the wire while somebody thinks about it.
TEST_F(LinuxBusOwnership, AsksWithTheWireFree) {
    LetDriverOwnTheAddress();
    bool read = false;
    const CConsent consent([&](const std::string&) {
        std::thread([&] {
            uint8_t byte = 0;
            read = Bus().smb_receive_byte(-1, 0x51, &byte);
        }).join();
        return true;
    });
    EXPECT_TRUE(Write(1, 0, 1));
    EXPECT_TRUE(read);
}

TEST_F(LinuxBusOwnership, LetsEverybodyAskWhetherAChipIsThere) {
    LetDriverOwnTheAddress();
    EXPECT_TRUE(Write(0, 0, 0));
}

// The address counter of an EEPROM and the channel of a multiplexer are the driver's too.
TEST_F(LinuxBusOwnership, CountsACommandWithoutDataAsAWrite) {
    LetDriverOwnTheAddress();
    EXPECT_FALSE(Write(1, 0x12, 0));
    EXPECT_EQ(m_dev.Call(), "slave 0x50");
}

TEST_F(LinuxBusOwnership, IsLookedAtForEachWrite) {
    EXPECT_TRUE(Write(1, 0, 1));
    LetDriverOwnTheAddress();
    EXPECT_FALSE(Write(1, 0, 1));
    std::filesystem::remove(m_fake_sysfs.Devices() / "3-0050/driver");
    m_dev.owned.clear();
    EXPECT_TRUE(Write(1, 0, 1));
}

TEST_F(LinuxBusOwnership, AsksTheKernelWhereSysfsNamesNoDriver) {
    m_dev.owned = {0x50};
    EXPECT_FALSE(Write(1, 0, 1));
    EXPECT_EQ(m_errmsg,
              "0x50: write 2 bytes on /dev/i2c-3: a kernel driver uses the address (name "
              "unknown); diagsh --force writes all the same");
    EXPECT_EQ(m_dev.Call(), "slave 0x50");
    EXPECT_EQ(Bus().OwnerOf(0x50), "name unknown");
    EXPECT_EQ(Bus().OwnerOf(0x51), "");
}

TEST_F(LinuxBusOwnership, IsToldOfAChipBehindAMultiplexer) {
    m_dev.owned = {0x50};
    m_fake_sysfs.Link("i2c-5/mux_device", "../3-0070");
    m_fake_sysfs.AddChip("5-0050", "24c02", "at24");
    EXPECT_EQ(Bus().OwnerOf(0x50), "at24 at 5-0050");
    EXPECT_FALSE(Bus().HasOwned(0x50));
}

TEST_F(LinuxBusOwnership, IsToldByName) {
    LetDriverOwnTheAddress();
    EXPECT_EQ(Bus().OwnerOf(0x50), "at24");
    EXPECT_TRUE(Bus().HasOwned(0x50));
}

TEST_F(LinuxBusOwnership, GuardsSmbusOperationsToo) {
    m_dev.functions = SMBUS_FUNCTIONS;
    m_dev.owned = {0x50};
    LetDriverOwnTheAddress();
    EXPECT_FALSE(Write(1, 0, 1));
    EXPECT_EQ(m_dev.Call(), "slave 0x50");
    const CConsent consent = Operator(true);
    EXPECT_TRUE(Write(1, 0, 1));
    EXPECT_EQ(m_dev.calls, (std::vector<std::string>{"slave 0x50", "slave 0x50", "slave-force 0x50",
                                                     "smbus write command 0x00 size 2 byte 11"}));
}

TEST_F(LinuxBusOwnership, HoldsWithoutSysfs) {
    const CI2cSysfs nowhere("/nowhere");
    CTestLinuxBus bus("i2c-3", "bus of the kernel", "/dev/i2c-3", nowhere, m_dev);
    m_dev.owned = {0x50};
    EXPECT_FALSE(bus.smb_write_byte(-1, 0x50, 0, 0));
    EXPECT_TRUE(bus.smb_write_byte(-1, 0x51, 0, 0));
}

}  // namespace
