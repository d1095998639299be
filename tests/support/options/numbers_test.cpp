// Elements that read as a number are operands: `%f%s` converts exactly one item of them.
// Tests support/options/number_text.cpp.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/options.h"
#include "tests/support/options/arguments.h"
#include "tests/support/options/model.h"

namespace {

using Texts = std::vector<std::string>;
using Results = std::vector<int>;

class NumberElement : public OptionsTest {};

/// Whether \p element is an operand: with "-" for the short options it is then returned, and is
/// an invalid option otherwise.
bool is_operand(const std::string &element)
{
    Arguments args{"prog", element};
    option_index = 0;
    option_errors = 0;
    const int result = get_options(args.count(), args.vector(), "-");
    EXPECT_TRUE(result == 1 || result == 63) << result;
    return result == 1;
}

const Texts numbers = {
    "-5",
    "-0",
    "-00",
    "-007",
    "-0.25",
    "-1e3",
    "-2.5e3",
    "-12345678901234567890",
    // a point at either end, but digits
    "-5.",
    "-.5",
    "-5.e2",
    "-.5e2",
    // exponents
    "-1E3",
    "-1e+3",
    "-1e-3",
    "-1e03",
    "-0e0",
    // numbers that a float cannot hold are still numbers
    "-1e400",
    "-1e-400",
    "-1e99999999999999999999",
    // hexadecimal
    "-0x1",
    "-0X1",
    "-0x1p3",
    "-0X1P+3",
    "-0x1p-3",
    "-0x.8",
    "-0x1.",
    "-0x1.8p1",
    "-0xABCdef",
    "-0x1e5",
    // infinities and not-a-numbers, in either case
    "-inf",
    "-INF",
    "-Inf",
    "-infinity",
    "-INFINITY",
    "-iNfInItY",
    "-nan",
    "-NaN",
    // white space behind
    "-5 ",
    "-5\t",
    "-5\n",
    "-5\v",
    "-5\f",
    "-5\r",
    "-5 \t\n\v\f\r ",
    "-.5 ",
    "-1e3 ",
    "-inf ",
    "-0x1p3 ",
};

// The platform's own scanf may take "-nan" alone and leave the parenthesis to the word: the GNU
// library does.
const Texts numbers_with_a_parenthesis = {
    "-nan()", "-nan(abc)", "-NAN(0x7_F)", "-nan(abc) ", "-nan(_)",
};

const Texts options = {
    // not begun
    "-x",
    "-e5",
    "-.",
    "-.e5",
    "-+5",
    "--5",
    "-x5",
    "-,5",
    "- ",
    "- 5",
    "-\t5",
    "-f",
    "-p3",
    "-(5)",
    // something behind the number
    "-5x",
    "-5 x",
    "-5 6",
    "-5-",
    "-5-6",
    "-5,0",
    "-5.5.5",
    "-.5.",
    "-5..",
    "-5e3x",
    "-5e3.5",
    "-5e3e3",
    "-1f",
    "-1L",
    "-1_000",
    "-0b1",
    "-0o7",
    "-5\x01",
    "-5\x80",
    "-5\xa0",
    "-5=",
    "-5=6",
    "-0x1g",
    "-0x1p3x",
    "-0x1.8.8",
    "-0x1.8p1.5",
    "-0x1p1p1",
    // an exponent begun and not finished
    "-1 e5",
    "-1e 5",
    "-1e+ 5",
    // a word begun and not finished, or gone on with
    "-i",
    "-in",
    "-infi",
    "-infin",
    "-infini",
    "-infinit",
    "-infx",
    "-infinityx",
    "-inf5",
    "-inf inity",
    "-n",
    "-na",
    "-nanx",
    "-nan5",
    "-i nf",
    // a parenthesis that is not closed, or holds what it must not
    "-nan(",
    "-nan(a",
    "-nan(a b)",
    "-nan(a-b)",
    "-nan (a)",
    "-nan)",
    "-nan(a)b",
    "-nan((a))",
    "-inf(a)",
};

// What the scan reads is the longest text that begins a number; when it is cut off there, nothing
// is converted. The GNU library's scanf takes these all the same (bar "-0x" and its kind), as the
// number before the cut.
const Texts numbers_cut_off = {
    "-1e",   "-1E",    "-1e+",  "-1e-",  "-5.e",   "-.5e+",    "-1.5e-",
    "-1e ",  "-1e+ ",  "-0x",   "-0X",   "-0x ",   "-0x.",     "-0xg",
    "-0xp3", "-0x.p3", "-0x 1", "-0x1p", "-0x1p+", "-0x1.8P-", "-0x1p ",
};

void expect_operands(const Texts &elements, bool expected)
{
    for (const std::string &element : elements) {
        EXPECT_EQ(is_operand(element), expected) << testing::PrintToString(element);
        EXPECT_EQ(model_reads_as_number(element), expected)
            << "the model: " << testing::PrintToString(element);
    }
}

} // namespace

