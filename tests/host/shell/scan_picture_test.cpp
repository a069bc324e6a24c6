// What "scan" shows.
#include <gmock/gmock.h>

#include "tests/host/shell/scan_board.h"
#include "tests/support/fake_clock.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class ScanPicture : public ScanTest {};

constexpr const char* HEAD = "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f\n";

TEST_F(ScanPicture, IsAGridOfTheAddressesThatAnswer) {
    m_bus->answering = {0x08, 0x50, 0x77};
    ASSERT_EQ(Run("scan bus"), EXIT_PASSED);
    EXPECT_EQ(PictureOf("/bus"), std::string("/bus\n") + HEAD +
                                     R"(00:                         08 -- -- -- -- -- -- --
10: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- --
20: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- --
30: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- --
40: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- --
50: 50 -- -- -- -- -- -- -- -- -- -- -- -- -- -- --
60: -- -- -- -- -- -- -- -- -- -- -- -- -- -- -- --
70: -- -- -- -- -- -- -- 77)");
    EXPECT_EQ(errors, "");
}

TEST_F(ScanPicture, HasRowsWithAnAnswerOnlyBehindAMultiplexer) {
    m_bus->answering = {0x50, 0x70};
    m_mux->answering[0] = {0x51};
    ASSERT_EQ(Run("scan bus"), EXIT_PASSED);
    EXPECT_EQ(PictureOf("/bus/mux/ch0"), std::string("/bus/mux/ch0\n") + HEAD +
                                             "50: ^^ 51 -- -- -- -- -- -- -- -- -- -- -- -- -- --");
    EXPECT_THAT(printed,
                EndsWith("\n\n^^ answers nearer to the root bus already, not asked here\n"));
}

TEST_F(ScanPicture, MarksWhatAnswersOnAnyWireOnTheWay) {
    m_bus->answering = {0x50};
    m_mux->answering[1] = {0x51};
    m_low->answering[0] = {0x50, 0x51, 0x52};
    ASSERT_EQ(Run("scan bus"), EXIT_PASSED);
    EXPECT_THAT(PictureOf("/bus/mux/ch1/low/ch0"), HasSubstr("50: ^^ ^^ 52 --"));
}

