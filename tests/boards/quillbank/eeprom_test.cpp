// The board's EEPROMs and multiplexers under the operator's commands.
#include <algorithm>
#include <regex>
#include <sstream>

#include "boards/sim/sim_bus.h"
#include "tests/boards/quillbank/quillbank_test.h"
#include "tests/support/request.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Names = std::vector<std::string>;

constexpr char MFG[] = "/i2c-0/mfg-eeprom";
constexpr char MFG_FILE[] = "i2c-0/0x50.bin";
constexpr char PARAM[] = "/i2c-0/pca9547-0/ch1/pca9548-0/ch2/param-eeprom";
constexpr char PARAM_FILE[] = "i2c-0/0x77/ch1/0x70/ch2/0x51.bin";

class QuillbankEeprom : public CQuillbankTest {
  protected:
    template <class... Args>
    CAnswer Call(const std::string& path, const Args&... args) {
        return Send(NodeAt(*m_root, path), MSG_CALL, args...);
    }
    Bytes Contents(const std::string& file) const { return BytesOf(State() / file); }

    // What a probe of the bus prints, line by line.
    Names Probe(const std::string& bus) {
        m_log.Clear();
        EXPECT_EQ(Call("/" + bus + "/probe").Code(), MSG_SUCCESS);
        Names lines;
        std::istringstream text(m_log.Joined(LW_PRINT));
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    // "where: address" for each device that a probe found: where is the bus or
    // the channel that the lines before speak of.
    static Names Found(const Names& lines) {
        static const std::regex CHANNEL(R"(probe \(lvl=\d+\): search devices from channel (\d))");
        static const std::regex DEVICE(R"(         \((.*)\): device with addr = (0x[0-9a-f]+) .*)");
        static const std::regex ROOT(R"(         device with addr = (0x[0-9a-f]+) found )");
        Names found;
        std::string channel;
        std::smatch match;
        for (const std::string& line : lines) {
            if (std::regex_match(line, match, CHANNEL)) {
                channel = match[1];
            } else if (std::regex_match(line, match, DEVICE)) {
                found.push_back(match[1].str() + "/ch" + channel + ": " + match[2].str());
            } else if (std::regex_match(line, match, ROOT)) {
                found.push_back("root: " + match[1].str());
            }
        }
        return found;
    }
};

}  // namespace

TEST_F(QuillbankEeprom, IsListedOnceUnderItsChannelByAProbeOfItsBus) {
    EXPECT_EQ(Found(Probe("i2c-0")),
              (Names{"root: 0x40", "root: 0x4c", "root: 0x50", "root: 0x60", "root: 0x77",
                     "pca9547-0/ch0: 0x51", "pca9547-0/ch0: 0x53", "pca9547-0/ch1: 0x70",
                     "pca9548-0/ch2: 0x51", "pca9548-0/ch5: 0x48", "pca9548-0/ch6: 0x22"}));
    EXPECT_EQ(Found(Probe("i2c-1")),
              (Names{"root: 0x20", "root: 0x49", "root: 0x68", "root: 0x70", "pca9548-1/ch0: 0x50",
                     "pca9548-1/ch1: 0x71", "pca9547-1/ch3: 0x50", "pca9547-1/ch3: 0x51",
                     "pca9548-1/ch2: 0x21"}));
}

TEST_F(QuillbankEeprom, IsReachedAfterAProbeAsBefore) {
    Probe("i2c-0");
    m_log.Clear();
    EXPECT_EQ(Call(std::string(PARAM) + "/read", uint32_t{0}, uint32_t{4}).Code(), MSG_SUCCESS);
    EXPECT_EQ(m_log.Joined(LW_PRINT), "\n0x0000:   ff ff ff ff\n");
}

TEST_F(QuillbankEeprom, PassesTheReadWriteTestWhereItIsWritable) {
    for (const auto& [path, file] : {std::pair(MFG, MFG_FILE), std::pair(PARAM, PARAM_FILE)}) {
        SCOPED_TRACE(path);
        const Bytes held = Contents(file);
        EXPECT_EQ(Call(path + std::string("/rw-test")).Code(), MSG_SUCCESS);
        EXPECT_TRUE(Contents(file) == held);
    }
    EXPECT_EQ(m_log.Texts(LW_ERR_TEST), Names{});
}

