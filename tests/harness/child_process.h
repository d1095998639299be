/// \file
/// A program run as a child of the test.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

/// What stands for a descriptor of the child that is not one of the test's.
enum { NULL_DEVICE = -1, CLOSED = -2 };

struct ChildCommand {
    std::vector<std::string> arguments; ///< the first is the program: its path, or found in PATH
    std::string directory = {};         ///< where it starts; empty: where the test is
    int in = NULL_DEVICE;               ///< the descriptors that become 0, 1 and 2
    int out = NULL_DEVICE;
    int err = NULL_DEVICE;
    /// Called in the child just before the program is loaded; may only make system calls.
    std::function<void()> prepare = {};
};

/// Starts with default signals and, but for 0, 1 and 2, no descriptors of the test. It dies with
/// the thread that made it.
class ChildProcess {
public:
    /// \throws std::runtime_error when the program is not there or cannot be started.
    explicit ChildProcess(const ChildCommand &command);
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;
    /// Kills it if it still runs.
    ~ChildProcess();

    pid_t pid() const
    {
        return pid_;
    }
    void signal(int number) const;
    /// Waits at most \p limit for its end. \return whether it has ended.
    bool wait(std::chrono::milliseconds limit);
    /// How it ended, as waitpid() tells it.
    int status() const
    {
        return status_;
    }
    /// SIGTERM, and SIGKILL when that does not end it within \p limit.
    void stop(std::chrono::milliseconds limit);

private:
    pid_t pid_;
    bool ended_ = false;
    int status_ = 0;
};
