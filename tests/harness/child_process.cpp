#include "tests/harness/child_process.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace {

/// Servers are often where only the superuser's path leads.
std::string path_of_program(const std::string &name)
{
    if (name.find('/') != std::string::npos) {
        return name;
    }
    const char *const path = std::getenv("PATH");
    std::istringstream directories(std::string(path != nullptr ? path : "") +
                                   ":/usr/local/sbin:/usr/sbin:/sbin");
    for (std::string directory; std::getline(directories, directory, ':');) {
        const std::string candidate = directory + "/" + name;
        if (access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    throw std::runtime_error("this test needs " + name + ", which is not installed");
}

int highest_descriptor()
{
    int highest = STDERR_FILENO;
    DIR *const directory = opendir("/dev/fd");
    if (directory == nullptr) {
        throw std::runtime_error("the open descriptors cannot be listed");
    }
    while (const dirent *const entry = readdir(directory)) {
        highest = std::max(highest, std::atoi(entry->d_name));
    }
    closedir(directory);
    return highest;
}

void take_descriptor(int source, int target)
{
    if (source == CLOSED) {
        close(target);
    } else {
        dup2(source == NULL_DEVICE ? open("/dev/null", O_RDWR) : source, target);
    }
}

void restore_signals()
{
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXFSZ, SIGCHLD}) {
        std::signal(number, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void become(const ChildCommand &command, const char *path, char *const *arguments,
                         int highest)
{
    // The copies are beyond 2, so that no one of the three overwrites another's source.
    const int in = command.in >= 0 ? fcntl(command.in, F_DUPFD, 3) : command.in;
    const int out = command.out >= 0 ? fcntl(command.out, F_DUPFD, 3) : command.out;
    const int err = command.err >= 0 ? fcntl(command.err, F_DUPFD, 3) : command.err;
    take_descriptor(in, STDIN_FILENO);
    take_descriptor(out, STDOUT_FILENO);
    take_descriptor(err, STDERR_FILENO);
    for (int descriptor = STDERR_FILENO + 1; descriptor <= highest + 8; ++descriptor) {
        close(descriptor);
    }
    restore_signals();
    if (!command.directory.empty() && chdir(command.directory.c_str()) != 0) {
        _exit(127);
    }
    if (command.prepare) {
        command.prepare();
    }
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    execv(path, arguments);
    _exit(127);
}

} // namespace

ChildProcess::ChildProcess(const ChildCommand &command)
{
    const std::string path = path_of_program(command.arguments.at(0));
    std::vector<std::string> copies = command.arguments;
    std::vector<char *> arguments;
    for (std::string &argument : copies) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    const int highest = highest_descriptor();
    pid_ = fork();
    if (pid_ == 0) {
        become(command, path.c_str(), arguments.data(), highest);
    }
    if (pid_ < 0) {
        throw std::runtime_error("no process for " + path);
    }
}

ChildProcess::~ChildProcess()
{
    if (!ended_) {
        signal(SIGKILL);
        waitpid(pid_, &status_, 0);
    }
}

void ChildProcess::signal(int number) const
{
    if (!ended_) {
        kill(pid_, number);
    }
}

bool ChildProcess::wait(std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!ended_) {
        ended_ = waitpid(pid_, &status_, WNOHANG) == pid_;
        if (!ended_ && std::chrono::steady_clock::now() >= deadline) {
            break;
        }
        if (!ended_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    return ended_;
}

void ChildProcess::stop(std::chrono::milliseconds limit)
{
    signal(SIGTERM);
    if (!wait(limit)) {
        signal(SIGKILL);
        wait(limit);
    }
}
