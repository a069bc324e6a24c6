#include <gtest/gtest.h>

#include "tests/decode/spd_image.h"

namespace {

TEST(SpdTiming, TellsTheGradeOfTheClock) {
    const auto grade = [](int medium, int fine) {
        return CSpdImage().Set(12, {medium}).Set(34, {fine}).Value("Maximum speed");
    };
    EXPECT_EQ(grade(20, 0), "DDR3-800 (PC3-6400), clock period 2.500 ns");
    EXPECT_EQ(grade(15, 0), "DDR3-1066 (PC3-8500), clock period 1.875 ns");
    EXPECT_EQ(grade(12, 0), "DDR3-1333 (PC3-10600), clock period 1.500 ns");
    EXPECT_EQ(grade(10, 0), "DDR3-1600 (PC3-12800), clock period 1.250 ns");
    EXPECT_EQ(grade(9, -54), "DDR3-1866 (PC3-14900), clock period 1.071 ns");
    EXPECT_EQ(grade(8, -62), "DDR3-2133 (PC3-17000), clock period 0.938 ns");
    // rounded the other way
    EXPECT_EQ(grade(9, -53), "DDR3-1866 (PC3-14900), clock period 1.072 ns");
    EXPECT_EQ(grade(8, -63), "DDR3-2133 (PC3-17000), clock period 0.937 ns");
}

TEST(SpdTiming, TellsOfAClockThatIsNoGrade) {
    const auto speed = [](int medium, int fine) {
        return CSpdImage().Set(12, {medium}).Set(34, {fine}).Value("Maximum speed");
    };
    EXPECT_EQ(speed(10, 1), "1598 MT/s, no standard grade, clock period 1.251 ns");
    EXPECT_EQ(speed(9, -55), "1869 MT/s, no standard grade, clock period 1.070 ns");
    EXPECT_EQ(speed(8, 0), "2000 MT/s, no standard grade, clock period 1.000 ns");
}

TEST(SpdTiming, CountsTheBandwidthOfANarrowBus) {
    const auto speed = [](int bus) { return SpdValueWith(8, bus, "Maximum speed"); };
    EXPECT_EQ(speed(0x02), "DDR3-1600 (PC3-6400), clock period 1.250 ns");
    EXPECT_EQ(speed(0x00), "DDR3-1600 (PC3-1600), clock period 1.250 ns");
    EXPECT_EQ(speed(0x07), "DDR3-1600, clock period 1.250 ns");
}

TEST(SpdTiming, TakesEveryTimeFromItsBytes) {
    CSpdImage image;
    image.Set(16,
              {0x01, 0x02, 0x03, 0x04, 0x05, 0x76, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0xFE, 0x0F});
    EXPECT_EQ(image.Value("tAAmin"), "0.125 ns");
    EXPECT_EQ(image.Value("tWRmin"), "0.250 ns");
    EXPECT_EQ(image.Value("tRCDmin"), "0.375 ns");
    EXPECT_EQ(image.Value("tRRDmin"), "0.500 ns");
    EXPECT_EQ(image.Value("tRPmin"), "0.625 ns");
    EXPECT_EQ(image.Value("tRASmin"), "193.000 ns");  // 0x608
    EXPECT_EQ(image.Value("tRCmin"), "225.125 ns");   // 0x709
    EXPECT_EQ(image.Value("tRFCmin"), "353.250 ns");  // 0xB0A
    EXPECT_EQ(image.Value("tWTRmin"), "1.500 ns");
    EXPECT_EQ(image.Value("tRTPmin"), "1.625 ns");
    EXPECT_EQ(image.Value("tFAWmin"), "449.875 ns");  // 0xE0F
}

TEST(SpdTiming, AddsFineOffsets) {
    CSpdImage image;
    image.Set(34, {1, 2, 3, 4, 5});
    EXPECT_EQ(image.Value("tCKmin"), "1.251 ns");
    EXPECT_EQ(image.Value("tAAmin"), "13.127 ns");
    EXPECT_EQ(image.Value("tRCDmin"), "13.128 ns");
    EXPECT_EQ(image.Value("tRPmin"), "13.129 ns");
    EXPECT_EQ(image.Value("tRCmin"), "48.130 ns");
    image.Set(34, {-1, -2, -128, 127, -5});
    EXPECT_EQ(image.Value("tCKmin"), "1.249 ns");
    EXPECT_EQ(image.Value("tAAmin"), "13.123 ns");
    EXPECT_EQ(image.Value("tRCDmin"), "12.997 ns");
    EXPECT_EQ(image.Value("tRPmin"), "13.252 ns");
    EXPECT_EQ(image.Value("tRCmin"), "48.120 ns");
}

TEST(SpdTiming, CountsInTheTimeBasesOfTheModule) {
    CSpdImage image;
    image.Set(9, {0x52, 1, 16}).Set(12, {20}).Set(34, {-1});
    EXPECT_EQ(image.Value("Medium time base (MTB)"), "1/16 ns");
    EXPECT_EQ(image.Value("Fine time base (FTB)"), "5/2 ps");
    EXPECT_EQ(image.Value("tCKmin"), "1.2475 ns");
    EXPECT_EQ(image.Value("tWTRmin"), "3.750 ns");
    EXPECT_EQ(SpdValueWith(11, 7, "tRRDmin"), "6.8571 ns");
}

TEST(SpdTiming, ShowsUnitsOfAnUndefinedMediumTimeBase) {
    CSpdImage image;
    image.Set(11, {0}).Set(35, {-3, 4});
    EXPECT_EQ(image.Value("Medium time base (MTB)"), "1/0 ns, undefined");
    EXPECT_EQ(image.Value("tCKmin"), "10 MTB");
    EXPECT_EQ(image.Value("tAAmin"), "105 MTB - 3 FTB");
    EXPECT_EQ(image.Value("tRCDmin"), "105 MTB + 4 FTB");
    EXPECT_EQ(image.Value("Maximum speed"), "unknown");
    EXPECT_EQ(image.Value("CL-tRCD-tRP-tRAS"), "unknown");
}

TEST(SpdTiming, NeedsAFineTimeBaseForFineOffsetsOnly) {
    CSpdImage image;
    image.Set(9, {0x10}).Set(36, {-128});
    EXPECT_EQ(image.Value("Fine time base (FTB)"), "1/0 ps, undefined");
    EXPECT_EQ(image.Value("Maximum speed"), "DDR3-1600 (PC3-12800), clock period 1.250 ns");
    EXPECT_EQ(image.Value("tAAmin"), "13.125 ns");
    EXPECT_EQ(image.Value("tRCDmin"), "105 MTB - 128 FTB");
    EXPECT_EQ(image.Value("CL-tRCD-tRP-tRAS"), "unknown");
}

TEST(SpdTiming, HasNoSpeedWithoutAClock) {
    EXPECT_EQ(SpdValueWith(12, 0, "Maximum speed"), "unknown");
    EXPECT_EQ(SpdValueWith(10, 0, "Maximum speed"), "unknown");
    EXPECT_EQ(SpdValueWith(10, 0, "tRFCmin"), "0.000 ns");
    const CSpdImage negative = CSpdImage().Set(12, {0}).Set(34, {-1});
    EXPECT_EQ(negative.Value("tCKmin"), "-0.001 ns");
    EXPECT_EQ(negative.Value("Maximum speed"), "unknown");
    EXPECT_EQ(negative.Value("CL-tRCD-tRP-tRAS"), "unknown");
}

TEST(SpdTiming, ListsTheCasLatencies) {
    const auto latencies = [](int low, int high) {
        return CSpdImage().Set(14, {low, high}).Value("CAS latencies");
    };
    EXPECT_EQ(latencies(0x01, 0x00), "4");
    EXPECT_EQ(latencies(0x80, 0x01), "11, 12");
    EXPECT_EQ(latencies(0x00, 0x40), "18");
    EXPECT_EQ(latencies(0xFF, 0x7F), "4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18");
    EXPECT_EQ(latencies(0x00, 0x80), "(none)");
}

TEST(SpdTiming, TellsTheClocksAtFullSpeed) {
    const auto clocks = [](const CSpdImage& image) { return image.Value("CL-tRCD-tRP-tRAS"); };
    EXPECT_EQ(clocks(CSpdImage()), "11-11-11-28");
    // DDR3-1333H: 13.125 ns are 8.75 clocks, 36 ns are 24
    EXPECT_EQ(clocks(CSpdImage().Set(12, {12}).Set(21, {0x11, 0x20})), "9-9-9-24");
    // DDR3-1066F: 13.125 ns are 7 clocks to the picosecond, and a picosecond more is 8
    EXPECT_EQ(clocks(CSpdImage().Set(12, {15})), "7-7-7-19");
    EXPECT_EQ(clocks(CSpdImage().Set(12, {15}).Set(36, {1})), "7-8-7-19");
    // DDR3-2133: 13.125 ns are 14 clocks of 937.5 ps, though 15 of the 937 ps it has
    EXPECT_EQ(clocks(CSpdImage().Set(12, {8}).Set(34, {-63}).Set(14, {0xFF, 0x7F})), "14-14-14-38");
}

TEST(SpdTiming, TakesTheNextCasLatencyThatIsSupported) {
    const auto clocks = [](int low, int high) {
        return CSpdImage().Set(14, {low, high}).Value("CL-tRCD-tRP-tRAS");
    };
    EXPECT_EQ(clocks(0x7F, 0x02), "13-11-11-28");
    EXPECT_EQ(clocks(0x7F, 0x00), "unknown: no CAS latency of 11 or more is supported");
    EXPECT_EQ(clocks(0x00, 0x00), "unknown: no CAS latency of 11 or more is supported");
}

TEST(SpdTiming, CountsNoClocksOfNoTime) {
    CSpdImage image;
    image.Set(18, {0}).Set(20, {0}).Set(37, {-1});
    EXPECT_EQ(image.Value("CL-tRCD-tRP-tRAS"), "11-0-0-28");
}

}  // namespace
