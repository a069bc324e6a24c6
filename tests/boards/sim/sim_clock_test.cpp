#include "boards/sim/sim_clock.h"

#include <gtest/gtest.h>

#include "tests/support/thrown_text.h"

namespace {

TEST(SimClock, CountsTheBitsOnTheWireInNanoseconds) {
    CSimClock clock(100'000);
    EXPECT_EQ(clock.WireNs(), 0U);
    clock.AddBits(11);
    EXPECT_EQ(clock.WireNs(), 110'000U);
    EXPECT_EQ(clock.NowNs(), 110'000U);
}

TEST(SimClock, DoesNotAddUpRoundingErrors) {
    CSimClock clock(300'000);
    for (int i = 0; i < 300'000; ++i) {
        clock.AddBits(1);
    }
    EXPECT_EQ(clock.WireNs(), 1'000'000'000U);
}

TEST(SimClock, CountsForYearsWithoutOverflow) {
    CSimClock clock(400'000);
    const uint64_t ten_years_s = 315'360'000;
    clock.AddBits(ten_years_s * 400'000);
    EXPECT_EQ(clock.WireNs(), ten_years_s * 1'000'000'000);
}

TEST(SimClock, MovesWithTheWireAndWithWaiting) {
    CSimClock clock(1'000'000);
    clock.AddBits(3);
    clock.Wait(2);
    EXPECT_EQ(clock.NowNs(), 2'003'000U);
    EXPECT_EQ(clock.WireNs(), 3'000U);
    EXPECT_EQ(clock.WaitedMs(), 2U);
}

TEST(SimClock, RefusesABusWithoutClock) {
    EXPECT_EQ(ThrownText([] { const CSimClock clock(0); }), "a bus cannot run at 0 Hz");
}

}  // namespace
