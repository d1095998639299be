/// \file
/// What code under test writes, read back from the real file descriptors.
#pragma once

#include <functional>
#include <string>

/// The bytes written to descriptors 1 and 2.
struct CapturedOutput {
    std::string out;
    std::string err;
};

/// Runs \p action with descriptors 1 and 2 pointing at files; flushes stdout and stderr before and
/// after, so that nothing of another test's output slips in. Restores both also when it throws.
CapturedOutput capture_output(const std::function<void()> &action);

/// How a child process ended, and what it wrote.
struct ChildResult {
    int exit_status; ///< -1 when a signal ended it
    int signal;      ///< 0 when it exited
    std::string out;
    std::string err;
};

/// Runs \p action in a forked child, which exits with status 0 when \p action returns. An uncaught
/// exception ends it by std::terminate, as in the program. A child that takes longer than
/// \p seconds is killed. No other thread may be using the heap meanwhile: the child would find it
/// locked where a sanitizer guards it.
ChildResult run_in_child(const std::function<void()> &action, int seconds = 30);
