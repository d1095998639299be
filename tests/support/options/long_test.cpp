// Long options: matching, arguments, abbreviations, and the fall back to short options.
// Tests support/options/long_names.cpp.

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/support/options/arguments.h"

namespace {

using Texts = std::vector<std::string>;
using Results = std::vector<int>;

constexpr long_option end_of_table = {nullptr, 0, nullptr, 0};

const long_option plain_table[] = {
    {"all", 0, nullptr, 101},
    {"output", 1, nullptr, 102},
    {"level", 2, nullptr, 103},
    end_of_table,
};

/// What a call for one of the tables leaves behind.
struct Found {
    int result;
    int index; ///< -1 when nothing was stored
};

Found find(Arguments &args, const char *short_options, const long_option *table)
{
    Found found = {0, -1};
    found.result =
        get_long_options(args.count(), args.vector(), short_options, table, &found.index);
    return found;
}

class LongOption : public OptionsTest {};
class LongOptionArgument : public OptionsTest {};
class Abbreviation : public OptionsTest {};
class UnknownLongName : public OptionsTest {};

} // namespace

TEST_F(LongOption, IsReturnedByItsValueWithItsPlaceInTheTable)
{
    Arguments args{"prog", "--output=x", "--all"};
    Found found = find(args, "", plain_table);
    EXPECT_EQ(found.result, 102);
    EXPECT_EQ(found.index, 1);
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(option_position, 1);
    found = find(args, "", plain_table);
    EXPECT_EQ(found.result, 101);
    EXPECT_EQ(found.index, 0);
    EXPECT_EQ(option_index, 3);
    EXPECT_EQ(find(args, "", plain_table).result, -1);
}

TEST_F(LongOption, NeedsNoPlaceToStoreItsIndex)
{
    Arguments args{"prog", "--all"};
    EXPECT_EQ(get_long_options(args.count(), args.vector(), "", plain_table, nullptr), 101);
}

TEST_F(LongOption, StoresItsValueThroughItsFlagAndGivesZero)
{
    std::int32_t first = 5;
    std::int32_t second = 6;
    const long_option table[] = {{"one", 0, &first, 11}, {"two", 0, &second, 12}, end_of_table};
    Arguments args{"prog", "--two"};
    const Found found = find(args, "", table);
    EXPECT_EQ(found.result, 0);
    EXPECT_EQ(found.index, 1);
    EXPECT_EQ(first, 5);
    EXPECT_EQ(second, 12);
}

TEST_F(LongOption, LeavesTheCodeOfTheLastShortOption)
{
    Arguments args{"prog", "-a", "--all"};
    ASSERT_EQ(find(args, "a", plain_table).result, 'a');
    ASSERT_EQ(find(args, "a", plain_table).result, 101);
    EXPECT_EQ(option_code, 'a');
}

TEST_F(LongOption, LeavesANullArgumentWhereItTakesNone)
{
    Arguments args{"prog", "-ox", "--all", "y"};
    ASSERT_EQ(find(args, "o:", plain_table).result, 'o');
    ASSERT_EQ(find(args, "o:", plain_table).result, 101);
    EXPECT_EQ(option_argument, nullptr);
    EXPECT_EQ(option_index, 3);
}

TEST_F(LongOption, IgnoresTextBehindAnEqualsSignWhereItTakesNone)
{
    for (const char *element : {"--all=x", "--all=", "--al=x=y"}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element};
        option_index = 0;
        EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(find(args, "", plain_table).result, 101); }), "");
        EXPECT_EQ(option_argument, nullptr);
        EXPECT_EQ(option_index, 2);
        EXPECT_EQ(find(args, "", plain_table).result, -1);
    }
}

TEST_F(LongOption, IsNotLookedForBehindOneDash)
{
    Arguments args{"prog", "-all"};
    const auto call = [&] { return find(args, "al", plain_table).result; };
    EXPECT_EQ(results_until_end(call), (Results{'a', 'l', 'l'}));
}

