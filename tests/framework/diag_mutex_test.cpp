#include "framework/diag_mutex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/thrown_text.h"

// Some tests misuse a mutex on purpose; the thread sanitizer, which asks this
// function, shall go on looking for races but not object to that.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
    return "report_mutex_bugs=0";
}

namespace {

using testing::MatchesRegex;

constexpr timespec LONG_AGO{1, 0};

// Runs `code` on another thread to its end.
template <class Code>
void OnAnotherThread(Code code) {
    std::thread(code).join();
}

// Whether another thread could have the mutex now.
bool IsFree(CMutex& mutex) {
    bool acquired = false;
    OnAnotherThread([&] {
        acquired = mutex.Acquire(&LONG_AGO);
        if (acquired) {
            mutex.Release();
        }
    });
    return acquired;
}

TEST(Mutex, IsFreeUntilAcquiredAndAfterRelease) {
    CMutex mutex;
    EXPECT_TRUE(IsFree(mutex));
    EXPECT_TRUE(mutex.Acquire());
    EXPECT_FALSE(IsFree(mutex));
    mutex.Release();
    EXPECT_TRUE(IsFree(mutex));
}

TEST(Mutex, TimedAcquireTakesAFreeMutexWhateverTheTime) {
    CMutex mutex;
    EXPECT_TRUE(mutex.Acquire(&LONG_AGO));
    EXPECT_FALSE(IsFree(mutex));
    mutex.Release();
}

TEST(Mutex, TimedAcquireGivesUpOnATakenMutexWhenTheTimeHasPassed) {
    CMutex mutex;
    mutex.Acquire();
    bool acquired = true;
    OnAnotherThread([&] { acquired = mutex.Acquire(&LONG_AGO); });
    EXPECT_FALSE(acquired);
    mutex.Release();
}

TEST(Mutex, LockingTwiceIsAnAssertionFailureAndTheLockStays) {
    CMutex mutex;
    mutex.Acquire();
    EXPECT_THAT(ThrownText([&] { mutex.Acquire(); }),
                MatchesRegex("lib/Threads:[0-9]+ Assert failed "
                             "\\(!::pthread_mutex_lock\\(&m_lock\\)\\)"));
    EXPECT_FALSE(IsFree(mutex));
    mutex.Release();
    EXPECT_TRUE(IsFree(mutex));
}

TEST(Mutex, TimedLockingTwiceIsAnAssertionFailureToo) {
    CMutex mutex;
    mutex.Acquire();
    EXPECT_THAT(ThrownText([&] { mutex.Acquire(&LONG_AGO); }),
                MatchesRegex("lib/Threads:[0-9]+ Assert failed .*"));
    mutex.Release();
}

TEST(Mutex, ReleaseByAnotherThreadIsAnAssertionFailureAndTheLockStays) {
    CMutex mutex;
    mutex.Acquire();
    std::string text;
    OnAnotherThread([&] { text = ThrownText([&] { mutex.Release(); }); });
    EXPECT_THAT(text, MatchesRegex("lib/Threads:[0-9]+ Assert failed "
                                   "\\(!::pthread_mutex_unlock\\(&m_lock\\)\\)"));
    EXPECT_FALSE(IsFree(mutex));
    mutex.Release();
}

TEST(Mutex, ReleaseOfAFreeMutexIsAnAssertionFailure) {
    CMutex mutex;
    EXPECT_THAT(ThrownText([&] { mutex.Release(); }),
                MatchesRegex("lib/Threads:[0-9]+ Assert failed "
                             "\\(!::pthread_mutex_unlock\\(&m_lock\\)\\)"));
}

TEST(Guard, HoldsTheMutexForItsScope) {
    CMutex mutex;
    {
        const CGuard<CMutex> guard(mutex);
        EXPECT_FALSE(IsFree(mutex));
    }
    EXPECT_TRUE(IsFree(mutex));
}

TEST(Guard, ReleasesWhenAnExceptionLeavesItsScope) {
    CMutex mutex;
    EXPECT_THROW(
        {
            const CGuard<CMutex> guard(mutex);
            throw std::runtime_error("leaves");
        },
        std::runtime_error);
    EXPECT_TRUE(IsFree(mutex));
}

TEST(Guard, OfATakenMutexFailsAndReleasesNothing) {
    CMutex mutex;
    const CGuard<CMutex> outer(mutex);
    EXPECT_THROW({ const CGuard<CMutex> inner(mutex); }, CDiagException);
    EXPECT_FALSE(IsFree(mutex));
}

TEST(Guard, ReportsThatItsMutexWasReleasedBehindItsBack) {
    CMutex mutex;
    EXPECT_THAT(ThrownText([&] {
                    const CGuard<CMutex> guard(mutex);
                    mutex.Release();
                }),
                MatchesRegex(".*Assert failed \\(!::pthread_mutex_unlock\\(&m_lock\\)\\)"));
}

TEST(Guard, LetsAnExceptionOnItsWayGoFirst) {
    CMutex mutex;
    EXPECT_THROW(
        {
            const CGuard<CMutex> guard(mutex);
            mutex.Release();
            throw std::runtime_error("goes first");
        },
        std::runtime_error);
}

TEST(Guard, LetsOneThreadInAtATime) {
    constexpr int ROUNDS = 20000;
    CMutex mutex;
    int count = 0;
    const auto work = [&] {
        for (int i = 0; i < ROUNDS; ++i) {
            const CGuard<CMutex> guard(mutex);
            ++count;
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(count, 2 * ROUNDS);
}

}  // namespace
