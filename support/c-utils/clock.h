/// \file
/// Two wall-clock scales, a start mark, and sleep. The clock is gettimeofday (POSIX): whoever sets
/// the system's time moves it. A look at it that the system refuses reads 1970-01-01 00:00:00 UTC,
/// and nothing else tells of that. On 32-bit systems whose time has 32 bits, such as Mac OS X and
/// Linux with glibc before 2.34, the clock ends on 2038-01-19.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// Unix time of 1997-01-01 00:00:00 UTC, from which the seconds scale counts.
constexpr std::int32_t TIME_BASE_SECONDS = 852076800;

/// Unix time of 2003-04-10 18:40:00 UTC, from which the millisecond counter counts.
constexpr std::int32_t MILLISECOND_BASE_SECONDS = 1050000000;

/// The time of the last start_timer() on the seconds scale; 0 before the first.
extern double timer_start_mark;

/// \return seconds since TIME_BASE_SECONDS, to the microsecond.
double current_time_seconds();

/// \return milliseconds since MILLISECOND_BASE_SECONDS modulo 2^32: for differences of less than
/// about 49 days only.
std::uint32_t current_time_milliseconds();

/// Sets timer_start_mark to now, the whole seconds wrapped to 32 bits.
void start_timer();

/// \return seconds since timer_start_mark, subtracted in double precision and rounded to single;
/// without a start_timer(), the seconds scale itself. Negative when the clock was set back.
float elapsed_time();

/// Sleeps for \p seconds, rounded to milliseconds, at most 2^31 - 1 of them. Zero, a negative
/// number and a NaN do not sleep. A sleep that a signal cuts short is not resumed.
void sleep_seconds(float seconds);

#pragma GCC visibility pop
