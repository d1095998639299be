/// \file
/// -max-time: the end of the time in every phase of an exchange.
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <thread>

#include "tests/harness/temporary_directory.h"
#include "tests/harness/terminal.h"
#include "tests/tool/busy_port.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr char once[] = "Error: Timeout after 0.4 seconds";

/// Runs the program with a limit of 0.4 s.
ProgramResult run_limited(Arguments arguments, const ProgramOptions &options = {})
{
    arguments.insert(arguments.end(), {"-max-time", "0.4"});
    const auto start = steady_clock::now();
    ProgramResult result = run_corvella(arguments, options);
    const auto taken = steady_clock::now() - start;
    EXPECT_GE(taken, milliseconds(390));
    EXPECT_LT(taken, milliseconds(5000)); // even on a busy machine
    return result;
}

void expect_time_out(const ProgramResult &result)
{
    EXPECT_EQ(result.exit_status, 3) << result.signal;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, std::string(once) + "\n" + once + "\a\n");
}

void expect_framed_time_out(const ProgramResult &result)
{
    EXPECT_EQ(result.exit_status, 3) << result.signal;
    EXPECT_EQ(result.err, std::string(once) + "\n");
    const std::string frame = std::string("CORVELLATEST") + once + "\a\nENDCORVELLATEST\n";
    EXPECT_EQ(result.out.substr(result.out.size() - std::min(result.out.size(), frame.size())),
              frame);
}

/// The program times out against this script, with and without a file.
void expect_time_out_against(const ServerScript &script)
{
    const TemporaryDirectory directory;
    directory.write("page", "old");
    ScriptedServer server(script);
    expect_time_out(run_limited({"get", url_of(server)}));
    server.stop();
    ScriptedServer other(script);
    expect_time_out(run_limited(
        {"get", url_of(other), "-keep-partial", "-keep-body", "-output", directory.path("page")}));
    EXPECT_EQ(directory.read("page"), "old");
    EXPECT_EQ(directory.names(), Arguments{"page"});
    other.stop();
    ScriptedServer third(script);
    expect_framed_time_out(run_limited({"-automated", "get", url_of(third)}));
}

TEST(MaxTimeOption, EndsALookup)
{
    const Arguments command = {CORVELLA_HANGING_LOOKUP, "get", "http://web1.test/", "-max-time",
                               "0.4"};
    expect_time_out(run_program(command));
    Arguments framed = command;
    framed.emplace_back("-automated");
    expect_framed_time_out(run_program(framed));
}

TEST(MaxTimeOption, EndsTheConnecting)
{
    const BusyPort busy;
    expect_time_out(run_limited({"get", busy.url()}));
    expect_framed_time_out(run_limited({"-automated", "get", busy.url()}));
}

TEST(MaxTimeOption, EndsTheSending)
{
    const TemporaryDirectory directory;
    const std::string path = directory.write("data", std::string(30'000'000, 'x'));
    // Nobody reads what this server is sent.
    const ScriptedServer server({}, false);
    expect_time_out(run_limited({"post", url_of(server), "-data", path}));
}

TEST(MaxTimeOption, EndsTheWaitForTheHeader)
{
    expect_time_out_against({collect_form(), stay_silent()});
    expect_time_out_against({collect_form(), send_bytes("HTTP/1.0 200 OK\r\nX:"), stay_silent()});
}

TEST(MaxTimeOption, EndsAHeaderThatKeepsComing)
{
    expect_time_out_against({collect_form(), send_endlessly("X: endless\r\n")});
}

TEST(MaxTimeOption, EndsTheWaitForTheBody)
{
    expect_time_out_against({collect_form(), send_bytes(good_reply("half")), stay_silent()});
}

TEST(MaxTimeOption, EndsABodyThatKeepsComing)
{
    expect_time_out_against({collect_form(), send_bytes(good_reply("")), send_endlessly("more\n")});
}

TEST(MaxTimeOption, EndsABodyThatDrips)
{
    expect_time_out_against(
        {collect_form(), send_bytes(good_reply("")), send_one_by_one(std::string(100, 'x'), 50)});
}

TEST(MaxTimeOption, EndsACompleteReplyOnAnOpenConnection)
{
    expect_time_out_against({collect_form(),
                             send_bytes("HTTP/1.0 200 OK\r\nContent-Length: 3\r\n\r\nabc"),
                             stay_silent()});
}

TEST(MaxTimeOption, EndsAnUpdateQuery)
{
    const ScriptedServer server({collect_form(), stay_silent()});
    expect_time_out(run_limited({"update", "-product", "P", "-productline", "L", "-version", "1",
                                 "-proxy", proxy_of(server)}));
}

TEST(MaxTimeOption, LetsAnExchangeEndInTime)
{
    for (const char *const seconds : {"30", "1e1", "29.5"}) {
        const ScriptedServer server(
            {collect_form(), pause_for(100), send_bytes(good_reply("body"))});
        const ProgramResult result = run_corvella({"get", url_of(server), "-max-time", seconds});
        if (result.exit_status != 2) { // not every spelling need be a number of seconds
            EXPECT_EQ(result.exit_status, 0) << result.err;
            EXPECT_EQ(result.out, "body");
            EXPECT_EQ(result.err, "");
        }
    }
}

TEST(MaxTimeOption, QuotesTheSecondsAsTyped)
{
    const ScriptedServer server({collect_form(), stay_silent()});
    const ProgramResult result = run_corvella({"get", url_of(server), "-max-time", "0.250"});
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_TRUE(contains(result.err, "Error: Timeout after 0.250 seconds\n")) << result.err;
}

TEST(MaxTimeOption, CountsNoTimeOfTheOutput)
{
    ScriptedServer server(replying(good_reply(std::string(1'000'000, 'x'))));
    RunningProgram program(corvella_command({"get", url_of(server), "-max-time", "0.5"}));
    ASSERT_TRUE(server.wait_until_served());
    std::this_thread::sleep_for(milliseconds(1200));
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out.size(), 1'000'000U);
}

TEST(MaxTimeOption, CountsAnInheritedBlockedSignal)
{
    ProgramOptions options;
    options.prepare = [] {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, nullptr);
        std::signal(SIGALRM, SIG_IGN);
    };
    const BusyPort busy;
    expect_time_out(run_limited({"get", busy.url()}, options));
}

TEST(MaxTimeOption, LeavesAnInterruptItsExitStatus)
{
    const BusyPort busy;
    ScriptedServer server({collect_form(), stay_silent()});
    for (const std::string &url : {busy.url(), url_of(server)}) {
        RunningProgram program(corvella_command({"get", url, "-max-time", "20"}));
        std::this_thread::sleep_for(milliseconds(500));
        program.process().signal(SIGINT);
        const ProgramResult result = program.finish();
        EXPECT_EQ(result.exit_status, 130) << result.err;
        EXPECT_TRUE(contains(result.err, "User canceled web transaction")) << result.err;
    }
}

// The lookup goes on after the first interrupt; the end of the time ends it.
TEST(MaxTimeOption, EndsAnInterruptedLookupAsCancelled)
{
    RunningProgram program(
        {CORVELLA_HANGING_LOOKUP, "get", "http://web1.test/", "-max-time", "1.5"});
    std::this_thread::sleep_for(milliseconds(500));
    program.process().signal(SIGINT);
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.exit_status, 130) << result.signal;
    EXPECT_EQ(result.err, "Error: User canceled web transaction\n"
                          "Error: User canceled web transaction\a\n");
}

TEST(MaxTimeOption, LeavesASecondInterruptItsEffect)
{
    RunningProgram program(
        {CORVELLA_HANGING_LOOKUP, "get", "http://web1.test/", "-max-time", "20"});
    for (int i = 0; i < 2; ++i) {
        std::this_thread::sleep_for(milliseconds(500));
        program.process().signal(SIGINT);
    }
    EXPECT_EQ(program.finish().signal, SIGINT);
}

TEST(MaxTimeOption, ErasesTheLineBeforeItsMessage)
{
    const BusyPort busy;
    Terminal terminal;
    ProgramOptions options;
    options.err = terminal.program_end();
    options.prepare = [&terminal] { terminal.become_controlling(); };
    EXPECT_EQ(run_limited({"get", busy.url()}, options).exit_status, 3);
    EXPECT_TRUE(contains(terminal.written(), "Connecting to 127.0.0.1...")) << terminal.written();
    const std::vector<std::string> expected = {once, once, ""};
    EXPECT_EQ(terminal.screen(), expected);
}

} // namespace
