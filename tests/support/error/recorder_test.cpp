// The time-stamp recorder under a clock of the tests' own: this program's time() and gettimeofday()
// stand in for the system's.
#include <cstdlib>
#include <ctime>
#include <limits>
#include <string>

#include "support/error.h"
#include "support/error/internal.h"
#include "tests/harness/capture.h"
#include "tests/harness/set_clock.h"
#include "tests/support/error/facility_test.h"

namespace {

// Taken while the program starts, before any test has run.
using corvella::recorder;
const corvella::recorder_state state_at_start = recorder;

constexpr int stamp = 24 + 2; // the calendar form and ": "

class Recorder : public FacilityTest {
protected:
    Recorder()
    {
        clock_now = 1'000'000'000;
        clock_microseconds = 999999; // whole seconds are read, not rounded ones
        recorder = {0.0, 0};
    }
};

void record_at(std::time_t moment)
{
    clock_now = moment;
    record_timestamped_line("line");
}

TEST_F(Recorder, StartsWithNoTimeAndNoCount)
{
    EXPECT_EQ(state_at_start.last_time, 0.0);
    EXPECT_EQ(state_at_start.burst_count, 0U);
}

TEST_F(Recorder, CountsTheFirstLineAsOne)
{
    record_at(1'000'000'000);
    EXPECT_EQ(recorder.burst_count, 1U);
}

TEST_F(Recorder, BeginsANewBurstWithTheFirstLineOfALaterTime)
{
    recorder = {0.0, 17};
    record_at(1'000'000'000);
    EXPECT_EQ(recorder.burst_count, 1U);
}

TEST_F(Recorder, KeepsTheTimeInWholeSeconds)
{
    record_at(1'234'567'890);
    EXPECT_EQ(recorder.last_time, 1234567890.0);
}

TEST_F(Recorder, GoesOnCountingExactly60SecondsLater)
{
    record_at(1'000'000'000);
    record_at(1'000'000'060);
    EXPECT_EQ(recorder.burst_count, 2U);
}

TEST_F(Recorder, CountsFromOneAgain61SecondsLater)
{
    record_at(1'000'000'000);
    record_at(1'000'000'061);
    EXPECT_EQ(recorder.burst_count, 1U);
}

TEST_F(Recorder, MeasuresTheGapFromThePreviousLineNotFromTheFirst)
{
    for (int line = 1; line <= 20; ++line) {
        record_at(1'000'000'000 + 60 * line);
        EXPECT_EQ(recorder.burst_count, static_cast<unsigned>(line));
    }
    EXPECT_EQ(recorder.last_time, 1000001200.0);
}

TEST_F(Recorder, StoresTheTimeAlsoWhenItBeginsANewBurst)
{
    record_at(1'000'000'000);
    record_at(1'000'000'061);
    record_at(1'000'000'121);
    EXPECT_EQ(recorder.burst_count, 2U);
}

TEST_F(Recorder, CountsOnWhenTheClockIsSetBack)
{
    record_at(1'000'000'000);
    record_at(900'000'000);
    EXPECT_EQ(recorder.burst_count, 2U);
    EXPECT_EQ(recorder.last_time, 900000000.0);
    record_at(900'000'061);
    EXPECT_EQ(recorder.burst_count, 1U);
}

TEST_F(Recorder, TakesTheSixtiethSecondOfTheEpochForTheSameBurst)
{
    recorder = {0.0, 5};
    record_at(60);
    EXPECT_EQ(recorder.burst_count, 6U);
    recorder = {0.0, 5};
    record_at(61);
    EXPECT_EQ(recorder.burst_count, 1U);
}

TEST_F(Recorder, WrapsItsCounterAt32Bits)
{
    recorder = {1'000'000'000.0, 0xFFFFFFFFU};
    record_at(1'000'000'000);
    EXPECT_EQ(recorder.burst_count, 0U);
}

TEST_F(Recorder, ReturnsTheLengthOfTheRecordWithoutItsNewline)
{
    EXPECT_EQ(record_timestamped_line("line"), stamp + 4);
    EXPECT_EQ(record_timestamped_line(""), stamp);
    EXPECT_EQ(record_timestamped_line("%s%n%d"), stamp + 6);
    EXPECT_EQ(record_timestamped_line("\x80\xff"), stamp + 2);
}

TEST_F(Recorder, WritesADayOfOneFigureIn24CharactersToo)
{
    clock_now = 1230768000 + 4 * 86400 + 43200; // 5 January 2009, at noon UTC
    EXPECT_EQ(record_timestamped_line("line"), stamp + 4);
    clock_now = 0;
    EXPECT_EQ(record_timestamped_line("line"), stamp + 4);
}

struct EndCase {
    const char *text;
    int kept;
};

const EndCase end_cases[] = {
    {"a\n", 1},      {"a\r", 1},  {"a\r\n", 1},  {"a\n\r", 1}, {"a\n\n\r\r\n\r", 1},
    {"\r\n\r\n", 0}, {"\n", 0},   {"\r", 0},     {"a\nb", 3},  {"a\r\nb\r\n", 4},
    {"\r\na", 3},    {"a \n", 2}, {"a\n \n", 3}, {"a\t\n", 2}, {"a\v\n", 2},
};

TEST_F(Recorder, DropsCarriageReturnsAndLineFeedsInAnyMixFromTheEnd)
{
    for (const EndCase &c : end_cases) {
        EXPECT_EQ(record_timestamped_line(c.text), stamp + c.kept) << c.text;
    }
}

TEST_F(Recorder, KeepsAtMost4056CharactersOfTheText)
{
    for (const std::size_t length : {4055U, 4056U, 4057U, 4058U, 4095U, 4096U, 4097U, 100000U}) {
        const int kept = length < 4056 ? static_cast<int>(length) : 4056;
        EXPECT_EQ(record_timestamped_line(many(length).c_str()), stamp + kept) << length;
    }
}

TEST_F(Recorder, DropsTheLineEndsBeforeItCapsTheText)
{
    EXPECT_EQ(record_timestamped_line((many(4056) + "\r\n\r\n").c_str()), stamp + 4056);
    EXPECT_EQ(record_timestamped_line((many(10) + many(8000, '\n')).c_str()), stamp + 10);
    // Deliberate: a line feed that the cap brings to the end stays.
    EXPECT_EQ(record_timestamped_line((many(4055) + "\nb").c_str()), stamp + 4056);
}

TEST_F(Recorder, WritesNothingAnywhere)
{
    const CapturedOutput output = capture_output([] { record_timestamped_line("line\n"); });
    EXPECT_EQ(output.err + output.out, "");
}

TEST_F(Recorder, DoesNotCountMessages)
{
    const std::int32_t before = message_count();
    record_timestamped_line("line");
    EXPECT_EQ(message_count(), before);
}

TEST_F(Recorder, IsPassedOnceByAMessageOfEveryLevel)
{
    set_message_hook([](int, const char *) -> int { return 0; });
    for (int level = -1; level <= 11; ++level) {
        recorder = {1'000'000'000.0, 40};
        capture_output([&] { report_message(level, "disk"); });
        EXPECT_EQ(recorder.burst_count, 41U) << level;
    }
}

TEST_F(Recorder, HasBeenPassedWhenTheMessageHookIsCalled)
{
    static std::uint32_t count_in_hook;
    set_message_hook([](int, const char *) -> int {
        count_in_hook = recorder.burst_count;
        return 0;
    });
    recorder = {1'000'000'000.0, 40};
    capture_output([] { report_message(9, "disk"); });
    EXPECT_EQ(count_in_hook, 41U);
}

TEST_F(Recorder, IsPassedByARawMessageBeforeTheOutputHookIsCalled)
{
    static std::uint32_t count_in_hook;
    set_output_hook([](const char *, const char *) -> int {
        count_in_hook = recorder.burst_count;
        return 0;
    });
    recorder = {1'000'000'000.0, 40};
    write_raw_message("raw", "tag");
    EXPECT_EQ(count_in_hook, 41U);
    EXPECT_EQ(recorder.burst_count, 41U);
}

TEST_F(Recorder, IsNotTouchedByAnEmptyRawMessage)
{
    recorder = {5.0, 40};
    write_raw_message("", "tag");
    EXPECT_EQ(recorder.burst_count, 40U);
    EXPECT_EQ(recorder.last_time, 5.0);
}

TEST_F(Recorder, IsNotTouchedByPrintedTextNorByTheHooks)
{
    recorder = {5.0, 40};
    capture_output([] {
        print_indented("text\n");
        default_message_hook(9, "text");
        default_output_hook("text", "tag");
        test_message_hook(9, "text");
        test_output_hook("text", "tag");
    });
    char buffer[100];
    format_message_line(9, "text", buffer, 100);
    EXPECT_EQ(recorder.burst_count, 40U);
    EXPECT_EQ(recorder.last_time, 5.0);
}

TEST_F(Recorder, IsPassedTwiceByAFailedAssertion)
{
    recorder = {1'000'000'000.0, 40};
    capture_output(
        [] { EXPECT_THROW(assertion_failed("a > b", "a.cpp", 1), CorvellaAbortException); });
    EXPECT_EQ(recorder.burst_count, 42U);
}

TEST_F(Recorder, HoldsForEveryTimeOf32Bits)
{
    for (const std::int32_t moment : {std::numeric_limits<std::int32_t>::min(), -1, 0, 1,
                                      std::numeric_limits<std::int32_t>::max()}) {
        clock_now = moment;
        EXPECT_EQ(record_timestamped_line("line"), stamp + 4) << moment;
        EXPECT_EQ(recorder.last_time, static_cast<double>(moment));
    }
}

TEST_F(Recorder, KeepsTo24CharactersForYearsThatTheyCannotHold)
{
    if (sizeof(std::time_t) == 4) {
        GTEST_SKIP() << "this system's time ends before";
    }
    for (const std::int64_t moment :
         {INT64_C(253402300800), INT64_C(67768036191676799),
          std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        clock_now = static_cast<std::time_t>(moment);
        EXPECT_EQ(record_timestamped_line("line"), stamp + 4) << moment;
        EXPECT_EQ(record_timestamped_line(many(5000).c_str()), stamp + 4056) << moment;
    }
}

} // namespace
