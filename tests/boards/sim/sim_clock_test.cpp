#include "boards/sim/sim_clock.h"

#include <gtest/gtest.h>

#include "tests/support/thrown_text.h"

namespace {

TEST(SimClock, CountsTheBitsOnTheWireInNanoseconds) {
    CSimClock clock(100'000, [] { return uint64_t{0}; });
    EXPECT_EQ(clock.WireNs(), 0U);
    clock.AddBits(11);
    EXPECT_EQ(clock.WireNs(), 110'000U);
    EXPECT_EQ(clock.NowNs(), 110'000U);
}

TEST(SimClock, DoesNotAddUpRoundingErrors) {
    CSimClock clock(300'000, [] { return uint64_t{0}; });
    for (int i = 0; i < 300'000; ++i) {
        clock.AddBits(1);
    }
    EXPECT_EQ(clock.WireNs(), 1'000'000'000U);
}

TEST(SimClock, CountsForYearsWithoutOverflow) {
    CSimClock clock(400'000, [] { return uint64_t{0}; });
    const uint64_t ten_years_s = 315'360'000;
    clock.AddBits(ten_years_s * 400'000);
    EXPECT_EQ(clock.WireNs(), ten_years_s * 1'000'000'000);
}

TEST(SimClock, MovesWithTheWireAndWithTheWall) {
    uint64_t wall = 5000;
    CSimClock clock(1'000'000, [&wall] { return wall; });
    const uint64_t start = clock.NowNs();
    clock.AddBits(3);
    wall += 700;
    EXPECT_EQ(clock.NowNs() - start, 3'700U);
    EXPECT_EQ(clock.WireNs(), 3'000U);
}

TEST(SimClock, RefusesABusWithoutClock) {
    EXPECT_EQ(ThrownText([] { const CSimClock clock(0); }), "a bus cannot run at 0 Hz");
}

TEST(SimClock, TakesTheSteadyClockOfTheMachineByDefault) {
    const CSimClock clock(100'000);
    const uint64_t before = CSimClock::SteadyNs();
    const uint64_t now = clock.NowNs();
    const uint64_t after = CSimClock::SteadyNs();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

}  // namespace
