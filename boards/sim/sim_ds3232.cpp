#include "boards/sim/sim_ds3232.h"

#include <array>
#include <chrono>
#include <utility>

#include "framework/diag_types.h"

namespace {

constexpr uint8_t SECONDS = 0x00;
constexpr uint8_t MINUTES = 0x01;
constexpr uint8_t HOURS = 0x02;
constexpr uint8_t DAY = 0x03;
constexpr uint8_t DATE = 0x04;
constexpr uint8_t MONTH = 0x05;
constexpr uint8_t YEAR = 0x06;
constexpr uint8_t ALARM1 = 0x07;
constexpr uint8_t ALARM2_MINUTES = 0x0B;
constexpr uint8_t CONTROL = 0x0E;
constexpr uint8_t STATUS = 0x0F;
constexpr uint8_t TEMP = 0x11;
constexpr uint8_t TEST = 0x13;

constexpr unsigned int TWELVE_HOURS = 0x40;
constexpr unsigned int PM = 0x20;
constexpr unsigned int CENTURY = 0x80;
constexpr unsigned int ANY = 0x80;          // of an alarm's byte: it fits every time
constexpr unsigned int DAY_OF_WEEK = 0x40;  // of an alarm's day: not a date
constexpr unsigned int ALARM1_CAME = 0x01;
constexpr unsigned int ALARM2_CAME = 0x02;

constexpr unsigned int FromBcd(unsigned int bcd) {
    return (bcd >> 4) * 10 + (bcd & 0x0F);
}
constexpr uint16_t ToBcd(unsigned int number) {
    return static_cast<uint16_t>(number / 10 << 4 | number % 10);
}

// A year of two digits is divisible by four when its year of the century is.
unsigned int DaysOf(unsigned int month, unsigned int year) {
    constexpr unsigned int DAYS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const unsigned int days = month >= 1 && month <= 12 ? DAYS[month - 1] : 31;
    return month == 2 && year % 4 == 0 ? days + 1 : days;
}

constexpr sim_register_t Byte(uint8_t pointer) {
    sim_register_t reg = {.pointer = pointer, .bytes = 1, .reset = 0x00, .writable = 0xFF};
    switch (pointer) {
        case SECONDS:
        case MINUTES:
        case HOURS:
            reg.writable = 0x7F;
            break;
        case DAY:
            reg.reset = 0x01;
            reg.writable = 0x07;
            break;
        case DATE:
            reg.reset = 0x01;
            reg.writable = 0x3F;
            break;
        case MONTH:
            reg.reset = 0x01;
            reg.writable = 0x9F;
            break;
        case CONTROL:
            reg.reset = 0x1C;
            reg.writable = 0xDF;  // a conversion that is asked for has ended at once
            break;
        case STATUS:
            reg.reset = 0xC8;
            reg.writable = 0x78;
            reg.clearable = 0x83;
            break;
        case TEMP:
            reg.reset = 0x1A;  // a closed box, 26.5 degrees
            reg.writable = 0;
            break;
        case TEMP + 1:
            reg.reset = 0x80;
            reg.writable = 0;
            break;
        case TEST:
            reg.writable = 0;
            break;
        default:
            break;
    }
    return reg;
}

template <size_t... At>
constexpr std::array<sim_register_t, sizeof...(At)> Bytes(std::index_sequence<At...>) {
    return {Byte(static_cast<uint8_t>(At))...};
}

constexpr std::array REGISTERS = Bytes(std::make_index_sequence<256>());

constexpr std::array OUTSIDE = {
    sim_outside_t{"temp", "temperature, 15:6 in 0.25 degrees Celsius, two's complement",
                  VT_UINT16 | VF_HEX | VF_PAD, TEMP},
};

uint64_t RealSeconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::seconds>(now).count());
}

}  // namespace

const sim_register_part_t SIM_DS3232 = {"ds3232", SIM_POINTER_ADVANCES, REGISTERS, OUTSIDE,
                                        CreateSimRegisterChip<CSimDs3232>};

CSimDs3232::CSimDs3232(const sim_register_part_t& part, uint8_t addr)
    : CSimDs3232(part, addr, RealSeconds) {}

