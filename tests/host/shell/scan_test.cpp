// What "scan" does on the buses, and what it refuses.
#include <gmock/gmock.h>

#include <atomic>
#include <nlohmann/json.hpp>
#include <thread>

#include "host/device_lock.h"
#include "host/shell/report/json_scan.h"
#include "tests/host/shell/scan_board.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class Scan : public ScanTest {};

class ScanBesideAJob : public ScanTest {
  protected:
    void ExpectToWaitFor(const CDiagDevice& device) {
        const auto held = CDeviceHold::Acquire({{&device, DEV_LOCK_ACCESS}}, [] { return false; });
        EExitStatus status = EXIT_PASSED;
        std::atomic<bool> ended{false};
        std::thread shell([&] {
            status = Run("scan bus/mux");
            ended = true;
        });
        bool waits = false;
        while (!waits && !ended) {
            waits = CDeviceHold::WaitOf(shell.get_id()).has_value();
            std::this_thread::yield();
        }
        std::raise(SIGINT);
        shell.join();
        EXPECT_TRUE(waits);
        EXPECT_EQ(status, EXIT_ABORTED);
        EXPECT_TRUE(m_journal.empty());
    }
};

bool HoldsMemory(unsigned int addr) {
    return (addr >= 0x30 && addr <= 0x37) || (addr >= 0x50 && addr <= 0x5F);
}

TEST_F(Scan, ReadsWhereMemoriesAreAndWritesNothingElsewhere) {
    ASSERT_EQ(Run("scan -a menu"), EXIT_PASSED);
    ASSERT_EQ(m_other->asked.size(), 128U);
    for (const auto& [addr, access] : m_other->asked) {
        EXPECT_EQ(access, HoldsMemory(addr) ? EScanAccess::RECEIVE_BYTE : EScanAccess::QUICK_WRITE)
            << unsigned{addr};
    }
}

TEST_F(Scan, LeavesReservedAddressesOutUnlessAllAreAskedFor) {
    ASSERT_EQ(Run("scan menu"), EXIT_PASSED);
    EXPECT_EQ(m_other->asked.size(), 112U);
    EXPECT_EQ(m_other->asked.begin()->first, 0x08);
    EXPECT_EQ(m_other->asked.rbegin()->first, 0x77);
}

TEST_F(Scan, AsksAllInOneWayWhenToldSo) {
    const std::vector<std::pair<std::string, EScanAccess>> options = {
        {"-q", EScanAccess::QUICK_WRITE}, {"-r", EScanAccess::RECEIVE_BYTE}};
    for (const auto& [option, wanted] : options) {
        ASSERT_EQ(Run("scan " + option + "a menu"), EXIT_PASSED);
        EXPECT_EQ(m_other->asked.size(), 128U);
        for (const auto& [addr, access] : m_other->asked) {
            EXPECT_EQ(access, wanted) << unsigned{addr};
        }
    }
}

TEST_F(Scan, SkipsAddressesWhoseSafeAccessTheControllerLacksAndSaysSo) {
    m_other->lacking = {EScanAccess::QUICK_WRITE};
    m_other->answering = {0x52};
    ASSERT_EQ(Run("scan menu"), EXIT_PASSED);
    EXPECT_EQ(m_other->asked.size(), 24U);
    EXPECT_THAT(printed, HasSubstr("\n30: -- -- -- -- -- -- -- --\n40:\n50: -- -- 52 --"));
    EXPECT_THAT(printed, EndsWith("\n     the controller cannot do the SMBus quick write; "
                                  "scan -r asks by receive byte\n"));
}

TEST_F(Scan, FailsWhereTheControllerCanDoNothing) {
    m_other->lacking = {EScanAccess::QUICK_WRITE, EScanAccess::RECEIVE_BYTE};
    EXPECT_EQ(Run("scan menu"), EXIT_FAILED);
    EXPECT_THAT(printed, StartsWith("/menu/other: the controller cannot do the SMBus "));
    m_other->lacking = {EScanAccess::RECEIVE_BYTE};
    EXPECT_EQ(Run("scan -r menu"), EXIT_FAILED);
    EXPECT_EQ(printed,
              "/menu/other: the controller cannot do the SMBus receive byte; scan -q asks "
              "by quick write\n");
    EXPECT_TRUE(m_other->asked.empty());
}

TEST_F(Scan, OpensAndClosesTheWayToOneWireAfterTheOther) {
    ASSERT_EQ(Run("scan"), EXIT_PASSED);
    EXPECT_THAT(m_journal,
                ElementsAre("open bus", "close bus", "open mux/ch0", "close mux", "open mux/ch1",
                            "close mux", "open low/ch0", "close low", "open other", "close other"));
}

TEST_F(Scan, TakesWhatIsAtOrBelowANode) {
    ASSERT_EQ(Run("scan bus/mux/ch1"), EXIT_PASSED);
    ASSERT_EQ(Wires().size(), 2U);
    EXPECT_EQ(Wires()[0].path, "/bus/mux/ch1");
    EXPECT_EQ(Wires()[1].path, "/bus/mux/ch1/low/ch0");
    // The bus is asked too, to tell what is nearer to it.
    EXPECT_EQ(m_journal.front(), "open bus");
    ASSERT_EQ(Run("cd /menu; scan"), EXIT_PASSED);
    EXPECT_EQ(Wires().size(), 1U);
}

