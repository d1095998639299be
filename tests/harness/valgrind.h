/// \file
/// For tests that cannot go on as usual where valgrind runs the code.
#pragma once

#include <cstdlib>
#include <cstring>

/// Whether valgrind runs this and what this starts, so that everything takes thirty times as long.
inline bool runs_under_valgrind()
{
    const char *const preloaded = std::getenv("LD_PRELOAD");
    return preloaded != nullptr && std::strstr(preloaded, "vgpreload") != nullptr;
}
