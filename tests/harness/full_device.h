/// \file
/// For tests that write to /dev/full, which a Mac lacks.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

/// Skips the test where the system has no device on which there is never any room.
#define SKIP_WITHOUT_FULL_DEVICE()                                                                 \
    do {                                                                                           \
        if (access("/dev/full", W_OK) != 0) {                                                      \
            GTEST_SKIP() << "this system has no /dev/full";                                        \
        }                                                                                          \
    } while (false)
