// Long options behind a single dash or a plus sign.

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/support/options/arguments.h"

namespace {

using Results = std::vector<int>;

constexpr long_option end_of_table = {nullptr, 0, nullptr, 0};

const long_option table[] = {
    {"all", 0, nullptr, 101},
    {"output", 1, nullptr, 102},
    {"level", 2, nullptr, 103},
    end_of_table,
};

int call(Arguments &args, const char *short_options)
{
    return get_long_options_only(args.count(), args.vector(), short_options, table, nullptr);
}

class SingleDashName : public OptionsTest {};
class PlusName : public OptionsTest {};

} // namespace

TEST_F(SingleDashName, IsALongOption)
{
    for (const char *element : {"-all", "--all", "+all", "-al", "-a", "+a", "-all=x"}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element, "x"};
        option_index = 0;
        int index = -1;
        EXPECT_EQ(get_long_options_only(args.count(), args.vector(), "al", table, &index), 101);
        EXPECT_EQ(index, 0);
        EXPECT_EQ(option_index, 2);
        EXPECT_EQ(option_position, 1);
        EXPECT_EQ(option_argument, nullptr);
        EXPECT_EQ(call(args, "al"), -1);
    }
}

TEST_F(SingleDashName, StoresThroughItsFlag)
{
    std::int32_t flag = 0;
    const long_option flagged[] = {{"all", 0, &flag, 9}, end_of_table};
    Arguments args{"prog", "-all"};
    EXPECT_EQ(get_long_options_only(args.count(), args.vector(), "", flagged, nullptr), 0);
    EXPECT_EQ(flag, 9);
}

TEST_F(SingleDashName, GoesBeforeAShortOptionOfItsFirstLetter)
{
    Arguments args{"prog", "-o", "-l", "-x"};
    EXPECT_EQ(call(args, "o::lx"), 102); // "output" requires one, the short "o" does not
    EXPECT_STREQ(option_argument, "-l");
    EXPECT_EQ(call(args, "o::lx"), 'x');
}

TEST_F(SingleDashName, TakesItsArgumentWhereverItStands)
{
    struct {
        std::vector<std::string> elements;
        int index_after;
    } const cases[] = {
        {{"prog", "-output=x", "y"}, 2}, {{"prog", "-output", "x", "y"}, 3},
        {{"prog", "+output=x", "y"}, 2}, {{"prog", "+output", "x", "y"}, 3},
        {{"prog", "--out=x", "y"}, 2},   {{"prog", "-output=", "x", "y"}, 3},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.elements));
        Arguments args(c.elements);
        option_index = 0;
        EXPECT_EQ(call(args, ""), 102);
        EXPECT_STREQ(option_argument, "x");
        EXPECT_EQ(option_index, c.index_after);
    }
}

TEST_F(SingleDashName, IsFinishedWithoutItsOptionalArgument)
{
    for (const char *element : {"-level", "+level", "-level=", "-le"}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element, "3"};
        option_index = 0;
        EXPECT_EQ(call(args, "lev"), 103);
        EXPECT_EQ(option_argument, nullptr);
        EXPECT_EQ(option_index, 2);
        EXPECT_EQ(option_position, 1);
        EXPECT_EQ(call(args, "lev"), -1);
    }
}

// Deliberate: the name is shown as it would be written in full.
TEST_F(SingleDashName, IsShownWithTwoDashesWhenItsArgumentIsMissing)
{
    for (const char *element : {"-output", "+output", "--output", "-o", "+out="}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element};
        option_index = 0;
        const std::string text = diagnostics_of([&] { EXPECT_EQ(call(args, "o:"), 58); });
        EXPECT_EQ(text, "prog: argument required for option `--output'\n");
        EXPECT_EQ(option_code, 58);
        EXPECT_EQ(option_index, 2);
    }
}

TEST_F(SingleDashName, IsShownAsTypedWhenItIsAmbiguous)
{
    const long_option alike[] = {{"one", 0, nullptr, 1}, {"once", 0, nullptr, 2}, end_of_table};
    for (const char *element : {"-on", "+on", "--on", "-on=3"}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element};
        option_index = 0;
        const std::string text = diagnostics_of([&] {
            EXPECT_EQ(get_long_options_only(args.count(), args.vector(), "", alike, nullptr), 63);
        });
        EXPECT_EQ(text, "prog: option `" + std::string(element) +
                            "' is ambiguous (could be `--one' or `--once')\n");
        EXPECT_EQ(option_code, 63);
        EXPECT_EQ(option_index, 1);
        EXPECT_EQ(option_position, element[1] == '-' ? 2 : 1);
    }
}

