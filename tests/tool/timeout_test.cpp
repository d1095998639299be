#include <chrono>
#include <gtest/gtest.h>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/program_under_test.h"

namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

ProgramResult run_timeout_program(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), TIMEOUT_PROGRAM);
    return run_program(arguments, {});
}

/// Runs the program against a server that sends \p sent and then stays silent.
ProgramResult run_into_silence(const std::string &sent, const std::vector<std::string> &more)
{
    ScriptedServer server({collect_form(), send_bytes(sent), stay_silent()});
    std::vector<std::string> arguments = {"get", url_of(server)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const auto start = steady_clock::now();
    ProgramResult result = run_timeout_program(arguments);
    const auto taken = steady_clock::now() - start;
    EXPECT_GE(taken, std::chrono::milliseconds(TIMEOUT_MILLISECONDS));
    EXPECT_LT(taken, seconds(25));
    return result;
}

TEST(TimeOut, EndsTheWaitForTheHeaderAfterTenSeconds)
{
    const ProgramResult result = run_into_silence("", {});
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "Error: Timeout waiting for web site")) << result.err;
}

TEST(TimeOut, EndsTheWaitForTheBodyAfterTenSeconds)
{
    const TemporaryDirectory directory;
    directory.write("page", "old");
    const ProgramResult result =
        run_into_silence(good_reply("half"), {"-output", directory.path("page")});
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_TRUE(contains(result.err, "Error: Timeout waiting for web site")) << result.err;
    EXPECT_EQ(directory.read("page"), "old");
    EXPECT_EQ(directory.names(), std::vector<std::string>{"page"});
}

TEST(TimeOut, EndsAnUpdateQueryAfterTenSeconds)
{
    ScriptedServer server({collect_form(), stay_silent()});
    const ProgramResult result =
        run_timeout_program({"update", "-product", "P", "-productline", "L", "-version", "1",
                             "-proxy", proxy_of(server)});
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_EQ(result.out, "");
}

} // namespace
