/// \file
/// What the replaced calls do for each other. Internal to corvella_failing_calls.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tests/harness/failing_calls.h"

/// Notes a call. \return whether it fails; errno, or h_errno, says why then.
bool fails(Call call, bool shrinks = false);

/// Notes what was taken while calls are watched: a block, or a stream or directory of size 0.
/// \return \p thing.
void *hold(void *thing, std::size_t size = 0);

constexpr std::size_t not_held = SIZE_MAX;

/// Notes what is given back. \return the size that it was held with, or not_held.
std::size_t let_go(const void *thing);
