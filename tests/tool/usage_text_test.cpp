/// \file
/// -help: its width, and the lines that no width changes.
#include <gtest/gtest.h>
#include <sstream>
#include <sys/ioctl.h>

#include "tests/harness/terminal.h"
#include "tests/tool/program_under_test.h"

namespace {

using Lines = std::vector<std::string>;

constexpr char proxy_usage[] =
    "  -proxy host:port\tUse a proxy server to connect to the internet.\n"
    "  -proxy-user\t\tUsername for proxy authentication.\n"
    "  -proxy-pass\t\tPassword for proxy authentication.\n";

/// The usage text in an environment with this COLUMNS.
std::string usage_with_columns(const std::string &columns)
{
    return run_program({"/usr/bin/env", "COLUMNS=" + columns, corvella_path(), "-help"}).out;
}

/// The command line of a program whose environment does not have it.
std::vector<std::string> without_columns(const std::vector<std::string> &arguments)
{
    std::vector<std::string> command = {"/usr/bin/env", "-u", "COLUMNS", corvella_path()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

Lines lines_of(const std::string &text)
{
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// How many columns a line takes on a terminal.
std::size_t width_of(const std::string &line)
{
    std::size_t width = 0;
    for (const char c : line) {
        width = c == '\t' ? (width / 8 + 1) * 8 : width + 1;
    }
    return width;
}

Lines words_of(const std::string &text)
{
    Lines words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

/// What is written to a terminal of so many columns, its line ends those of a file.
std::string written_to_terminal(unsigned short columns, const std::vector<std::string> &command,
                                int ProgramOptions::*stream)
{
    Terminal terminal;
    winsize window = {};
    window.ws_col = columns;
    EXPECT_EQ(ioctl(terminal.program_end(), TIOCSWINSZ, &window), 0);
    ProgramOptions options;
    options.*stream = terminal.program_end();
    run_program(command, options);
    std::string text = terminal.written();
    for (std::size_t at; (at = text.find("\r\n")) != std::string::npos;) {
        text.erase(at, 1);
    }
    return text;
}

TEST(UsageText, IsNoWiderThanTheColumnsThatTheEnvironmentTells)
{
    for (std::size_t columns = 40; columns < 130; columns += 9) {
        std::string usage = usage_with_columns(std::to_string(columns));
        const std::size_t fixed = usage.find(proxy_usage);
        ASSERT_NE(fixed, std::string::npos) << usage;
        usage.erase(fixed, sizeof proxy_usage - 1);
        for (const std::string &line : lines_of(usage)) {
            EXPECT_LE(width_of(line), columns) << line;
        }
    }
}

TEST(UsageText, HasTheSameWordsAtEveryWidth)
{
    const Lines words = words_of(usage_with_columns("1000"));
    EXPECT_FALSE(words.empty());
    for (const char *const columns : {"40", "41", "52", "63", "74", "80"}) {
        EXPECT_EQ(words_of(usage_with_columns(columns)), words) << columns;
    }
}

// The first line has 40 columns from the 24th on; the line feed of the others counts as one.
TEST(UsageText, BreaksBetweenWordsUnderTheDescription)
{
    const std::string usage = usage_with_columns("40");
    const std::string indent(24, ' ');
    EXPECT_TRUE(contains(usage, "  update\t\tAsk whether\n" + indent + "there is a\n" + indent +
                                    "newer version\n" + indent + "of a product.\n"))
        << usage;
}

// It has 49 characters.
TEST(UsageText, HasItsFirstLineWholeWhereThatFits)
{
    const std::string first = "Usage: corvella COMMAND [OPTION]... [ARGUMENT]...";
    EXPECT_EQ(lines_of(usage_with_columns("49"))[0], first);
    EXPECT_EQ(lines_of(usage_with_columns("48"))[0], "Usage: corvella COMMAND [OPTION]...");
}

TEST(UsageText, IsNeverNarrowerThanFortyColumns)
{
    const std::string narrowest = usage_with_columns("40");
    for (const char *const columns : {"1", "8", "24", "39"}) {
        EXPECT_EQ(usage_with_columns(columns), narrowest) << columns;
    }
}

TEST(UsageText, HasSeventyNineColumnsWhereNothingTells)
{
    const std::string usual = usage_with_columns("79");
    EXPECT_EQ(run_program(without_columns({"-help"})).out, usual);
    for (const char *const columns :
         {"", "0", "-50", "50x", "fifty", "10000", "99999999999999999999"}) {
        EXPECT_EQ(usage_with_columns(columns), usual) << columns;
    }
}

TEST(UsageText, FitsTheTerminal)
{
    const std::vector<std::string> help = without_columns({"-help"});
    for (const unsigned short columns : std::initializer_list<unsigned short>{45, 60, 200}) {
        EXPECT_EQ(written_to_terminal(columns, help, &ProgramOptions::out),
                  usage_with_columns(std::to_string(columns)));
    }
    EXPECT_EQ(written_to_terminal(0, help, &ProgramOptions::out), usage_with_columns("79"));
}

TEST(UsageText, HasTheColumnsOfTheEnvironmentOnATerminalToo)
{
    const struct {
        const char *environment;
        const char *columns;
    } cases[] = {{"COLUMNS=60", "60"}, {"COLUMNS=9999", "9999"}, {"COLUMNS=10000", "45"}};
    for (const auto &[environment, columns] : cases) {
        EXPECT_EQ(written_to_terminal(45, {"/usr/bin/env", environment, corvella_path(), "-help"},
                                      &ProgramOptions::out),
                  usage_with_columns(columns));
    }
}

TEST(UsageText, FitsTheTerminalThatGetsTheComplaintBeforeIt)
{
    const std::string seen =
        written_to_terminal(50, without_columns({"get", "-proxy", "host"}), &ProgramOptions::err);
    const std::string usage = usage_with_columns("50");
    ASSERT_GE(seen.size(), usage.size());
    EXPECT_EQ(seen.substr(seen.size() - usage.size()), usage);
}

TEST(UsageText, TellsWhoSeesCredentials)
{
    EXPECT_TRUE(
        contains(usage_with_columns("1000"),
                 "\n\nThe proxy and the web server both see the credentials of -proxy-user "
                 "or -user, but a proxy that asks for its own (status 407) gets none.\n\n"));
}

TEST(UsageText, ListsEachOptionOnceForItsCommands)
{
    const std::string usage = usage_with_columns("79");
    for (const std::string &heading :
         {std::string("Options of get, post and update:\n") + proxy_usage,
          std::string("Options of get and post:\n  -output FILE\t\t"),
          std::string("Options of update:\n  -product NAME\t\t"),
          std::string("General options:\n  -automated\t\t")}) {
        EXPECT_TRUE(contains(usage, "\n\n" + heading)) << heading << usage;
    }
}

} // namespace
