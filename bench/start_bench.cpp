// From start to exit of the program against curl's.
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "bench/harness.h"
#include "bench/server.h"

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

/// A get of a small page, by ours or by curl.
class Get {
public:
    explicit Get(bool by_curl)
        : words_(by_curl ? std::vector<std::string>{"/usr/bin/curl", "--http1.0", "--noproxy", "*",
                                                    "--silent", url()}
                         : std::vector<std::string>{CORVELLA_PROGRAM, "get", "-quiet", url()})
    {
        for (std::string &word : words_) {
            pointers_.push_back(word.data());
        }
        pointers_.push_back(nullptr);
    }
    char *const *command() const
    {
        return pointers_.data();
    }

private:
    static std::string url()
    {
        static const ForkedServer server("HTTP/1.0 200 OK\r\n\r\n", 200);
        return "http://127.0.0.1:" + std::to_string(server.port()) + "/";
    }

    std::vector<std::string> words_;
    std::vector<char *> pointers_;
};

const Agreement agreement("start to exit", [] {
    return run(our_command) && run(peer_command) && run(Get(false).command()) &&
           run(Get(true).command());
});

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

void get_page_ours(benchmark::State &state)
{
    const Get get(false);
    for (auto _ : state) {
        run(get.command());
    }
}
BENCHMARK(get_page_ours)->UseRealTime()->Unit(benchmark::kMicrosecond);

void get_page_curl(benchmark::State &state)
{
    const Get get(true);
    for (auto _ : state) {
        run(get.command());
    }
}
BENCHMARK(get_page_curl)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace
