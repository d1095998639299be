// Scans that a call could only repeat for ever: they end after that call.

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/support/options/arguments.h"

namespace {

using Results = std::vector<int>;

const long_option table[] = {
    {"one", 0, nullptr, 101},
    {"once", 0, nullptr, 102},
    {"level", 2, nullptr, 103},
    {nullptr, 0, nullptr, 0},
};

class EndlessScan : public OptionsTest {};

} // namespace

TEST_F(EndlessScan, EndsAfterAnAmbiguousNameBehindOneDash)
{
    Arguments args{"prog", "-on", "-one"};
    const auto call = [&] {
        return get_long_options_only(args.count(), args.vector(), "on", table, nullptr);
    };
    const std::string text = diagnostics_of([&] { EXPECT_EQ(call(), 63); });
    EXPECT_EQ(text, "prog: option `-on' is ambiguous (could be `--one' or `--once')\n");
    EXPECT_EQ(option_code, 63);
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 1);
    EXPECT_EQ(diagnostics_of([&] {
                  EXPECT_EQ(call(), -1);
                  EXPECT_EQ(call(), -1);
              }),
              "");
}

TEST_F(EndlessScan, EndsAfterAnAmbiguousNameBehindAPlus)
{
    Arguments args{"prog", "+on"};
    option_errors = 0;
    const auto call = [&] {
        return get_long_options_only(args.count(), args.vector(), "on", table, nullptr);
    };
    EXPECT_EQ(results_until_end(call), (Results{63}));
}

TEST_F(EndlessScan, EndsAfterAClusteredOptionWithoutItsOptionalArgument)
{
    Arguments args{"prog", "-xo", "-x", "a"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "xo::"); };
    EXPECT_EQ(call(), 'x');
    EXPECT_EQ(call(), 'o');
    EXPECT_EQ(option_code, 'o');
    EXPECT_EQ(option_argument, nullptr);
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 2);
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(call(), -1);
}

TEST_F(EndlessScan, EndsAfterAClusteredOptionWithABareEqualsSign)
{
    Arguments args{"prog", "-xo=", "-x"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "xo::"); };
    EXPECT_EQ(results_until_end(call), (Results{'x', 'o'}));
}

TEST_F(EndlessScan, EndsAfterAShortOptionWithoutItsOptionalArgumentInAnUnknownName)
{
    Arguments args{"prog", "--xp", "-x"};
    const auto call = [&] {
        return get_long_options(args.count(), args.vector(), "xp::", table, nullptr);
    };
    EXPECT_EQ(results_until_end(call), (Results{'x', 'p'}));
}

TEST_F(EndlessScan, EndsAfterAnUnknownNameWithoutShortOptions)
{
    Arguments args{"prog", "--zz", "--one"};
    const auto call = [&] {
        return get_long_options(args.count(), args.vector(), nullptr, table, nullptr);
    };
    option_code = 77;
    EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(call(), 77); }), "");
    EXPECT_EQ(option_code, 77);
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 2);
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(call(), -1);
}

TEST_F(EndlessScan, EndsAfterANameWithoutItsOptionalArgumentAndWithoutShortOptions)
{
    Arguments args{"prog", "--level", "--one"};
    const auto call = [&] {
        return get_long_options(args.count(), args.vector(), nullptr, table, nullptr);
    };
    EXPECT_EQ(call(), 103);
    EXPECT_EQ(option_argument, nullptr);
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 2);
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(call(), -1);
}

TEST_F(EndlessScan, EndsAfterAnAmbiguousNameBehindTwoDashesWithoutShortOptions)
{
    Arguments args{"prog", "--on", "--one"};
    option_errors = 0;
    const Results results = results_until_end(
        [&] { return get_long_options(args.count(), args.vector(), nullptr, table, nullptr); });
    ASSERT_FALSE(results.empty());
    EXPECT_LE(results.size(), 2U); // the second call has nothing to resume with
    EXPECT_EQ(results.front(), 63);
    EXPECT_EQ(results.back(), 63);
}

TEST_F(EndlessScan, DoesNotEndWhereTheNextCallGoesOn)
{
    // One dash and unknown: passed over. Two dashes and ambiguous: read as short options.
    Arguments args{"prog", "-zz", "--on", "-level", "--once"};
    option_errors = 0;
    Results results = results_until_end(
        [&] { return get_long_options_only(args.count(), args.vector(), "zno", table, nullptr); });
    EXPECT_EQ(results, (Results{'z', 'z', 63, 'o', 'n', 103, 102}));
}

TEST_F(EndlessScan, LeavesTheIndexAtTheElement)
{
    Arguments args{"prog", "-xo", "operand"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "xo::"); };
    ASSERT_EQ(results_until_end(call), (Results{'x', 'o'}));
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(option_index, 1);
}

TEST_F(EndlessScan, MayBeStartedAgain)
{
    Arguments args{"prog", "-xo", "-x"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "xo::"); };
    ASSERT_EQ(results_until_end(call), (Results{'x', 'o'}));
    Arguments others{"prog", "-x", "-x"};
    option_index = 0;
    EXPECT_EQ(
        results_until_end([&] { return get_options(others.count(), others.vector(), "xo::"); }),
        (Results{'x', 'x'}));
}

TEST_F(EndlessScan, MayBeStartedAgainWithAnotherEntryPoint)
{
    Arguments args{"prog", "-on"};
    option_errors = 0;
    ASSERT_EQ(results_until_end([&] {
                  return get_long_options_only(args.count(), args.vector(), "on", table, nullptr);
              }),
              (Results{63}));
    option_index = 0;
    EXPECT_EQ(results_until_end([&] {
                  return get_long_options(args.count(), args.vector(), "on", table, nullptr);
              }),
              (Results{'o', 'n'}));
}
