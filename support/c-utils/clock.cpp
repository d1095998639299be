#include "support/c-utils/clock.h"

#include <cmath>
#include <ctime>
#include <sys/time.h>

double timer_start_mark = 0.0;

namespace {

constexpr double seconds_per_microsecond = 0.000001;

timeval now()
{
    timeval time = {};
    gettimeofday(&time, nullptr);
    return time;
}

/// \p milliseconds rounded half up to an integer, as far as 32 bits go; a NaN counts as 0.
std::int32_t whole_milliseconds(float milliseconds)
{
    const double rounded = static_cast<double>(milliseconds) + 0.5;
    if (rounded >= 2147483647.0) {
        return INT32_MAX;
    }
    if (rounded <= -2147483648.0) {
        return INT32_MIN;
    }
    return !std::isnan(rounded) ? static_cast<std::int32_t>(rounded) : 0;
}

} // namespace

double current_time_seconds()
{
    const timeval time = now();
    // Subtracted as doubles, which hold both exactly and cannot overflow.
    return static_cast<double>(time.tv_sec) - TIME_BASE_SECONDS +
           static_cast<double>(time.tv_usec) * seconds_per_microsecond;
}

std::uint32_t current_time_milliseconds()
{
    const timeval time = now();
    constexpr std::uint32_t base = MILLISECOND_BASE_SECONDS;
    return (static_cast<std::uint32_t>(time.tv_sec) - base) * 1000u +
           static_cast<std::uint32_t>(time.tv_usec / 1000);
}

void start_timer()
{
    const timeval time = now();
    // Deliberately 32 bits: a start beyond them falls back by 2^32 seconds.
    const std::int32_t seconds = static_cast<std::int32_t>(
        static_cast<std::uint32_t>(time.tv_sec) - static_cast<std::uint32_t>(TIME_BASE_SECONDS));
    timer_start_mark = seconds + static_cast<double>(time.tv_usec) * seconds_per_microsecond;
}

float elapsed_time()
{
    return static_cast<float>(current_time_seconds() - timer_start_mark);
}

void sleep_seconds(float seconds)
{
    const std::int32_t milliseconds = whole_milliseconds(seconds * 1000.0f);
    timespec time = {};
    time.tv_sec = milliseconds / 1000;
    time.tv_nsec = milliseconds % 1000 * 1000000L;
    nanosleep(&time, nullptr);
}
