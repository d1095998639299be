#include "tests/harness/capture.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Points one descriptor at an unlinked temporary file for as long as it lives.
class Redirection {
public:
    Redirection(std::FILE *stream, int descriptor)
        : stream_(stream), descriptor_(descriptor), file_(std::tmpfile())
    {
        if (file_ == nullptr) {
            throw std::runtime_error("no temporary file");
        }
        std::fflush(stream_);
        saved_ = dup(descriptor_);
        dup2(fileno(file_), descriptor_);
    }
    Redirection(const Redirection &) = delete;
    Redirection &operator=(const Redirection &) = delete;
    ~Redirection()
    {
        restore();
        std::fclose(file_);
    }

    void restore()
    {
        if (saved_ >= 0) {
            std::fflush(stream_);
            dup2(saved_, descriptor_);
            close(saved_);
            saved_ = -1;
        }
    }

    std::string text() const
    {
        std::string all;
        std::array<char, 65536> block;
        std::rewind(file_);
        while (const std::size_t n = std::fread(block.data(), 1, block.size(), file_)) {
            all.append(block.data(), n);
        }
        return all;
    }

private:
    std::FILE *stream_;
    int descriptor_;
    std::FILE *file_;
    int saved_ = -1;
};

[[noreturn]] void be_the_child(const std::function<void()> &action, int seconds) noexcept
{
    alarm(static_cast<unsigned>(seconds));
    action();
    std::fflush(nullptr);
    _exit(0);
}

} // namespace

CapturedOutput capture_output(const std::function<void()> &action)
{
    Redirection out(stdout, STDOUT_FILENO);
    Redirection err(stderr, STDERR_FILENO);
    action();
    out.restore();
    err.restore();
    return {out.text(), err.text()};
}

ChildResult run_in_child(const std::function<void()> &action, int seconds)
{
    Redirection out(stdout, STDOUT_FILENO);
    Redirection err(stderr, STDERR_FILENO);
    const pid_t child = fork();
    if (child == 0) {
        be_the_child(action, seconds);
    }
    if (child < 0) {
        throw std::runtime_error("no child process");
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error("the child process is lost");
        }
    }
    out.restore();
    err.restore();
    const bool exited = WIFEXITED(status);
    return {exited ? WEXITSTATUS(status) : -1, exited ? 0 : WTERMSIG(status), out.text(),
            err.text()};
}
