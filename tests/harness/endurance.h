/// \file
/// For tests that do something very often: how often, and what it left on the heap.
#pragma once

#include <cstddef>
#include <optional>

#include "tests/harness/valgrind.h"

#if defined(__SANITIZE_ADDRESS__)
#define ENDURANCE_UNDER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ENDURANCE_UNDER_ASAN 1
#endif
#endif

#if defined(ENDURANCE_UNDER_ASAN)
// Declared here because not every compiler brings the sanitizer's header along.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#elif defined(__GLIBC__)
#include <malloc.h>
#endif

/// \return \p often, or \p seldom where everything takes many times longer: with a sanitizer, and
/// under valgrind.
inline std::size_t repetitions(std::size_t often, std::size_t seldom)
{
#if defined(ENDURANCE_UNDER_ASAN)
    static_cast<void>(often);
    return seldom;
#else
    return runs_under_valgrind() ? seldom : often;
#endif
}

/// \return the bytes that the heap has given and not got back, as far as the system tells.
inline std::optional<std::size_t> allocated_bytes()
{
#if defined(ENDURANCE_UNDER_ASAN)
    return __sanitizer_get_current_allocated_bytes();
#elif defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
    const struct mallinfo2 use = mallinfo2();
    return use.uordblks + use.hblkhd;
#else
    return std::nullopt;
#endif
}
