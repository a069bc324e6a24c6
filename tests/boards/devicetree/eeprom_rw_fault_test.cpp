// "rw-test" that is stopped or meets a fault: afterwards every byte is as it
// was, or is named with what it held.
#include <algorithm>
#include <map>
#include <regex>
#include <sstream>

#include "framework/diag_test_base.h"
#include "tests/boards/devicetree/eeprom_mount_test.h"

namespace {

// Acts at the n-th transfer of an EEPROM: the library traces each of them.
class CAtTransfer : public ILogSink {
  public:
    CAtTransfer(unsigned int n, std::function<void()> act) : m_left(n), m_act(std::move(act)) {}

    void Write(const CLogRecord& record) override {
        if (record.logword == LW_HW_TRACE && m_left != 0 && --m_left == 0) {
            m_act();
        }
    }
    bool HasActed() const { return m_left == 0; }

  private:
    unsigned int m_left;
    const std::function<void()> m_act;
    const CLogSinkScope m_scope{*this};
};

// Acts whenever the board's test writes bytes back that the library's could not.
class CAtSecondTry : public ILogSink {
  public:
    explicit CAtSecondTry(std::function<void()> act) : m_act(std::move(act)) {}

    void Write(const CLogRecord& record) override {
        if (record.text == "EEPROM contents differ, putting them back once more\n") {
            ++m_count;
            m_act();
        }
    }
    unsigned int Count() const { return m_count; }

  private:
    const std::function<void()> m_act;
    unsigned int m_count = 0;
    const CLogSinkScope m_scope{*this};
};

// The bytes that a log names, by address.
struct CNamed {
    std::map<size_t, uint8_t> not_restored;
    std::map<size_t, uint8_t> unknown;
};

class EepromRwFault : public CEepromMountTest {
  protected:
    static constexpr uint16_t FIRST = 21;
    static constexpr uint16_t LAST = 90;
    // Every phase moves 70 bytes: from 21 a read takes 32 + 32 + 6, and a write
    // 21 + 10 + ... by the rule of the remainder.
    static constexpr unsigned int READS = 3;

    CAnswer RunTest() { return Call("rw-test", FIRST, LAST); }

    static size_t Number(const std::string& text) { return std::stoul(text, nullptr, 16); }

    // Reads the named ranges out of the log, and checks their form on the way.
    CNamed Named() const {
        static const std::regex HEAD(
            "ERROR: EEPROM 0x([0-9a-f]{4}) to 0x([0-9a-f]{4}) (is not restored|could not be read "
            "back), before the test it held:\n");
        static const std::regex ROW("0x([0-9a-f]{4}): (( [0-9a-f]{2}){1,16})\n");
        CNamed named;
        std::map<size_t, uint8_t>* into = nullptr;
        size_t next = 0;
        size_t end = 0;
        std::smatch match;
        for (const std::string& text : m_log.Texts(LW_ERR_TEST)) {
            if (std::regex_match(text, match, HEAD)) {
                EXPECT_EQ(next, end) << "a range is cut short before " << text;
                next = Number(match[1]);
                end = Number(match[2]) + 1;
                into = match[3] == "is not restored" ? &named.not_restored : &named.unknown;
            } else if (std::regex_match(text, match, ROW)) {
                EXPECT_EQ(Number(match[1]), next);
                std::istringstream bytes(match[2]);
                for (std::string byte; bytes >> byte;) {
                    into->emplace(next++, static_cast<uint8_t>(Number(byte)));
                }
            }
        }
        EXPECT_EQ(next, end) << "the last range is cut short";
        return named;
    }

    // Every byte of the memory is as it was, or named with what it held; and
    // none is called lost that is not. Returns what is named.
    CNamed CheckEveryByte() const {
        CNamed named = Named();
        const Bytes now = Contents();
        for (size_t at = 0; at < m_held.size(); ++at) {
            const bool changed = now[at] != m_held[at];
            const bool unknown = named.unknown.contains(at);
            const bool lost = named.not_restored.contains(at);
            EXPECT_EQ(changed && !unknown, lost) << "at " << at;
            EXPECT_FALSE(unknown && lost) << "at " << at;
        }
        for (const auto* range : {&named.not_restored, &named.unknown}) {
            for (const auto& [at, held] : *range) {
                EXPECT_EQ(held, m_held[at]) << "at " << at;
            }
        }
        return named;
    }

