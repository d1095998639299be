// Tests tool/exchange.cpp and tool/stop_signals.cpp.
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <thread>

#include "tests/harness/temporary_directory.h"
#include "tests/tool/busy_port.h"
#include "tests/tool/full_pipe.h"
#include "tests/tool/process_facts.h"
#include "tests/tool/program_under_test.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Well above what a cancelled program needs, even on a busy machine, and well below a time-out.
constexpr auto prompt = milliseconds(2000);

/// Interrupts a program that waits: it ends at once, and says that it was cancelled.
void expect_cancellation(RunningProgram &program)
{
    let_it_wait(program);
    const auto start = steady_clock::now();
    program.process().signal(SIGINT);
    const ProgramResult result = program.finish();
    EXPECT_LT(steady_clock::now() - start, prompt);
    EXPECT_EQ(result.exit_status, 130);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "User canceled web transaction")) << result.err;
}

// The signal fails the attempt, which the web client does not take for a cancellation.
TEST(Interrupt, CancelsTheConnecting)
{
    const BusyPort busy;
    RunningProgram program(corvella_command({"get", busy.url()}));
    expect_cancellation(program);
}

TEST(Interrupt, CancelsTheWaitForTheHeader)
{
    for (const char *const sent : {"", "HTTP/1.0 200 OK\r\nHalf-"}) {
        Milestone waiting;
        ScriptedServer server({collect_request(), send_bytes(sent), waiting.step(), stay_silent()});
        RunningProgram program(corvella_command({"get", url_of(server)}));
        ASSERT_TRUE(waiting.wait());
        expect_cancellation(program);
    }
}

TEST(Interrupt, CancelsEveryCommandThatTalksToTheWeb)
{
    const std::vector<std::string> cases[] = {
        {"post", "http://web1.test/", "a=b"},
        {"update", "-product", "P", "-productline", "L", "-version", "1"},
    };
    for (std::vector<std::string> arguments : cases) {
        Milestone waiting;
        ScriptedServer server({collect_form(), waiting.step(), stay_silent()});
        arguments.insert(arguments.end(), {"-proxy", proxy_of(server)});
        RunningProgram program(corvella_command(arguments));
        ASSERT_TRUE(waiting.wait());
        SCOPED_TRACE(arguments[0]);
        expect_cancellation(program);
    }
}

// The signal ends the wait for the next piece of the body early.
TEST(Interrupt, CancelsTheWaitForTheBody)
{
    const TemporaryDirectory directory;
    directory.write("page", "old");
    Milestone waiting;
    ScriptedServer server(
        {collect_request(), send_bytes(good_reply("half")), waiting.step(), stay_silent()});
    RunningProgram program(
        corvella_command({"get", url_of(server), "-output", directory.path("page")}));
    ASSERT_TRUE(waiting.wait());
    expect_cancellation(program);
    EXPECT_EQ(directory.read("page"), "old");
    EXPECT_EQ(directory.names(), std::vector<std::string>{"page"});
}

// The program need not wait for such a body to end.
TEST(Interrupt, CancelsABodyThatKeepsComing)
{
    Milestone flooding;
    ScriptedServer server({collect_request(), send_bytes(good_reply("")), send_bytes("x"),
                           flooding.step(), send_endlessly("more\n")});
    RunningProgram program(corvella_command({"get", url_of(server)}));
    ASSERT_TRUE(flooding.wait());
    std::this_thread::sleep_for(milliseconds(200));
    const auto start = steady_clock::now();
    program.process().signal(SIGINT);
    const ProgramResult result = program.finish();
    EXPECT_LT(steady_clock::now() - start, prompt);
    EXPECT_EQ(result.exit_status, 130) << result.signal;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "User canceled web transaction")) << result.err;
}

// The web client reads the flag only when no byte is waiting.
TEST(Interrupt, CancelsAHeaderThatKeepsComing)
{
    const std::string text = "User canceled web transaction";
    for (const bool framed : {false, true}) {
        Milestone flooding;
        ScriptedServer server(
            {collect_request(), flooding.step(), send_endlessly("X: endless\r\n")});
        std::vector<std::string> command = corvella_command({"get", url_of(server)});
        if (framed) {
            command.emplace_back("-automated");
        }
        RunningProgram program(command);
        ASSERT_TRUE(flooding.wait());
        std::this_thread::sleep_for(milliseconds(200));
        const auto start = steady_clock::now();
        program.process().signal(SIGINT);
        const ProgramResult result = program.finish();
        EXPECT_LT(steady_clock::now() - start, prompt);
        EXPECT_EQ(result.exit_status, 130) << result.signal;
        const std::string first = "Error: " + text + "\n";
        EXPECT_EQ(result.err, framed ? first : error_text(text));
        const std::string frame = "CORVELLATESTError: " + text + "\a\nENDCORVELLATEST\n";
        EXPECT_EQ(result.out, framed ? frame : "");
    }
}

