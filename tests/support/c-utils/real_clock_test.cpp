// The clocks and the sleep against the system's own clock.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <gtest/gtest.h>
#include <sys/time.h>

#include "support/c-utils.h"

namespace {

std::int64_t unix_microseconds()
{
    timeval now{};
    gettimeofday(&now, nullptr);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000 + now.tv_usec;
}

double steady_seconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

TEST(RealClock, SecondsLieBetweenTwoReadingsOfTheSystemsClock)
{
    for (int i = 0; i < 1000; ++i) {
        const std::int64_t before = unix_microseconds();
        const double seconds = current_time_seconds();
        const std::int64_t after = unix_microseconds();
        const double microseconds = (seconds + 852076800.0) * 1e6;
        ASSERT_GE(microseconds, static_cast<double>(before) - 1.0);
        ASSERT_LE(microseconds, static_cast<double>(after) + 1.0);
    }
}

TEST(RealClock, MillisecondsLieBetweenTwoReadingsOfTheSystemsClock)
{
    for (int i = 0; i < 1000; ++i) {
        const std::int64_t before = unix_microseconds() / 1000;
        const std::uint32_t milliseconds = current_time_milliseconds();
        const std::int64_t after = unix_microseconds() / 1000;
        const std::uint32_t since =
            milliseconds - static_cast<std::uint32_t>(before - INT64_C(1050000000000));
        ASSERT_LE(static_cast<std::int64_t>(since), after - before);
    }
}

TEST(RealClock, ElapsedTimeIsCloseToZeroRightAfterTheStart)
{
    start_timer();
    const float elapsed = elapsed_time();
    EXPECT_GE(elapsed, 0.0F);
    EXPECT_LT(elapsed, 10.0F);
}

TEST(RealClock, SleepTakesAtLeastItsTime)
{
    const double before = steady_seconds();
    sleep_seconds(0.05F);
    const double slept = steady_seconds() - before;
    EXPECT_GE(slept, 0.0499);
    EXPECT_LT(slept, 20.0);
}

TEST(RealClock, SleepOfNothingOrLessComesBackAtOnce)
{
    const double before = steady_seconds();
    for (const float seconds : {0.0F, 0.0004F, -1.0F, -1e30F}) {
        sleep_seconds(seconds);
    }
    EXPECT_LT(steady_seconds() - before, 10.0);
}

TEST(RealClock, SleepCutShortByASignalComesBack)
{
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    ASSERT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
    const itimerval again_and_again = {{0, 50000}, {0, 50000}};
    ASSERT_EQ(setitimer(ITIMER_REAL, &again_and_again, nullptr), 0);
    const double before = steady_seconds();
    sleep_seconds(60.0F);
    const double slept = steady_seconds() - before;
    const itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
    std::signal(SIGALRM, SIG_DFL);
    EXPECT_LT(slept, 30.0);
}

} // namespace
