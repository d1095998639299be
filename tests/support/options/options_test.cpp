// The parser's state, short options and their arguments.

#include "support/options.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/options/arguments.h"

namespace {

using Texts = std::vector<std::string>;
using Results = std::vector<int>;

/// The variables as the program finds them before anything has touched them.
struct State {
    std::int32_t index, code, errors, position;
    char *argument;
};
const State state_at_start = {option_index, option_code, option_errors, option_position,
                              option_argument};

class OptionState : public OptionsTest {};
class ShortOption : public OptionsTest {};
class ShortOptionArgument : public OptionsTest {};

} // namespace

TEST_F(OptionState, HasItsInitialValuesWhenTheProgramStarts)
{
    EXPECT_EQ(state_at_start.index, 0);
    EXPECT_EQ(state_at_start.argument, nullptr);
    EXPECT_EQ(state_at_start.code, 63);
    EXPECT_EQ(state_at_start.errors, 1);
    EXPECT_EQ(state_at_start.position, 0);
}

TEST_F(OptionState, KeepsTheFieldsOfARecordInTheirOrder)
{
    EXPECT_EQ(offsetof(long_option, name), 0U);
    EXPECT_EQ(offsetof(long_option, has_argument), sizeof(void *));
    EXPECT_EQ(offsetof(long_option, flag), 2 * sizeof(void *));
    EXPECT_EQ(offsetof(long_option, value), 3 * sizeof(void *));
    EXPECT_EQ(sizeof(long_option), 4 * sizeof(void *));
}

TEST_F(OptionState, StartsAgainWithAnotherVectorWhenTheIndexIsSetToZero)
{
    Arguments first{"prog", "-ab"};
    ASSERT_EQ(get_options(first.count(), first.vector(), "ab"), 'a'); // amid the cluster
    Arguments second{"prog", "-b", "-a"};
    option_index = 0;
    EXPECT_EQ(get_options(second.count(), second.vector(), "ab"), 'b');
    EXPECT_EQ(get_options(second.count(), second.vector(), "ab"), 'a');
    EXPECT_EQ(get_options(second.count(), second.vector(), "ab"), -1);
}

TEST_F(OptionState, StartsAgainWithTheSameVectorWhenTheIndexIsSetToZero)
{
    Arguments args{"prog", "-a", "x"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "a"); };
    EXPECT_EQ(results_until_end(call), (Results{'a'}));
    EXPECT_EQ(call(), -1);
    option_index = 0;
    EXPECT_EQ(results_until_end(call), (Results{'a'}));
}

TEST_F(ShortOption, IsReturnedAndLeftInTheCode)
{
    Arguments args{"prog", "-a"};
    EXPECT_EQ(get_options(args.count(), args.vector(), "a"), 'a');
    EXPECT_EQ(option_code, 'a');
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(option_position, 1);
}

TEST_F(ShortOption, LeadsToTheFirstOperandAtTheEnd)
{
    Arguments args{"prog", "-a", "-b", "x", "y"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "ab"); };
    EXPECT_EQ(results_until_end(call), (Results{'a', 'b'}));
    EXPECT_EQ(option_index, 3);
}

TEST_F(ShortOption, EndsTheScanAtANullElementBelowTheCount)
{
    Arguments args{"prog", "-a", "-b"};
    args.vector()[2] = nullptr;
    EXPECT_EQ(get_options(args.count(), args.vector(), "ab"), 'a');
    EXPECT_EQ(get_options(args.count(), args.vector(), "ab"), -1);
    EXPECT_EQ(option_index, 2);
}

TEST_F(ShortOption, IsHandedOutOneACallFromACluster)
{
    Arguments args{"prog", "-abc", "-d"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "abcd"); };
    EXPECT_EQ(call(), 'a');
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 2);
    EXPECT_EQ(call(), 'b');
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 3);
    EXPECT_EQ(call(), 'c');
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(option_position, 1);
    EXPECT_EQ(call(), 'd');
    EXPECT_EQ(call(), -1);
}

TEST_F(ShortOption, MayBeGivenTwice)
{
    Arguments args{"prog", "-aa", "-a"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "a"); };
    EXPECT_EQ(results_until_end(call), (Results{'a', 'a', 'a'}));
}

TEST_F(ShortOption, WithoutAnArgumentLeavesANullArgument)
{
    Arguments args{"prog", "-ox", "-a"};
    ASSERT_EQ(get_options(args.count(), args.vector(), "o:a"), 'o');
    ASSERT_STREQ(option_argument, "x");
    EXPECT_EQ(get_options(args.count(), args.vector(), "o:a"), 'a');
    EXPECT_EQ(option_argument, nullptr);
}

TEST_F(ShortOption, IsReturnedAsItsByteOutsideASCII)
{
    Arguments args{"prog", "-\xe9\xff"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "\xe9\xff"); };
    EXPECT_EQ(call(), 0xe9);
    EXPECT_EQ(option_code, 0xe9);
    EXPECT_EQ(call(), 0xff);
    EXPECT_EQ(call(), -1);
}

TEST_F(ShortOption, StoresNoIndexOfALongOption)
{
    const long_option table[] = {{"all", 0, nullptr, 7}, {nullptr, 0, nullptr, 0}};
    Arguments args{"prog", "-a"};
    int index = -5;
    EXPECT_EQ(get_long_options(args.count(), args.vector(), "a", table, &index), 'a');
    EXPECT_EQ(index, -5);
}