TEST_F(ScanPicture, IsALineForWiresWithoutAnAnswer) {
    m_bus->answering = {0x50};
    ASSERT_EQ(Run("scan bus"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("\n\n/bus/mux/ch0 to ch1: nothing answers\n"
                                   "/bus/mux/ch1/low/ch0: nothing answers\n"));
    EXPECT_THAT(printed, Not(HasSubstr("^^")));
}

TEST_F(ScanPicture, ShowsAllBusesInTheOrderOfTheTree) {
    m_bus->answering = {0x50};
    m_other->answering = {0x20};
    ASSERT_EQ(Run("scan"), EXIT_PASSED);
    EXPECT_LT(printed.find("/bus\n"), printed.find("/bus/mux/ch0 to ch1:"));
    EXPECT_LT(printed.find("/bus/mux/ch0 to ch1:"), printed.find("/menu/other\n"));
}

TEST_F(ScanPicture, NamesWhatTheDescriptionHas) {
    m_bus->answering = {0x48, 0x50, 0x51};
    m_bus->names = {{0x50, "eeprom"}, {0x52, "sensor"}, {0x53, "clock"}};
    m_mux->answering[0] = {0x60};
    m_mux->names = {{{0, 0x60}, "cpld"}, {{1, 0x61}, "late"}};
    ASSERT_EQ(Run("scan bus"), EXIT_PASSED);
    EXPECT_THAT(PictureOf("/bus"), EndsWith("\n     0x50 eeprom\n"
                                            "     no answer from 0x52 sensor, 0x53 clock"));
    EXPECT_THAT(PictureOf("/bus/mux/ch0"), EndsWith("\n     0x60 cpld"));
    EXPECT_THAT(printed, HasSubstr("/bus/mux/ch1: nothing answers, not even 0x61 late\n"));
}

TEST_F(ScanPicture, BreaksLongListsOfNames) {
    for (uint8_t addr = 0x20; addr < 0x28; ++addr) {
        m_bus->answering.insert(addr);
        m_bus->names[addr] = "temperature-sensor";
    }
    ASSERT_EQ(Run("scan bus"), EXIT_PASSED);
    EXPECT_THAT(PictureOf("/bus"),
                HasSubstr("     0x20 temperature-sensor, 0x21 temperature-sensor,\n"
                          "     0x22 temperature-sensor, 0x23 temperature-sensor,\n"));
}

TEST_F(ScanPicture, ShowsWhatADriverOfTheKernelWorksWith) {
    m_bus->owners = {{0x50, "at24"}, {0x4C, "lm90"}};
    m_bus->names = {{0x50, "eeprom"}};
    ASSERT_EQ(Run("scan bus"), EXIT_PASSED);
    EXPECT_THAT(PictureOf("/bus"), HasSubstr("\n50: UU --"));
    EXPECT_THAT(PictureOf("/bus"),
                HasSubstr("\n     0x4c (driver lm90), 0x50 eeprom (driver at24)"));
    EXPECT_THAT(printed, HasSubstr("UU a driver of the kernel works with it, not asked\n"));
    EXPECT_EQ(m_bus->asked.count(0x50), 0U);
    // It would answer behind the multiplexer too.
    EXPECT_THAT(printed, HasSubstr("/bus/mux/ch0 to ch1: nothing answers\n"));
}

// Where the kernel drives a multiplexer, an address that it has on one channel is taken on
// the bus above too, but free on the other channels.
TEST_F(ScanPicture, ShowsWhatADriverWorksWithOnAChannelThere) {
    auto* first = new CFakeBus("first", m_journal);
    auto* second = new CFakeBus("second", m_journal);
    m_other->AddChild(first, CDiagObj::NO_SORT);
    m_other->AddChild(second, CDiagObj::NO_SORT);
    m_other->owners = {{0x48, "lm75"}, {0x50, "optoe at 5-0050"}};
    m_other->elsewhere = {0x50};
    first->owners = {{0x48, "lm75 at 4-0048"}, {0x50, "optoe"}};
    first->names = {{0x50, "sfp"}};
    second->owners = {{0x48, "lm75 at 4-0048"}};
    second->answering = {0x50};
    ASSERT_EQ(Run("scan menu"), EXIT_PASSED);
    EXPECT_THAT(PictureOf("/menu/other"), HasSubstr("\n50: UU --"));
    EXPECT_THAT(PictureOf("/menu/other/first"), HasSubstr("\n50: UU --"));
    EXPECT_THAT(PictureOf("/menu/other/first"), EndsWith("\n     0x50 sfp (driver optoe)"));
    EXPECT_THAT(PictureOf("/menu/other/second"), HasSubstr("\n50: 50 --"));
    EXPECT_EQ(Wires()[1].cells[0x48].mark, EScanMark::ABOVE);
    EXPECT_EQ(second->asked.count(0x48), 0U);
}

TEST_F(ScanPicture, DoesNotTakeAFailureForSilence) {
    m_bus->failing = {
        {0x10, "arbitration lost"}, {0x20, "bus stuck low"}, {0x30, "arbitration lost"}};
    EXPECT_EQ(Run("scan menu"), EXIT_PASSED);
    EXPECT_EQ(Run("scan bus"), EXIT_FAILED);
    EXPECT_THAT(PictureOf("/bus"), HasSubstr("\n10: !! --"));
    EXPECT_THAT(PictureOf("/bus"), EndsWith("\n     failed at 0x10, 0x30: arbitration lost\n"
                                            "     failed at 0x20: bus stuck low"));
    EXPECT_THAT(printed, HasSubstr("!! the bus failed, whether it answers is not known\n"));
    EXPECT_EQ(errors, "scan: not everything could be asked\n");
}

TEST_F(ScanPicture, GivesABusUpThatFailsAgainAndAgainAndTakesLong) {
    CFakeClock clock;
    for (uint8_t addr = 0x08; addr < 0x78; ++addr) {
        m_other->failing[addr] = "bus stuck low";
    }
    m_other->failing_takes_ms = 1000;
    EXPECT_EQ(Run("scan menu"), EXIT_FAILED);
    EXPECT_EQ(m_other->asked.size(), 2U);
    EXPECT_THAT(PictureOf("/menu/other"), HasSubstr("\n00:                         !! !!\n10:\n"));
    EXPECT_THAT(PictureOf("/menu/other"),
                EndsWith("\n     failed at 0x08 to 0x09: bus stuck low\n"
                         "     given up behind 0x09, as it only fails and takes long"));
}

TEST_F(ScanPicture, DoesNotTakeWhatCouldNotBeAskedForSilence) {
    m_other->lacking = {EScanAccess::QUICK_WRITE};
    EXPECT_EQ(Run("scan menu"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("/menu/other: nothing answers, where it could be asked; the "
                                   "controller cannot do the SMBus quick write; scan -r asks by "
                                   "receive byte\n"));
}

// As a controller does for which an address without a chip is an I/O error.
TEST_F(ScanPicture, GoesOnWhereFailingIsQuick) {
    CFakeClock clock;
    for (uint8_t addr = 0x08; addr < 0x78; ++addr) {
        m_other->failing[addr] = "EIO";
    }
    m_other->failing.erase(0x48);
    m_other->failing_takes_ms = 10;
    m_other->answering = {0x48};
    EXPECT_EQ(Run("scan menu"), EXIT_FAILED);
    EXPECT_EQ(m_other->asked.size(), 112U);
    EXPECT_THAT(PictureOf("/menu/other"), HasSubstr("\n40: !! !! !! !! !! !! !! !! 48 !!"));
    EXPECT_THAT(PictureOf("/menu/other"), EndsWith("\n     failed at 0x08 to 0x47, 0x49 to "
                                                   "0x77: EIO"));
}

}  // namespace