TEST_F(LongOption, IsMatchedWithItsCase)
{
    Arguments args{"prog", "--All"};
    option_errors = 0;
    const auto call = [&] { return find(args, "", plain_table).result; };
    EXPECT_EQ(results_until_end(call), (Results{63, 63, 63}));
}

TEST_F(LongOption, MayReturnAValueThatMeansNothingToTheParser)
{
    const long_option table[] = {{"one", 0, nullptr, 0}, {"two", 0, nullptr, 63}, end_of_table};
    Arguments args{"prog", "--one", "--two"};
    EXPECT_EQ(find(args, "", table).result, 0);
    EXPECT_EQ(find(args, "", table).result, 63);
    EXPECT_EQ(find(args, "", table).result, -1);
}

TEST_F(LongOptionArgument, IsTakenWhereverItStands)
{
    struct {
        Texts elements;
        const char *argument;
        int index_after;
    } const cases[] = {
        {{"prog", "--output=x", "y"}, "x", 2},
        {{"prog", "--output", "x", "y"}, "x", 3},
        {{"prog", "--out=x", "y"}, "x", 2},
        {{"prog", "--out", "x", "y"}, "x", 3},
        {{"prog", "--output==x", "y"}, "=x", 2},
        {{"prog", "--output=a=b", "y"}, "a=b", 2},
        {{"prog", "--output=", "x", "y"}, "x", 3}, // nothing behind the "="
        {{"prog", "--output", "=x", "y"}, "=x", 3},
        {{"prog", "--output", "", "y"}, "", 3},
        {{"prog", "--output", "--all", "y"}, "--all", 3},
        {{"prog", "--output", "--", "y"}, "--", 3},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.elements));
        Arguments args(c.elements);
        option_index = 0;
        EXPECT_EQ(find(args, "", plain_table).result, 102);
        EXPECT_STREQ(option_argument, c.argument);
        EXPECT_EQ(option_index, c.index_after);
        EXPECT_EQ(option_position, 1);
    }
}

TEST_F(LongOptionArgument, IsAPointerIntoTheVector)
{
    Arguments args{"prog", "--output=x", "--output", "y"};
    char *const attached = args.vector()[1] + 9;
    char *const separate = args.vector()[3];
    ASSERT_EQ(find(args, "", plain_table).result, 102);
    EXPECT_EQ(option_argument, attached);
    ASSERT_EQ(find(args, "", plain_table).result, 102);
    EXPECT_EQ(option_argument, separate);
}

TEST_F(LongOptionArgument, IsReportedMissingWithTheFullNameAndStoresNothing)
{
    std::int32_t flag = 5;
    const long_option table[] = {{"all", 0, nullptr, 1}, {"output", 1, &flag, 2}, end_of_table};
    for (const char *element : {"--output", "--output=", "--out", "--o="}) {
        SCOPED_TRACE(element);
        Arguments args{"prog", element};
        option_index = 0;
        Found found = {0, -1};
        const std::string text = diagnostics_of([&] { found = find(args, "", table); });
        EXPECT_EQ(found.result, 58);
        EXPECT_EQ(text, "prog: argument required for option `--output'\n");
        EXPECT_EQ(found.index, -1);
        EXPECT_EQ(flag, 5);
        EXPECT_EQ(option_code, 58);
        EXPECT_EQ(option_index, 2);
        EXPECT_EQ(find(args, "", table).result, -1);
    }
}

TEST_F(LongOptionArgument, IsNotReportedMissingWhenDiagnosticsAreOff)
{
    Arguments args{"prog", "--output"};
    option_errors = 0;
    EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(find(args, "", plain_table).result, 58); }), "");
}

TEST_F(LongOptionArgument, IsTakenOnlyWhenAttachedWhereItIsOptional)
{
    Arguments args{"prog", "--level=3", "x"};
    EXPECT_EQ(find(args, "", plain_table).result, 103);
    EXPECT_STREQ(option_argument, "3");
    EXPECT_EQ(option_index, 2);
    EXPECT_EQ(option_position, 1);
    EXPECT_EQ(find(args, "", plain_table).result, -1);
    EXPECT_EQ(option_index, 2);
}

