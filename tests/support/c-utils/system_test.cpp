// Tests support/c-utils/system_version_none.cpp.
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/c-utils.h"
#include "support/error.h"
#include "tests/harness/capture.h"

namespace {

constexpr std::size_t margin = 16;

const std::string behind(margin, '#');

std::string own_command_line()
{
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// What get_process_command_line() made of a buffer of \p size bytes filled with '#'.
struct CommandLine {
    bool found;
    std::string buffer;
};

CommandLine command_line(std::size_t size, long process)
{
    std::string area(size + margin, '#');
    const char *result = get_process_command_line(area.data(), size, process);
    EXPECT_TRUE(result == nullptr || result == area.data());
    EXPECT_EQ(area.substr(size), behind) << size;
    return {result != nullptr, area.substr(0, size)};
}

/// A shell with a command line of the test's choice that waits for its end.
class Shell {
public:
    explicit Shell(std::vector<std::string> arguments)
    {
        int to_shell[2];
        int started[2];
        if (pipe(to_shell) != 0 || pipe(started) != 0) {
            return;
        }
        for (const int end : {to_shell[0], to_shell[1], started[0], started[1]}) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
        }
        std::vector<char *> vector;
        for (std::string &argument : arguments) {
            vector.push_back(argument.data());
        }
        vector.push_back(nullptr);
        id_ = fork();
        if (id_ == 0) {
            alarm(60);
            dup2(to_shell[0], STDIN_FILENO);
            execv("/bin/sh", vector.data());
            _exit(127);
        }
        close(to_shell[0]);
        close(started[1]);
        char byte = 0; // the pipe closes when the shell has taken the child's place
        (void)!read(started[0], &byte, 1);
        close(started[0]);
        input_ = to_shell[1];
    }
    Shell(const Shell &) = delete;
    Shell &operator=(const Shell &) = delete;
    ~Shell()
    {
        end();
        if (id_ > 0) {
            waitpid(id_, nullptr, 0);
        }
    }

    long id() const
    {
        return id_;
    }

    /// Lets the shell end, and waits until it has, but leaves it unburied.
    void end()
    {
        if (input_ >= 0) {
            close(input_);
            input_ = -1;
            siginfo_t info;
            waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOWAIT);
        }
    }

private:
    pid_t id_ = -1;
    int input_ = -1;
};

const char *const wait_for_input = "read line";

TEST(OsName, IsMacOsXInNineBytes)
{
    char buffer[9 + 2];
    std::memset(buffer, '#', sizeof buffer);
    get_os_name(buffer);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string("Mac OS X\0##", 11));
}

#if !defined(__APPLE__)

struct VersionCase {
    std::size_t size;
    const char *text;
};

const VersionCase version_cases[] = {
    {100, "unknown"}, {9, "unknown"}, {8, "unknown"}, {7, "unknow"}, {4, "unk"}, {2, "u"}, {1, ""},
};

TEST(OsVersion, IsUnknownAwayFromMacOsXCutToTheBuffer)
{
    for (const VersionCase &c : version_cases) {
        std::string area(c.size + margin, '#');
        EXPECT_EQ(get_os_version(area.data(), c.size), area.data());
        EXPECT_STREQ(area.c_str(), c.text) << c.size;
        EXPECT_EQ(area[c.size - 1], '\0') << c.size;
        EXPECT_EQ(area.substr(c.size), behind) << c.size;
    }
}

#endif

TEST(OsVersion, LeavesABufferOfNoBytesAlone)
{
    std::string area(margin, '#');
    EXPECT_EQ(get_os_version(area.data(), 0), area.data());
    EXPECT_EQ(area, behind);
}

TEST(HostName, IsTheOneOfTheSystem)
{
    char expected[256] = "";
    ASSERT_EQ(gethostname(expected, sizeof expected), 0);
    char buffer[256];
    get_host_name(buffer, sizeof buffer);
    EXPECT_STREQ(buffer, expected);
}

TEST(HostName, IsCutToABufferThatIsTooShort)
{
    char expected[256] = "";
    ASSERT_EQ(gethostname(expected, sizeof expected), 0);
    for (std::size_t size = 1; size <= std::strlen(expected) + 2; ++size) {
        std::string area(size + margin, '#');
        get_host_name(area.data(), size);
        EXPECT_EQ(area[size - 1], '\0') << size;
        EXPECT_EQ(area.substr(size), behind) << size;
    }
}