TEST_F(QuillbankEeprom, IsNotTestedWhereItIsReadOnly) {
    for (const std::string path :
         {"/i2c-0/pca9547-0/ch0/spd-0", "/i2c-0/pca9547-0/ch0/spd-1", "/i2c-1/pca9548-1/ch0/sfp-1g",
          "/i2c-1/pca9548-1/ch1/pca9547-1/ch3/sfp-10g"}) {
        EXPECT_EQ(Call(path + "/rw-test").Code(), MSG_ERR_FAIL) << path;
    }
    EXPECT_EQ(m_log.Texts(LW_ERR_TEST), Names(4, "ERROR: EEPROM not tested, it is read-only\n"));
}

TEST_F(QuillbankEeprom, OpensAndClosesTheTwoSwitchesOnItsWayInOrder) {
    const std::string path = PARAM;
    m_log.Clear();
    EXPECT_EQ(Call(path + "/enable-path").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_log.Texts(LW_SW_TRACE),
              (Names{"(param-eeprom): enable upstream switch pca9548-0 channel = 2\n",
                     "(pca9548-0): enable upstream switch pca9547-0 channel = 1\n",
                     "(pca9547-0): select channel", "(pca9548-0): select channel"}));
    EXPECT_EQ(ReadBus(Bus("i2c-0"), 0x51, {0, 0}, 1), Bytes{0xFF});
    m_log.Clear();
    EXPECT_EQ(Call(path + "/clr-path").Code(), MSG_SUCCESS);
    EXPECT_EQ(m_log.Texts(LW_SW_TRACE),
              (Names{"(param-eeprom): clear upstream switch pca9548-0 channel = 2\n",
                     "(pca9548-0): disable all channels",
                     "(pca9548-0): disable upstream switch pca9547-0",
                     "(pca9547-0): disable all channels"}));
    EXPECT_EQ(ReadBus(Bus("i2c-0"), 0x51, {0, 0}, 1), std::nullopt);
}

TEST_F(QuillbankEeprom, LosesNoByteWhateverTransferOfATestIsNotAcknowledged) {
    auto& bus = dynamic_cast<CSimBus&>(Bus("i2c-0"));
    CDiagMenu& test = NodeAt(*m_root, std::string(PARAM) + "/rw-test");
    Bytes held(8192);
    for (size_t at = 0; at < held.size(); ++at) {
        held[at] = static_cast<uint8_t>(at * 3);
    }
    WriteFile(State() / PARAM_FILE, held);
    ASSERT_EQ(Send(test, MSG_CALL, uint16_t{64}, uint16_t{140}).Code(), MSG_SUCCESS);
    const uint64_t before = bus.GetTransfers();
    ASSERT_EQ(Send(test, MSG_CALL, uint16_t{64}, uint16_t{140}).Code(), MSG_SUCCESS);
    const auto all = static_cast<uint32_t>(bus.GetTransfers() - before);
    size_t put_back = 0;
    for (uint32_t n = 1; n <= all; ++n) {
        SCOPED_TRACE("fault at transfer " + std::to_string(n) + " of " + std::to_string(all));
        WriteFile(State() / PARAM_FILE, held);
        m_log.Clear();
        ASSERT_EQ(Call("/sim/fail-nth", std::string("i2c-0"), n, std::string("nack")).Code(),
                  MSG_SUCCESS);
        EXPECT_EQ(Send(test, MSG_CALL, uint16_t{64}, uint16_t{140}).Code(), MSG_ERR_FAIL);
        EXPECT_TRUE(Contents(PARAM_FILE) == held);
        put_back += m_log.Joined(LW_PRINT).find("putting them back once more") != std::string::npos;
    }
    EXPECT_GT(put_back, 0U) << "no fault hit the writing back: this test has shown nothing";
}
