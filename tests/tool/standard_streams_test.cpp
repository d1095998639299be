#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/harness/full_device.h"
#include "tests/harness/temporary_directory.h"
#include "tests/harness/valgrind.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

/// A device on which there is never any room.
class FullDevice {
public:
    FullDevice() : descriptor_(open("/dev/full", O_WRONLY)) {}
    FullDevice(const FullDevice &) = delete;
    FullDevice &operator=(const FullDevice &) = delete;
    ~FullDevice()
    {
        close(descriptor_);
    }
    int descriptor() const
    {
        return descriptor_;
    }

private:
    int descriptor_;
};

/// Runs each command that writes to standard output, which is the given one.
void expect_failures_with_output_to(int out)
{
    ScriptedServer page(replying(good_reply("body")));
    ScriptedServer service(replying(good_reply("Message: fine\n")));
    const Arguments cases[] = {
        {"get", url_of(page)},
        {"get", "-header", url_of(page)},
        {"post", url_of(page), "a=b"},
        {"get", "-automated", url_of(page)},
        {"get", "-verbose", url_of(page)},
        {"get", "-quiet", url_of(page)},
        {"get", url_of(page), "-output", "/dev/stdout"},
        {"update", "-product", "P", "-productline", "L", "-version", "1", "-proxy",
         proxy_of(service)},
        {"update", "-product", "P", "-productline", "L", "-version", "1", "-automated", "-proxy",
         proxy_of(service)},
        {"describe"},
        {"describe", "-automated"},
        {"-help"},
        {"-version"},
    };
    ProgramOptions options;
    options.out = out;
    for (const Arguments &arguments : cases) {
        const ProgramResult result = run_corvella(arguments, options);
        EXPECT_EQ(result.exit_status, 1) << arguments[0] << " " << arguments.back();
        EXPECT_TRUE(contains(result.err, "Error: ")) << arguments[0] << ": " << result.err;
    }
}

TEST(StandardOutput, ThatIsFullIsAFailure)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const FullDevice full;
    expect_failures_with_output_to(full.descriptor());
}

TEST(StandardOutput, ThatHasNoRoomForTheHeaderKeepsTheBodyFromItsFile)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const FullDevice full;
    const TemporaryDirectory directory;
    ScriptedServer server(replying(good_reply("body")));
    ProgramOptions options;
    options.out = full.descriptor();
    const ProgramResult result = run_corvella(
        {"get", "-header", url_of(server), "-output", directory.path("page")}, options);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "Error: Write of standard output failed: ")) << result.err;
    EXPECT_EQ(directory.names(), std::vector<std::string>{});
}

TEST(StandardOutput, ThatIsFullIsAFailureOfABodyBeyondEveryBuffer)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const FullDevice full;
    ProgramOptions options;
    options.out = full.descriptor();
    ScriptedServer server(replying(good_reply(std::string(300'000, 'x'))));
    const ProgramResult result = run_corvella({"get", url_of(server)}, options);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "No space left on device")) << result.err;
}

TEST(StandardOutput, ThatHasRoomForNoMoreThanTheHeaderIsAFailure)
{
    const TemporaryDirectory directory;
    const std::string header = "HTTP/1.0 200 OK\r\nA: " + std::string(65513, 'b') + "\r\n\r";
    ASSERT_EQ(header.size(), 65536U);
    const int log = open(directory.write("log", "").c_str(), O_WRONLY);
    ProgramOptions options;
    options.out = log;
    options.prepare = [] {
        const rlimit limit = {65536, 65536};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
    };
    ScriptedServer server(replying(header + "\nbody"));
    const ProgramResult result = run_corvella({"get", "-header", url_of(server)}, options);
    close(log);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "File too large")) << result.err;
    EXPECT_EQ(directory.read("log"), header);
}

TEST(StandardOutput, ThatIsClosedIsAFailure)
{
    if (runs_under_valgrind()) {
        GTEST_SKIP() << "what is closed is open where valgrind has started the program";
    }
    expect_failures_with_output_to(CLOSED);
}

TEST(StandardOutput, ThatIsFullIsNamedWithTheReason)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const FullDevice full;
    ProgramOptions options;
    options.out = full.descriptor();
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result = run_corvella({"get", url_of(server)}, options);
    EXPECT_TRUE(contains(result.err, "standard output")) << result.err;
    EXPECT_TRUE(contains(result.err, "No space left on device")) << result.err;
}

TEST(StandardOutput, ThatIsClosedDoesNotMatterToAnOutputFile)
{
    const TemporaryDirectory directory;
    ProgramOptions options;
    options.out = CLOSED;
    ScriptedServer server(replying(good_reply("body")));
    const ProgramResult result =
        run_corvella({"get", url_of(server), "-output", directory.path("page")}, options);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(directory.read("page"), "body");
}

