// The simulated real-time clock, on a time that the test moves.
#include "boards/sim/sim_ds3232.h"

#include "tests/boards/sim/sim_test.h"

namespace {

constexpr uint8_t RTC = 0x68;
constexpr uint8_t STATUS = 0x0F;

class SimDs3232 : public CSimTest {
  protected:
    // Seconds, minutes, hours, day, date, month, year.
    void SetTime(CData bytes) {
        bytes.insert(bytes.begin(), 0x00);
        ASSERT_TRUE(Write(RTC, bytes));
    }
    CData Time() { return Read(RTC, {0x00}, 7); }
    uint8_t Status() { return Read(RTC, {STATUS}, 1).at(0); }
    void ClearFlags() { ASSERT_TRUE(Write(RTC, {STATUS, 0x48})); }
    // Alarm 1 at seconds, minutes, hours and day.
    void SetAlarm1(CData bytes) {
        bytes.insert(bytes.begin(), 0x07);
        ASSERT_TRUE(Write(RTC, bytes));
        ClearFlags();
    }

    uint64_t m_now = 1000;
    CSimDs3232& m_chip = m_bus.Segment().Add(
        std::make_unique<CSimDs3232>(SIM_DS3232, RTC, [this] { return m_now; }));
};

TEST_F(SimDs3232, BeginsAtTheFirstSecondWithTheStopFlagSet) {
    EXPECT_EQ(Time(), (CData{0x00, 0x00, 0x00, 0x01, 0x01, 0x01, 0x00}));
    EXPECT_EQ(Read(RTC, {0x0E}, 3), (CData{0x1C, 0xC8, 0x00}));
}

TEST_F(SimDs3232, GoesOnSecondBySecond) {
    SetTime({0x08, 0x59, 0x07, 0x01, 0x01, 0x01, 0x00});
    m_now += 1;
    EXPECT_EQ(Time().at(0), 0x09);
    m_now += 1;
    EXPECT_EQ(Time().at(0), 0x10);
    m_now += 50;
    EXPECT_EQ(Time(), (CData{0x00, 0x00, 0x08, 0x01, 0x01, 0x01, 0x00}));
}

TEST_F(SimDs3232, KnowsTheLengthOfEveryMonth) {
    constexpr uint8_t LAST[] = {0x31, 0x28, 0x31, 0x30, 0x31, 0x30,
                                0x31, 0x31, 0x30, 0x31, 0x30, 0x31};
    for (uint8_t month = 1; month <= 11; ++month) {
        const auto bcd = static_cast<uint8_t>(month / 10 << 4 | month % 10);
        const auto next = static_cast<uint8_t>((month + 1) / 10 << 4 | (month + 1) % 10);
        SetTime({0x59, 0x59, 0x23, 0x07, LAST[month - 1], bcd, 0x26});
        m_now += 1;
        EXPECT_EQ(Time(), (CData{0x00, 0x00, 0x00, 0x01, 0x01, next, 0x26}));
    }
    SetTime({0x59, 0x59, 0x23, 0x02, 0x28, 0x02, 0x28});
    m_now += 1;
    EXPECT_EQ(Time(), (CData{0x00, 0x00, 0x00, 0x03, 0x29, 0x02, 0x28}));
}

TEST_F(SimDs3232, TogglesTheCenturyAfterNinetyNine) {
    SetTime({0x59, 0x59, 0x23, 0x01, 0x31, 0x12, 0x98});
    m_now += 1;
    EXPECT_EQ(Time(), (CData{0x00, 0x00, 0x00, 0x02, 0x01, 0x01, 0x99}));
    SetTime({0x59, 0x59, 0x23, 0x01, 0x31, 0x12, 0x99});
    m_now += 1;
    EXPECT_EQ(Time(), (CData{0x00, 0x00, 0x00, 0x02, 0x01, 0x81, 0x00}));
}

TEST_F(SimDs3232, CountsTwelveHoursTwice) {
    SetTime({0x59, 0x59, 0x40 | 0x09, 0x01, 0x01, 0x01, 0x00});
    const CData want = {0x50, 0x51, 0x72, 0x61, 0x62};  // 10, 11 AM, 12, 1, 2 PM
    for (const uint8_t hours : want) {
        m_now += hours == want.front() ? 1 : 3600;
        EXPECT_EQ(Time().at(2), hours);
        EXPECT_EQ(Time().at(4), 0x01);
    }
    SetTime({0x59, 0x59, 0x71, 0x01, 0x01, 0x01, 0x00});  // 11 PM
    m_now += 1;
    EXPECT_EQ(Time(), (CData{0x00, 0x00, 0x52, 0x02, 0x02, 0x01, 0x00}));
}

TEST_F(SimDs3232, RaisesItsFirstAlarmWhenEveryFieldFits) {
    SetTime({0x00, 0x00, 0x12, 0x03, 0x05, 0x06, 0x26});
    SetAlarm1({0x10, 0x01, 0x12, 0x05});
    m_now += 69;
    EXPECT_EQ(Status() & 1, 0);
    m_now += 1;
    EXPECT_EQ(Status() & 1, 1);
    ClearFlags();
    m_now += 3600;
    EXPECT_EQ(Status() & 1, 0);
}

TEST_F(SimDs3232, RaisesAnAlarmAtADayOfTheWeek) {
    SetTime({0x58, 0x59, 0x23, 0x03, 0x05, 0x06, 0x26});
    SetAlarm1({0x00, 0x80, 0x80, 0x40 | 0x04});
    m_now += 1;
    EXPECT_EQ(Status() & 1, 0);
    m_now += 1;
    EXPECT_EQ(Status() & 1, 1);
}

TEST_F(SimDs3232, RaisesAnAlarmOfNoFieldEverySecond) {
    SetAlarm1({0x80, 0x80, 0x80, 0x80});
    EXPECT_EQ(Status() & 1, 0);
    m_now += 1;
    EXPECT_EQ(Status() & 1, 1);
}

TEST_F(SimDs3232, RaisesItsSecondAlarmWithTheMinute) {
    SetTime({0x58, 0x29, 0x12, 0x03, 0x05, 0x06, 0x26});
    ASSERT_TRUE(Write(RTC, {0x0B, 0x30, 0x80, 0x80}));
    ClearFlags();
    m_now += 1;
    EXPECT_EQ(Status() & 2, 0);
    m_now += 1;
    EXPECT_EQ(Status() & 2, 2);
    ClearFlags();
    m_now += 1;
    EXPECT_EQ(Status() & 2, 0);
}

TEST_F(SimDs3232, ClearsFlagsByAZeroAndSetsNoneByAOne) {
    EXPECT_TRUE(Write(RTC, {STATUS, 0xFF}));
    EXPECT_EQ(Status(), 0xF8);
    EXPECT_TRUE(Write(RTC, {STATUS, 0x78}));
    EXPECT_EQ(Status(), 0x78);
    EXPECT_TRUE(Write(RTC, {STATUS, 0x80}));
    EXPECT_EQ(Status(), 0x00);
}

TEST_F(SimDs3232, EndsAConversionAtOnce) {
    EXPECT_TRUE(Write(RTC, {0x0E, 0x3C}));
    EXPECT_EQ(Read(RTC, {0x0E}, 1), CData{0x1C});
}

TEST_F(SimDs3232, HasItsTemperatureFromTheWorldOutside) {
    ASSERT_EQ(m_chip.Outside().size(), 1U);
    const sim_outside_t& temp = m_chip.Outside().front();
    EXPECT_EQ(m_chip.GetOutside(temp), 0x1A80);
    m_chip.SetOutside(temp, 0xE7C0);
    EXPECT_EQ(Read(RTC, {0x11}, 2), (CData{0xE7, 0xC0}));
    EXPECT_TRUE(Write(RTC, {0x11, 0x00, 0x00}));
    EXPECT_EQ(m_chip.GetOutside(temp), 0xE7C0);
}

TEST_F(SimDs3232, KeepsItsSramAndWrapsBehindIt) {
    EXPECT_TRUE(Write(RTC, {0x14, 0xA5}));
    EXPECT_TRUE(Write(RTC, {0xFF, 0x5A, 0x30}));  // the last byte, then the seconds
    EXPECT_EQ(Read(RTC, {0x14}, 1), CData{0xA5});
    EXPECT_EQ(Read(RTC, {0xFF}, 2), (CData{0x5A, 0x30}));
}

}  // namespace
