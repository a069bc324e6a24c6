// The MDIO bus in the tree: what it is, its value, its commands.
#include "t2080_mdio/mdio_bus_commands.h"
#include "tests/support/bytes.h"
#include "tests/support/declared_params.h"
#include "tests/support/lock_probe.h"
#include "tests/support/virtual_slot.h"
#include "tests/t2080_mdio/mdio_bus_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using MdioBus = CMdioBusTest;
using Params = std::vector<CDeclaredParam>;

TEST_F(MdioBus, IsADeviceWithItsOwnNameAndDescription) {
    EXPECT_STREQ(m_bus->GetName(), "mdio");
    EXPECT_STREQ(m_bus->GetDescription(), "the MDIO bus");
    EXPECT_EQ(m_bus->GetNodeType(), TDEVICE);
}

TEST_F(MdioBus, OpensNothingWhenItIsCreated) {
    EXPECT_THAT(m_driver.Files(), IsEmpty());
    EXPECT_THAT(m_log.Lines(), IsEmpty());
    EXPECT_FALSE(m_bus->CheckOperational());
}

TEST_F(MdioBus, HasItsValueAndItsCommandsInOrder) {
    std::vector<std::pair<std::string, std::string>> children;
    for (const CDiagObj* child : m_bus->GetChildren()) {
        EXPECT_EQ(child->GetParent(), m_bus);
        children.emplace_back(child->GetName(), child->GetDescription());
    }
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"driver", "MDIO driver name"},
        {"init", "re-open mdio driver"},
        {"write", "write to register"},
        {"read", "read a register"},
    };
    EXPECT_EQ(children, expected);
    EXPECT_EQ(Command("driver").GetNodeType(), TVALUE);
    EXPECT_NE(dynamic_cast<CMdioBusInit*>(&Command("init")), nullptr);
    EXPECT_NE(dynamic_cast<CMdioBusWrite*>(&Command("write")), nullptr);
    EXPECT_NE(dynamic_cast<CMdioBusRead*>(&Command("read")), nullptr);
}

TEST_F(MdioBus, DeclaresTheArgumentsOfInit) {
    EXPECT_EQ(DeclaredParamsOf(Command("init")),
              (Params{{"driver_name", "Name of MDIO driver", VT_STRING, 0x10}}));
}

TEST_F(MdioBus, DeclaresTheArgumentsOfWrite) {
    EXPECT_EQ(DeclaredParamsOf(Command("write")),
              (Params{{"port", "port on MDIO bus", VT_UINT32, PT_IN},
                      {"device", "device on the MDIO port", VT_UINT32, PT_IN},
                      {"offset", "register of device", VT_UINT16, PT_IN},
                      {"data", "data to write", VT_UINT16, PT_IN}}));
}

TEST_F(MdioBus, DeclaresTheArgumentsOfRead) {
    EXPECT_EQ(DeclaredParamsOf(Command("read")),
              (Params{{"port", "port on MDIO bus", VT_UINT32, PT_IN},
                      {"device", "device on the MDIO port", VT_UINT32, PT_IN},
                      {"offset", "register of device", VT_UINT16, PT_IN},
                      {"data", "data to write", 0x13, PT_OUT}}));
}

TEST_F(MdioBus, HoldsThePathOfItsDriverInAValueThatCanBeWritten) {
    auto* value = dynamic_cast<CDiagMemValue<std::string>*>(&Command("driver"));
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->GetValueType(), VT_STRING);
    EXPECT_FALSE(value->IsReadOnly());
    EXPECT_EQ(Send(*value, MSG_PEEKV).bytes, CBytes().U8(SUCCESS).Text(FIRST_PATH).Get());
    EXPECT_EQ(Send(*value, MSG_POKEV, std::string(OTHER_PATH)).bytes, Bytes{SUCCESS});
    EXPECT_EQ(value->Get(), OTHER_PATH);
    EXPECT_THAT(m_driver.Files(), IsEmpty());
}

TEST_F(MdioBus, IsAloneWithACommandWhileItRuns) {
    // Takes the log lines of a bus that is not operational, while the command runs.
    class CProbe : public ILogSink {
      public:
        explicit CProbe(const CDiagDevice& device) : m_device(device), m_scope(*this) {}
        void Write(const CLogRecord&) override {
            m_shut_out.push_back(WouldWait(m_device, DEV_LOCK_PROTECT));
        }
        std::vector<bool> m_shut_out;

      private:
        const CDiagDevice& m_device;
        CLogSinkScope m_scope;
    };
    const CProbe probe(*m_bus);
    Read(1, 2, 3);
    Write(1, 2, 3, 4);
    m_driver.FailOpen(EIO);
    Init();
    EXPECT_THAT(probe.m_shut_out, ElementsAre(true, true, true, true));
    EXPECT_FALSE(WouldWait(*m_bus, DEV_LOCK_ACCESS));
}

TEST(MdioBusVirtualSlots, AreThoseOfDevices) {
    EXPECT_EQ(SlotAfter<CDiagMdioBus>(), 14U);
    EXPECT_EQ(SlotOf<bool(bool)>(&CDiagMdioBus::bOperational), NOT_VIRTUAL);
    EXPECT_EQ(SlotOf<bool(std::string&)>(&CDiagMdioBus::Init), NOT_VIRTUAL);
}

}  // namespace
