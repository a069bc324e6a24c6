#include "boards/chips/mapped_io_device.h"

#include <gtest/gtest.h>

#include "framework/diag_exception.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/temp_folder.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Names = std::vector<std::string>;

class MappedIoDevice : public testing::Test {
  protected:
    CMappedIoDevice Device(uint8_t ports) { return {"io", "ports", m_file, 0, ports}; }

    std::string FaultOf(const std::filesystem::path& file, uint8_t ports) {
        try {
            const CMappedIoDevice device("io", "ports", file, 0, ports);
        } catch (const CDiagException& fault) {
            return fault.what();
        }
        return "none";
    }

    const CTempFolder m_folder;
    const std::filesystem::path m_file = m_folder.Write("io.bin", Bytes{0x11, 0x22, 0x33, 0x44});
    CLogCapture m_log;
};

TEST_F(MappedIoDevice, ReadsItsPortsFromTheFile) {
    CMappedIoDevice device = Device(4);
    EXPECT_EQ(Send(NodeAt(device, "read-port"), MSG_CALL, uint8_t{2}).bytes, (Bytes{0, 0x33}));
    PatchFile(m_file, 2, 0x5A);
    EXPECT_EQ(Send(NodeAt(device, "read-port"), MSG_CALL, uint8_t{2}).bytes, (Bytes{0, 0x5A}));
}

TEST_F(MappedIoDevice, BeginsWhereItIsToldTo) {
    std::vector<uint8_t> bytes(5000, 0xEE);
    bytes[4097] = 0x42;
    bytes[4999] = 0x43;
    const std::filesystem::path file = m_folder.Write("memory.bin", bytes);
    {
        CMappedIoDevice device("io", "ports", file, 4097, 3);
        EXPECT_EQ(Send(NodeAt(device, "read-port"), MSG_CALL, uint8_t{0}).bytes, (Bytes{0, 0x42}));
    }
    CMappedIoDevice last("io", "ports", file, 4999, 1);
    EXPECT_EQ(Send(NodeAt(last, "read-port"), MSG_CALL, uint8_t{0}).bytes, (Bytes{0, 0x43}));
    EXPECT_THROW(CMappedIoDevice("io", "ports", file, 4999, 2), CDiagException);
}

TEST_F(MappedIoDevice, WritesOnlyTheBitsOfTheMaskAndOnlyItsByte) {
    CMappedIoDevice device = Device(4);
    for (unsigned int mask = 0; mask < 256; ++mask) {
        PatchFile(m_file, 1, 0xA5);
        const auto answer = Send(NodeAt(device, "write-port"), MSG_CALL, uint8_t{1}, uint8_t{0x3C},
                                 static_cast<uint8_t>(mask));
        ASSERT_EQ(answer.Code(), MSG_SUCCESS);
        const auto want = static_cast<uint8_t>((0xA5 & ~mask) | (0x3C & mask));
        ASSERT_EQ(BytesOf(m_file), (Bytes{0x11, want, 0x33, 0x44}));
    }
}

TEST_F(MappedIoDevice, HasItsPortsAsRegistersToo) {
    CMappedIoDevice device = Device(4);
    diag_reg_st* port = device.getRegEntry("port");
    ASSERT_NE(port, nullptr);
    EXPECT_TRUE(device.SetClrBits(0x80, port, 3, true));
    EXPECT_EQ(BytesOf(m_file), (Bytes{0x11, 0x22, 0x33, 0xC4}));
    EXPECT_TRUE(device.dumpRegs(LW_PRINT, ""));
    EXPECT_EQ(m_log.Joined(LW_PRINT),
              "port[0]          0x11\nport[1]          0x22\nport[2]          0x33\n"
              "port[3]          0xc4\n");
}

TEST_F(MappedIoDevice, RefusesAPortThatItDoesNotHave) {
    CMappedIoDevice device = Device(3);
    EXPECT_EQ(Send(NodeAt(device, "read-port"), MSG_CALL, uint8_t{3}).bytes, Bytes{2});
    EXPECT_EQ(
        Send(NodeAt(device, "write-port"), MSG_CALL, uint8_t{3}, uint8_t{0}, uint8_t{0xFF}).bytes,
        Bytes{2});
    diag_regdata_t data = 0;
    EXPECT_FALSE(device.readRegEntry(&data, device.getRegEntry("port"), UINT32_MAX));
    EXPECT_EQ(m_log.Texts(LW_ERR_SW), Names(3, "ports are 0 to 2\n"));
    EXPECT_EQ(BytesOf(m_file), (Bytes{0x11, 0x22, 0x33, 0x44}));
}

TEST_F(MappedIoDevice, CannotBeMadeWithoutItsFile) {
    const auto missing = m_folder / "missing.bin";
    EXPECT_EQ(FaultOf(missing, 1),
              "cannot open " + missing.string() + ": No such file or directory");
}

TEST_F(MappedIoDevice, CannotBeMadeOfAFileThatIsTooShort) {
    EXPECT_EQ(FaultOf(m_file, 4), "none");
    EXPECT_EQ(FaultOf(m_file, 5), m_file.string() + " has 4 bytes, the ports take 5");
    const auto empty = m_folder.Write("empty.bin", Bytes{});
    EXPECT_EQ(FaultOf(empty, 1), empty.string() + " has 0 bytes, the ports take 1");
}

TEST_F(MappedIoDevice, CannotBeMadeOfWhatCannotBeMapped) {
    EXPECT_EQ(FaultOf(m_folder.Path(), 1),
              "cannot open " + m_folder.Path().string() + ": Is a directory");
    EXPECT_EQ(FaultOf("/dev/null", 1), "cannot map /dev/null: No such device");
}

TEST_F(MappedIoDevice, FailsWhenTheFileWasCutShortMeanwhile) {
    CMappedIoDevice device = Device(4);
    std::filesystem::resize_file(m_file, 0);
    EXPECT_EQ(Send(NodeAt(device, "read-port"), MSG_CALL, uint8_t{0}).bytes, Bytes{2});
    EXPECT_EQ(m_log.Texts(LW_ERR_SYS), (Names{m_file.string() + " has 0 bytes, the ports take 4\n",
                                              "ERROR: Read Port 0 error!\n"}));
}

}  // namespace
