// The three ways of treating operands, and the end of the options.
// Tests support/options/operands.cpp.

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/support/options/arguments.h"

namespace {

using Texts = std::vector<std::string>;
using Results = std::vector<int>;

const long_option table[] = {
    {"one", 0, nullptr, 101},
    {"once", 0, nullptr, 102},
    {"output", 1, nullptr, 103},
    {nullptr, 0, nullptr, 0},
};

/// A whole scan with the table above.
Results scan(Arguments &args, const char *short_options)
{
    return results_until_end([&] {
        return get_long_options(args.count(), args.vector(), short_options, table, nullptr);
    });
}

class Permute : public OptionsTest {};
class RequireOrder : public OptionsTest {};
class ReturnInOrder : public OptionsTest {};
class OptionMode : public OptionsTest {};
class TwoDashes : public OptionsTest {};

} // namespace

TEST_F(Permute, BringsAnOptionInFrontOfTheOperandsBeforeIt)
{
    Arguments args{"prog", "a", "-x", "b"};
    EXPECT_EQ(get_options(args.count(), args.vector(), "x"), 'x');
    EXPECT_EQ(args.order(), (Texts{"prog", "-x", "a", "b"}));
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(get_options(args.count(), args.vector(), "x"), -1);
    EXPECT_EQ(args.order(), (Texts{"prog", "-x", "a", "b"}));
    EXPECT_EQ(option_index, 2);
}

TEST_F(Permute, OrdersAWholeVector)
{
    struct {
        Texts elements;
        Results results;
        Texts order;
        int first_operand;
    } const cases[] = {
        {{"prog"}, {}, {"prog"}, 1},
        {{"prog", "a", "b"}, {}, {"prog", "a", "b"}, 1},
        {{"prog", "-x", "a"}, {'x'}, {"prog", "-x", "a"}, 2},
        {{"prog", "a", "b", "c", "-x"}, {'x'}, {"prog", "-x", "a", "b", "c"}, 2},
        {{"prog", "a", "-x", "b", "-y", "c"}, {'x', 'y'}, {"prog", "-x", "-y", "a", "b", "c"}, 3},
        {{"prog", "a", "b", "-o", "v", "c"}, {'o'}, {"prog", "-o", "v", "a", "b", "c"}, 3},
        {{"prog", "a", "-ov", "c"}, {'o'}, {"prog", "-ov", "a", "c"}, 2},
        {{"prog", "a", "--output", "v", "c"}, {103}, {"prog", "--output", "v", "a", "c"}, 3},
        {{"prog", "a", "b", "--out=v", "c"}, {103}, {"prog", "--out=v", "a", "b", "c"}, 2},
        {{"prog", "a", "-o", "v", "b", "--one", "-x"},
         {'o', 101, 'x'},
         {"prog", "-o", "v", "--one", "-x", "a", "b"},
         5},
        {{"prog", "a", "-p", "b"}, {'p'}, {"prog", "-p", "a", "b"}, 2}, // optional and absent
        {{"prog", "-", "-x", "-5", "", "-y"}, {'x', 'y'}, {"prog", "-x", "-y", "-", "-5", ""}, 3},
        {{"prog", "same", "-x", "same"}, {'x'}, {"prog", "-x", "same", "same"}, 2},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.elements));
        Arguments args(c.elements);
        option_index = 0;
        EXPECT_EQ(scan(args, "xyo:p::"), c.results);
        EXPECT_EQ(args.order(), c.order);
        EXPECT_EQ(option_index, c.first_operand);
        EXPECT_EQ(args.vector()[args.count()], nullptr);
    }
}

TEST_F(Permute, TellsTheArgumentOfAnOptionThatItMoves)
{
    Arguments args{"prog", "a", "-o", "v", "b", "-ow"};
    ASSERT_EQ(get_options(args.count(), args.vector(), "o:"), 'o');
    EXPECT_STREQ(option_argument, "v");
    EXPECT_EQ(option_index, 3);
    ASSERT_EQ(get_options(args.count(), args.vector(), "o:"), 'o');
    EXPECT_STREQ(option_argument, "w");
    EXPECT_EQ(option_index, 4);
    EXPECT_EQ(args.order(), (Texts{"prog", "-o", "v", "-ow", "a", "b"}));
}

// Deliberate: the skipped operands are only remembered by a call that finishes their option.
TEST_F(Permute, LeavesOperandsBeforeAClusterWhereTheyAre)
{
    Arguments args{"prog", "a", "-xy", "b", "-x"};
    EXPECT_EQ(get_options(args.count(), args.vector(), "xy"), 'x');
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(option_position, 2);
    EXPECT_EQ(get_options(args.count(), args.vector(), "xy"), 'y');
    EXPECT_EQ(option_index, 3);
    EXPECT_EQ(get_options(args.count(), args.vector(), "xy"), 'x');
    EXPECT_EQ(option_index, 4);
    EXPECT_EQ(get_options(args.count(), args.vector(), "xy"), -1);
    EXPECT_EQ(args.order(), (Texts{"prog", "a", "-xy", "-x", "b"}));
}

