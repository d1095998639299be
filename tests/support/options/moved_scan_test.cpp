// Programs that set the scan's variables themselves between two calls.

#include <climits>
#include <gtest/gtest.h>

#include "support/options.h"
#include "tests/support/options/arguments.h"

namespace {

class MovedScan : public OptionsTest {
protected:
    MovedScan()
    {
        // A scan begun at index 0 forgets that an earlier one could not go on.
        Arguments args{"prog"};
        get_options(args.count(), args.vector(), "a");
        option_index = 0;
        option_position = 0;
    }
};

} // namespace

TEST_F(MovedScan, ReadsAShorterElementFromItsStart)
{
    Arguments args{"prog", "-abc", "-d", "file"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "abcd"); };
    EXPECT_EQ(call(), 'a');
    EXPECT_EQ(call(), 'b');
    option_index = 2; // "-d" has no fourth character
    EXPECT_EQ(call(), 'd');
    EXPECT_EQ(option_position, 1);
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(option_index, 3);
}

TEST_F(MovedScan, FindsNoOptionAtTheVeryEndOfAnElement)
{
    Arguments args{"prog", "-abc", "-d", "file"};
    option_errors = 0;
    const auto call = [&] { return get_options(args.count(), args.vector(), "abcd"); };
    EXPECT_EQ(call(), 'a');
    option_index = 2; // "-d" has no third character, but a NUL
    EXPECT_EQ(call(), 63);
    EXPECT_EQ(option_index, 3);
    EXPECT_EQ(option_position, 1);
    EXPECT_EQ(call(), -1);
}

TEST_F(MovedScan, GoesOnInAnElementThatIsLongEnough)
{
    Arguments args{"prog", "-abc", "-cdb", "file"};
    const auto call = [&] { return get_options(args.count(), args.vector(), "abcd"); };
    EXPECT_EQ(call(), 'a');
    option_index = 2;
    EXPECT_EQ(call(), 'd') << "the character behind the one that was read last";
    EXPECT_EQ(call(), 'b');
    EXPECT_EQ(call(), -1);
}

TEST_F(MovedScan, PassesOverAShorterElementThatIsAnOperand)
{
    Arguments args{"prog", "-abc", "", "-d"};
    const auto call = [&] {
        return get_long_options_only(args.count(), args.vector(), "abcd", nullptr, nullptr);
    };
    EXPECT_EQ(call(), 'a');
    EXPECT_EQ(call(), 'b');
    option_index = 2;
    EXPECT_EQ(call(), 'd');
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(args.order(), (std::vector<std::string>{"prog", "-abc", "-d", ""}));
}

TEST_F(MovedScan, TakesANegativePositionForTheStart)
{
    for (const std::int32_t position : {-1, INT32_MIN}) {
        Arguments args{"prog", "-ab"};
        option_index = 1;
        option_position = position;
        EXPECT_EQ(get_options(args.count(), args.vector(), "ab"), 'a');
        EXPECT_EQ(get_options(args.count(), args.vector(), "ab"), 'b');
    }
}

TEST_F(MovedScan, IsAtItsEndOutsideTheVector)
{
    for (const std::int32_t index : {-1, INT32_MIN, 3, INT32_MAX}) {
        Arguments args{"prog", "-a", "-b"};
        option_index = index;
        EXPECT_EQ(get_options(args.count(), args.vector(), "ab"), -1);
        EXPECT_EQ(option_index, index);
    }
}

TEST_F(MovedScan, NamesNoProgramWhereTheVectorHasNone)
{
    Arguments args{"prog", "-x"};
    args.vector()[0] = nullptr;
    option_index = 1;
    option_position = 1;
    const std::string text =
        diagnostics_of([&] { EXPECT_EQ(get_options(args.count(), args.vector(), "a"), 63); });
    EXPECT_EQ(text, ": invalid option -- `-x'\n");
}