TEST(ProcessCommandLine, OfThisProcessKeepsTheNulBytesBetweenTheArguments)
{
    const std::string expected = own_command_line();
    ASSERT_FALSE(expected.empty());
    const CommandLine seen = command_line(expected.size() + 100, 0);
    EXPECT_TRUE(seen.found);
    EXPECT_EQ(seen.buffer.substr(0, expected.size()), expected);
    EXPECT_EQ(seen.buffer[expected.size()], '\0');
}

TEST(ProcessCommandLine, OfThisProcessIsTheSameByItsNumber)
{
    const std::string expected = own_command_line();
    const CommandLine seen = command_line(expected.size() + 1, getpid());
    EXPECT_TRUE(seen.found);
    EXPECT_EQ(seen.buffer, expected + '\0');
}

TEST(ProcessCommandLine, IsCutToTheBufferAndTerminated)
{
    const std::string expected = own_command_line();
    for (std::size_t size = 2; size <= expected.size() + 3; ++size) {
        const CommandLine seen = command_line(size, 0);
        const std::size_t read = size - 1 < expected.size() ? size - 1 : expected.size();
        EXPECT_TRUE(seen.found) << size;
        EXPECT_EQ(seen.buffer.substr(0, read + 1), expected.substr(0, read) + '\0') << size;
    }
}

TEST(ProcessCommandLine, HasNoRoomInABufferOfOneByte)
{
    const CommandLine seen = command_line(1, 0);
    EXPECT_FALSE(seen.found);
    EXPECT_EQ(seen.buffer, std::string(1, '\0'));
}

TEST(ProcessCommandLine, LeavesABufferOfNoBytesAlone)
{
    EXPECT_FALSE(command_line(0, 0).found);
    EXPECT_FALSE(command_line(0, getpid()).found);
}

TEST(ProcessCommandLine, OfAnotherProcessHoldsAllItsArguments)
{
    const Shell shell({"a shell of \x80 ours", "-c", wait_for_input, "", "last %s\n"});
    const std::string expected =
        std::string("a shell of \x80 ours\0-c\0read line\0\0last %s\n\0", 41);
    const CommandLine seen = command_line(200, shell.id());
    ASSERT_TRUE(seen.found);
    EXPECT_EQ(seen.buffer.substr(0, 42), expected + '\0');
    EXPECT_STREQ(seen.buffer.c_str(), "a shell of \x80 ours");
}

TEST(ProcessCommandLine, IsReadWholeWhenItIsLong)
{
    const std::string argument(100000, 'x');
    const Shell shell({"sh", "-c", wait_for_input, argument});
    const std::string expected = std::string("sh\0-c\0read line\0", 16) + argument + '\0';
    EXPECT_EQ(command_line(expected.size() + 1, shell.id()).buffer, expected + '\0');
    EXPECT_EQ(command_line(65536, shell.id()).buffer, expected.substr(0, 65535) + '\0');
}

TEST(ProcessCommandLine, ThatBeginsWithAnEmptyArgumentIsNotFound)
{
    const Shell shell({"", "-c", wait_for_input});
    const CommandLine seen = command_line(100, shell.id());
    EXPECT_FALSE(seen.found);
    EXPECT_EQ(seen.buffer[0], '\0');
}

TEST(ProcessCommandLine, OfAProcessThatHasEndedIsNotFound)
{
    Shell shell({"sh", "-c", wait_for_input});
    EXPECT_TRUE(command_line(100, shell.id()).found);
    shell.end();
    const CommandLine seen = command_line(100, shell.id());
    EXPECT_FALSE(seen.found);
    EXPECT_EQ(seen.buffer[0], '\0');
}

TEST(ProcessCommandLine, OfNoProcessIsNotFoundAndTheBufferIsEmpty)
{
    for (const long process : {999999999L, -1L, -2L, LONG_MAX, LONG_MIN}) {
        const CommandLine seen = command_line(100, process);
        EXPECT_FALSE(seen.found) << process;
        EXPECT_EQ(seen.buffer[0], '\0') << process;
    }
}

TEST(ProcessCommandLine, ReportsNothing)
{
    const std::int32_t before = message_count();
    const CapturedOutput output = capture_output([] {
        command_line(100, 999999999L);
        command_line(100, 0);
    });
    EXPECT_EQ(output.out + output.err, "");
    EXPECT_EQ(message_count(), before);
}

TEST(ProcessCommandLine, LeavesNoFileOpen)
{
    const int before = dup(STDIN_FILENO);
    close(before);
    for (const std::size_t size : {0U, 1U, 2U, 100U}) {
        command_line(size, 0);
        command_line(size, 999999999L);
    }
    const int after = dup(STDIN_FILENO);
    close(after);
    EXPECT_EQ(after, before);
}

} // namespace