// Deliberate: an error advances past its element without reordering.
TEST_F(Permute, LeavesOperandsBeforeAnErrorWhereTheyAre)
{
    struct {
        Texts elements;
        Results results;
        int first_operand;
    } const cases[] = {
        {{"prog", "a", "-z", "b"}, {63}, 3},
        {{"prog", "a", "-o"}, {58}, 3},
        {{"prog", "a", "--output"}, {58}, 3},
        {{"prog", "a", "--on", "b"}, {63, 63, 63}, 3}, // ambiguous, then "o" and "n"
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.elements));
        Arguments args(c.elements);
        option_index = 0;
        option_errors = 0;
        const char *const short_options = c.results.size() == 3 ? "x" : "xo:";
        EXPECT_EQ(scan(args, short_options), c.results);
        EXPECT_EQ(args.order(), c.elements);
        EXPECT_EQ(option_index, c.first_operand);
    }
}

TEST_F(Permute, KeepsTheIndexOnAnAmbiguousElementBehindOperands)
{
    Arguments args{"prog", "a", "b", "--on"};
    option_errors = 0;
    EXPECT_EQ(get_long_options(args.count(), args.vector(), "", table, nullptr), 63);
    EXPECT_EQ(option_index, 3);
    EXPECT_EQ(option_position, 2);
}

TEST_F(RequireOrder, EndsAtTheFirstOperand)
{
    struct {
        Texts elements;
        Results results;
        int first_operand;
    } const cases[] = {
        {{"prog"}, {}, 1},
        {{"prog", "a", "-x"}, {}, 1},
        {{"prog", "-x", "a", "-x"}, {'x'}, 2},
        {{"prog", "-xx", "-o", "v", "a", "-x"}, {'x', 'x', 'o'}, 4},
        {{"prog", "-x", "-", "-x"}, {'x'}, 2},
        {{"prog", "-x", "-5", "-x"}, {'x'}, 2},
        {{"prog", "-x", "", "-x"}, {'x'}, 2},
        {{"prog", "--one", "-x", "+x"}, {101, 'x'}, 3},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.elements));
        Arguments args(c.elements);
        option_index = 0;
        EXPECT_EQ(scan(args, "+xo:"), c.results);
        EXPECT_EQ(args.order(), c.elements);
        EXPECT_EQ(option_index, c.first_operand);
        EXPECT_EQ(scan(args, "+xo:"), (Results{})); // and stays there
        EXPECT_EQ(option_index, c.first_operand);
    }
}

TEST_F(ReturnInOrder, GivesOneForAnOperand)
{
    Arguments args{"prog", "a", "-x", "b"};
    char *const operand = args.vector()[1];
    EXPECT_EQ(get_options(args.count(), args.vector(), "-x"), 1);
    EXPECT_EQ(option_argument, operand);
    EXPECT_EQ(option_code, 1);
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(get_options(args.count(), args.vector(), "-x"), 'x');
    EXPECT_EQ(option_argument, nullptr);
    EXPECT_EQ(get_options(args.count(), args.vector(), "-x"), 1);
    EXPECT_STREQ(option_argument, "b");
    EXPECT_EQ(get_options(args.count(), args.vector(), "-x"), -1);
    EXPECT_EQ(option_index, 4);
    EXPECT_EQ(args.order(), (Texts{"prog", "a", "-x", "b"}));
}

TEST_F(ReturnInOrder, TakesALoneDashANumberAndAnEmptyElementForOperands)
{
    for (const char *element : {"-", "-5", "", "+x", "x"}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element};
        option_index = 0;
        EXPECT_EQ(get_options(args.count(), args.vector(), "-x"), 1);
        EXPECT_STREQ(option_argument, element);
    }
}

TEST_F(ReturnInOrder, DoesNotReturnTheArgumentOfAnOption)
{
    Arguments args{"prog", "-o", "v", "a"};
    EXPECT_EQ(scan(args, "-o:"), (Results{'o', 1}));
    EXPECT_STREQ(option_argument, "a");
}

TEST_F(OptionMode, EndsAtOnceWithOnlyTheProgramName)
{
    for (const char *short_options : {"x", "+x", "-x", ""}) {
        SCOPED_TRACE(short_options);
        Arguments args{"prog"};
        option_index = 0;
        EXPECT_EQ(get_options(args.count(), args.vector(), short_options), -1);
        EXPECT_EQ(get_options(args.count(), args.vector(), short_options), -1);
    }
    option_index = 0;
    Arguments args{"prog"};
    EXPECT_EQ(get_long_options(args.count(), args.vector(), nullptr, table, nullptr), -1);
}

TEST_F(OptionMode, EndsAtOnceWithoutEvenTheProgramName)
{
    char *vector[] = {nullptr, nullptr};
    EXPECT_EQ(get_options(1, vector, "x"), -1);
    EXPECT_EQ(get_options(1, vector, "-x"), -1);
}

