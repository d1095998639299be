/// \file
/// A program run to its end, with what it wrote.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/harness/child_process.h"

struct ProgramOptions {
    std::string directory = {}; ///< where it starts; empty: where the test is
    /// Where its output goes instead of into the result: a descriptor, NULL_DEVICE or CLOSED.
    int out = captured;
    int err = captured;
    /// Called in the child just before the program is loaded; may only make system calls.
    std::function<void()> prepare = {};

    static constexpr int captured = -3;
};

struct ProgramResult {
    int exit_status; ///< -1 when a signal ended it
    int signal;      ///< 0 when it exited
    bool timed_out;  ///< whether it had to be killed
    std::string out;
    std::string err;
};

/// One that runs beside the test, until its output is asked for or this is destroyed.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string> &arguments,
                            const ProgramOptions &options = {});
    RunningProgram(const RunningProgram &) = delete;
    RunningProgram &operator=(const RunningProgram &) = delete;
    ~RunningProgram();

    ChildProcess &process()
    {
        return *process_;
    }
    /// How many bytes of its standard output nobody has read yet. A program whose pipe is full
    /// waits until finish() reads it.
    int waiting_output() const;
    /// Reads all that it writes until it ends; kills it after \p seconds.
    ProgramResult finish(int seconds = 60);

private:
    /// The reading ends of the pipes, or -1.
    int out_ = -1;
    int err_ = -1;
    std::unique_ptr<ChildProcess> process_;
};

/// Runs a program with its arguments, of which the first is its path; kills it after a minute.
ProgramResult run_program(const std::vector<std::string> &arguments,
                          const ProgramOptions &options = {});