// Deliberate: without the optional argument the element is not finished.
TEST_F(LongOptionArgument, LeavesTheNameToBeReadAsShortOptionsWhereItIsOptionalAndAbsent)
{
    Arguments args{"prog", "--level", "3"};
    EXPECT_EQ(find(args, "lev", plain_table).result, 103);
    EXPECT_EQ(option_argument, nullptr);
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 2);
    const auto call = [&] { return find(args, "lev", plain_table).result; };
    EXPECT_EQ(results_until_end(call), (Results{'l', 'e', 'v', 'e', 'l'}));
    EXPECT_EQ(option_index, 2);
}

TEST_F(LongOptionArgument, CountsAsAbsentBehindABareEqualsSign)
{
    Arguments args{"prog", "--level="};
    option_errors = 0;
    EXPECT_EQ(find(args, "lev", plain_table).result, 103);
    EXPECT_EQ(option_argument, nullptr);
    EXPECT_EQ(option_position, 2);
    const auto call = [&] { return find(args, "lev", plain_table).result; };
    EXPECT_EQ(results_until_end(call), (Results{'l', 'e', 'v', 'e', 'l', 63}));
}

TEST_F(Abbreviation, SelectsTheOneNameThatBeginsWithIt)
{
    const long_option table[] = {
        {"verbose", 0, nullptr, 1}, {"version", 0, nullptr, 2}, end_of_table};
    struct {
        const char *element;
        int value;
    } const cases[] = {
        {"--verb", 1}, {"--verbos", 1}, {"--verbose", 1}, {"--vers", 2}, {"--version", 2},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.element);
        Arguments args{"prog", c.element};
        option_index = 0;
        const Found found = find(args, "", table);
        EXPECT_EQ(found.result, c.value);
        EXPECT_EQ(found.index, c.value - 1);
    }
}

TEST_F(Abbreviation, IsAmbiguousWhenTwoNamesBeginWithIt)
{
    const long_option table[] = {
        {"verbose", 0, nullptr, 1}, {"all", 0, nullptr, 3}, {"version", 0, nullptr, 2},
        {"verify", 0, nullptr, 4},  end_of_table,
    };
    Arguments args{"prog", "--ver"};
    Found found = {0, -1};
    option_code = 'x';
    const std::string text = diagnostics_of([&] { found = find(args, "", table); });
    EXPECT_EQ(found.result, 63);
    EXPECT_EQ(found.index, -1);
    EXPECT_EQ(text, "prog: option `--ver' is ambiguous (could be `--verbose' or `--version')\n");
    EXPECT_EQ(option_code, 63);
    EXPECT_EQ(option_index, 1);
    EXPECT_EQ(option_position, 2);
}

TEST_F(Abbreviation, IsCalledAmbiguousWithTheWholeElement)
{
    const long_option table[] = {{"one", 1, nullptr, 1}, {"once", 1, nullptr, 2}, end_of_table};
    Arguments args{"prog", "--on=x y"};
    EXPECT_EQ(diagnostics_of([&] { find(args, "", table); }),
              "prog: option `--on=x y' is ambiguous (could be `--one' or `--once')\n");
}

TEST_F(Abbreviation, IsNotCalledAmbiguousWhenDiagnosticsAreOff)
{
    const long_option table[] = {{"one", 1, nullptr, 1}, {"once", 1, nullptr, 2}, end_of_table};
    Arguments args{"prog", "--on"};
    option_errors = 0;
    EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(find(args, "", table).result, 63); }), "");
}

// Deliberate: the ambiguous element stays current, and its name is read again as short options.
TEST_F(Abbreviation, IsReadAsShortOptionsAfterAnAmbiguity)
{
    const long_option table[] = {{"one", 1, nullptr, 1}, {"once", 1, nullptr, 2}, end_of_table};
    Arguments args{"prog", "--on", "x"};
    option_errors = 0;
    const auto call = [&] { return find(args, "no", table).result; };
    EXPECT_EQ(results_until_end(call), (Results{63, 'o', 'n'}));
    EXPECT_EQ(option_index, 2);
}