TEST_F(OptionMode, IsNotAnOptionCharacterItself)
{
    for (const char *short_options : {"+x", "-x"}) {
        SCOPED_TRACE(short_options);
        Arguments args{"prog", std::string("-x") + short_options[0]};
        option_index = 0;
        option_errors = 0;
        EXPECT_EQ(scan(args, short_options), (Results{'x', 63}));
    }
}

TEST_F(OptionMode, IsChosenByTheFirstCharacterOnly)
{
    Arguments args{"prog", "a", "-x+"};
    EXPECT_EQ(scan(args, "x+"), (Results{'x', '+'}));
    Arguments others{"prog", "-+"};
    option_index = 0;
    EXPECT_EQ(scan(others, "-+"), (Results{'+'}));
}

TEST_F(OptionMode, RequiresOrderWhenTheEnvironmentSaysSo)
{
    for (const char *value : {"1", ""}) {
        SCOPED_TRACE(value);
        setenv("POSIXLY_CORRECT", value, 1);
        Arguments args{"prog", "a", "-x"};
        option_index = 0;
        EXPECT_EQ(get_options(args.count(), args.vector(), "x"), -1);
        EXPECT_EQ(option_index, 1);
        EXPECT_EQ(args.order(), (Texts{"prog", "a", "-x"}));
    }
}

TEST_F(OptionMode, RequiresOrderByTheEnvironmentWithoutShortOptionsToo)
{
    setenv("POSIXLY_CORRECT", "1", 1);
    Arguments args{"prog", "a", "--one"};
    EXPECT_EQ(get_long_options(args.count(), args.vector(), nullptr, table, nullptr), -1);
}

TEST_F(OptionMode, ReturnsInOrderWhateverTheEnvironmentSays)
{
    setenv("POSIXLY_CORRECT", "1", 1);
    Arguments args{"prog", "a", "-x"};
    EXPECT_EQ(scan(args, "-x"), (Results{1, 'x'}));
}

TEST_F(OptionMode, IsChosenAnewByEveryCall)
{
    Arguments args{"prog", "-x", "a", "-x"};
    ASSERT_EQ(get_options(args.count(), args.vector(), "x"), 'x');
    setenv("POSIXLY_CORRECT", "1", 1);
    EXPECT_EQ(get_options(args.count(), args.vector(), "x"), -1);
    unsetenv("POSIXLY_CORRECT");
    EXPECT_EQ(get_options(args.count(), args.vector(), "x"), 'x');
}

TEST_F(TwoDashes, EndTheOptionsAndAreConsumed)
{
    for (const char *short_options : {"x", "+x", "-x"}) {
        SCOPED_TRACE(short_options);
        Arguments args{"prog", "-x", "--", "-x"};
        option_index = 0;
        EXPECT_EQ(scan(args, short_options), (Results{'x'}));
        EXPECT_EQ(option_index, 3);
        EXPECT_EQ(args.order(), (Texts{"prog", "-x", "--", "-x"}));
    }
}

TEST_F(TwoDashes, EndTheOptionsAsTheFirstElement)
{
    for (const char *posixly_correct : {"", "1"}) {
        for (const char *short_options : {"x", "+x", "-x", "", "+", "-"}) {
            SCOPED_TRACE(std::string(short_options) + posixly_correct);
            if (*posixly_correct != '\0') {
                setenv("POSIXLY_CORRECT", posixly_correct, 1);
            }
            Arguments args{"prog", "--", "-x", "a"};
            option_index = 0;
            EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(scan(args, short_options), (Results{})); }),
                      "");
            EXPECT_EQ(option_index, 2);
            EXPECT_EQ(args.order(), (Texts{"prog", "--", "-x", "a"}));
        }
    }
}

TEST_F(TwoDashes, EndTheOptionsWithoutShortOptions)
{
    setenv("POSIXLY_CORRECT", "1", 1);
    const long_option level[] = {{"level", 2, nullptr, 7}, {nullptr, 0, nullptr, 0}};
    Arguments args{"prog", "--", "--level"};
    EXPECT_EQ(get_long_options(args.count(), args.vector(), nullptr, level, nullptr), -1);
    EXPECT_EQ(option_index, 2);
}

TEST_F(TwoDashes, AreMovedInFrontOfTheOperandsSkippedBeforeThem)
{
    Arguments args{"prog", "-x", "a", "b", "--", "-x", "c"};
    EXPECT_EQ(scan(args, "x"), (Results{'x'}));
    EXPECT_EQ(args.order(), (Texts{"prog", "-x", "--", "a", "b", "-x", "c"}));
    EXPECT_EQ(option_index, 3);
}

TEST_F(TwoDashes, EndTheOptionsAtTheEndOfTheVector)
{
    Arguments args{"prog", "a", "--"};
    EXPECT_EQ(scan(args, "x"), (Results{}));
    EXPECT_EQ(args.order(), (Texts{"prog", "--", "a"}));
    EXPECT_EQ(option_index, 2);
}

TEST_F(TwoDashes, EndTheOptionsBehindAnOperandReturnedInOrder)
{
    Arguments args{"prog", "a", "--", "-x"};
    EXPECT_EQ(scan(args, "-x"), (Results{1}));
    EXPECT_EQ(option_index, 3);
}
