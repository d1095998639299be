// Formatting, the machine and the clocks with every call failing in turn; see tests/failures.
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/c-utils.h"
#include "support/error.h"
#include "tests/failures/failure_scenario.h"
#include "tests/web/fake_network.h"

namespace {

char *text;
char area[32];
int result;
string_buffer buffer;
const std::string long_text(5000, 'x');

std::string text_outcome()
{
    const std::string outcome = text != nullptr ? text : "no text";
    checked_free(text);
    text = nullptr;
    return outcome;
}

/// An error of the formatter gives an empty text, but for a text that no int can count; without
/// memory there is none.
std::string no_formatted_text(const Failure &failure)
{
    if (failure.call == Call::Malloc) {
        return "std::bad_alloc no text";
    }
    const bool measuring = failure.number == 1;
    return measuring && failure.error == EOVERFLOW ? "std::bad_alloc no text" : "";
}

FailureScenario short_text()
{
    return {"FormatShortText",
            {"format_string_new", "format_string_alloc"},
            {Call::Malloc, Call::Format},
            nullptr,
            [] { text = format_string_new("%s %d", "disk", 7); },
            text_outcome,
            "disk 7",
            no_formatted_text};
}

FailureScenario long_formatted_text()
{
    return {"FormatLongText",
            {"format_string_new", "format_string_alloc"},
            {Call::Malloc, Call::Format},
            nullptr,
            [] { text = format_string_new("%.300s", long_text.c_str()); },
            text_outcome,
            std::string(300, 'x'),
            no_formatted_text};
}

/// The bytes as letters and how often each stands there, which is shorter to look at.
std::string runs_of(const std::string &bytes)
{
    std::string runs;
    for (std::size_t i = 0, end; i < bytes.size(); i = end) {
        end = std::min(bytes.find_first_not_of(bytes[i], i), bytes.size());
        runs +=
            (bytes[i] == '\0' ? "NUL" : std::string(1, bytes[i])) + std::to_string(end - i) + " ";
    }
    return runs;
}

void prepare_buffer()
{
    string_buffer_append_format(&buffer, "old");
}

std::string buffer_outcome()
{
    const std::string outcome = runs_of(std::string(buffer.data, buffer.length + 1));
    string_buffer_free(&buffer);
    return outcome;
}

/// The buffer keeps what it has when memory is exhausted or the text is too long to be counted. Any
/// other error counts as a full area, which begins with what was formatted.
std::string appended(const Failure &failure)
{
    if (failure.call == Call::Realloc || (failure.number == 1 && failure.error == EOVERFLOW)) {
        return "std::bad_alloc o1 l1 d1 NUL1 ";
    }
    return failure.number == 1 ? "o1 l1 d1 NUL4096 " : "o1 l1 d1 x4094 NUL2 ";
}

FailureScenario short_append()
{
    return {"AppendShortText",
            {"string_buffer_append_format"},
            {Call::Realloc, Call::Format},
            prepare_buffer,
            [] { string_buffer_append_format(&buffer, "%200d", 7); },
            buffer_outcome,
            "o1 l1 d1  199 71 NUL1 ",
            appended};
}

FailureScenario long_append()
{
    return {"AppendLongText",
            {"string_buffer_append_format"},
            {Call::Realloc, Call::Format},
            prepare_buffer,
            [] { string_buffer_append_format(&buffer, "%s", long_text.c_str()); },
            buffer_outcome,
            "o1 l1 d1 x5000 NUL1 ",
            appended};
}

void prepare_area()
{
    std::memset(area, 'Z', sizeof area);
    area[sizeof area - 1] = '\0';
    result = -99;
}

std::string area_outcome()
{
    return std::to_string(result) + " " + area;
}

const std::string untouched_area(sizeof area - 1, 'Z');

FailureScenario bounded_text()
{
    return {"FormatBoundedText",
            {"format_string_bounded"},
            {Call::Format},
            prepare_area,
            [] { result = format_string_bounded(area, 8, "%s %d", "disk", 7); },
            area_outcome,
            "6 disk 7",
            [](const Failure &) -> std::string { return "-1 "; }};
}

/// The texts of dates cannot fail to be formed; if they did, the buffer would stay as it was.
FailureScenario date_text(const char *name, const char *function, void (*call)(), const char *date)
{
    return {name,
            {function},
            {Call::Format},
            prepare_area,
            call,
            area_outcome,
            std::string("-99 ") + date,
            [](const Failure &) { return "-99 " + untouched_area; }};
}

FailureScenario insertion()
{
    return {"InsertString",
            {"insert_string_into_string"},
            {Call::Print},
            [] { std::strcpy(area, "ac"); },
            [] { insert_string_into_string("b", area, 1); },
            [] { return area + std::string("\n"); },
            "abc\ninsert_string_into_string: abc \n",
            [](const Failure &) -> std::string { return "abc\n"; },
            true};
}

FailureScenario refused_insertion()
{
    return {"InsertStringAtABadPlace",
            {"insert_string_into_string"},
            {Call::Print},
            [] { std::strcpy(area, "ac"); },
            [] { insert_string_into_string("b", area, 3); },
            [] { return area + std::string("\n"); },
            "ac\ninsert_string_into_string: bad location 3, into_string length 2 \n",
            [](const Failure &) -> std::string { return "ac\n"; },
            true};
}

FailureScenario bell()
{
    return {"RingBell",
            {"ring_bell"},
            {Call::Print},
            nullptr,
            [] { ring_bell(); },
            [] { return std::string("rung "); },
            "rung \a",
            [](const Failure &) -> std::string { return "rung "; },
            true};
}

FailureScenario host_name()
{
    return {"HostName",
            {"get_host_name"},
            {Call::Hostname},
            prepare_area,
            [] { get_host_name(area, sizeof area); },
            [] { return std::string(area[0] != '\0' ? "a name" : "none"); },
            "a name",
            [](const Failure &) -> std::string { return "none"; }};
}

/// Null when nothing was read. A failure to read on or to close loses nothing that was read.
FailureScenario command_line()
{
    return {"ProcessCommandLine",
            {"get_process_command_line"},
            {Call::Fopen, Call::Fread, Call::Fclose, Call::Format},
            [] {
                prepare_area();
                text = nullptr;
            },
            [] { text = get_process_command_line(area, 5, 0); },
            [] {
                const bool found = text == area && std::strlen(area) == 4;
                const bool none = text == nullptr && area[0] == '\0';
                text = nullptr;
                return std::string(found ? "four bytes" : none ? "none" : "neither");
            },
            "four bytes",
            [](const Failure &failure) -> std::string {
                const bool read = failure.call == Call::Fclose ||
                                  (failure.call == Call::Fread && failure.number > 1);
                return read ? "four bytes" : "none";
            }};
}

FailureScenario sleep()
{
    return {"SleepSeconds",
            {"sleep_seconds"},
            {Call::Sleep},
            nullptr,
            [] { sleep_seconds(0.001F); },
            [] { return std::string("back"); },
            "back",
            [](const Failure &) -> std::string { return "back"; }};
}

// The clock of this program is the replaced network's. One that fails reads the start of 1970.

constexpr std::int64_t clock_ms = INT64_C(1735689600125);

void set_clock()
{
    network.clock_ms = clock_ms;
}

FailureScenario seconds_scale()
{
    static double seconds;
    return {"CurrentTimeSeconds",
            {"current_time_seconds"},
            {Call::Clock},
            set_clock,
            [] { seconds = current_time_seconds(); },
            [] { return std::to_string(seconds); },
            "883612800.125000",
            [](const Failure &) -> std::string { return "-852076800.000000"; }};
}

FailureScenario millisecond_counter()
{
    static std::uint32_t milliseconds;
    constexpr std::int64_t base_ms = INT64_C(1050000000000);
    return {
        "CurrentTimeMilliseconds",
        {"current_time_milliseconds"},
        {Call::Clock},
        set_clock,
        [] { milliseconds = current_time_milliseconds(); },
        [] { return std::to_string(milliseconds); },
        std::to_string(static_cast<std::uint32_t>(clock_ms - base_ms)),
        [](const Failure &) { return std::to_string(static_cast<std::uint32_t>(0 - base_ms)); }};
}

FailureScenario timer_start()
{
    return {
        "StartTimer",          {"start_timer"},
        {Call::Clock},         set_clock,
        [] { start_timer(); }, [] { return std::to_string(timer_start_mark); },
        "883612800.125000",    [](const Failure &) -> std::string { return "-852076800.000000"; }};
}

FailureScenario timer_reading()
{
    static float seconds;
    return {"ElapsedTime",
            {"elapsed_time"},
            {Call::Clock},
            [] {
                timer_start_mark = 883612797.125;
                set_clock();
            },
            [] { seconds = elapsed_time(); },
            [] { return std::to_string(seconds); },
            "3.000000",
            [](const Failure &) {
                return std::to_string(static_cast<float>(-852076800.0 - 883612797.125));
            }};
}

/// A failed clock reads one second before 1970; a year that cannot be held counts as 0.
FailureScenario today()
{
    return {"TodayDayNumber",
            {"today_day_number"},
            {Call::Time, Call::Localtime},
            [] {
                setenv("TZ", "UTC0", 1);
                failing_calls.now = 1735689600; // 1 January 2025
            },
            [] { result = today_day_number(); },
            [] { return std::to_string(result); },
            "2460677", // 16 years and 4 leap days behind 1 January 2009, day 2454833
            [](const Failure &failure) -> std::string {
                return failure.call == Call::Time ? "2440587" : "0";
            }};
}

} // namespace

std::vector<FailureScenario> c_utils_scenarios()
{
    return {
        short_text(),
        long_formatted_text(),
        short_append(),
        long_append(),
        bounded_text(),
        date_text(
            "FormatDateLong", "format_date_long", [] { format_date_long(2451545, area); },
            "1-jan-2000"),
        date_text(
            "FormatDateCompact", "format_date_compact", [] { format_date_compact(2451545, area); },
            "1jan00"),
        insertion(),
        refused_insertion(),
        bell(),
        host_name(),
        command_line(),
        sleep(),
        seconds_scale(),
        millisecond_counter(),
        timer_start(),
        timer_reading(),
        today(),
    };
}
