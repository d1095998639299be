/// \file
/// -output to devices, terminals and pipes.
/// Tests tool/output_file.cpp.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/harness/full_device.h"
#include "tests/harness/temporary_directory.h"
#include "tests/harness/terminal.h"
#include "tests/tool/program_under_test.h"

namespace {

bool is_device(const std::string &path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 && S_ISCHR(status.st_mode);
}

TEST(OutputDevice, ATerminalGetsPrintableText)
{
    for (const char *const path : {"/dev/tty", "/dev/stdout"}) {
        Terminal terminal;
        ScriptedServer server(replying(good_reply("a\x1b[2Jb\n")));
        ProgramOptions options;
        options.out = terminal.program_end();
        options.err = terminal.program_end();
        options.prepare = [&terminal] { terminal.become_controlling(); };
        const ProgramResult result =
            run_corvella({"get", "-quiet", url_of(server), "-output", path}, options);
        EXPECT_EQ(result.exit_status, 0);
        EXPECT_EQ(terminal.written(), "a?[2Jb\r\n") << path;
    }
}

TEST(OutputDevice, AFullDeviceIsAFailureAndStaysADevice)
{
    SKIP_WITHOUT_FULL_DEVICE();
    const ProgramResult result = get_into("/dev/full", "body");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "/dev/full")) << result.err;
    EXPECT_TRUE(contains(result.err, "No space left on device")) << result.err;
    EXPECT_TRUE(is_device("/dev/full"));
}

TEST(OutputDevice, ChecksTheTerminalBeforeTheRequest)
{
    ScriptedServer server(replying(good_reply("body")));
    ProgramOptions options;
    options.prepare = [] { setsid(); }; // which has no terminal
    const ProgramResult result =
        run_corvella({"get", url_of(server), "-output", "/dev/tty"}, options);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(contains(result.err, "Write of /dev/tty failed: ")) << result.err;
    EXPECT_EQ(server.connection_count(), 0U);
}

// More than a pipe holds, so that the program is still writing when the reader goes.
TEST(OutputDevice, APipeWhoseReaderGoesAwayFailsQuietly)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo(directory.path("pipe").c_str(), 0600), 0);
    ScriptedServer server(replying(good_reply(std::string(1'000'000, 'x'))));
    const ProgramResult result = run_program(
        {"/bin/sh", "-c", "head -c 1 \"$2\" >/dev/null & \"$0\" get \"$1\" -output \"$2\"",
         corvella_path(), url_of(server), directory.path("pipe")});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.err, "");
}

TEST(OutputDevice, ADeviceIsWrittenTo)
{
    EXPECT_EQ(get_into("/dev/null", "body").exit_status, 0);
    EXPECT_TRUE(is_device("/dev/null"));
    EXPECT_EQ(get_into("/dev/stdout", "body").out, "body");
}

} // namespace