TEST_F(Scan, MarksWhatIsNearerAlsoWhenOnlyAChannelIsShown) {
    m_bus->answering = {0x50};
    m_mux->answering[0] = {0x51};
    ASSERT_EQ(Run("scan bus/mux/ch0"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("\n50: ^^ 51 --"));
}

// The kernel leaves the channel connected that it used last: its chip answers on the bus too.
TEST_F(Scan, AsksTheBusOfAKernelsChannelForItself) {
    auto* mux = new CDiagMenu(TMENU, "kernels", "a multiplexer of the kernel's");
    auto* channel = new CFakeBus("ch5", m_journal);
    m_bus->AddChild(mux, CDiagObj::NO_SORT);
    mux->AddChild(channel, CDiagObj::NO_SORT);
    m_bus->answering = {0x51};
    channel->answering = {0x51};
    m_bus->owners[0x70] = "pca954x";
    ASSERT_EQ(Run("scan bus/kernels"), EXIT_PASSED);
    ASSERT_EQ(Wires().size(), 1U);
    EXPECT_EQ(Wires()[0].cells[0x51].mark, EScanMark::ANSWERS);
    EXPECT_EQ(Wires()[0].cells[0x70].mark, EScanMark::ABOVE);
}

TEST_F(Scan, TriesAMultiplexerThatDoesNotOpenOnceAndNothingBehindIt) {
    m_mux->opens = false;
    m_bus->answering = {0x20};
    EXPECT_EQ(Run("scan"), EXIT_FAILED);
    EXPECT_THAT(m_journal,
                ElementsAre("open bus", "close bus", "open mux/ch0", "open other", "close other"));
    EXPECT_THAT(printed, HasSubstr("/bus/mux/ch0 to ch1: the I2C path could not be opened\n"
                                   "/bus/mux/ch1/low/ch0: the I2C path could not be opened\n"));
    EXPECT_EQ(errors, "scan: not everything could be asked\n");
}

TEST_F(Scan, FailsWhenTheWayStaysOpen) {
    m_mux->closes = false;
    EXPECT_EQ(Run("scan bus"), EXIT_FAILED);
    EXPECT_THAT(printed, HasSubstr("/bus/mux/ch0 to ch1: the way to it could not be closed\n"));
}

TEST_F(Scan, EndsWithCtrlCBetweenTwoAddressesAndClosesTheWay) {
    m_mux->answering[0] = {0x0F};
    // Asked on the bus already: Ctrl-C comes at its first address that it does not have.
    m_bus->interrupted_at = 0x10;
    EXPECT_EQ(Run("scan bus"), EXIT_ABORTED);
    EXPECT_EQ(m_bus->asked.rbegin()->first, 0x10);
    EXPECT_THAT(m_journal, ElementsAre("open bus", "close bus"));
    EXPECT_EQ(errors, "scan: aborted\n");
    ASSERT_EQ(Wires().size(), 1U);
    EXPECT_EQ(Wires()[0].cells[0x10].mark, EScanMark::SILENT);
    EXPECT_EQ(Wires()[0].cells[0x11].mark, EScanMark::NOT_ASKED);
    EXPECT_EQ(printed, "/bus: aborted before 0x11\n");
}

TEST_F(ScanBesideAJob, WaitsForThePathThatItHolds) {
    ExpectToWaitFor(*m_bus);
}

TEST_F(ScanBesideAJob, WaitsForTheMultiplexerThatItHolds) {
    ExpectToWaitFor(*m_low);
}

TEST_F(Scan, RefusesANodeWithoutABus) {
    EXPECT_EQ(Run("scan dev"), EXIT_USAGE);
    EXPECT_EQ(errors,
              "/dev is a device with no bus in it; scan takes a bus, a multiplexer, a "
              "channel, or what they are in\n");
}

TEST_F(Scan, RefusesWhatItDoesNotUnderstand) {
    const std::vector<std::pair<std::string, std::string>> lines = {
        {"scan -x", "scan: there is no option -x\n"},
        {"scan -qr", "scan: -q or -r, not both\n"},
        {"scan bus menu", "scan: too many arguments\n"}};
    for (const auto& [line, error] : lines) {
        EXPECT_EQ(Run(line), EXIT_USAGE);
        EXPECT_EQ(errors, error + "usage: scan [-a] [-q|-r] [NODE]\n");
    }
    EXPECT_TRUE(m_journal.empty());
}

TEST_F(Scan, GivesEachWireAsLists) {
    m_bus->answering = {0x20, 0x50};
    m_bus->names = {{0x50, "eeprom"}, {0x60, "cpld"}};
    m_bus->owners = {{0x4C, "lm90"}};
    m_bus->failing = {{0x21, "arbitration lost"}};
    ASSERT_EQ(Run("scan bus"), EXIT_FAILED);
    const nlohmann::json scan = ScanAsJson(Wires());
    ASSERT_EQ(scan.size(), 4U);
    const nlohmann::json& bus = scan[0];
    EXPECT_EQ(bus["path"], "/bus");
    EXPECT_EQ(bus["error"], nullptr);
    EXPECT_EQ(bus["note"], nullptr);
    EXPECT_EQ(
        bus["answers"],
        nlohmann::json::parse(R"([{"address":32,"name":null},{"address":80,"name":"eeprom"}])"));
    EXPECT_EQ(bus["owned"],
              nlohmann::json::parse(R"([{"address":76,"name":null,"driver":"lm90"}])"));
    EXPECT_EQ(bus["failed"],
              nlohmann::json::parse(R"([{"address":33,"name":null,"reason":"arbitration lost"}])"));
    EXPECT_EQ(bus["upstream"], nlohmann::json::array());
    EXPECT_EQ(bus["silent"].size(), 112U - 4U);
    EXPECT_EQ(bus["silent"][0], nlohmann::json::parse(R"({"address":8,"name":null})"));
    EXPECT_EQ(scan[1]["path"], "/bus/mux/ch0");
    EXPECT_EQ(scan[1]["upstream"], nlohmann::json::parse("[32,76,80]"));
}

}  // namespace