CSimDs3232::CSimDs3232(const sim_register_part_t& part, uint8_t addr, CSeconds seconds)
    : CSimRegisters(part, addr), m_seconds(std::move(seconds)), m_shown(m_seconds()) {}

void CSimDs3232::Refresh() {
    for (const uint64_t now = m_seconds(); m_shown < now; ++m_shown) {
        Tick();
        RaiseAlarms();
    }
}

void CSimDs3232::Tick() {
    const unsigned int seconds = (FromBcd(Value(SECONDS)) + 1) % 60;
    SetValue(SECONDS, ToBcd(seconds));
    if (seconds != 0) {
        return;
    }
    const unsigned int minutes = (FromBcd(Value(MINUTES)) + 1) % 60;
    SetValue(MINUTES, ToBcd(minutes));
    if (minutes == 0 && TickHours()) {
        TickDate();
    }
}

// Whether a day has ended.
bool CSimDs3232::TickHours() {
    const unsigned int old = Value(HOURS);
    if ((old & TWELVE_HOURS) == 0) {
        const unsigned int hours = (FromBcd(old & 0x3F) + 1) % 24;
        SetValue(HOURS, ToBcd(hours));
        return hours == 0;
    }
    const unsigned int hours = FromBcd(old & 0x1F) % 12 + 1;
    const unsigned int half = hours == 12 ? (old & PM) ^ PM : old & PM;
    SetValue(HOURS, static_cast<uint16_t>(TWELVE_HOURS | half | ToBcd(hours)));
    return hours == 12 && half == 0;
}

void CSimDs3232::TickDate() {
    SetValue(DAY, static_cast<uint16_t>(Value(DAY) % 7 + 1));
    const unsigned int century = Value(MONTH) & CENTURY;
    const unsigned int month = FromBcd(Value(MONTH) & 0x1F);
    const unsigned int year = FromBcd(Value(YEAR));
    const unsigned int date = FromBcd(Value(DATE)) + 1;
    if (date <= DaysOf(month, year)) {
        SetValue(DATE, ToBcd(date));
        return;
    }
    SetValue(DATE, 0x01);
    if (month < 12) {
        SetValue(MONTH, static_cast<uint16_t>(century | ToBcd(month + 1)));
        return;
    }
    SetValue(YEAR, ToBcd((year + 1) % 100));
    SetValue(MONTH, static_cast<uint16_t>((year == 99 ? century ^ CENTURY : century) | 0x01));
}

bool CSimDs3232::Matches(uint8_t alarm, uint8_t time) const {
    return (Value(alarm) & ANY) != 0 || Value(alarm) == Value(time);
}

bool CSimDs3232::MatchesDay(uint8_t alarm) const {
    const unsigned int wanted = Value(alarm);
    if ((wanted & ANY) != 0) {
        return true;
    }
    return (wanted & DAY_OF_WEEK) != 0 ? (wanted & 0x0F) == Value(DAY) : wanted == Value(DATE);
}

// Of an alarm its hours and its day stand behind its minutes.
bool CSimDs3232::MatchesHourAndDay(uint8_t minutes_of_alarm) const {
    const auto hours = static_cast<uint8_t>(minutes_of_alarm + 1);
    const auto day = static_cast<uint8_t>(minutes_of_alarm + 2);
    return Matches(hours, HOURS) && MatchesDay(day);
}

void CSimDs3232::RaiseAlarms() {
    constexpr uint8_t ALARM1_MINUTES = ALARM1 + 1;
    unsigned int status = Value(STATUS);
    if (Matches(ALARM1, SECONDS) && Matches(ALARM1_MINUTES, MINUTES) &&
        MatchesHourAndDay(ALARM1_MINUTES)) {
        status |= ALARM1_CAME;
    }
    // The second alarm has no seconds, it comes with the minute.
    if (Value(SECONDS) == 0 && Matches(ALARM2_MINUTES, MINUTES) &&
        MatchesHourAndDay(ALARM2_MINUTES)) {
        status |= ALARM2_CAME;
    }
    SetValue(STATUS, static_cast<uint16_t>(status));
}