// The number of a closed descriptor is given to the next one that is opened: the connection, say.
TEST(StandardOutput, ThatIsClosedSendsNothingToTheServer)
{
    for (const bool closes_input : {false, true}) {
        for (const bool closes_output : {false, true}) {
            ProgramOptions options;
            options.err = CLOSED;
            options.out = closes_output ? static_cast<int>(CLOSED) : ProgramOptions::captured;
            if (closes_input) {
                options.prepare = [] { close(STDIN_FILENO); };
            }
            ScriptedServer server({collect_request(),
                                   send_bytes("HTTP/1.0 404 Not Found\r\n\r\nbody"), half_close(),
                                   collect_to_end()});
            EXPECT_EQ(run_corvella({"get", "-verbose", url_of(server)}, options).exit_status, 1);
            const std::string request = only_request(server);
            EXPECT_EQ(request.find("\r\n\r\n") + 4, request.size()) << request;
        }
    }
}

TEST(StandardOutput, ThatIsClosedDoesNotMatterToTheNullDevice)
{
    ProgramOptions options;
    options.out = CLOSED;
    const ProgramResult result = get_into("/dev/null", "body", options);
    EXPECT_EQ(result.exit_status, 0) << result.err;
}

TEST(StandardOutput, ThatIsFullIsReportedOnce)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const FullDevice full;
    ProgramOptions options;
    options.out = full.descriptor();
    ScriptedServer server(replying(good_reply("body")));
    // The hook's half of the message is framed on standard output, which is full.
    EXPECT_EQ(run_corvella({"get", "-automated", url_of(server)}, options).err,
              "Error: Write of standard output failed: No space left on device\n");
    EXPECT_EQ(run_corvella({"get", "-header", url_of(server)}, options).err,
              error_text("Write of standard output failed: No space left on device"));
}

/// A pipe that nobody reads.
class BrokenPipe {
public:
    BrokenPipe()
    {
        int ends[2] = {};
        EXPECT_EQ(pipe(ends), 0);
        close(ends[0]);
        descriptor_ = ends[1];
    }
    BrokenPipe(const BrokenPipe &) = delete;
    BrokenPipe &operator=(const BrokenPipe &) = delete;
    ~BrokenPipe()
    {
        close(descriptor_);
    }
    int descriptor() const
    {
        return descriptor_;
    }

private:
    int descriptor_;
};

TEST(StandardOutput, ThatNobodyReadsEndsTheProgramQuietly)
{
    const BrokenPipe pipe;
    ProgramOptions options;
    options.out = pipe.descriptor();
    ScriptedServer server(replying(good_reply("Message: fine\nand more\n")));
    const std::vector<std::string> cases[] = {
        {"describe"},
        {"describe", "-automated"},
        {"-help"},
        {"-version"},
        {"get", url_of(server)},
        {"get", url_of(server), "-header"},
        {"get", url_of(server), "-output", "/dev/stdout"},
        {"post", url_of(server), "a=b", "-automated"},
        {"update", "-product", "P", "-productline", "L", "-version", "1", "-proxy",
         proxy_of(server)},
    };
    for (const std::vector<std::string> &arguments : cases) {
        const ProgramResult result = run_corvella(arguments, options);
        EXPECT_EQ(result.exit_status, 1) << arguments[0];
        EXPECT_EQ(result.err, "") << arguments[0];
    }
}

TEST(StandardError, ThatNobodyReadsDoesNotChangeTheExitStatus)
{
    const BrokenPipe pipe;
    ProgramOptions options;
    options.err = pipe.descriptor();
    EXPECT_EQ(run_corvella({"get"}, options).exit_status, 2);
}

// A reader that takes the first line only, as "head -1" does.
TEST(StandardOutput, WhoseReaderGoesAwayFailsQuietly)
{
    ScriptedServer server(replying(good_reply(std::string(1'000'000, 'x'))));
    const ProgramResult result = run_program(
        {"/bin/sh", "-c", "{ { \"$0\" get \"$1\"; echo $? >&2; } | head -c 1 >/dev/null; } 2>&1",
         corvella_path(), url_of(server)});
    EXPECT_EQ(result.out, "1\n");
}

TEST(StandardError, ThatIsClosedOrFullDoesNotChangeTheExitStatus)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const TemporaryDirectory directory;
    directory.write("page", "old");
    const FullDevice full;
    for (const int err : {static_cast<int>(CLOSED), full.descriptor()}) {
        ProgramOptions options;
        options.err = err;
        ScriptedServer good(replying(good_reply("body")));
        const ProgramResult done = run_corvella({"get", url_of(good)}, options);
        EXPECT_EQ(done.exit_status, 0);
        EXPECT_EQ(done.out, "body");
        ScriptedServer bad(replying("HTTP/1.0 404 Not Found\r\n\r\n"));
        EXPECT_EQ(run_corvella({"get", url_of(bad), "-output", directory.path("page")}, options)
                      .exit_status,
                  1);
        EXPECT_EQ(directory.read("page"), "old");
        EXPECT_EQ(run_corvella({"get"}, options).exit_status, 2);
    }
}

// Its descriptor then becomes the file's.
TEST(ClosedStandardInput, DoesNotMatter)
{
    const TemporaryDirectory directory;
    ScriptedServer server(replying(good_reply("body")));
    ProgramOptions options;
    options.prepare = [] { close(STDIN_FILENO); };
    const ProgramResult result =
        run_corvella({"get", url_of(server), "-output", directory.path("page")}, options);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(directory.read("page"), "body");
}

} // namespace
