// Calls that cannot be served, and what is said about options that cannot be used.
// Tests support/options/diagnostics.cpp.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/support/options/arguments.h"

namespace {

using Texts = std::vector<std::string>;
using Results = std::vector<int>;

class BadCall : public OptionsTest {};
class InvalidOption : public OptionsTest {};
class MissingArgument : public OptionsTest {};

} // namespace

TEST_F(BadCall, IsOneWithoutElements)
{
    Arguments args{"prog"};
    option_code = 'x';
    EXPECT_EQ(get_options(0, args.vector(), "a"), 63);
    EXPECT_EQ(option_code, 63);
}

TEST_F(BadCall, IsOneWithoutAVector)
{
    option_code = 'x';
    EXPECT_EQ(get_options(2, nullptr, "a"), 63);
    EXPECT_EQ(option_code, 63);
}

TEST_F(BadCall, IsOneWithNeitherShortOptionsNorATable)
{
    Arguments args{"prog", "-a"};
    option_code = 'x';
    EXPECT_EQ(parse_options(args.count(), args.vector(), nullptr, nullptr, nullptr, 1), 63);
    EXPECT_EQ(option_code, 63);
    EXPECT_EQ(option_index, 0);
}

TEST_F(BadCall, IsRefusedAgainInANewScan)
{
    Arguments args{"prog", "-a"};
    for (int i = 0; i < 3; ++i) {
        option_index = 0;
        option_code = 'x';
        EXPECT_EQ(get_options(args.count(), args.vector(), nullptr), 63);
        EXPECT_EQ(option_code, 63);
    }
}

// On purpose: the one loop until -1 that does not end.
TEST_F(BadCall, IsRefusedEachTime)
{
    Arguments args{"prog", "-a"};
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(get_options(0, args.vector(), "a"), 63);
        EXPECT_EQ(get_options(2, nullptr, "a"), 63);
        EXPECT_EQ(get_options(args.count(), args.vector(), nullptr), 63);
    }
    EXPECT_EQ(option_index, 0);
}

TEST_F(BadCall, SaysNothing)
{
    Arguments args{"prog", "-a"};
    const CapturedOutput output = capture_output([&] {
        get_options(0, args.vector(), "a");
        get_options(2, nullptr, "a");
        get_options(args.count(), args.vector(), nullptr);
    });
    EXPECT_EQ(output.err, "");
    EXPECT_EQ(output.out, "");
}

TEST_F(BadCall, IsNotOneWithATableOnly)
{
    const long_option table[] = {{"all", 0, nullptr, 7}, {nullptr, 0, nullptr, 0}};
    Arguments args{"prog", "--all"};
    EXPECT_EQ(get_long_options(args.count(), args.vector(), nullptr, table, nullptr), 7);
}

TEST_F(InvalidOption, IsNamedOnStandardError)
{
    Arguments args{"/bin/prog", "-z"};
    int result = 0;
    const CapturedOutput output =
        capture_output([&] { result = get_options(args.count(), args.vector(), "a"); });
    EXPECT_EQ(result, 63);
    EXPECT_EQ(output.err, "/bin/prog: invalid option -- `-z'\n");
    EXPECT_EQ(output.out, "");
    EXPECT_EQ(option_code, 63);
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(option_position, 1);
}

TEST_F(InvalidOption, LeavesTheRestOfItsClusterToTheNextCall)
{
    Arguments args{"prog", "-zay", "-a"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "a"); };
    const std::string text = diagnostics_of([&] {
        EXPECT_EQ(call(), 63);
        EXPECT_EQ(option_index, 1);
        EXPECT_EQ(option_position, 2);
        EXPECT_EQ(call(), 'a');
        EXPECT_EQ(call(), 63);
        EXPECT_EQ(option_index, 2);
        EXPECT_EQ(option_position, 1);
        EXPECT_EQ(call(), 'a');
        EXPECT_EQ(call(), -1);
    });
    EXPECT_EQ(text, "prog: invalid option -- `-z'\nprog: invalid option -- `-y'\n");
}

TEST_F(InvalidOption, IsNotNamedWhenDiagnosticsAreOff)
{
    Arguments args{"prog", "-z", "-o"};
    option_errors = 0;
    Results results;
    const std::string text = diagnostics_of([&] {
        results = results_until_end([&] { return get_options(args.count(), args.vector(), "o:"); });
    });
    EXPECT_EQ(results, (Results{63, 58}));
    EXPECT_EQ(text, "");
    EXPECT_EQ(option_errors, 0);
}

TEST_F(InvalidOption, IsNamedWithAnyNonzeroValueOfTheSwitch)
{
    Arguments args{"prog", "-z"};
    option_errors = -1;
    EXPECT_EQ(diagnostics_of([&] { get_options(args.count(), args.vector(), "a"); }),
              "prog: invalid option -- `-z'\n");
}

TEST_F(InvalidOption, IsNamedByItsByteOutsideASCII)
{
    Arguments args{"prog", "-\x80", "-\xff"};
    Results results;
    const std::string text = diagnostics_of([&] {
        results = results_until_end([&] { return get_options(args.count(), args.vector(), "a"); });
    });
    EXPECT_EQ(results, (Results{63, 63}));
    EXPECT_EQ(text, "prog: invalid option -- `-\x80'\nprog: invalid option -- `-\xff'\n");
}

TEST_F(InvalidOption, IsEveryOneWhereTheShortOptionsAreEmpty)
{
    Arguments args{"prog", "-ab"};
    option_errors = 0;
    const auto call = [&] { return get_options(args.count(), args.vector(), ""); };
    EXPECT_EQ(results_until_end(call), (Results{63, 63}));
}

TEST_F(MissingArgument, IsReportedWithTheShortOption)
{
    struct {
        Texts elements;
        int calls_before;
    } const cases[] = {
        {{"prog", "-o"}, 0},
        {{"prog", "-o="}, 0},
        {{"prog", "-ao"}, 1},
        {{"prog", "-a", "-o"}, 1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.elements));
        Arguments args(c.elements);
        const auto call = [&] { return get_options(args.count(), args.vector(), "ao:"); };
        option_index = 0;
        int result = 0;
        const std::string text = diagnostics_of([&] {
            for (int i = 0; i <= c.calls_before; ++i) {
                result = call();
            }
        });
        EXPECT_EQ(result, 58);
        EXPECT_EQ(text, "prog: argument required for option `-o'\n");
        EXPECT_EQ(option_code, 58);
        EXPECT_EQ(option_index, args.count());
        EXPECT_EQ(call(), -1);
    }
}

// Deliberate: other parsers return ":" silently for such a text and "?" for any other.
TEST_F(MissingArgument, IsReportedAlikeWithALeadingColonInTheShortOptions)
{
    Arguments args{"prog", "-o"};
    int result = 0;
    const std::string text =
        diagnostics_of([&] { result = get_options(args.count(), args.vector(), ":o:"); });
    EXPECT_EQ(result, 58);
    EXPECT_EQ(text, "prog: argument required for option `-o'\n");
}
