// "read-port" and "write-port": what both kinds of port device answer alike.
#include <stdexcept>

#include "tests/io/io_port_test.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* MISSING_DEVICE =
    R"(io/[a-z0-9_]+\.cpp:[1-9][0-9]* Assert failed \(pDev != NULL\))";

class EveryIoDevice : public CIoPortTest, public testing::WithParamInterface<std::string> {
  protected:
    CDiagDevice& Device() {
        return GetParam() == "gpio" ? static_cast<CDiagDevice&>(m_plain) : m_expander;
    }
    CDiagFunc& Func(const std::string& command) {
        return dynamic_cast<CDiagFunc&>(NodeAt(Device(), command));
    }
    CAnswer Read(uint8_t port) { return Send(Func("read-port"), MSG_CALL, port); }
    CAnswer Write(uint8_t port, uint8_t val, uint8_t msk) {
        return Send(Func("write-port"), MSG_CALL, port, val, msk);
    }
    // The accesses of this device's ports.
    std::vector<std::string> Accesses() const {
        std::vector<std::string> accesses;
        for (const std::string& call : m_journal.Calls()) {
            if (call.starts_with(GetParam() + ": ")) {
                accesses.push_back(call.substr(GetParam().size() + 2));
            }
        }
        return accesses;
    }
    // Answers failure with the text of the missing argument, and reaches no port.
    template <class... Args>
    void ExpectMissing(const std::string& command, const Args&... args) {
        m_journal.Clear();
        EXPECT_EQ(Send(Func(command), MSG_CALL, args...).bytes, Bytes{FAIL});
        EXPECT_EQ(m_journal.Entries(), CEntries{ArgError(UnderflowText<uint8_t>())});
    }
};
INSTANTIATE_TEST_SUITE_P(, EveryIoDevice, testing::Values("gpio", "expander"),
                         [](const auto& one) { return one.param; });

TEST_P(EveryIoDevice, AnswersThePortsValueBehindTheCode) {
    m_script.values = {{0, 0x00}, {3, 0xA5}};
    EXPECT_EQ(Read(3).bytes, (Bytes{SUCCESS, 0xA5}));
    EXPECT_EQ(Read(0).bytes, (Bytes{SUCCESS, 0x00}));
    EXPECT_THAT(Accesses(), ElementsAre("ReadIoPort(3)", "ReadIoPort(0)"));
    EXPECT_THAT(m_log.Texts(0x20), IsEmpty());
}

TEST_P(EveryIoDevice, PassesValueAndMaskOnUnchanged) {
    EXPECT_EQ(Write(3, 0xA5, 0x0F).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Write(0, 0xFF, 0x00).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Accesses(), ElementsAre("WriteIoPort(3, 165, 15)", "WriteIoPort(0, 255, 0)"));
    EXPECT_THAT(m_log.Texts(0x20), IsEmpty());
}

TEST_P(EveryIoDevice, LeavesTheNumberOfPortsToTheBoard) {
    m_script.values = {{255, 1}};
    EXPECT_EQ(Read(255).bytes, (Bytes{SUCCESS, 1}));
    EXPECT_EQ(Write(255, 1, 2).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Accesses(), ElementsAre("ReadIoPort(255)", "WriteIoPort(255, 1, 2)"));
}

TEST_P(EveryIoDevice, TakesEveryResultButZeroForSuccess) {
    m_script.values = {{1, 0x42}};
    for (const uint32_t result : {1U, 2U, 0x100U, 0x80000000U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(result);
        m_script.result = result;
        EXPECT_EQ(Read(1).bytes, (Bytes{SUCCESS, 0x42}));
        EXPECT_EQ(Write(1, 2, 3).bytes, Bytes{SUCCESS});
    }
}

TEST_P(EveryIoDevice, TellsOfAPortThatCannotBeRead) {
    m_script = {.values = {{3, 0xA5}, {255, 1}}, .result = 0, .hook = {}};
    EXPECT_EQ(Read(3).bytes, Bytes{FAIL});
    EXPECT_EQ(Read(255).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x20),
                ElementsAre("ERROR: Read Port 3 error!\n", "ERROR: Read Port 255 error!\n"));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_P(EveryIoDevice, TellsOfAPortThatCannotBeWritten) {
    m_script.result = 0;
    EXPECT_EQ(Write(3, 1, 2).bytes, Bytes{FAIL});
    EXPECT_EQ(Write(255, 1, 2).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x20), ElementsAre("ERROR: Write I/O Port 3 error (Invoke)!\n",
                                               "ERROR: Write I/O Port 255 error (Invoke)!\n"));
    EXPECT_THAT(m_log.Texts(0x30), IsEmpty());
}