// Deliberate: without a table nothing takes the two dashes for more than a cluster.
TEST_F(ShortOption, ReadsADoubleDashElementAsAClusterThatBeginsWithADash)
{
    Arguments args{"prog", "--ab"};
    Results results;
    const std::string text = diagnostics_of([&] {
        results = results_until_end([&] { return get_options(args.count(), args.vector(), "ab"); });
    });
    EXPECT_EQ(results, (Results{63, 'a', 'b'}));
    EXPECT_EQ(text, "prog: invalid option -- `--'\n");
}

// Deliberate: the test for "--" comes before the scan is started at element 1.
TEST_F(ShortOption, EndsAtOnceInAProgramCalledTwoDashes)
{
    Arguments args{"--", "-a"};
    EXPECT_EQ(get_options(args.count(), args.vector(), "a"), -1);
    EXPECT_EQ(option_index, 1);
}

TEST_F(ShortOptionArgument, IsTakenWhereverItStands)
{
    struct {
        Texts elements;
        const char *argument;
        int index_after;
    } const cases[] = {
        {{"prog", "-ox", "y"}, "x", 2},
        {{"prog", "-o", "x", "y"}, "x", 3},
        {{"prog", "-o=x", "y"}, "x", 2},
        {{"prog", "-o==x", "y"}, "=x", 2}, // one "=" only
        {{"prog", "-ox=y", "z"}, "x=y", 2},
        {{"prog", "-o", "=x", "y"}, "=x", 3}, // the "=" of an element of its own stays
        {{"prog", "-o=", "x", "y"}, "x", 3},  // nothing behind the "="
        {{"prog", "-o", "", "y"}, "", 3},
        {{"prog", "-o", "-a", "y"}, "-a", 3}, // looks like an option
        {{"prog", "-o", "--", "y"}, "--", 3},
        {{"prog", "-o", "-", "y"}, "-", 3},
        {{"prog", "-o", "-5", "y"}, "-5", 3},
        {{"prog", "-o-5", "y"}, "-5", 2},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.elements));
        Arguments args(c.elements);
        option_index = 0;
        EXPECT_EQ(get_options(args.count(), args.vector(), "ao:"), 'o');
        EXPECT_STREQ(option_argument, c.argument);
        EXPECT_EQ(option_code, 'o');
        EXPECT_EQ(option_index, c.index_after);
        EXPECT_EQ(option_position, 1);
    }
}

TEST_F(ShortOptionArgument, IsAPointerIntoTheVector)
{
    Arguments args{"prog", "-o=x", "-o", "y"};
    char *const attached = args.vector()[1] + 3;
    char *const separate = args.vector()[3];
    ASSERT_EQ(get_options(args.count(), args.vector(), "o:"), 'o');
    EXPECT_EQ(option_argument, attached);
    ASSERT_EQ(get_options(args.count(), args.vector(), "o:"), 'o');
    EXPECT_EQ(option_argument, separate);
}

TEST_F(ShortOptionArgument, IsTheRestOfACluster)
{
    Arguments args{"prog", "-abofile", "-a"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "abo:"); };
    EXPECT_EQ(call(), 'a');
    EXPECT_EQ(call(), 'b');
    EXPECT_EQ(call(), 'o');
    EXPECT_STREQ(option_argument, "file");
    EXPECT_EQ(call(), 'a');
    EXPECT_EQ(call(), -1);
}

TEST_F(ShortOptionArgument, IsTheElementBehindACluster)
{
    Arguments args{"prog", "-ao", "file", "-b"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "abo:"); };
    EXPECT_EQ(call(), 'a');
    EXPECT_EQ(call(), 'o');
    EXPECT_STREQ(option_argument, "file");
    EXPECT_EQ(option_index, 3);
    EXPECT_EQ(call(), 'b');
    EXPECT_EQ(call(), -1);
}

TEST_F(ShortOptionArgument, MayBeLeftOutWhereItIsOptional)
{
    struct {
        const char *element;
        const char *argument;
    } const cases[] = {
        {"-ox", "x"}, {"-o=x", "x"}, {"-o==", "="}, {"-o", nullptr}, {"-o=", nullptr},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.element);
        Arguments args{"prog", c.element, "next"};
        option_index = 0;
        EXPECT_EQ(get_options(args.count(), args.vector(), "o::"), 'o');
        EXPECT_STREQ(option_argument, c.argument);
        EXPECT_EQ(option_index, 2); // the next element is never taken
        EXPECT_EQ(option_position, 1);
        EXPECT_EQ(get_options(args.count(), args.vector(), "o::"), -1);
        EXPECT_EQ(option_index, 2);
    }
}

TEST_F(ShortOptionArgument, IsReadAsMoreOptionsWhereNoneIsTaken)
{
    Arguments args{"prog", "-a=b"};
    Results results;
    const std::string text = diagnostics_of([&] {
        results = results_until_end([&] { return get_options(args.count(), args.vector(), "ab"); });
    });
    EXPECT_EQ(results, (Results{'a', 63, 'b'}));
    EXPECT_EQ(text, "prog: invalid option -- `-='\n");
}
