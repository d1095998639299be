/// \file
/// The line that shows on a terminal how long the program has been waiting.
#include <algorithm>
#include <cctype>
#include <chrono>
#include <gtest/gtest.h>

#include "tests/harness/terminal.h"
#include "tests/tool/program_under_test.h"

namespace {

bool has_digit(const std::string &line)
{
    return std::any_of(line.begin(), line.end(),
                       [](unsigned char character) { return std::isdigit(character) != 0; });
}

/// A line without its digits: what stays of it while it counts.
std::string without_digits(std::string line)
{
    line.erase(std::remove_if(line.begin(), line.end(),
                              [](unsigned char c) { return std::isdigit(c) != 0; }),
               line.end());
    return line;
}

std::string joined(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines) {
        text += line + "\n";
    }
    return text;
}

/// A program that talks to a silent server, with standard error on a terminal.
class OnATerminal : public testing::Test {
protected:
    explicit OnATerminal(const std::string &reply = good_reply("body\n"))
        : server_({collect_form(), stay_silent(), send_bytes(reply)}),
          program_(corvella_command({"get", url_of(server_)}), options())
    {
    }

    ProgramOptions options() const
    {
        ProgramOptions chosen;
        chosen.err = terminal_.program_end();
        chosen.prepare = [this] { terminal_.become_controlling(); };
        return chosen;
    }

    /// The line that shows how long the program has been waiting.
    std::string waiting_line()
    {
        std::string seen;
        EXPECT_TRUE(terminal_.wait_until_seen(
            [&seen](const std::string &line) {
                seen = line;
                return contains(line, "Waiting") && has_digit(line);
            },
            8))
            << terminal_.written();
        return seen;
    }

    Terminal terminal_;
    ScriptedServer server_;
    RunningProgram program_;
};

TEST_F(OnATerminal, TheWaitIsShownAndWipedWhenTheReplyComes)
{
    waiting_line();
    server_.release();
    const ProgramResult result = program_.finish();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "body\n");
    EXPECT_EQ(joined(terminal_.screen()), "\n") << terminal_.written();
}

TEST_F(OnATerminal, TheWaitIsCounted)
{
    const std::string first = waiting_line();
    EXPECT_TRUE(terminal_.wait_until_seen(
        [&first](const std::string &line) {
            return line != first && without_digits(line) == without_digits(first);
        },
        8))
        << terminal_.written();
}

TEST_F(OnATerminal, CtrlCWipesTheWaitAndCancels)
{
    const std::string waiting = waiting_line();
    terminal_.type("\x03");
    const ProgramResult result = program_.finish();
    EXPECT_EQ(result.exit_status, 130);
    EXPECT_EQ(result.out, "");
    const std::vector<std::string> screen = terminal_.screen();
    EXPECT_TRUE(contains(joined(screen), "User canceled web transaction")) << joined(screen);
    const std::string beginning = waiting.substr(0, waiting.find_first_of("0123456789"));
    for (const std::string &line : screen) {
        EXPECT_FALSE(has_digit(line)) << joined(screen);
        EXPECT_FALSE(!beginning.empty() && line.rfind(beginning, 0) == 0) << joined(screen);
    }
}

/// What stands on a terminal on which \p command gets a slow page, which comes whole.
std::string written_during_a_wait(const std::vector<std::string> &command, bool controlling,
                                  int milliseconds = 2500)
{
    ScriptedServer server(
        {collect_form(), pause_for(milliseconds), send_bytes(good_reply("body\n"))});
    Terminal terminal;
    ProgramOptions options;
    options.err = terminal.program_end();
    if (controlling) {
        options.prepare = [&terminal] { terminal.become_controlling(); };
    }
    std::vector<std::string> whole = command;
    whole.push_back(url_of(server));
    const ProgramResult result = run_program(whole, options);
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_TRUE(contains(result.out, "body\n")); // after the frames of an automated run
    return terminal.written();
}

constexpr char waiting_words[] = "Waiting for the web site: ";

