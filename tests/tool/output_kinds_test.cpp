/// \file
/// -output with what is neither a regular file nor missing, and files that look like another.
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/harness/temporary_directory.h"
#include "tests/harness/terminal.h"
#include "tests/tool/program_under_test.h"

namespace {

using Names = std::vector<std::string>;

mode_t type_of(const std::string &path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

/// A named pipe whose reading end the test has open.
class NamedPipe {
public:
    NamedPipe()
    {
        EXPECT_EQ(mkfifo(path().c_str(), 0600), 0);
        reader_ = open(path().c_str(), O_RDONLY | O_NONBLOCK);
        EXPECT_GE(reader_, 0);
    }
    NamedPipe(const NamedPipe &) = delete;
    NamedPipe &operator=(const NamedPipe &) = delete;
    ~NamedPipe()
    {
        close(reader_);
    }
    std::string path() const
    {
        return directory_.path("pipe");
    }
    Names names() const
    {
        return directory_.names();
    }
    /// What has been written so far.
    std::string read_all() const
    {
        char bytes[4096];
        const ssize_t count = read(reader_, bytes, sizeof bytes);
        return {bytes, static_cast<std::size_t>(count > 0 ? count : 0)};
    }

private:
    TemporaryDirectory directory_;
    int reader_ = -1;
};

TEST(OutputOption, WritesDirectlyToANamedPipe)
{
    const NamedPipe pipe;
    const std::string body = "a\x1b[2J\r\nb";
    const ProgramResult result = get_into(pipe.path(), body);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(pipe.read_all(), body);
    EXPECT_EQ(type_of(pipe.path()), static_cast<mode_t>(S_IFIFO));
    EXPECT_EQ(pipe.names(), Names{"pipe"});
}

TEST(OutputOption, WritesDirectlyThroughALinkToANamedPipe)
{
    const NamedPipe pipe;
    const TemporaryDirectory directory;
    ASSERT_EQ(symlink(pipe.path().c_str(), directory.path("link").c_str()), 0);
    EXPECT_EQ(get_into(directory.path("link"), "body").exit_status, 0);
    EXPECT_EQ(pipe.read_all(), "body");
    EXPECT_EQ(type_of(directory.path("link")), static_cast<mode_t>(S_IFLNK));
    EXPECT_EQ(type_of(pipe.path()), static_cast<mode_t>(S_IFIFO));
}

TEST(OutputOption, WritesNothingToANamedPipeAfterAFailure)
{
    const NamedPipe pipe;
    ScriptedServer server(replying("HTTP/1.0 404 Not Found\r\n\r\nan error page"));
    EXPECT_EQ(run_corvella({"get", url_of(server), "-output", pipe.path()}).exit_status, 1);
    EXPECT_EQ(pipe.read_all(), "");
    EXPECT_EQ(type_of(pipe.path()), static_cast<mode_t>(S_IFIFO));
}

TEST(OutputOption, RefusesASocketAndLeavesIt)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path("s");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    std::memcpy(address.sun_path, path.c_str(), path.size());
    const int socket_of_others = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(socket_of_others, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result = run_corvella({"get", url_of(server), "-output", path});
    close(socket_of_others);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, error_text("Write of " + path + " failed: No such device or address"));
    EXPECT_EQ(server.connection_count(), 0U);
    EXPECT_EQ(type_of(path), static_cast<mode_t>(S_IFSOCK));
    EXPECT_EQ(directory.names(), Names{"s"});
}

// It is neither standard output nor standard error.
TEST(OutputOption, ShowsPrintableTextOnAnotherTerminal)
{
    Terminal terminal;
    const std::string path =
        "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(terminal.program_end());
    const ProgramResult result = get_into(path, "a\x1b[2Jb\x9b\n");
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(terminal.written(), "a?[2Jb?\r\n");
}

TEST(OutputOption, WritesEveryByteToADeviceBesideATerminal)
{
    Terminal terminal;
    const NamedPipe pipe;
    ProgramOptions options;
    options.out = terminal.program_end();
    EXPECT_EQ(get_into(pipe.path(), "a\x1b[2Jb", options).exit_status, 0);
    EXPECT_EQ(pipe.read_all(), "a\x1b[2Jb");
    EXPECT_EQ(terminal.written(), "");
}

TEST(OutputOption, ReportsAFullDeviceOnce)
{
    for (const std::size_t size : {1U, 100'000U}) {
        const ProgramResult result = get_into("/dev/full", std::string(size, 'x'));
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, error_text("Write of /dev/full failed: No space left on device"));
    }
}

TEST(OutputOption, WritesAnEmptyBodyToAFullDevice)
{
    EXPECT_EQ(get_into("/dev/full", "").exit_status, 0);
}

// Two devices of one file system.
TEST(OutputOption, TellsADeviceFromStandardOutput)
{
    const int full = open("/dev/full", O_WRONLY);
    ProgramOptions options;
    options.out = full;
    EXPECT_EQ(get_into("/dev/null", "body", options).exit_status, 0);
    close(full);
    const int null = open("/dev/null", O_WRONLY);
    options.out = null;
    EXPECT_EQ(get_into("/dev/full", "body", options).exit_status, 1);
    close(null);
}

} // namespace
