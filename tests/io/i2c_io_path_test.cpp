// The port commands of a chip on an I2C bus and the path to it.
#include "tests/io/io_port_test.h"

namespace {

struct CCase {
    std::string command;
    std::vector<uint8_t> arguments;
    std::string access;
    std::string error;  // at 0x20
    std::vector<uint8_t> success;
};

void PrintTo(const CCase& one, std::ostream* out) {
    *out << one.command;
}

class EveryI2cPortCommand : public CIoPortTest, public testing::WithParamInterface<CCase> {
  protected:
    EveryI2cPortCommand() { m_script.values = {{3, 0x5A}}; }

    CAnswer Run() {
        return Send(NodeAt(m_expander, GetParam().command), MSG_CALL,
                    CNumbers{GetParam().arguments});
    }
    CEntries Access() const { return {Call("expander: " + GetParam().access)}; }
    CEntries FailedAccess() const { return Access() + CEntries{SystemError(GetParam().error)}; }

    const CEntries m_path_opened =
        CEntries{Trace("(expander): enable upstream switch mux-2 channel = 1\n")} + m_opened;
    const CEntries m_path_closed =
        CEntries{Trace("(expander): clear upstream switch mux-2 channel = 1\n")} + m_closed;
    const CEntries m_cannot_open = {ArgError("  Error when enabling I2C path!\n")};
    // What the switch says of its failure, and then the command.
    const CEntries m_not_closed =
        m_path_closed + CEntries{SystemError("(top-1): Error when disabling upstrem channels!\n"),
                                 ArgError("  Error when disabling I2C path!\n")};
};
INSTANTIATE_TEST_SUITE_P(
    , EveryI2cPortCommand,
    testing::Values(
        CCase{"read-port", {3}, "ReadIoPort(3)", "ERROR: Read Port 3 error!\n", {0, 0x5A}},
        CCase{"write-port",
              {3, 0xA5, 0x0F},
              "WriteIoPort(3, 165, 15)",
              "ERROR: Write I/O Port 3 error (Invoke)!\n",
              {0}}),
    [](const auto& one) { return one.param.command == "read-port" ? "read" : "write"; });

TEST_P(EveryI2cPortCommand, OpensThePathBeforeTheAccessAndClosesItAfterwards) {
    EXPECT_EQ(Run().bytes, GetParam().success);
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access() + m_path_closed);
}

TEST_P(EveryI2cPortCommand, DoesNotReachThePortWhenThePathCannotBeOpened) {
    m_mux.FailAt("SelChannel");
    EXPECT_EQ(Run().bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_cannot_open);
}

TEST_P(EveryI2cPortCommand, ClosesThePathAfterAFailedAccess) {
    m_script.result = 0;
    EXPECT_EQ(Run().bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + FailedAccess() + m_path_closed);
}

TEST_P(EveryI2cPortCommand, AnswersNothingButFailureWhenThePathCannotBeClosed) {
    m_top.FailAt("DisableChannels");
    EXPECT_EQ(Run().bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access() + m_not_closed);
}

TEST_P(EveryI2cPortCommand, TellsOfAFailedAccessAndOfThePathThatCannotBeClosed) {
    m_top.FailAt("DisableChannels");
    m_script.result = 0;
    EXPECT_EQ(Run().bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + FailedAccess() + m_not_closed);
}

TEST_P(EveryI2cPortCommand, NeedsNoPathWithoutAChannel) {
    m_expander.m_i2c_ch = -1;
    EXPECT_EQ(Run().bytes, GetParam().success);
    EXPECT_EQ(m_journal.Entries(), Access());
}

TEST_P(EveryI2cPortCommand, NeedsNoPathOnARootBus) {
    CI2cPorts device(m_journal, m_script, "new", "on a root bus", nullptr, &m_bus);
    device.m_i2c_ch = 1;
    EXPECT_EQ(
        Send(NodeAt(device, GetParam().command), MSG_CALL, CNumbers{GetParam().arguments}).bytes,
        GetParam().success);
    EXPECT_EQ(m_journal.Entries(), CEntries{Call("new: " + GetParam().access)});
}

}  // namespace
