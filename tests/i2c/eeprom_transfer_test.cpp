// One transfer of the EEPROM primitives: every field of the request, the bus
// lock around it, and what becomes of an exception.
#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

#include "tests/i2c/eeprom_test.h"

// One test gives a lock back that is not held; the thread sanitizer, which asks
// this function, shall go on looking for races but not object to that.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
    return "report_mutex_bugs=0";
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class I2cEepromTransfer : public CEepromTest {
  protected:
    bool Read(uint16_t addr, uint16_t len) {
        m_data.assign(len, 0xEE);
        return Eeprom().ReadMemory(addr, m_data.data(), len);
    }
    bool Write(uint16_t addr, const Bytes& data) {
        return Eeprom().WriteMemory(addr, data.data(), static_cast<uint16_t>(data.size()));
    }
    // The transfer must throw, since the lock could not be taken or given back.
    static void ExpectLockFailure(const std::function<void()>& work, const std::string& operation) {
        EXPECT_THAT(ThrownText(work),
                    MatchesRegex("lib/Threads:[1-9][0-9]* Assert failed \\(!::pthread_mutex_" +
                                 operation + "\\(&m_lock\\)\\)"));
    }

    Bytes m_data;
};

// How an address of 0x1234 goes out.
struct CAddressCase {
    std::string name;
    uint8_t addr_size;
    bool high_first;
    unsigned int cmd_sel;
    std::string cmd;
};
void PrintTo(const CAddressCase& one, std::ostream* out) {
    *out << one.name;
}
std::string NameOf(const testing::TestParamInfo<CAddressCase>& info) {
    return info.param.name;
}
class I2cEepromAddress : public I2cEepromTransfer,
                         public testing::WithParamInterface<CAddressCase> {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromAddress,
                         testing::Values(CAddressCase{"NoByte", 0, false, 0, "1234"},
                                         CAddressCase{"NoByteHighFirst", 0, true, 0, "1234"},
                                         CAddressCase{"OneByte", 1, false, 1, "1234"},
                                         CAddressCase{"OneByteHighFirst", 1, true, 1, "1234"},
                                         CAddressCase{"TwoBytes", 2, false, 2, "1234"},
                                         CAddressCase{"TwoBytesHighFirst", 2, true, 2, "3412"},
                                         CAddressCase{"ThreeBytes", 3, false, 0, "1234"},
                                         CAddressCase{"ThreeBytesHighFirst", 3, true, 0, "3412"},
                                         CAddressCase{"ManyBytesHighFirst", 255, true, 0, "3412"}),
                         NameOf);

TEST_P(I2cEepromAddress, FillsEveryFieldOfARequest) {
    i2c_eeprom_attr_t attr = Part(8192);
    attr.mem_addr_size = GetParam().addr_size;
    attr.addrh_first = GetParam().high_first;
    attr.rd_wr = 0xFF;
    Mount(attr, false, 5);

    EXPECT_TRUE(Read(0x1234, 7));
    EXPECT_TRUE(Write(0x1234, {1, 2, 3}));

    const std::string head = "saddr=0x52 esaddr=0 cmd_sel=" + std::to_string(GetParam().cmd_sel) +
                             " baddr_sel=0 cmd=0x" + GetParam().cmd + " baddr=0 data=set ";
    const std::string tail = " xfer=0 rpec_en=0 wpec_en=0 switch_ch=5 errmsg=''";
    ASSERT_THAT(m_bus.Xfers(), SizeIs(2));
    EXPECT_EQ(Describe(m_bus.Xfers()[0].req), head + "tsize=7 dir=1" + tail);
    EXPECT_EQ(Describe(m_bus.Xfers()[1].req), head + "tsize=3 dir=0" + tail);
}

TEST_F(I2cEepromTransfer, ExchangesTheAddressBytesOfEveryChunk) {
    Mount(Part(8192, 16));
    EXPECT_TRUE(Read(0x00F8, 40));
    ASSERT_THAT(m_bus.Xfers(), SizeIs(3));
    EXPECT_EQ(m_bus.Xfers()[0].req.cmd, 0xF800);
    EXPECT_EQ(m_bus.Xfers()[1].req.cmd, 0x0801);
    EXPECT_EQ(m_bus.Xfers()[2].req.cmd, 0x1801);
    EXPECT_EQ(m_data, CEepromBus::InitialBytes(0x00F8, 40));
}

TEST_F(I2cEepromTransfer, NamesNoChannelWhenItHasNone) {
    Mount(Part(8192));
    EXPECT_TRUE(Read(0, 1));
    ASSERT_THAT(m_bus.Xfers(), SizeIs(1));
    EXPECT_EQ(m_bus.Xfers()[0].req.switch_ch, -1);
}

TEST_F(I2cEepromTransfer, ReadsStraightIntoTheBufferOfTheCaller) {
    Mount(Part(8192, 16));
    EXPECT_TRUE(Read(0, 20));
    ASSERT_THAT(m_bus.Xfers(), SizeIs(2));
    EXPECT_EQ(m_bus.Xfers()[0].req.data, m_data.data());
    EXPECT_EQ(m_bus.Xfers()[1].req.data, m_data.data() + 16);
}

