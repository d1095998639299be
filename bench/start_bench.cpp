// From start to exit of the program against curl's.
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/harness.h"

namespace {

char *const our_command[] = {const_cast<char *>(CORVELLA_PROGRAM), const_cast<char *>("-version"),
                             nullptr};
char *const peer_command[] = {const_cast<char *>("/usr/bin/curl"), const_cast<char *>("--version"),
                              nullptr};

/// Runs a program with its output thrown away. \return whether it exited with status 0.
bool run(char *const *command)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process;
    int status = -1;
    const bool started =
        posix_spawn(&process, command[0], &actions, nullptr, command, environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    if (!started) {
        return false;
    }
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

const Agreement agreement("start to exit", [] { return run(our_command) && run(peer_command); });

void start_ours(benchmark::State &state)
{
    for (auto _ : state) {
        run(our_command);
    }
}
BENCHMARK(start_ours)->UseRealTime()->Unit(benchmark::kMicrosecond);

void start_curl(benchmark::State &state)
{
    for (auto _ : state) {
        run(peer_command);
    }
}
BENCHMARK(start_curl)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace
