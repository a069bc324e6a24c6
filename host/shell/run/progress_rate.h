// How fast something goes on, and how long it takes yet.
#pragma once

#include <cstdint>
#include <optional>

class CProgressRate {
  public:
    // Looks that are further apart tell nothing: the program was stopped meanwhile,
    // or its screen was.
    static constexpr uint64_t LOST_AFTER_MS = 2000;

    // What is done at a time, in milliseconds; to be told often.
    void Look(uint64_t now, uint64_t done);
    // Units per second, of the last second or so; over the first, what there is.
    uint64_t PerSecond() const { return m_per_second; }
    // For as much more, judged by the last few seconds; nothing when they say nothing.
    std::optional<uint64_t> SecondsFor(uint64_t remaining) const;

  private:
    struct CSample {
        uint64_t time;
        uint64_t done;
    };

    void Restart(const CSample& sample);

    std::optional<CSample> m_last;
    CSample m_from{};        // where the rate is measured from
    bool m_in_first = true;  // the first second
    uint64_t m_per_second = 0;
    double m_recent_units = 0;  // of the last few seconds, those before fading away
    double m_recent_ms = 0;
};