TEST_F(I2cEepromTransfer, GoesThroughTheBusThatTheDeviceWasGiven) {
    MountBehindSwitch(Part(8192));
    EXPECT_TRUE(Read(0x10, 2));
    // The primitive leaves the path alone.
    EXPECT_THAT(Calls(), ElementsAre("RD 16+2"));
    EXPECT_EQ(m_bus.Xfers()[0].req.switch_ch, CHANNEL);
    EXPECT_TRUE(Write(0x10, {1}));
    EXPECT_THAT(Calls(), ElementsAre("RD 16+2", "WR 16+1"));
}

// The bus lock.

TEST_F(I2cEepromTransfer, HoldsTheLockDuringEachTransferOnly) {
    Mount(Part(8192, 16));
    std::vector<bool> held;
    m_bus.OnTransfer([&](size_t, const CI2cXfrReq&) { held.push_back(IsHeld(m_bus.m_lock)); });

    EXPECT_FALSE(IsHeld(m_bus.m_lock));
    EXPECT_TRUE(Read(0, 20));
    EXPECT_TRUE(Write(0, Bytes(20)));

    EXPECT_THAT(held, ElementsAre(true, true, true, true));
    EXPECT_FALSE(IsHeld(m_bus.m_lock));
}

TEST_F(I2cEepromTransfer, HoldsTheLockOfTheSwitchItHangsOn) {
    MountBehindSwitch(Part(8192));
    bool switch_held = false;
    bool bus_held = true;
    m_bus.OnTransfer([&](size_t, const CI2cXfrReq&) {
        switch_held = IsHeld(m_switch->m_lock);
        bus_held = IsHeld(m_bus.m_lock);
    });
    EXPECT_TRUE(Read(0, 1));
    EXPECT_TRUE(switch_held);
    EXPECT_FALSE(bus_held);
    EXPECT_FALSE(IsHeld(m_switch->m_lock));
}

TEST_F(I2cEepromTransfer, LogsWithoutHoldingTheLock) {
    // Looks at the lock whenever something is logged.
    class CLockWatch : public ILogSink {
      public:
        explicit CLockWatch(CMutex& lock) : m_lock(lock) { CDiagLog::Instance().AddSink(*this); }
        ~CLockWatch() override { CDiagLog::Instance().RemoveSink(*this); }
        void Write(const CLogRecord&) override { m_held.push_back(IsHeld(m_lock)); }

        std::vector<bool> m_held;

      private:
        CMutex& m_lock;
    };
    Mount(Part(8192, 16));
    CLockWatch watch(m_bus.m_lock);
    m_bus.FailWhen([](size_t index) { return index == 1 || index == 3; });
    EXPECT_FALSE(Read(0, 20));
    EXPECT_FALSE(Write(0, Bytes(20)));
    // A trace and a failure of the read, two traces and a failure of the write.
    EXPECT_THAT(watch.m_held, ElementsAre(false, false, false, false, false));
}

TEST_F(I2cEepromTransfer, GivesTheLockBackAfterAFailure) {
    Mount(Part(8192));
    m_bus.FailWhen([](size_t) { return true; });
    EXPECT_FALSE(Read(0, 1));
    EXPECT_FALSE(IsHeld(m_bus.m_lock));
    EXPECT_FALSE(Write(0, {1}));
    EXPECT_FALSE(IsHeld(m_bus.m_lock));
}

TEST_F(I2cEepromTransfer, GivesTheLockBackWhenTheBusThrows) {
    Mount(Part(8192));
    m_bus.OnTransfer([](size_t, const CI2cXfrReq&) { throw std::runtime_error("bus gone"); });
    EXPECT_THROW(Read(0, 1), std::runtime_error);
    EXPECT_FALSE(IsHeld(m_bus.m_lock));
    EXPECT_THROW(Write(0, {1}), std::runtime_error);
    EXPECT_FALSE(IsHeld(m_bus.m_lock));
}

TEST_F(I2cEepromTransfer, LetsAnExceptionOfTheBusOutOfACommand) {
    Mount(Part(8192));
    m_bus.OnTransfer([](size_t, const CI2cXfrReq&) { throw std::runtime_error("bus gone"); });
    EXPECT_EQ(Call("read", uint32_t{0}, uint32_t{1}).bytes, Bytes{FAIL});
    EXPECT_EQ(Messages(), CLines{ArgError("bus gone")});
}

TEST_F(I2cEepromTransfer, FailsTheAssertionWhenTheLockCannotBeTaken) {
    Mount(Part(8192));
    const CGuard<CMutex> guard(m_bus.m_lock);
    ExpectLockFailure([this] { Read(0, 1); }, "lock");
    ExpectLockFailure([this] { Write(0, {1}); }, "lock");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(I2cEepromTransfer, FailsTheAssertionWhenTheLockCannotBeGivenBack) {
    Mount(Part(8192));
    m_bus.OnTransfer([this](size_t, const CI2cXfrReq&) { m_bus.m_lock.Release(); });
    ExpectLockFailure([this] { Read(0, 1); }, "unlock");
    ExpectLockFailure([this] { Write(0, {1}); }, "unlock");
}

TEST_F(I2cEepromTransfer, MovesNothingForALengthOf0) {
    Mount(Part(8192));
    // Not even the lock is looked at.
    const CGuard<CMutex> guard(m_bus.m_lock);
    EXPECT_TRUE(Read(0x10, 0));
    EXPECT_TRUE(Write(0x10, {}));
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_TRUE(m_log.Lines().empty());
}

}  // namespace
