#include "tests/harness/terminal.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>

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
                return has_digit(line);
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
