#include "tests/harness/program.h"

#include <array>
#include <chrono>
#include <csignal>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// The end that the program writes to, and whether the test has to close it.
struct OutputEnd {
    int descriptor;
    bool is_pipe;
};

OutputEnd output_end(int wish, int &reading_end)
{
    if (wish != ProgramOptions::captured) {
        return {wish, false};
    }
    std::array<int, 2> ends = {};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe for the program");
    }
    reading_end = ends[0];
    return {ends[1], true};
}

void close_if_pipe(OutputEnd end)
{
    if (end.is_pipe) {
        close(end.descriptor);
    }
}

/// Appends what has come. \return false at the end.
bool read_some(int descriptor, std::string &text)
{
    std::array<char, 65536> block;
    const ssize_t count = read(descriptor, block.data(), block.size());
    text.append(block.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    return count > 0;
}

int milliseconds_until(steady_clock::time_point deadline)
{
    const auto left =
        std::chrono::duration_cast<milliseconds>(deadline - steady_clock::now()).count();
    return left > 0 ? static_cast<int>(left) : 0;
}

/// Reads both to their ends, if that is before the deadline; poll passes over a -1.
void read_both(int out, int err, ProgramResult &result, steady_clock::time_point deadline)
{
    std::array<pollfd, 2> both = {{{out, POLLIN, 0}, {err, POLLIN, 0}}};
    const std::array<std::string *, 2> texts = {&result.out, &result.err};
    while (both[0].fd >= 0 || both[1].fd >= 0) {
        if (poll(both.data(), both.size(), milliseconds_until(deadline)) <= 0) {
            return;
        }
        for (std::size_t i = 0; i < both.size(); ++i) {
            if (both[i].revents != 0 && !read_some(both[i].fd, *texts[i])) {
                both[i].fd = -1;
            }
        }
    }
}

} // namespace

RunningProgram::RunningProgram(const std::vector<std::string> &arguments,
                               const ProgramOptions &options)
{
    const OutputEnd out = output_end(options.out, out_);
    const OutputEnd err = output_end(options.err, err_);
    process_ = std::make_unique<ChildProcess>(ChildCommand{arguments, options.directory,
                                                           NULL_DEVICE, out.descriptor,
                                                           err.descriptor, options.prepare});
    close_if_pipe(out);
    close_if_pipe(err);
}

RunningProgram::~RunningProgram()
{
    for (const int descriptor : {out_, err_}) {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
}

int RunningProgram::waiting_output() const
{
    int count = 0;
    ioctl(out_, FIONREAD, &count);
    return count;
}

ProgramResult RunningProgram::finish(int seconds)
{
    const auto deadline = steady_clock::now() + std::chrono::seconds(seconds);
    ProgramResult result = {-1, 0, false, {}, {}};
    read_both(out_, err_, result, deadline);
    result.timed_out = !process_->wait(milliseconds(milliseconds_until(deadline)));
    if (result.timed_out) {
        process_->signal(SIGKILL);
        process_->wait(std::chrono::seconds(5));
    }
    const int status = process_->status();
    result.exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return result;
}

ProgramResult run_program(const std::vector<std::string> &arguments, const ProgramOptions &options)
{
    return RunningProgram(arguments, options).finish();
}
