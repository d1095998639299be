/// \file
/// A clock of the test's own: the program that includes this has time() and gettimeofday()
/// replaced. Include it in one source of a program only.
#pragma once

#include <ctime>
#include <sys/time.h>

#include "tests/harness/libc_noexcept.h"

/// What the clock says, and the microseconds beside it.
inline std::time_t clock_now = 1'000'000'000;
inline long clock_microseconds = 0;

extern "C" std::time_t time(std::time_t *result) LIBC_NOEXCEPT
{
    if (result != nullptr) {
        *result = clock_now;
    }
    return clock_now;
}

extern "C" int gettimeofday(timeval *__restrict result, void *__restrict) LIBC_NOEXCEPT
{
    result->tv_sec = clock_now;
    result->tv_usec = static_cast<suseconds_t>(clock_microseconds);
    return 0;
}