    bool SaysAsBefore() const {
        const std::vector<std::string> texts = m_log.Texts(LW_PRINT);
        return std::count(texts.begin(), texts.end(),
                          "EEPROM 0x0015 to 0x005a holds what it held before the test\n") == 1;
    }

    // How many transfers of the EEPROM a good run makes.
    unsigned int CountTransfers() {
        m_log.Clear();
        EXPECT_EQ(RunTest().Code(), MSG_SUCCESS);
        return static_cast<unsigned int>(m_log.Texts(LW_HW_TRACE).size());
    }

    void StopAtEveryTransfer();
    void FailAtEveryTransfer(ESimFailure how, bool twice);
    void LoseTheChipAtEveryTransfer();
    void ThrowAtEveryTransfer();
};

// A stop in the last phase is too late: the bytes are put back anyway.
void EepromRwFault::StopAtEveryTransfer() {
    const unsigned int all = CountTransfers();
    const unsigned int writes = (all - 3 * READS) / 2;
    ASSERT_EQ(all, 3 * READS + 2 * writes);
    CDiagMenu& test = NodeAt(*m_root, m_path + "/rw-test");
    for (unsigned int n = 1; n <= all; ++n) {
        SCOPED_TRACE("stop at transfer " + std::to_string(n) + " of " + std::to_string(all));
        m_log.Clear();
        const CAtTransfer stop(n, [&test] { EXPECT_EQ(Send(test, MSG_STOP).Code(), MSG_SUCCESS); });
        const CAnswer reply = RunTest();
        ASSERT_TRUE(stop.HasActed());
        const bool restoring = n > all - writes;
        EXPECT_EQ(reply.Code(), restoring ? MSG_SUCCESS : MSG_ERR_ABORTED);
        EXPECT_EQ(dynamic_cast<CDiagTestBase&>(test).GetStatus(),
                  restoring ? DS_PASSED : DS_ABORTED);
        EXPECT_EQ(Contents(), m_held);
        EXPECT_TRUE(m_log.Texts(LW_ERR_TEST).size() == (n <= READS ? 1U : 0U));
        if (n <= READS) {
            EXPECT_EQ(m_log.Joined(LW_ERR_TEST),
                      "EEPROM not tested, its contents are untouched: stopped\n");
        }
        EXPECT_EQ(SaysAsBefore(), n > READS && !restoring);
    }
}

void EepromRwFault::FailAtEveryTransfer(ESimFailure how, bool twice) {
    ASSERT_EQ(RunTest().Code(), MSG_SUCCESS);  // the first one closes multiplexers too
    const uint64_t before = SimBus().GetTransfers();
    ASSERT_EQ(RunTest().Code(), MSG_SUCCESS);
    const auto all = static_cast<uint32_t>(SimBus().GetTransfers() - before);
    unsigned int lossy = 0;
    const CAtSecondTry second_try([&] {
        if (twice) {
            SimBus().Faults().FailNth(1, how);
        }
    });
    for (uint32_t n = 1; n <= all; ++n) {
        SCOPED_TRACE("fault at transfer " + std::to_string(n) + " of " + std::to_string(all));
        Refill();
        m_log.Clear();
        SimBus().Faults().FailNth(n, how);
        EXPECT_EQ(RunTest().Code(), MSG_ERR_FAIL);
        EXPECT_TRUE(SimBus().Faults().Describe().empty()) << "the fault has not happened";
        const CNamed named = CheckEveryByte();
        EXPECT_TRUE(named.unknown.empty()) << "one fault does not keep the bytes from being read";
        lossy += named.not_restored.empty() ? 0 : 1;
    }
    EXPECT_GT(second_try.Count(), 0U) << "no fault hit the writing back: nothing is shown";
    EXPECT_EQ(lossy, twice ? second_try.Count() : 0);
}

void EepromRwFault::LoseTheChipAtEveryTransfer() {
    const unsigned int all = CountTransfers();
    unsigned int lost = 0;
    for (unsigned int n = 1; n <= all; ++n) {
        SCOPED_TRACE("gone at transfer " + std::to_string(n) + " of " + std::to_string(all));
        Refill();
        m_log.Clear();
        const CAtTransfer gone(n, [this] { SimBus().Faults().Nack(0x50); });
        RunTest();
        ASSERT_TRUE(gone.HasActed());
        SimBus().Faults().Clear();
        const CNamed named = CheckEveryByte();
        EXPECT_TRUE(named.not_restored.empty());
        EXPECT_TRUE(named.unknown.empty() || named.unknown.size() == LAST + 1U - FIRST);
        lost += named.unknown.empty() ? 0 : 1;
    }
    EXPECT_GT(lost, 0U);
}

// What a log sink or a bus throws goes through the library's test.
void EepromRwFault::ThrowAtEveryTransfer() {
    const unsigned int all = CountTransfers();
    const CAtSecondTry second_try([] {});
    for (unsigned int n = 1; n <= all; ++n) {
        SCOPED_TRACE("thrown at transfer " + std::to_string(n) + " of " + std::to_string(all));
        Refill();
        m_log.Clear();
        const CAtTransfer thrown(n, [] { throw CDiagException("thrown"); });
        EXPECT_EQ(RunTest().Code(), MSG_ERR_FAIL);
        ASSERT_TRUE(thrown.HasActed());
        const CNamed named = CheckEveryByte();
        EXPECT_TRUE(named.unknown.empty());
        EXPECT_TRUE(named.not_restored.empty());
        EXPECT_EQ(SaysAsBefore(), n > READS);
        EXPECT_FALSE(Answers()) << "the path is left open";
    }
    EXPECT_GT(second_try.Count(), 0U);
}

}  // namespace

