/// \file
/// What a fuzzer does where the product is not as its model: says so and ends, so that the input is
/// kept.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/harness/quoted.h"

[[noreturn]] inline void give_up(const std::string &what)
{
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

inline void expect(bool condition, const std::string &what)
{
    if (!condition) {
        give_up("not so: " + what);
    }
}

inline void expect_equal(const std::string &actual, const std::string &expected,
                         const std::string &what)
{
    if (actual != expected) {
        give_up(what + "\nis        " + quoted(actual) + "\nshould be " + quoted(expected));
    }
}

inline void expect_equal(long long actual, long long expected, const std::string &what)
{
    expect_equal(std::to_string(actual), std::to_string(expected), what);
}
