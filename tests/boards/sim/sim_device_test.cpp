// The node "sim": its commands and the contents of the memories.
#include "boards/sim/sim_device.h"

#include "boards/sim/sim_commands.h"
#include "tests/boards/sim/sim_test.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/thrown_text.h"

namespace {

class SimDevice : public CSimTest {
  protected:
    SimDevice() {
        m_sim.AddBus(m_bus);
        m_sim.AddBus(m_other);
        AddAt24("24c02", 0x50, Counting(256));
    }

    template <class... Args>
    CAnswer Call(const std::string& command, const Args&... args) {
        m_log.Clear();
        return Send(NodeAt(m_sim, command), MSG_CALL, args...);
    }
    std::string Printed() { return m_log.Joined(0xB0); }

    CSimBus m_other{"i2c-1", "another bus", BUS_HZ};
    CSimDevice m_sim;
    CLogCapture m_log;
    const std::string m_name = "i2c-0";
};

const CByteVector DONE = {0};
const CByteVector REFUSED = {2};

TEST_F(SimDevice, IsNamedSim) {
    EXPECT_STREQ(m_sim.GetName(), "sim");
    EXPECT_EQ(m_sim.GetNodeType(), TDEVICE);
}

TEST_F(SimDevice, NackSilencesAnAddressOfOneBus) {
    EXPECT_EQ(Call("nack", m_name, uint8_t{0x50}).bytes, DONE);
    EXPECT_EQ(Printed(), "i2c-0: fault: no acknowledge from 0x50\n");
    EXPECT_FALSE(Answers(0x50));
    EXPECT_TRUE(m_other.Faults().Describe().empty());
}

TEST_F(SimDevice, StickHoldsTheBus) {
    EXPECT_EQ(Call("stick", m_name).bytes, DONE);
    EXPECT_EQ(Printed(), "i2c-0: fault: a line is stuck low\n");
    EXPECT_FALSE(Answers(0x50));
    EXPECT_EQ(m_errmsg, "bus stuck low");
}

TEST_F(SimDevice, FlipTurnsABitOfWhatIsRead) {
    EXPECT_EQ(Call("flip", m_name, uint8_t{0x50}, uint8_t{1}, uint8_t{7}).bytes, DONE);
    EXPECT_EQ(Printed(), "i2c-0: fault: bit 7 of byte 1 read from 0x50 arrives wrong\n");
    EXPECT_EQ(Read(0x50, {0x10}, 3), (CData{0x10, 0x91, 0x12}));
}

TEST_F(SimDevice, FailNthFailsOneTransfer) {
    EXPECT_EQ(Call("fail-nth", m_name, uint32_t{2}).bytes, DONE);
    EXPECT_EQ(Printed(), "i2c-0: fault: transfer 2 from now loses the arbitration\n");
    EXPECT_TRUE(Answers(0x50));
    EXPECT_FALSE(Answers(0x50));
    EXPECT_TRUE(Answers(0x50));
}

TEST_F(SimDevice, FailNthHasTheFirstByteBehindTheAddressNotAcknowledged) {
    EXPECT_EQ(Call("fail-nth", m_name, uint32_t{1}, std::string("nack")).bytes, DONE);
    EXPECT_EQ(Printed(), "i2c-0: fault: transfer 1 from now is not acknowledged\n");
    EXPECT_EQ(Read(0x50, {0x10}, 1), CData{});
    EXPECT_EQ(m_errmsg, "0x50 did not acknowledge command byte 0");
    EXPECT_EQ(Read(0x50, {0x10}, 1), CData{0x10});
    Call("fail-nth", m_name, uint32_t{1}, std::string("nack"));
    EXPECT_EQ(Read(0x50, 1), CData{});
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50");
    EXPECT_EQ(Read(0x50, 1), CData{0x11}) << "the chip has seen nothing of it";
}

TEST_F(SimDevice, ClearTakesTheFaultsOffAllBuses) {
    Call("stick", m_name);
    Call("stick", std::string("i2c-1"));
    EXPECT_EQ(Call("clear").bytes, DONE);
    EXPECT_EQ(Printed(), "all faults cleared\n");
    EXPECT_TRUE(Answers(0x50));
    EXPECT_TRUE(m_other.Faults().Describe().empty());
}

TEST_F(SimDevice, ShowTellsOfFaultsAndTimeOnTheWire) {
    EXPECT_EQ(Read(0x50, {0x00}, 4).size(), 4U);
    Call("nack", std::string("i2c-1"), uint8_t{0x22});
    EXPECT_EQ(Call("show").bytes, DONE);
    EXPECT_EQ(Printed(),
              "i2c-0: 1 transfers, 0 polls, 7 bytes, 0.660 ms on the wire\n"
              "i2c-1: 0 transfers, 0 polls, 0 bytes, 0.000 ms on the wire\n"
              "i2c-1: fault: no acknowledge from 0x22\n");
}

TEST_F(SimDevice, RefusesAnUnknownBusAndListsTheKnownOnes) {
    const std::string nobody = "i2c-7";
    for (const char* command : {"nack", "stick", "flip", "fail-nth"}) {
        EXPECT_EQ(Call(command, nobody).bytes, REFUSED) << command;
        const std::vector<CLogCapture::Line> expected = {
            {0x30, "no bus \"i2c-7\": the buses are i2c-0, i2c-1"}};
        EXPECT_EQ(m_log.Lines(), expected) << command;
    }
}

TEST_F(SimDevice, WithoutBusesSaysThatThereIsNone) {
    const CSimDevice lonely;
    EXPECT_EQ(ThrownText([&] { lonely.GetBus("i2c-0"); }), "no bus \"i2c-0\": there is none");
}

TEST_F(SimDevice, RefusesArgumentsOutOfRange) {
    EXPECT_EQ(Call("nack", m_name, uint8_t{0x80}).bytes, REFUSED);
    EXPECT_EQ(m_log.Joined(0x30), "bad address 0x80: 7 bits at most");
    EXPECT_EQ(Call("flip", m_name, uint8_t{0x80}, uint8_t{0}, uint8_t{0}).bytes, REFUSED);
    EXPECT_EQ(m_log.Joined(0x30), "bad address 0x80: 7 bits at most");
    EXPECT_EQ(Call("flip", m_name, uint8_t{0x50}, uint8_t{0}, uint8_t{8}).bytes, REFUSED);
    EXPECT_EQ(m_log.Joined(0x30), "bad bit 8: 0 to 7");
    EXPECT_EQ(Call("fail-nth", m_name, uint32_t{0}).bytes, REFUSED);
    EXPECT_EQ(m_log.Joined(0x30), "bad transfer 0: 1 is the next one");
    m_log.Clear();
    EXPECT_EQ(Call("fail-nth", m_name, uint32_t{1}, std::string("loud")).bytes, REFUSED);
    EXPECT_EQ(m_log.Joined(0x30), "bad fault \"loud\": arbitration or nack");
    EXPECT_TRUE(m_bus.Faults().Describe().empty());
}

TEST_F(SimDevice, RefusesMissingArguments) {
    EXPECT_EQ(Call("nack").bytes, REFUSED);
    EXPECT_EQ(Call("nack", m_name).bytes, REFUSED);
    EXPECT_EQ(Call("flip", m_name, uint8_t{0x50}, uint8_t{0}).bytes, REFUSED);
    EXPECT_EQ(Call("fail-nth", m_name).bytes, REFUSED);
    EXPECT_FALSE(m_log.Joined(0x30).empty());
    EXPECT_TRUE(m_bus.Faults().Describe().empty());
}

TEST_F(SimDevice, DeclaresTheArgumentsOfItsCommands) {
    const auto names = [&](const char* command) {
        std::string joined;
        for (const CDiagObj* param : NodeAt(m_sim, command).GetChildren()) {
            joined += std::string(param->GetName()) + " ";
        }
        return joined;
    };
    EXPECT_EQ(names("nack"), "bus addr ");
    EXPECT_EQ(names("stick"), "bus ");
    EXPECT_EQ(names("flip"), "bus addr byte bit ");
    EXPECT_EQ(names("fail-nth"), "bus n fault ");
    EXPECT_EQ(names("clear"), "");
    EXPECT_EQ(names("show"), "");
}

TEST_F(SimDevice, ItsCommandsNeedIt) {
    CSimClearCmd detached("clear", "");
    CInMsg in{COutMsg(MSG_CALL)};
    COutMsg out;
    const std::string text = ThrownText([&] { detached.Invoke(in, out); });
    EXPECT_NE(text.find("Assert failed (pDev != NULL)"), std::string::npos) << text;
}

class SimContents : public SimDevice {
  protected:
    SimContents() { m_sim.AddContents("i2c-0.0x51", m_chip.Memory()); }