TEST_F(EepromRwFault, StoppedAnywhereLeavesEveryByte) {
    MountOnRoot("atmel,24c64", 8192);
    StopAtEveryTransfer();
}

TEST_F(EepromRwFault, StoppedAnywhereBehindMultiplexersLeavesEveryByteAndNoPathOpen) {
    MountBehindThree("atmel,24c64", 8192);
    StopAtEveryTransfer();
    EXPECT_FALSE(Answers());
}

TEST_F(EepromRwFault, AtAnyTransferLosesNoByteAndTwiceNamesEveryOne) {
    MountOnRoot("atmel,24c64", 8192);
    for (const ESimFailure how : {SIM_ARB_LOST, SIM_NO_ACK}) {
        FailAtEveryTransfer(how, false);
        FailAtEveryTransfer(how, true);
    }
}

TEST_F(EepromRwFault, AtAnyTransferBehindMultiplexersLosesNoByteAndTwiceNamesEveryOne) {
    MountBehindThree("atmel,24c64", 8192);
    for (const ESimFailure how : {SIM_ARB_LOST, SIM_NO_ACK}) {
        FailAtEveryTransfer(how, false);
        FailAtEveryTransfer(how, true);
    }
}

TEST_F(EepromRwFault, ThatLastsNamesTheRangeThatNobodyCanRead) {
    MountOnRoot("atmel,24c64", 8192);
    LoseTheChipAtEveryTransfer();
}

TEST_F(EepromRwFault, ThatLastsBehindMultiplexersNamesTheRangeThatNobodyCanRead) {
    MountBehindThree("atmel,24c64", 8192);
    LoseTheChipAtEveryTransfer();
}

TEST_F(EepromRwFault, ThatThrowsLosesNoByteAndLeavesNoPathOpen) {
    MountBehindThree("atmel,24c64", 8192);
    ThrowAtEveryTransfer();
}

TEST_F(EepromRwFault, InTheLookAfterwardsIsTriedOnceMore) {
    MountOnRoot("atmel,24c64", 8192);
    // Two pages: two transfers to look, two to save, and the first write fails;
    // then two more write back, and the next one looks again.
    SimBus().Faults().FailNth(5);
    const CAtTransfer again(7, [this] { SimBus().Faults().FailNth(2); });
    EXPECT_EQ(Call("rw-test", uint16_t{32}, uint16_t{95}).Code(), MSG_ERR_FAIL);
    ASSERT_TRUE(again.HasActed());
    EXPECT_TRUE(SimBus().Faults().Describe().empty());
    EXPECT_EQ(Contents(), m_held);
    EXPECT_TRUE(Named().unknown.empty());
    EXPECT_EQ(m_log.Texts(LW_PRINT).back(),
              "EEPROM 0x0020 to 0x005f holds what it held before the test\n");
}