// Deliberate: the search stops at the second abbreviation and never sees the exact name.
TEST_F(Abbreviation, IsAmbiguousEvenWhenTheExactNameStandsBehindTheTwo)
{
    const long_option table[] = {
        {"verbose", 0, nullptr, 1},
        {"version", 0, nullptr, 2},
        {"ver", 0, nullptr, 3},
        end_of_table,
    };
    Arguments args{"prog", "--ver"};
    option_errors = 0;
    EXPECT_EQ(find(args, "", table).result, 63);
}

TEST_F(Abbreviation, GivesWayToTheExactNameBeforeTheSecond)
{
    const long_option first[] = {
        {"verbose", 0, nullptr, 1},
        {"ver", 0, nullptr, 3},
        {"version", 0, nullptr, 2},
        end_of_table,
    };
    Arguments args{"prog", "--ver"};
    EXPECT_EQ(find(args, "", first).result, 3);
    const long_option second[] = {
        {"ver", 0, nullptr, 3},
        {"verbose", 0, nullptr, 1},
        {"version", 0, nullptr, 2},
        end_of_table,
    };
    option_index = 0;
    EXPECT_EQ(find(args, "", second).result, 3);
}

TEST_F(Abbreviation, GivesWayToAnExactNameBehindOneThatItAbbreviates)
{
    const long_option table[] = {
        {"verbose", 0, nullptr, 1},
        {"version", 0, nullptr, 2},
        {"vers", 0, nullptr, 3},
        end_of_table,
    };
    Arguments args{"prog", "--vers"}; // begins "version" and "vers", but not "verbose"
    EXPECT_EQ(find(args, "", table).result, 3);
}

TEST_F(Abbreviation, IsAmbiguousBetweenRecordsThatAgreeInEverything)
{
    const long_option table[] = {{"same", 0, nullptr, 1}, {"same", 0, nullptr, 1}, end_of_table};
    Arguments args{"prog", "--sam"};
    EXPECT_EQ(diagnostics_of([&] { EXPECT_EQ(find(args, "", table).result, 63); }),
              "prog: option `--sam' is ambiguous (could be `--same' or `--same')\n");
}

// Deliberate: there is no diagnostic of its own for an unknown long name.
TEST_F(UnknownLongName, IsReadAsShortOptions)
{
    Arguments args{"prog", "--bab", "--allo=x"};
    option_errors = 0;
    const auto call = [&] { return find(args, "abl", plain_table).result; };
    EXPECT_EQ(results_until_end(call), (Results{'b', 'a', 'b', 'a', 'l', 'l', 63, 63, 63}));
}

TEST_F(UnknownLongName, MayCarryTheArgumentOfAShortOption)
{
    Arguments args{"prog", "--bo=x"};
    EXPECT_EQ(find(args, "bo:", plain_table).result, 'b');
    EXPECT_EQ(find(args, "bo:", plain_table).result, 'o');
    EXPECT_STREQ(option_argument, "x");
    EXPECT_EQ(option_index, 2);
}

TEST_F(UnknownLongName, IsReportedLetterByLetter)
{
    Arguments args{"prog", "--zz"};
    const auto call = [&] { return find(args, "a", plain_table).result; };
    const std::string text = diagnostics_of([&] {
        EXPECT_EQ(call(), 63);
        EXPECT_EQ(option_index, 1);
        EXPECT_EQ(call(), 63);
        EXPECT_EQ(option_index, 2);
        EXPECT_EQ(call(), -1);
    });
    EXPECT_EQ(text, "prog: invalid option -- `-z'\nprog: invalid option -- `-z'\n");
}

TEST_F(UnknownLongName, IsEveryNameWhereTheTableIsEmpty)
{
    Arguments args{"prog", "--ab"};
    const auto call = [&] { return find(args, "ab", &end_of_table).result; };
    EXPECT_EQ(results_until_end(call), (Results{'a', 'b'}));
}