    CSimAt24& m_chip = AddAt24("24c02", 0x51, Counting(256));
};

TEST_F(SimContents, ReachTheWholeMemoryWithoutTheBus) {
    CDiagMenu& node = NodeAt(m_sim, "i2c-0.0x51");
    EXPECT_EQ(node.GetNodeType(), TARRAY_A);
    EXPECT_EQ(Send(node, MSG_PEEKV, uint64_t{0xFF}, uint64_t{0xFF}).bytes,
              CBytes().U8(0).U64(0xFF).U8(0xFF).Get());
    EXPECT_EQ(Send(node, MSG_PEEKV, uint64_t{0x100}, uint64_t{0x100}).Code(), MSG_ERR_PARAM);
    EXPECT_EQ(m_bus.GetTransfers(), 0U);
}

TEST_F(SimContents, ChangedByAPokeAreWhatTheBusReads) {
    CDiagMenu& node = NodeAt(m_sim, "i2c-0.0x51");
    EXPECT_EQ(Send(node, MSG_POKEV, uint8_t{0x99}, uint64_t{0x20}, uint64_t{0x21}).Code(), 0);
    EXPECT_EQ(Read(0x51, {0x1F}, 4), (CData{0x1F, 0x99, 0x99, 0x22}));
}

TEST_F(SimContents, CanBeChangedInAWriteProtectedChip) {
    m_chip.SetWriteProtect(true);
    CDiagMenu& node = NodeAt(m_sim, "i2c-0.0x51");
    EXPECT_EQ(Send(node, MSG_POKEV, uint8_t{0x99}, uint64_t{0x20}, uint64_t{0x20}).Code(), 0);
    EXPECT_EQ(BytesOf(m_chip.Memory().Path())[0x20], 0x99);
}

TEST_F(SimContents, TellWhyTheFileFails) {
    std::filesystem::remove(m_chip.Memory().Path());
    const CAnswer reply =
        Send(NodeAt(m_sim, "i2c-0.0x51"), MSG_PEEKV, uint64_t{0x20}, uint64_t{0x20});
    EXPECT_EQ(reply.Code(), MSG_ERR_FAIL);
    EXPECT_NE(
        m_log.Joined(0x10).find(m_chip.Memory().Path().string() + ": No such file or directory"),
        std::string::npos);
}

}  // namespace