// Once a second: nobody reads faster.
TEST(TheWait, IsWrittenSeldom)
{
    const std::string written = written_during_a_wait(corvella_command({"get"}), true);
    int updates = 0;
    for (std::size_t at = 0; (at = written.find(waiting_words, at)) != std::string::npos; ++at) {
        ++updates;
    }
    EXPECT_GE(updates, 1) << written;
    EXPECT_LE(updates, 3) << written;
}

TEST(TheWait, IsWipedBeforeTheDetailsOfTheReply)
{
    const std::string written =
        written_during_a_wait(corvella_command({"get", "-verbose"}), true, 1500);
    EXPECT_TRUE(contains(written, waiting_words)) << written;
    const std::string screen = joined(shown_on_screen(written));
    EXPECT_TRUE(contains(screen, "HTTP/1.0 200 OK\n")) << screen;
    EXPECT_FALSE(contains(screen, waiting_words)) << screen;
}

TEST(TheWait, IsNotShownBeforeASecondHasPassed)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string written = written_during_a_wait(corvella_command({"get"}), true, 400);
    if (std::chrono::steady_clock::now() - start < std::chrono::seconds(1)) {
        EXPECT_FALSE(contains(written, waiting_words))
            << written; // on a machine too busy for that it may have been a second
    }
}

TEST(TheWait, IsNotShownToARunThatIsQuietOrAutomated)
{
    EXPECT_EQ(written_during_a_wait(corvella_command({"get", "-quiet"}), true), "");
    EXPECT_EQ(written_during_a_wait(corvella_command({"get", "-automated"}), true), "");
}

// The shell is in the foreground, and its job is not.
TEST(TheWait, IsNotShownFromTheBackground)
{
    const std::string written = written_during_a_wait(
        {"/bin/bash", "-c", "set -m; \"$0\" get \"$1\" & wait $!", corvella_path()}, true);
    for (const char *const words : {"Connecting", "Waiting", "Received"}) {
        EXPECT_FALSE(contains(written, words)) << written;
    }
}

TEST(TheWait, IsLeftStandingByAProgramThatWasSentToTheBackground)
{
    ScriptedServer server({collect_form(), stay_silent(), send_bytes(good_reply("body\n"))});
    Terminal terminal;
    ProgramOptions options;
    options.err = terminal.program_end();
    options.prepare = [&terminal] { terminal.become_controlling(); };
    RunningProgram program({"/bin/bash", "-c",
                            "set -m; \"$0\" get \"$1\"; bg >&2; echo behind >&2; wait $!",
                            corvella_path(), url_of(server)},
                           options);
    const auto appears = [&terminal](const char *words) {
        return terminal.wait_until_seen(
            [words](const std::string &line) { return contains(line, words); }, 8);
    };
    ASSERT_TRUE(appears(waiting_words)) << terminal.written();
    terminal.type("\x1a");
    ASSERT_TRUE(appears("behind")) << terminal.written();
    server.release();
    EXPECT_EQ(program.finish().out, "body\n");
    // Neither drawn over nor erased: nothing follows what the shell writes.
    EXPECT_TRUE(contains(joined(terminal.screen()), waiting_words)) << terminal.written();
    const std::string written = terminal.written();
    EXPECT_FALSE(contains(written.substr(written.rfind("behind")), "\r ")) << written;
}

TEST(TheWait, IsNotShownOnATerminalOfOthers)
{
    EXPECT_EQ(written_during_a_wait(corvella_command({"get"}), false), "");
}

TEST(OffATerminal, NothingIsShownOfTheWait)
{
    ScriptedServer server({collect_form(), pause_for(3000), send_bytes(good_reply("body\n"))});
    const ProgramResult result = run_corvella({"get", url_of(server)});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.out, "body\n");
    EXPECT_EQ(result.err, "");
}

// A terminal that takes the page is no reason to show the wait among its lines.
TEST(OffATerminal, OnlyStandardErrorCounts)
{
    Terminal terminal;
    ProgramOptions options;
    options.out = terminal.program_end();
    ScriptedServer server({collect_form(), pause_for(3000), send_bytes(good_reply("body\n"))});
    const ProgramResult result = run_corvella({"get", url_of(server)}, options);
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(joined(terminal.screen()), "body\n\n");
}

} // namespace
