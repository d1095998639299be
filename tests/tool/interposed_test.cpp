/// \file
/// The program with answers of the system that no test can arrange; see interposed_calls.cpp.
#include <csignal>
#include <gtest/gtest.h>

#include "tests/harness/temporary_directory.h"
#include "tests/harness/terminal.h"
#include "tests/tool/program_under_test.h"

namespace {

using Arguments = std::vector<std::string>;

/// The command with one variable in its environment.
Arguments interposed(const std::string &variable, const Arguments &arguments)
{
    Arguments command = {"/usr/bin/env", variable, CORVELLA_INTERPOSED};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

/// The variable for a signal that comes with the end of the reply.
std::string with_signal(int number)
{
    return "INTERPOSED_SIGNAL=" + std::to_string(number);
}

// HOST_NAME_MAX is 64 on Linux, 255 at the most (POSIX _POSIX_HOST_NAME_MAX) elsewhere.
TEST(LongHostName, IsShownWhole)
{
    for (const std::size_t length : {64U, 65U, 128U, 255U}) {
        const std::string name = "begin-" + std::string(length - 10, 'n') + "-end";
        const ProgramResult result =
            run_program(interposed("INTERPOSED_HOST_NAME=" + name, {"describe"}));
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_TRUE(contains(result.out, "\nHost name: " + name + "\n")) << result.out;
    }
}

TEST(LongHostName, IsSentWholeWithAnUpdateQuery)
{
    const std::string name = "begin." + std::string(245, 'n') + ".end";
    ScriptedServer server(replying(good_reply("Message: fine\n")));
    const ProgramResult result = run_program(
        interposed("INTERPOSED_HOST_NAME=" + name, {"update", "-product", "P", "-productline", "L",
                                                    "-version", "1", "-proxy", proxy_of(server)}));
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(only_request(server), "&machine%5fid=begin%2e" + std::string(245, 'n') +
                                                   "%2eend&processor%5farch="));
}

TEST(HostNameThatIsEmpty, IsNoReasonToFail)
{
    const ProgramResult result = run_program(interposed("INTERPOSED_HOST_NAME=", {"describe"}));
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "\nHost name: \nCommand line: ")) << result.out;
}

/// Interrupts the program with the end of its reply: all of that has come.
void expect_dropped(const std::string &reply, const Arguments &options)
{
    const TemporaryDirectory directory;
    directory.write("page", "old");
    ScriptedServer server(replying(reply));
    Arguments arguments = {"get", url_of(server), "-output", directory.path("page")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProgramResult result = run_program(interposed(with_signal(SIGINT), arguments));
    EXPECT_EQ(result.exit_status, 130) << result.signal;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, error_text("User canceled web transaction"));
    EXPECT_EQ(directory.read("page"), "old");
    EXPECT_EQ(directory.names(), Arguments{"page"});
}

TEST(InterruptAtTheEndOfAReply, DropsTheReply)
{
    for (const Arguments &options :
         {Arguments{}, Arguments{"-keep-partial", "-keep-body"}, Arguments{"-max-time", "30"}}) {
        for (const char *const status : {"200 OK", "404 Not Found"}) {
            for (const char *const body : {"", "the whole body"}) {
                expect_dropped("HTTP/1.0 " + std::string(status) + "\r\n\r\n" + body, options);
            }
        }
    }
}

TEST(InterruptAtTheEndOfAReply, DropsTheAnswerToAQuery)
{
    ScriptedServer server(replying(good_reply("Message: fine\n")));
    const ProgramResult result =
        run_program(interposed(with_signal(SIGINT), {"update", "-product", "P", "-productline", "L",
                                                     "-version", "1", "-proxy", proxy_of(server)}));
    EXPECT_EQ(result.exit_status, 130) << result.signal;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, error_text("User canceled web transaction"));
}

// Here the end of -max-time differs from an interrupt.
TEST(EndOfTheTimeAtTheEndOfAReply, KeepsTheReply)
{
    for (const char *const body : {"", "the whole body"}) {
        ScriptedServer server(replying(good_reply(body)));
        const ProgramResult result = run_program(
            interposed(with_signal(SIGALRM), {"get", url_of(server), "-max-time", "30"}));
        EXPECT_EQ(result.exit_status, 0) << result.signal;
        EXPECT_EQ(result.out, body);
        EXPECT_EQ(result.err, "");
    }
}

// An inode number alone does not identify a file.
TEST(FileWithTheInodeNumberOfStandardOutput, IsWritten)
{
    const TemporaryDirectory directory;
    const std::string page = directory.write("page", "old");
    ScriptedServer server(replying(good_reply("new")));
    const ProgramResult result = run_program(
        interposed("INTERPOSED_TWIN=" + page, {"get", url_of(server), "-output", page}));
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(directory.read("page"), "new");
}

/// The last line that shows how long the program has been waiting.
std::string waiting_line_after(const std::string &seconds)
{
    Terminal terminal;
    ProgramOptions options;
    options.err = terminal.program_end();
    options.prepare = [&terminal] { terminal.become_controlling(); };
    ScriptedServer server({collect_form(), stay_silent(), send_bytes(good_reply("body"))});
    RunningProgram program(interposed("INTERPOSED_CLOCK_JUMP=" + seconds, {"get", url_of(server)}),
                           options);
    std::string shown;
    EXPECT_TRUE(terminal.wait_until_seen(
        [&shown](const std::string &line) {
            shown = line;
            return contains(line, "Waiting") && contains(line, " s");
        },
        8))
        << terminal.written();
    server.release();
    EXPECT_EQ(program.finish().exit_status, 0);
    const std::vector<std::string> erased = {""};
    EXPECT_EQ(terminal.screen(), erased);
    return shown.substr(0, shown.size() - 3) + shown.substr(shown.size() - 2);
}

// Without the last digit: a second may pass until it is read.
TEST(WaitOfManyDigits, IsShownWhole)
{
    EXPECT_EQ(waiting_line_after("120"), "Waiting for the web site: 12 s");
    EXPECT_EQ(waiting_line_after("4321"), "Waiting for the web site: 432 s");
}

TEST(WaitOfManyDigits, EndsAtFour)
{
    EXPECT_EQ(waiting_line_after("123456789"), "Waiting for the web site: 999 s");
}

} // namespace
