// Calls that no ordinary program makes: counts below zero, a scan begun elsewhere than at 0,
// records and option characters that mean something else.
#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/support/options/arguments.h"

namespace {

class OddCall : public OptionsTest {};

} // namespace

TEST_F(OddCall, WithANegativeCountIsAtTheEnd)
{
    for (const int count : {-1, -2, INT_MIN}) {
        Arguments args{"prog", "-a"};
        option_index = 0;
        EXPECT_EQ(get_options(count, args.vector(), "a"), -1) << count;
        EXPECT_EQ(option_index, 0) << count;
    }
}

TEST_F(OddCall, ReadsNothingBehindTheCount)
{
    Arguments args{"prog", "-a", "-b"};
    EXPECT_EQ(get_options(2, args.vector(), "ab"), 'a');
    EXPECT_EQ(get_options(2, args.vector(), "ab"), -1);
    EXPECT_EQ(option_index, 2);
}

TEST_F(OddCall, TakesNoArgumentFromBehindTheCount)
{
    Arguments args{"prog", "-o", "file"};
    int result = 0;
    EXPECT_EQ(diagnostics_of([&] { result = get_options(2, args.vector(), "o:"); }),
              "prog: argument required for option `-o'\n");
    EXPECT_EQ(result, ':');
    EXPECT_EQ(option_index, 2);
}

// Deliberate: only an index of 0 starts a scan. With any other one the position is still the 0 of
// the beginning, where the element has its dash.
TEST_F(OddCall, ReadsTheDashAsAnOptionWhereAScanIsBegunAtElementOne)
{
    Arguments args{"prog", "-a"};
    option_index = 1;
    int result = 0;
    EXPECT_EQ(diagnostics_of([&] { result = get_options(args.count(), args.vector(), "a"); }),
              "prog: invalid option -- `--'\n");
    EXPECT_EQ(result, '?');
    EXPECT_EQ(get_options(args.count(), args.vector(), "a"), 'a');
}

TEST_F(OddCall, TakesEveryOtherKindOfArgumentForNone)
{
    for (const int kind : {3, -1, INT_MIN, INT_MAX}) {
        const long_option table[] = {{"all", kind, nullptr, 7}, {nullptr, 0, nullptr, 0}};
        Arguments args{"prog", "--all=x", "y"};
        option_index = 0;
        option_argument = args.vector()[0];
        EXPECT_EQ(get_long_options(args.count(), args.vector(), "", table, nullptr), 7) << kind;
        EXPECT_EQ(option_argument, nullptr) << kind;
        EXPECT_EQ(option_index, 2) << kind;
    }
}

// Deliberate: the option characters are searched for whatever was typed. The result is the one of a
// missing argument, but nothing is said.
TEST_F(OddCall, FindsAColonAmongTheOptionCharacters)
{
    Arguments args{"prog", "-:"};
    int result = 0;
    EXPECT_EQ(diagnostics_of([&] { result = get_options(args.count(), args.vector(), "o:"); }), "");
    EXPECT_EQ(result, ':');
    EXPECT_EQ(option_index, 2);
}

TEST_F(OddCall, FindsNoColonWhereNoOptionTakesAnArgument)
{
    Arguments args{"prog", "-:"};
    int result = 0;
    EXPECT_EQ(diagnostics_of([&] { result = get_options(args.count(), args.vector(), "o"); }),
              "prog: invalid option -- `-:'\n");
    EXPECT_EQ(result, '?');
}