TEST_F(NumberElement, IsAnOperand)
{
    expect_operands(numbers, true);
}

TEST_F(NumberElement, MayBeANaNWithAParenthesis)
{
    expect_operands(numbers_with_a_parenthesis, true);
}

TEST_F(NumberElement, IsNoOtherElementWithADash)
{
    expect_operands(options, false);
}

TEST_F(NumberElement, IsNotANumberCutOff)
{
    expect_operands(numbers_cut_off, false);
}

TEST_F(NumberElement, MayBeOfAnyLength)
{
    const std::string digits(5000, '7');
    EXPECT_TRUE(is_operand("-" + digits));
    EXPECT_TRUE(is_operand("-" + digits + "." + digits));
    EXPECT_TRUE(is_operand("-5" + std::string(5000, ' ')));
    EXPECT_FALSE(is_operand("-" + digits + "x"));
}

TEST_F(NumberElement, MayBeFollowedByAWordOfAnyLength)
{
    for (const std::size_t length : {1999U, 2000U, 2001U, 2047U, 2048U, 2049U, 100000U}) {
        EXPECT_FALSE(is_operand("-5 " + std::string(length, 'w'))) << length;
        EXPECT_FALSE(is_operand("-5" + std::string(length, 'w'))) << length;
    }
}

TEST_F(NumberElement, GoesBeforeAShortOptionOfItsDigit)
{
    Arguments args{"prog", "-5", "-7 ", "-x"};
    EXPECT_EQ(results_until_end([&] { return get_options(args.count(), args.vector(), "57x"); }),
              (Results{'x'}));
    EXPECT_EQ(args.order(), (Texts{"prog", "-x", "-5", "-7 "}));
    EXPECT_EQ(option_index, 2);
}

TEST_F(NumberElement, IsAClusterOnceALetterFollows)
{
    Arguments args{"prog", "-5x", "-x5"};
    EXPECT_EQ(results_until_end([&] { return get_options(args.count(), args.vector(), "5x"); }),
              (Results{'5', 'x', 'x', '5'}));
}

TEST_F(NumberElement, MayBeTheArgumentOfAnOption)
{
    Arguments args{"prog", "-o", "-2.5e3", "-o-1"};
    EXPECT_EQ(get_options(args.count(), args.vector(), "o:"), 'o');
    EXPECT_STREQ(option_argument, "-2.5e3");
    EXPECT_EQ(get_options(args.count(), args.vector(), "o:"), 'o');
    EXPECT_STREQ(option_argument, "-1");
}

TEST_F(NumberElement, EndsTheScanWhereOrderIsRequired)
{
    Arguments args{"prog", "-0.25", "-x"};
    EXPECT_EQ(get_options(args.count(), args.vector(), "+x"), -1);
    EXPECT_EQ(option_index, 1);
}
