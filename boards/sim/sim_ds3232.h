// The simulated DS3232: its time goes on, in 24 and in 12 hours, and its alarms come.
#pragma once

#include <functional>

#include "boards/sim/sim_registers.h"

class CSimDs3232 : public CSimRegisters {
  public:
    using CSeconds = std::function<uint64_t()>;

    // `seconds` counts from anywhere; without it real time goes by.
    CSimDs3232(const sim_register_part_t& part, uint8_t addr);
    CSimDs3232(const sim_register_part_t& part, uint8_t addr, CSeconds seconds);

  protected:
    void Refresh() override;

  private:
    void Tick();
    bool TickHours();
    void TickDate();
    bool Matches(uint8_t alarm, uint8_t time) const;
    bool MatchesDay(uint8_t alarm) const;
    bool MatchesHourAndDay(uint8_t minutes_of_alarm) const;
    void RaiseAlarms();

    const CSeconds m_seconds;
    uint64_t m_shown;  // the second that the registers show
};

extern const sim_register_part_t SIM_DS3232;
