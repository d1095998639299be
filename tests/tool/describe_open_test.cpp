// Tests tool/describe_command.cpp, tool/open_command.cpp and tool/desktop_none.cpp.
#include <array>
#include <ctime>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include "tests/tool/program_under_test.h"

namespace {

std::string today(const char *separator, bool short_year)
{
    constexpr std::array<const char *, 12> months = {"jan", "feb", "mar", "apr", "may", "jun",
                                                     "jul", "aug", "sep", "oct", "nov", "dec"};
    const std::time_t now = std::time(nullptr);
    const std::tm *const date = std::localtime(&now);
    std::string year = std::to_string(date->tm_year + 1900);
    if (short_year) {
        year.erase(0, 2);
    }
    return std::to_string(date->tm_mday) + separator +
           months[static_cast<std::size_t>(date->tm_mon)] + separator + year;
}

double seconds_since_1997()
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec - 852076800) + static_cast<double>(now.tv_usec) / 1e6;
}

/// Whether a number in \p text is neither before \p first nor behind \p last.
bool has_number_between(const std::string &text, double first, double last)
{
    for (std::size_t at = text.find_first_of("0123456789"); at != std::string::npos;
         at = text.find_first_of("0123456789", at + 1)) {
        const double number = std::strtod(&text[at], nullptr);
        if (number >= first - 1.0 && number <= last + 1.0) {
            return true;
        }
    }
    return false;
}

TEST(DescribeCommand, DescribesTheMachineAndTheTime)
{
    const std::string day_before = today("-", false);
    const double before = seconds_since_1997();
    const ProgramResult result = run_corvella({"describe"});
    const double after = seconds_since_1997();
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    std::array<char, 256> host = {};
    gethostname(host.data(), host.size() - 1);
    for (const std::string &text :
         {std::string("Mac OS X"), std::string(host.data()), corvella_path()}) {
        EXPECT_TRUE(contains(result.out, text)) << text << " in " << result.out;
    }
#ifndef __APPLE__
    EXPECT_TRUE(contains(result.out, "unknown")) << result.out;
#endif
    EXPECT_TRUE(has_number_between(result.out, before, after)) << result.out;
    if (today("-", false) == day_before) {
        EXPECT_TRUE(contains(result.out, today("-", false))) << result.out;
        EXPECT_TRUE(contains(result.out, today("", true))) << result.out;
    }
}

TEST(DescribeCommand, ShowsItsWholeCommandLine)
{
    const ProgramResult result = run_corvella({"-automated", "describe"});
    EXPECT_TRUE(contains(result.out, corvella_path() + " -automated describe")) << result.out;
}

// The buffer of the command line has 4096 bytes, of which the last is its NUL.
TEST(DescribeCommand, ShowsTheFirst4095BytesOfALongCommandLine)
{
    for (const std::size_t size : {1000U, 4000U, 4094U, 4095U, 4096U, 10'000U, 100'000U}) {
        const std::string name = std::string(size - 12, 'n') + "end";
        const ProgramResult result =
            run_program({"bash", "-c", "exec -a \"$0\" \"$1\" describe", name, corvella_path()});
        EXPECT_EQ(result.exit_status, 0) << result.err;
        const std::string whole = name + " describe";
        EXPECT_TRUE(contains(result.out, "\nCommand line: " + whole.substr(0, 4095) + "\nDate: "))
            << size;
    }
}

TEST(DescribeCommand, ShowsManyArguments)
{
    std::vector<std::string> arguments(300, "-automated");
    arguments.insert(arguments.begin(), "describe");
    std::string whole = corvella_path();
    for (const std::string &argument : arguments) {
        whole += " " + argument;
    }
    ASSERT_LT(whole.size(), 4095U);
    const ProgramResult result = run_corvella(arguments);
    EXPECT_TRUE(contains(result.out, "describe: Command line: " + whole + "\nENDCORVELLATEST\n"));
}

TEST(DescribeCommand, FramesItsResultInAnAutomatedRun)
{
    const ProgramResult result = run_corvella({"describe", "-automated"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out.rfind("CORVELLATEST", 0), 0U) << result.out;
    EXPECT_TRUE(contains(result.out, "Mac OS X\nENDCORVELLATEST\n")) << result.out;
}

TEST(DescribeCommand, DoesNotKnowACommandLineWithoutTheProgramsName)
{
    const ProgramResult result =
        run_program({"bash", "-c", "exec -a '' \"$0\" describe", corvella_path()});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "Command line: unknown\n")) << result.out;
}

TEST(DescribeCommand, TakesNoArguments)
{
    const ProgramResult result = run_corvella({"describe", "more"});
    EXPECT_EQ(result.exit_status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(contains(result.err, "describe takes no arguments.")) << result.err;
}

#ifndef __APPLE__
TEST(OpenCommand, FailsWhereThereIsNoDesktop)
{
    for (const char *const target : {"/etc/passwd", "http://x.test/", "missing"}) {
        const ProgramResult result = run_corvella({"open", target});
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(contains(result.err, target)) << result.err;
        EXPECT_TRUE(contains(result.err, "this system has no service that opens documents"))
            << result.err;
    }
}
#endif

} // namespace
