// The board's register chips and I/O ports under the operator's commands.
#include "boards/sim/sim_bus.h"
#include "tests/boards/quillbank/quillbank_test.h"
#include "tests/support/request.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Names = std::vector<std::string>;

constexpr char TEMP[] = "/i2c-0/pca9547-0/ch1/pca9548-0/ch5/temp-dimm";
constexpr char TEMP_OUTSIDE[] = "/sim/i2c-0.pca9547-0.ch1.pca9548-0.ch5.temp-dimm/temp";

class QuillbankRegister : public CQuillbankTest {
  protected:
    template <class... Args>
    CAnswer Call(const std::string& path, const Args&... args) {
        return Send(NodeAt(*m_root, path), MSG_CALL, args...);
    }
    // What regpeek answers; "failed" when it does not pass.
    std::string Peek(const std::string& device, const std::string& name) {
        const CAnswer answer = Call(device + "/regpeek", name);
        return answer.Code() == MSG_SUCCESS
                   ? std::string(answer.bytes.begin() + 3, answer.bytes.end())
                   : "failed";
    }
    uint8_t Change(const std::string& device, const std::string& command, const std::string& name,
                   uint64_t value) {
        return Call(device + "/" + command, name, value).Code();
    }
    // Whether the sensor behind the two switches answers with nobody opening the way.
    bool IsOpen() { return ReadBus(Bus("i2c-0"), 0x48, {0}, 1).has_value(); }
};

TEST_F(QuillbankRegister, IsReadWrittenSetAndClearedBehindTwoSwitches) {
    EXPECT_EQ(Peek(TEMP, "temp"), "0x1810");
    EXPECT_EQ(Change(TEMP, "regpoke", "thigh", 0x6400), MSG_SUCCESS);
    EXPECT_EQ(Change(TEMP, "regset", "conf", 0x61), MSG_SUCCESS);
    EXPECT_EQ(Change(TEMP, "regclr", "conf", 0x20), MSG_SUCCESS);
    EXPECT_EQ(Peek(TEMP, "thigh"), "0x6400");
    EXPECT_EQ(Peek(TEMP, "conf"), "0x41");
    EXPECT_FALSE(IsOpen());
}

TEST_F(QuillbankRegister, ShowsTheTemperatureThatTheWorldOutsideGives) {
    ASSERT_EQ(Send(NodeAt(*m_root, TEMP_OUTSIDE), MSG_POKEV, uint16_t{0x5A80}).Code(), MSG_SUCCESS);
    EXPECT_EQ(Peek(TEMP, "temp"), "0x5a80");
}

TEST_F(QuillbankRegister, IsReachedByNameAndIndex) {
    const std::string cpld = "/i2c-0/cpld";
    EXPECT_EQ(Change(cpld, "regpoke", "led[3]", 0x06), MSG_SUCCESS);
    EXPECT_EQ(Change(cpld, "regset", "led[4]", 0x01), MSG_SUCCESS);
    EXPECT_EQ(Change(cpld, "regclr", "led[3]", 0x02), MSG_SUCCESS);
    EXPECT_EQ(Peek(cpld, "led"), "0x00 0x00 0x00 0x04 0x01 0x00 0x00 0x00");
    EXPECT_EQ(Change(cpld, "regset", "led", 0x01), MSG_ERR_FAIL);
    EXPECT_EQ(Peek(cpld, "led[8]"), "failed");
}

TEST_F(QuillbankRegister, KeepsAnEventUntilItIsReadByName) {
    EXPECT_EQ(Call("/i2c-0/cpld/regdump").Code(), MSG_SUCCESS);
    EXPECT_NE(m_log.Joined(LW_PRINT).find("events           not read (RC)\n"), std::string::npos);
    EXPECT_EQ(Peek("/i2c-0/cpld", "events"), "0x01");
    EXPECT_EQ(Peek("/i2c-0/cpld", "events"), "0x00");
}