// Each signal of the timer interrupts the wait for the body.
TEST(TimerSignals, LeaveTheBodyWhole)
{
    Milestone waiting;
    ScriptedServer server({collect_request(), send_bytes(good_reply("")), waiting.step(),
                           send_one_by_one(std::string(100, 'x'), 5), stay_silent(),
                           send_bytes("end")});
    RunningProgram program(corvella_command({"get", url_of(server)}));
    ASSERT_TRUE(waiting.wait());
    for (int i = 0; i < 100; ++i) {
        std::this_thread::sleep_for(milliseconds(5));
        program.process().signal(SIGALRM);
    }
    server.release();
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.exit_status, 0) << result.signal;
    EXPECT_EQ(result.out, std::string(100, 'x') + "end");
    EXPECT_EQ(result.err, "");
}

// As with nohup, or in the background of a shell without job control.
TEST(Interrupt, StaysIgnoredWhereTheProgramIsStartedSo)
{
    Milestone waiting;
    ScriptedServer server({collect_request(), waiting.step(), stay_silent(),
                           send_bytes(good_reply("the whole body"))});
    ProgramOptions options;
    options.prepare = [] { std::signal(SIGINT, SIG_IGN); };
    RunningProgram program(corvella_command({"get", url_of(server)}), options);
    ASSERT_TRUE(waiting.wait());
    for (int i = 0; i < 2; ++i) {
        let_it_wait(program);
        program.process().signal(SIGINT);
    }
    let_it_wait(program);
    server.release();
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.exit_status, 0) << result.signal << result.err;
    EXPECT_EQ(result.out, "the whole body");
    EXPECT_EQ(result.err, "");
}

/// Waits until the program has its reply and writes no more of it, because nobody reads.
void wait_until_output_is_stuck(RunningProgram &program, ScriptedServer &server)
{
    ASSERT_TRUE(server.wait_until_served());
    for (int count = -1; count < program.waiting_output();) {
        count = program.waiting_output();
        let_it_wait(program);
    }
    ASSERT_GT(program.waiting_output(), 0);
}

// Then nothing is left that could be cancelled, and the signal has its usual effect again.
TEST(Interrupt, EndsAProgramWhoseExchangeIsOver)
{
    ScriptedServer server(replying(good_reply(std::string(1'000'000, 'x'))));
    RunningProgram program(corvella_command({"get", url_of(server)}));
    ASSERT_NO_FATAL_FAILURE(wait_until_output_is_stuck(program, server));
    program.process().signal(SIGINT);
    EXPECT_TRUE(program.process().wait(prompt));
    EXPECT_EQ(program.finish().signal, SIGINT);
}

/// Interrupts a program that does not look at the request to cancel; once more if need be.
void expect_end_by_second_interrupt(RunningProgram &program)
{
    program.process().signal(SIGINT);
    if (!program.process().wait(prompt)) {
        program.process().signal(SIGINT);
    }
    const auto start = steady_clock::now();
    EXPECT_TRUE(program.process().wait(prompt));
    EXPECT_LT(steady_clock::now() - start, prompt);
    const ProgramResult result = program.finish();
    EXPECT_TRUE(result.signal == SIGINT || result.exit_status == 130)
        << result.signal << " " << result.exit_status << result.err;
}

TEST(SecondInterrupt, EndsAProgramThatCannotConnect)
{
    const BusyPort busy;
    RunningProgram program(corvella_command({"get", busy.url()}));
    let_it_wait(program);
    expect_end_by_second_interrupt(program);
}

/// Floods a program with a body and interrupts it twice; its standard error is full, so that it is
/// still there for the second one.
TEST(SecondInterrupt, EndsAProgramThatABodyFloods)
{
    const FullPipe err;
    Milestone flooding;
    ScriptedServer server({collect_request(), send_bytes(good_reply("x")), flooding.step(),
                           send_endlessly("more\n")});
    ProgramOptions options;
    options.err = err.writing_end();
    RunningProgram program(corvella_command({"get", url_of(server)}), options);
    ASSERT_TRUE(flooding.wait());
    program.process().signal(SIGINT);
    EXPECT_FALSE(program.process().wait(milliseconds(500)));
    let_it_wait(program);
    program.process().signal(SIGINT);
    EXPECT_TRUE(program.process().wait(prompt));
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.signal, SIGINT) << result.exit_status;
    EXPECT_EQ(result.out, "");
}

TEST(SecondInterrupt, EndsAProgramWhoseOutputNobodyTakes)
{
    ScriptedServer server(replying(good_reply(std::string(1'000'000, 'x'))));
    RunningProgram program(corvella_command({"get", url_of(server)}));
    ASSERT_NO_FATAL_FAILURE(wait_until_output_is_stuck(program, server));
    expect_end_by_second_interrupt(program);
}

} // namespace
