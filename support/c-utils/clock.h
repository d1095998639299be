/// \file
/// Two wall-clock scales, a timer, and sleep.
///
/// The clock is gettimeofday (POSIX): setting the system's time moves it. If gettimeofday fails,
/// the time is 1970-01-01 00:00:00 UTC, without a report. On 32-bit systems with a 32-bit time_t,
/// such as Mac OS X and Linux with glibc before 2.34, the clock ends on 2038-01-19.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Unix time of 1997-01-01 00:00:00 UTC, the origin of the seconds scale.
constexpr std::int32_t TIME_BASE_SECONDS = 852076800;

/// Unix time of 2003-04-10 18:40:00 UTC, the origin of the millisecond counter.
constexpr std::int32_t MILLISECOND_BASE_SECONDS = 1050000000;

/// The time of the last start_timer() on the seconds scale; 0 before the first.
extern double timer_start_mark;

/// Returns the current time on the seconds scale.
/// \return seconds since TIME_BASE_SECONDS, to the microsecond.
double current_time_seconds();

/// Returns the millisecond counter, which wraps: use it for differences below about 49 days.
/// \return milliseconds since MILLISECOND_BASE_SECONDS modulo 2^32.
std::uint32_t current_time_milliseconds();

/// Sets timer_start_mark to now, the whole seconds wrapped to 32 bits.
void start_timer();

/// Returns the seconds since timer_start_mark, subtracted in double and rounded to single
/// precision.
/// \return the seconds; negative if the clock was set back. Without a start_timer(), the time on
/// the seconds scale.
float elapsed_time();

/// Sleeps for some seconds. A sleep that a signal interrupts is not resumed.
/// \param seconds rounded to milliseconds, at most 2^31 - 1 of them; zero, a negative number and a
///     NaN return immediately
void sleep_seconds(float seconds);

#pragma GCC visibility pop
