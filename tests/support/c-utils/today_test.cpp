// Today's date under a clock of the tests' own: this program's time() and gettimeofday() stand in
// for the system's. Time zones are set in child processes.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "support/c-utils.h"
#include "tests/harness/capture.h"
#include "tests/harness/set_clock.h"

namespace {

constexpr std::time_t new_year_2009 = 1230768000; // in UTC; day 2454833
constexpr std::time_t hour = 3600;
constexpr std::time_t day = 86400;

/// \return what a fresh process in \p zone takes for today at \p moment.
std::string today_in(const char *zone, std::time_t moment)
{
    return run_in_child([&] {
               setenv("TZ", zone, 1);
               clock_now = moment;
               std::printf("%ld", static_cast<long>(today_day_number()));
           })
        .out;
}

struct TodayCase {
    const char *zone;
    std::time_t moment;
    const char *expected;
};

const TodayCase today_cases[] = {
    {"UTC0", new_year_2009 - 1, "2454832"},
    {"UTC0", new_year_2009, "2454833"},
    {"UTC0", new_year_2009 + day - 1, "2454833"},
    {"UTC0", new_year_2009 + day, "2454834"},
    // 14 hours before and 12 hours behind.
    {"AAA-14", new_year_2009 - 14 * hour - 1, "2454832"},
    {"AAA-14", new_year_2009 - 14 * hour, "2454833"},
    {"BBB12", new_year_2009 + 12 * hour - 1, "2454832"},
    {"BBB12", new_year_2009 + 12 * hour, "2454833"},
    {"CCC-5:45", new_year_2009 - 20700 - 1, "2454832"},
    {"CCC-5:45", new_year_2009 - 20700, "2454833"},
    // 2 July 2009, day 2455015, in daylight saving time: four hours behind, not five.
    {"EST5EDT,M3.2.0,M11.1.0", new_year_2009 + 182 * day + 4 * hour - 1, "2455014"},
    {"EST5EDT,M3.2.0,M11.1.0", new_year_2009 + 182 * day + 4 * hour, "2455015"},
    // A leap day, and the day behind it.
    {"UTC0", 1204243200, "2454526"},
    {"UTC0", 1204243200 + day - 1, "2454526"},
    {"UTC0", 1204243200 + day, "2454527"},
    // The ends of what 32 bits count, and the epoch.
    {"UTC0", 0, "2440588"},
    {"UTC0", -day, "2440587"},
    {"UTC0", 2147483647, "2465443"},
    {"UTC0", -2147483647, "2415732"},
};

TEST(Today, IsTheDayNumberOfTheLocalDate)
{
    for (const TodayCase &c : today_cases) {
        EXPECT_EQ(today_in(c.zone, c.moment), c.expected) << c.zone << " " << c.moment;
    }
}

TEST(Today, FollowsAClockThatGoesOnWhileTheProgramRuns)
{
    const ChildResult child = run_in_child([] {
        setenv("TZ", "UTC0", 1);
        clock_now = new_year_2009 - 1;
        std::printf("%ld ", static_cast<long>(today_day_number()));
        clock_now = new_year_2009;
        std::printf("%ld", static_cast<long>(today_day_number()));
    });
    EXPECT_EQ(child.out, "2454832 2454833");
}

TEST(Today, FollowsATimeZoneThatChangesWhileTheProgramRuns)
{
    const ChildResult child = run_in_child([] {
        clock_now = new_year_2009;
        setenv("TZ", "UTC0", 1);
        std::printf("%ld ", static_cast<long>(today_day_number()));
        setenv("TZ", "BBB12", 1);
        std::printf("%ld", static_cast<long>(today_day_number()));
    });
    EXPECT_EQ(child.out, "2454833 2454832");
}

#if !defined(__i386__) || defined(_TIME_BITS)
TEST(Today, IsRightAfter2038)
{
    EXPECT_EQ(today_in("UTC0", std::time_t{INT64_C(2147483648)}), "2465443");
    EXPECT_EQ(today_in("UTC0", std::time_t{INT64_C(4102444800)}), "2488070") << "2100-01-01";
}
#endif

TEST(Today, IsDefinedForEveryClock)
{
    using limits = std::numeric_limits<std::time_t>;
    // The last second that a broken-down year can hold lies between the greatest values.
    const std::int64_t last_second = INT64_C(67768036191676799);
    for (const std::int64_t moment : {std::int64_t{limits::max()}, std::int64_t{limits::min()},
                                      last_second, -last_second, INT64_C(253402300800)}) {
        if (moment > limits::max() || moment < limits::min()) {
            continue;
        }
        EXPECT_EQ(run_in_child([&] {
                      setenv("TZ", "UTC0", 1);
                      clock_now = static_cast<std::time_t>(moment);
                      today_day_number();
                  }).exit_status,
                  0)
            << moment;
    }
}

TEST(Today, IsZeroWhenTheYearCannotBeHeld)
{
    using limits = std::numeric_limits<std::time_t>;
    if (sizeof(std::time_t) == 4) {
        GTEST_SKIP() << "this system's time ends before";
    }
    EXPECT_EQ(today_in("UTC0", limits::max()), "0");
    EXPECT_EQ(today_in("UTC0", limits::min()), "0");
}

TEST(Today, GoesOnBeyondTheYear9999)
{
    if (sizeof(std::time_t) == 4) {
        GTEST_SKIP() << "this system's time ends before";
    }
    EXPECT_EQ(today_in("UTC0", static_cast<std::time_t>(INT64_C(253402300800))), "5373485");
}

} // namespace
