// The clocks and the sleep under a clock of the tests' own: this program's gettimeofday() and
// nanosleep() stand in for the system's.
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <sys/time.h>
#include <time.h> // NOLINT(modernize-deprecated-headers): nanosleep() is POSIX, not C++

#include "support/c-utils.h"
#include "tests/harness/libc_noexcept.h"

namespace {

timeval clock_now;

struct SleepCall {
    int count;
    timespec request;
    bool asked_for_remainder;
};

SleepCall sleep_call;
int sleep_error;

} // namespace

extern "C" int gettimeofday(timeval *__restrict result, void *__restrict) LIBC_NOEXCEPT
{
    *result = clock_now;
    return 0;
}

extern "C" int nanosleep(const timespec *request, timespec *remainder)
{
    ++sleep_call.count;
    sleep_call.request = *request;
    sleep_call.asked_for_remainder = remainder != nullptr;
    if (sleep_error == 0) {
        return 0;
    }
    errno = sleep_error;
    return -1;
}

namespace {

// Taken while the program starts, before any test has run.
const double mark_at_start = timer_start_mark;

constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();

void set_clock(std::int64_t seconds, int microseconds)
{
    clock_now.tv_sec = static_cast<decltype(clock_now.tv_sec)>(seconds);
    clock_now.tv_usec = microseconds;
}

class Clock : public testing::Test {
protected:
    Clock()
    {
        timer_start_mark = 0.0;
    }
};

TEST_F(Clock, BasesAreTheNewYearOf1997AndAnEveningOf2003)
{
    tm new_year{};
    new_year.tm_year = 97;
    new_year.tm_mday = 1;
    EXPECT_EQ(timegm(&new_year), TIME_BASE_SECONDS);
    tm evening{};
    evening.tm_year = 103;
    evening.tm_mon = 3;
    evening.tm_mday = 10;
    evening.tm_hour = 18;
    evening.tm_min = 40;
    EXPECT_EQ(timegm(&evening), MILLISECOND_BASE_SECONDS);
}

struct SecondsCase {
    std::int64_t seconds;
    int microseconds;
    double expected;
};

const SecondsCase seconds_cases[] = {
    {852076800, 0, 0.0},
    {852076800, 1, 0.000001},
    {852076800, 999999, 0.999999},
    {852076801, 500000, 1.5},
    {852076799, 0, -1.0},
    {852076799, 250000, -0.75},
    {1735689600, 125000, 883612800.125},
    {0, 0, -852076800.0},
    {-1, 500000, -852076800.5},
    {-2000000000, 250000, -2852076799.75},
    {least, 0, -2999560448.0},
    {greatest, 999999, 1295406847.999999},
#if !defined(__i386__) || defined(_TIME_BITS)
    {4102444800, 500000, 3250368000.5}, // 2100
#endif
};

TEST_F(Clock, SecondsCountFromTheirBaseToTheMicrosecond)
{
    for (const SecondsCase &c : seconds_cases) {
        set_clock(c.seconds, c.microseconds);
        EXPECT_DOUBLE_EQ(current_time_seconds(), c.expected) << c.seconds << " " << c.microseconds;
    }
}

TEST_F(Clock, SecondsTellNeighbouringMicrosecondsApart)
{
    set_clock(1735689600, 123456);
    const double first = current_time_seconds();
    set_clock(1735689600, 123457);
    EXPECT_GT(current_time_seconds(), first);
    EXPECT_NEAR(current_time_seconds() - first, 0.000001, 0.0000002);
}

struct MillisecondsCase {
    std::int64_t seconds;
    int microseconds;
    std::uint32_t expected;
};

const MillisecondsCase milliseconds_cases[] = {
    {1050000000, 0, 0},
    {1050000000, 999, 0},
    {1050000000, 1000, 1},
    {1050000000, 1999, 1},
    {1050000000, 999999, 999},
    {1050000001, 0, 1000},
    {1052147483, 647000, 2147483647},
    {1052147483, 648000, 2147483648U},
    {1054294967, 295999, 4294967295U},
    {1054294967, 296000, 0}, // one whole turn
    {1054294968, 296000, 1000},
    {1049999999, 999999, 4294967295U},
    {1049999999, 0, 4294966296U},
    {0, 0, 2266987520U}, // 245 turns less 1,050,000,000,000 milliseconds
    {greatest, 0, 2266986520U},
    {least, 0, 2266987520U},
};

TEST_F(Clock, MillisecondsCountFromTheirBaseAndWrapAt32Bits)
{
    for (const MillisecondsCase &c : milliseconds_cases) {
        set_clock(c.seconds, c.microseconds);
        EXPECT_EQ(current_time_milliseconds(), c.expected) << c.seconds << " " << c.microseconds;
    }
}

TEST_F(Clock, MillisecondsOfADifferenceHoldAcrossTheWrap)
{
    set_clock(1054294966, 0);
    const std::uint32_t before = current_time_milliseconds();
    set_clock(1054294968, 500000);
    EXPECT_EQ(current_time_milliseconds() - before, 2500U);
}

TEST_F(Clock, SecondsScaleAnswersForTheLeastSecondsCountWithoutOverflow)
{
    set_clock(least, 0);
    EXPECT_TRUE(std::isfinite(current_time_seconds()));
    EXPECT_TRUE(std::isfinite(elapsed_time()));
}

TEST_F(Clock, StartTimerWrapsTheLeastSecondsCountAt32Bits)
{
    set_clock(least, 0);
    start_timer();
    EXPECT_EQ(timer_start_mark, 1295406848.0); // 2^32 above -2,999,560,448
}

TEST_F(Clock, MarkIsZeroBeforeTheFirstStart)
{
    EXPECT_EQ(mark_at_start, 0.0);
}

TEST_F(Clock, StartTimerSetsTheMarkOnTheSecondsScale)
{
    set_clock(852076900, 250000);
    start_timer();
    EXPECT_DOUBLE_EQ(timer_start_mark, 100.25);
    set_clock(852076700, 0);
    start_timer();
    EXPECT_DOUBLE_EQ(timer_start_mark, -100.0);
}

TEST_F(Clock, StartTimerTakesTheSecondsAs32Bits)
{
    if (sizeof(clock_now.tv_sec) == 4) {
        GTEST_SKIP() << "this system's seconds end before";
    }
    // Deliberate: 2,147,483,648 seconds after the base the mark falls back by 2^32.
    set_clock(INT64_C(2999560447), 0);
    start_timer();
    EXPECT_EQ(timer_start_mark, 2147483647.0);
    set_clock(INT64_C(2999560448), 0);
    start_timer();
    EXPECT_EQ(timer_start_mark, -2147483648.0);
    EXPECT_EQ(current_time_seconds(), 2147483648.0);
}

TEST_F(Clock, ElapsedTimeIsZeroRightAfterTheStart)
{
    set_clock(1735689600, 999999);
    start_timer();
    EXPECT_EQ(elapsed_time(), 0.0F);
}

TEST_F(Clock, ElapsedTimeIsTheDifferenceInSinglePrecision)
{
    set_clock(1735689600, 750000);
    start_timer();
    set_clock(1735689604, 250000);
    EXPECT_EQ(elapsed_time(), 3.5F);
    set_clock(1735689599, 750000);
    EXPECT_EQ(elapsed_time(), -1.0F);
}

TEST_F(Clock, ElapsedTimeIsRoundedOnlyAfterTheSubtraction)
{
    // In single precision the two moments, near 884 million, would be the same.
    set_clock(1735689600, 0);
    start_timer();
    set_clock(1735689600, 1000);
    EXPECT_NEAR(elapsed_time(), 0.001F, 0.0000003F);
}

TEST_F(Clock, ElapsedTimeIsTheSecondsScaleItselfWithoutAStart)
{
    set_clock(852076800 + 16777217, 0); // the first whole number that a float cannot hold
    EXPECT_EQ(elapsed_time(), 16777216.0F);
    set_clock(1735689600, 0); // 883,612,800, which a float holds
    EXPECT_EQ(elapsed_time(), 883612800.0F);
}

TEST_F(Clock, ElapsedTimeDoesNotMoveTheMark)
{
    set_clock(1735689600, 0);
    start_timer();
    for (int second = 1; second <= 5; ++second) {
        set_clock(1735689600 + second, 0);
        EXPECT_EQ(elapsed_time(), static_cast<float>(second));
    }
}

TEST_F(Clock, ElapsedTimeUsesAMarkThatTheCallerHasSet)
{
    set_clock(852076810, 0);
    timer_start_mark = 2.5;
    EXPECT_EQ(elapsed_time(), 7.5F);
}

class Sleep : public testing::Test {
protected:
    Sleep()
    {
        sleep_call = {};
        sleep_error = 0;
    }
};

struct SleepCase {
    float seconds;
    long whole;
    long nanoseconds;
};

const SleepCase sleep_cases[] = {
    {0.0005F, 0, 1000000},
    {0.001F, 0, 1000000},
    {0.0014F, 0, 1000000},
    {0.0016F, 0, 2000000},
    {0.1F, 0, 100000000},
    {0.999F, 0, 999000000},
    // The product with 1000 is 999.5 in single precision, but a little less in double.
    {0.9995F, 1, 0},
    // The product is 8,388,609; in single precision, adding 0.5 would make it 8,388,610.
    {8388.609F, 8388, 609000000},
    // The system refuses these. Rounding half up and truncating: -2,500 becomes -2,499.
    {-0.0015F, 0, -1000000},
    {-2.5F, -2, -499000000},
    {-1e30F, -2147483, -648000000},
    {1.0F, 1, 0},
    {1.25F, 1, 250000000},
    {2.5F, 2, 500000000},
    {59.999F, 59, 999000000},
    {3600.0F, 3600, 0},
    {16777.0F, 16777, 0},
    // Single precision has steps of 128 milliseconds here: 2,147,483,500 becomes ...,520.
    {2147483.5F, 2147483, 520000000},
};

TEST_F(Sleep, IsOneCallWithTheSecondsRoundedToMilliseconds)
{
    for (const SleepCase &c : sleep_cases) {
        sleep_call = {};
        sleep_seconds(c.seconds);
        EXPECT_EQ(sleep_call.count, 1) << c.seconds;
        EXPECT_EQ(sleep_call.request.tv_sec, c.whole) << c.seconds;
        EXPECT_EQ(sleep_call.request.tv_nsec, c.nanoseconds) << c.seconds;
    }
}

TEST_F(Sleep, AsksForNoRemainder)
{
    sleep_seconds(2.5F);
    EXPECT_EQ(sleep_call.count, 1);
    EXPECT_FALSE(sleep_call.asked_for_remainder);
}

TEST_F(Sleep, OfLessThanHalfAMillisecondIsNone)
{
    for (const float seconds : {0.0F, -0.0F, 0.0004F, 0.00049F, 1e-30F, -0.0004F, -0.001F,
                                std::numeric_limits<float>::denorm_min()}) {
        sleep_call = {};
        sleep_seconds(seconds);
        EXPECT_LE(sleep_call.count, 1) << seconds;
        EXPECT_EQ(sleep_call.request.tv_sec, 0) << seconds;
        EXPECT_EQ(sleep_call.request.tv_nsec, 0) << seconds;
    }
}

TEST_F(Sleep, OfANegativeTimeIsNone)
{
    sleep_error = EINVAL;
    for (const float seconds :
         {-0.002F, -1.0F, -2.5F, -1e6F, -1e30F, std::numeric_limits<float>::lowest(), -HUGE_VALF}) {
        sleep_call = {};
        sleep_seconds(seconds);
        EXPECT_LE(sleep_call.count, 1) << seconds;
        const timespec request = sleep_call.request;
        EXPECT_TRUE(request.tv_sec <= 0 && request.tv_nsec <= 0) << seconds;
    }
}

TEST_F(Sleep, OfNotANumberIsNone)
{
    sleep_seconds(std::numeric_limits<float>::quiet_NaN());
    const timespec request = sleep_call.request;
    EXPECT_TRUE(request.tv_sec <= 0 && request.tv_nsec <= 0);
}

TEST_F(Sleep, SaturatesAtTheGreatestMillisecondCount)
{
    for (const float seconds : {2147483.75F, 2147484.0F, 3000000.0F, 4294967.5F, 1e10F, 1e30F,
                                std::numeric_limits<float>::max(), HUGE_VALF}) {
        sleep_call = {};
        sleep_seconds(seconds);
        EXPECT_EQ(sleep_call.count, 1) << seconds;
        EXPECT_EQ(sleep_call.request.tv_sec, 2147483) << seconds;
        EXPECT_EQ(sleep_call.request.tv_nsec, 647000000) << seconds;
    }
}

TEST_F(Sleep, ThatASignalCutsShortIsNotResumed)
{
    sleep_error = EINTR;
    sleep_seconds(2.5F);
    EXPECT_EQ(sleep_call.count, 1);
}

} // namespace