TEST_F(QuillbankRegister, FailsAndRecoversWhateverTransferOfARegpeekFails) {
    auto& bus = dynamic_cast<CSimBus&>(Bus("i2c-0"));
    ASSERT_NE(Peek(TEMP, "temp"), "failed");  // the first closes what power-on left open
    const uint64_t before = bus.GetTransfers();
    ASSERT_NE(Peek(TEMP, "temp"), "failed");
    const auto all = static_cast<uint32_t>(bus.GetTransfers() - before);
    ASSERT_EQ(all, 5U);
    for (uint32_t n = 1; n <= all; ++n) {
        bus.Faults().FailNth(n, SIM_NO_ACK);
        // The value is told even where only the way cannot be closed behind it.
        const Bytes answer = Call(std::string(TEMP) + "/regpeek", std::string("temp")).bytes;
        EXPECT_TRUE(answer.front() == MSG_ERR_FAIL || answer.back() == MSG_ERR_FAIL)
            << "transfer " << n << " of " << all;
        EXPECT_EQ(Peek(TEMP, "temp"), "0x1810");
        EXPECT_FALSE(IsOpen());
    }
}

TEST_F(QuillbankRegister, ChangesOnlyTheMaskedPinsOfAnExpander) {
    const std::string gpio = "/i2c-1/gpio-cages";
    EXPECT_EQ(Change(gpio, "regpoke", "config[1]", 0x00), MSG_SUCCESS);
    EXPECT_EQ(Call(gpio + "/write-port", uint8_t{1}, uint8_t{0x00}, uint8_t{0x05}).Code(),
              MSG_SUCCESS);
    CDiagMenu& pins = NodeAt(*m_root, "/sim/i2c-1.gpio-cages/pins");
    EXPECT_EQ(Send(pins, MSG_PEEKV).bytes, (Bytes{0, 0xFA, 0xFF}));
    EXPECT_EQ(Send(pins, MSG_POKEV, uint16_t{0x00FD}).Code(), MSG_SUCCESS);
    EXPECT_EQ(Call(gpio + "/read-port", uint8_t{0}).bytes, (Bytes{0, 0xFD}));
    EXPECT_EQ(Call(gpio + "/read-port", uint8_t{1}).bytes, (Bytes{0, 0xFA}));
}

TEST_F(QuillbankRegister, ReachesAnExpanderByNameAndIndexBehindTwoSwitches) {
    const std::string gpio = "/i2c-0/pca9547-0/ch1/pca9548-0/ch6/gpio-dimm";
    EXPECT_EQ(Change(gpio, "regpoke", "config[1]", 0xF0), MSG_SUCCESS);
    EXPECT_EQ(Change(gpio, "regclr", "output[1]", 0x05), MSG_SUCCESS);
    EXPECT_EQ(Peek(gpio, "output[1]"), "0xfa");
    EXPECT_EQ(Call(gpio + "/write-port", uint8_t{1}, uint8_t{0x0C}, uint8_t{0x0C}).Code(),
              MSG_SUCCESS);
    EXPECT_EQ(Peek(gpio, "output"), "0xff 0xfe");
    EXPECT_EQ(Change(gpio, "regset", "config[1]", 0x01), MSG_SUCCESS);
    EXPECT_EQ(Peek(gpio, "config"), "0xff 0xf1");
    EXPECT_EQ(Call(gpio + "/read-port", uint8_t{1}).bytes, (Bytes{0, 0xFF}));
    EXPECT_EQ(ReadBus(Bus("i2c-0"), 0x22, {0}, 1), std::nullopt);
}

TEST_F(QuillbankRegister, ReachesThePanelBehindASwitch) {
    const std::string panel = "/i2c-1/pca9548-1/ch2/gpio-panel";
    EXPECT_EQ(Call(panel + "/write-port", uint8_t{0}, uint8_t{0x00}, uint8_t{0x03}).Code(),
              MSG_SUCCESS);
    EXPECT_EQ(Call(panel + "/read-port", uint8_t{0}).bytes, (Bytes{0, 0xFC}));
    EXPECT_EQ(ReadBus(Bus("i2c-1"), 0x21, {}, 1), std::nullopt);
}

TEST_F(QuillbankRegister, HasIoPortsInAFile) {
    EXPECT_EQ(Call("/io-local/write-port", uint8_t{2}, uint8_t{0x55}, uint8_t{0x0F}).Code(),
              MSG_SUCCESS);
    EXPECT_EQ(BytesOf(State() / "io-ports/0xf00000.bin"), (Bytes{0xFF, 0xFF, 0xF5, 0xFF}));
}

}  // namespace