TEST_P(EveryIoDevice, DoesNothingWithoutAllArguments) {
    ExpectMissing("read-port");
    ExpectMissing("write-port");
    ExpectMissing("write-port", uint8_t{1});
    ExpectMissing("write-port", uint8_t{1}, uint8_t{2});
}

TEST_P(EveryIoDevice, LetsAMissingArgumentLeaveInvoke) {
    for (const char* command : {"read-port", "write-port"}) {
        CInMsg in{COutMsg(MSG_CALL)};
        COutMsg out;
        EXPECT_EQ(ThrownText([&] { Func(command).Invoke(in, out); }), UnderflowText<uint8_t>());
        EXPECT_EQ(out.GetHeader().len, 0);
    }
    EXPECT_THAT(m_journal.Entries(), IsEmpty());
}

TEST_P(EveryIoDevice, FailsTheAssertionBeforeItReadsArguments) {
    for (const char* command : {"read-port", "write-port"}) {
        const std::unique_ptr<CDiagObj> node = Device().RemoveChild(Func(command).GetId());
        CInMsg in{COutMsg(MSG_CALL)};
        COutMsg out;
        EXPECT_THAT(ThrownText([&] { dynamic_cast<CDiagFunc&>(*node).Invoke(in, out); }),
                    testing::MatchesRegex(MISSING_DEVICE));
        EXPECT_EQ(out.GetHeader().len, 0);
    }
    EXPECT_THAT(m_journal.Entries(), IsEmpty());
}

TEST_P(EveryIoDevice, AnswersFailureWhenACommandIsDetached) {
    for (const char* command : {"read-port", "write-port"}) {
        const std::unique_ptr<CDiagObj> node = Device().RemoveChild(Func(command).GetId());
        m_journal.Clear();
        EXPECT_EQ(Send(dynamic_cast<CDiagMenu&>(*node), MSG_CALL, CNumbers{{1, 2, 3}}).bytes,
                  Bytes{FAIL});
        ASSERT_EQ(m_journal.Entries().size(), 1U);
        EXPECT_EQ(m_journal.Entries()[0].first, 0x30U);
        EXPECT_THAT(m_journal.Entries()[0].second, testing::MatchesRegex(MISSING_DEVICE));
    }
}

TEST_P(EveryIoDevice, AnswersFailureBelowADeviceWithoutPorts) {
    for (const char* command : {"read-port", "write-port"}) {
        m_bus.AddChild(Device().RemoveChild(Func(command).GetId()).release(), CDiagObj::NO_SORT);
        EXPECT_EQ(Send(NodeAt(m_bus, command), MSG_CALL, CNumbers{{1, 2, 3}}).bytes, Bytes{FAIL});
        EXPECT_THAT(m_journal.Calls(), IsEmpty());
    }
}

TEST_P(EveryIoDevice, AnswersFailureWhenThePortThrows) {
    m_script.hook = [] { throw CDiagException("port is stuck"); };
    EXPECT_EQ(Read(1).bytes, Bytes{FAIL});
    EXPECT_EQ(Write(1, 2, 3).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("port is stuck", "port is stuck"));
}

TEST_P(EveryIoDevice, SharesItselfBetweenPortCommandsAndKeepsTestsOut) {
    bool shut_out = true;
    bool tests_shut_out = false;
    m_script.hook = [&] {
        shut_out = WouldWait(Device(), DEV_LOCK_PROTECT);
        tests_shut_out = WouldWait(Device(), DEV_LOCK_ACCESS);
    };
    for (const char* command : {"read-port", "write-port"}) {
        SCOPED_TRACE(command);
        shut_out = true;
        tests_shut_out = false;
        Send(Func(command), MSG_CALL, CNumbers{{1, 2, 3}});
        EXPECT_FALSE(shut_out);
        EXPECT_TRUE(tests_shut_out);
        EXPECT_FALSE(WouldWait(Device(), DEV_LOCK_ACCESS));
    }
}

}  // namespace
