#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "tests/support/fake_clock.h"
#include "tests/support/log_capture.h"

namespace {

using testing::ElementsAre;

TEST(ResCodeText, IsTheEnumeratorWithoutItsPrefix) {
    const std::vector<std::pair<EResCode, const char*>> texts{
        {MSG_SUCCESS, "SUCCESS"},           {MSG_ERR_NORESP, "ERR_NORESP"},
        {MSG_ERR_FAIL, "ERR_FAIL"},         {MSG_ERR_DEST, "ERR_DEST"},
        {MSG_ERR_MSGTYPE, "ERR_MSGTYPE"},   {MSG_ERR_MSGLEN, "ERR_MSGLEN"},
        {MSG_ERR_READONLY, "ERR_READONLY"}, {MSG_ERR_PARAM, "ERR_PARAM"},
        {MSG_ERR_ISRUN, "ERR_ISRUN"},       {MSG_ERR_NOTRUN, "ERR_NOTRUN"},
        {MSG_ERR_ABORTED, "ERR_ABORTED"},   {MSG_ERR_CANCELED, "ERR_CANCELED"},
        {MSG_ERR_SLOTDOWN, "ERR_SLOTDOWN"}, {MSG_SKIPPED, "SKIPPED"},
    };
    for (const auto& [code, text] : texts) {
        EXPECT_STREQ(resCode2str(static_cast<int>(code)), text);
    }
}

TEST(ResCodeText, IsTheNumberOfAnUnknownCode) {
    EXPECT_STREQ(resCode2str(14), "code 14");
    EXPECT_STREQ(resCode2str(77), "code 77");
    EXPECT_STREQ(resCode2str(-1), "code -1");
}

TEST(OsErrors, HaveTheTextsOfTheSystem) {
    EXPECT_EQ(GetErrorStr(ENOENT), std::strerror(ENOENT));
    EXPECT_EQ(GetErrorStr(EIO), std::strerror(EIO));
    EXPECT_NE(GetErrorStr(99999), "");
}

TEST(OsErrors, AreTheCallingThreadsOwn) {
    errno = EBADF;
    std::thread([] { errno = ENOMEM; }).join();
    EXPECT_EQ(GetLastOsErr(), EBADF);
}

TEST(MsSleep, SleepsOnTheClockOfTheHost) {
    CFakeClock clock;
    MsSleep(5);
    EXPECT_EQ(clock.NowMs(), 5U);
    MsSleep(1000);
    EXPECT_EQ(clock.NowMs(), 1005U);
    EXPECT_EQ(clock.Sleeps(), 2U);
}

TEST(DiagRand, RepeatsASequenceFromItsSeed) {
    unsigned int first = 12345;
    unsigned int second = 12345;
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(DiagRand_R(&first), DiagRand_R(&second));
    }
    EXPECT_EQ(first, second);
}

TEST(DiagRand, DependsOnNothingButItsState) {
    unsigned int state = 99;
    DiagRand_R(&state);
    unsigned int resumed = state;
    unsigned int other = 4711;
    for (int i = 0; i < 10; ++i) {
        DiagRand_R(&other);
    }
    EXPECT_EQ(DiagRand_R(&state), DiagRand_R(&resumed));
}

TEST(DiagRand, DiffersFromCallToCallAndFromSeedToSeed) {
    std::set<uint32_t> numbers;
    for (unsigned int seed = 0; seed < 4; ++seed) {
        unsigned int state = seed;
        for (int i = 0; i < 250; ++i) {
            numbers.insert(DiagRand_R(&state));
        }
    }
    EXPECT_EQ(numbers.size(), 1000U);
}

TEST(DiagRand, DoesNotCountInEqualSteps) {
    std::set<uint32_t> steps;
    unsigned int state = 1;
    uint32_t last = DiagRand_R(&state);
    for (int i = 0; i < 1000; ++i) {
        const uint32_t next = DiagRand_R(&state);
        steps.insert(next - last);
        last = next;
    }
    EXPECT_GT(steps.size(), 990U);
}

TEST(DiagRand, SpreadsItsTopByteOverAllValues) {
    std::array<unsigned int, 256> counts{};
    unsigned int state = 1;
    for (int i = 0; i < 256 * 64; ++i) {
        ++counts[DiagRand_R(&state) >> 24];
    }
    for (const unsigned int count : counts) {
        EXPECT_GT(count, 16U);
        EXPECT_LT(count, 256U);
    }
}

TEST(DiagRand, DoesNotRepeatItsTopByteInStep) {
    unsigned int state = 1;
    int repeats = 0;
    uint32_t last = DiagRand_R(&state) >> 24;
    for (int i = 0; i < 4096; ++i) {
        const uint32_t next = DiagRand_R(&state) >> 24;
        repeats += next == last ? 1 : 0;
        last = next;
    }
    EXPECT_LT(repeats, 64);
}

TEST(SendLogWithoutANode, FormatsAndSendsAsNodesDo) {
    const CLogCapture log;
    diag_pf_send_log(LW_ERR_SW, "%s: bad element at line %d\n", "dimm.xml", 7);
    EXPECT_THAT(log.Lines(),
                ElementsAre(CLogCapture::Line{0x30, "dimm.xml: bad element at line 7\n"}));
}

}  // namespace