TEST_F(SingleDashName, IsAClusterOfShortOptionsWhenItIsUnknown)
{
    for (const char *element : {"-xyz", "+xyz", "--xyz"}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element};
        option_index = 0;
        EXPECT_EQ(results_until_end([&] { return call(args, "zyx"); }), (Results{'x', 'y', 'z'}));
        EXPECT_EQ(option_index, 2);
    }
}

TEST_F(SingleDashName, MayBeUnknownAndCarryTheArgumentOfAShortOption)
{
    Arguments args{"prog", "-xp=5", "-p", "6"};
    EXPECT_EQ(call(args, "xp:"), 'x');
    EXPECT_EQ(call(args, "xp:"), 'p');
    EXPECT_STREQ(option_argument, "5");
    EXPECT_EQ(call(args, "xp:"), 'p');
    EXPECT_STREQ(option_argument, "6");
    EXPECT_EQ(call(args, "xp:"), -1);
}

TEST_F(SingleDashName, IsPassedOverWithTheCodeAsItWasWhenItIsUnknownWithoutShortOptions)
{
    Arguments args{"prog", "-xyz", "-all"};
    option_code = 77;
    EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(call(args, nullptr), 77); }), "");
    EXPECT_EQ(option_code, 77);
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(call(args, nullptr), 101);
    EXPECT_EQ(call(args, nullptr), -1);
}

TEST_F(SingleDashName, IsNoNumber)
{
    const long_option numbers[] = {{"5", 0, nullptr, 1}, {"5x", 0, nullptr, 2}, end_of_table};
    Arguments args{"prog", "-5", "-5x"};
    EXPECT_EQ(get_long_options_only(args.count(), args.vector(), "5x", numbers, nullptr), 2);
    EXPECT_EQ(args.order(), (std::vector<std::string>{"prog", "-5x", "-5"}));
}

TEST_F(SingleDashName, IsMatchedWithAnyNonzeroSwitch)
{
    for (const int long_only : {1, 2, -1}) {
        Arguments args{"prog", "-all"};
        option_index = 0;
        EXPECT_EQ(parse_options(args.count(), args.vector(), "", table, nullptr, long_only), 101);
    }
    Arguments args{"prog", "-all"};
    option_index = 0;
    EXPECT_EQ(parse_options(args.count(), args.vector(), "a", table, nullptr, 0), 'a');
}

TEST_F(PlusName, IsAnOperandWithoutTheSwitch)
{
    Arguments args{"prog", "+all", "-a"};
    EXPECT_EQ(get_long_options(args.count(), args.vector(), "a", table, nullptr), 'a');
    EXPECT_EQ(args.order(), (std::vector<std::string>{"prog", "-a", "+all"}));
    option_index = 0;
    Arguments others{"prog", "+a", "-a"};
    EXPECT_EQ(get_options(others.count(), others.vector(), "a"), 'a');
    EXPECT_EQ(others.order(), (std::vector<std::string>{"prog", "-a", "+a"}));
}

// Deliberate: only an element with a dash is saved from being an option by reading as a number.
TEST_F(PlusName, MayReadAsANumber)
{
    Arguments args{"prog", "+5"};
    EXPECT_EQ(call(args, "5"), '5');
    EXPECT_EQ(option_index, 2);
}

TEST_F(PlusName, IsAmbiguousWhenNothingFollowsThePlus)
{
    Arguments args{"prog", "+"};
    EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(call(args, "a"), 63); }),
              "prog: option `+' is ambiguous (could be `--all' or `--output')\n");
}

// The character behind a lone plus is the NUL that ends it: no option, and nothing follows.
TEST_F(PlusName, IsInvalidWhenNothingFollowsThePlusAndThereIsNoTable)
{
    Arguments args{"prog", "+", "-a"};
    const std::string text = diagnostics_of([&] {
        EXPECT_EQ(parse_options(args.count(), args.vector(), "a", nullptr, nullptr, 1), 63);
    });
    EXPECT_EQ(text, std::string("prog: invalid option -- `-\0'\n", 29));
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(parse_options(args.count(), args.vector(), "a", nullptr, nullptr, 1), 'a');
}

TEST_F(PlusName, IsAnOptionInEveryMode)
{
    for (const char *short_options : {"", "+", "-"}) {
        SCOPED_TRACE(short_options);
        Arguments args{"prog", "+all"};
        option_index = 0;
        EXPECT_EQ(call(args, short_options), 101);
    }
}

// The name begins behind the plus sign, and no name begins with a dash.
TEST_F(PlusName, IsNotOneBehindAPlusAndADash)
{
    Arguments args{"prog", "+-all"};
    const std::string text = diagnostics_of([&] { EXPECT_EQ(call(args, "b"), 63); });
    EXPECT_EQ(text, "prog: invalid option -- `--'\n");
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 2);
}
