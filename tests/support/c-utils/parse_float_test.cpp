#include "support/c-utils/parse_float.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>

#include "tests/support/c-utils/exact_buffer.h"
#include "tests/support/c-utils/parse_float_model.h"
#include "tests/support/c-utils/test_locale.h"

namespace {

constexpr std::uint32_t infinity = 0x7f800000;
constexpr std::uint32_t minus_infinity = 0xff800000;
constexpr std::uint32_t untouched = 0x12345678;

std::uint32_t bits(float x)
{
    std::uint32_t pattern;
    std::memcpy(&pattern, &x, sizeof pattern);
    return pattern;
}

/// What a call returned and left in the result, as its bit pattern.
struct Reading {
    int returned;
    std::uint32_t stored;
};

bool operator==(const Reading &a, const Reading &b)
{
    return a.returned == b.returned && a.stored == b.stored;
}

std::ostream &operator<<(std::ostream &out, const Reading &reading)
{
    return out << reading.returned << " with 0x" << std::hex << reading.stored << std::dec;
}

Reading read(const std::string &text)
{
    const ExactBuffer source(text);
    float result;
    std::memcpy(&result, &untouched, sizeof result);
    const int returned = parse_float(source.data(), &result);
    return {returned, bits(result)};
}

Reading number(float x)
{
    return {1, bits(x)};
}

const Reading no_number = {0, untouched};

TEST(ParseFloat, ReadsDigitsWithAPointAndAnExponent)
{
    EXPECT_EQ(read("0"), number(0.0F));
    EXPECT_EQ(read("7"), number(7.0F));
    EXPECT_EQ(read("12.5"), number(12.5F));
    EXPECT_EQ(read("0012.5"), number(12.5F));
    EXPECT_EQ(read("5."), number(5.0F));
    EXPECT_EQ(read(".5"), number(0.5F));
    EXPECT_EQ(read("1.5e3"), number(1500.0F));
    EXPECT_EQ(read("1.5E3"), number(1500.0F));
    EXPECT_EQ(read("1.e2"), number(100.0F));
    EXPECT_EQ(read(".5e1"), number(5.0F));
}

TEST(ParseFloat, SkipsLeadingWhiteSpaceOfEveryKind)
{
    EXPECT_EQ(read(" \t\n\v\f\r2"), number(2.0F));
    EXPECT_EQ(read("  -2"), number(-2.0F));
    EXPECT_EQ(read("\xa0"
                   "2"),
              no_number);
}

TEST(ParseFloat, ReadsASign)
{
    EXPECT_EQ(read("-12.5"), number(-12.5F));
    EXPECT_EQ(read("+12.5"), number(12.5F));
    EXPECT_EQ(read("-.5"), number(-0.5F));
    EXPECT_EQ(read("+.5"), number(0.5F));
}

TEST(ParseFloat, KeepsTheSignOfZero)
{
    EXPECT_EQ(read("-0"), (Reading{1, 0x80000000}));
    EXPECT_EQ(read("-.0e5"), (Reading{1, 0x80000000}));
    EXPECT_EQ(read("+0"), (Reading{1, 0}));
}

TEST(ParseFloat, ReadsNothingFromATextWithoutDigits)
{
    for (const char *text : {"",    " ",   "\t\n", "-",    "+",   " -",   "- ",  ".",   "-.",  "..",
                             "abc", "e5",  "-e5",  ".e5",  ".x5", "- 5",  "+ 5", "--5", "++5", "$5",
                             "inf", "nan", "\xb2", "\xff", ",5",  "-\t5", "E",   "e"}) {
        EXPECT_EQ(read(text), no_number) << '"' << text << '"';
    }
}

TEST(ParseFloat, TakesOneSignOnly)
{
    EXPECT_EQ(read("-+5"), no_number);
    EXPECT_EQ(read("+-5"), no_number);
}

TEST(ParseFloat, EndsTheNumberAtAnyOtherCharacter)
{
    EXPECT_EQ(read("12.5kg"), number(12.5F));
    EXPECT_EQ(read("1.2.3"), number(1.2F));
    EXPECT_EQ(read("1..5"), number(1.0F));
    EXPECT_EQ(read("1,5"), number(1.0F));
    EXPECT_EQ(read("1 5"), number(1.0F));
    EXPECT_EQ(read("1\v5"), number(1.0F));
    EXPECT_EQ(read("1-5"), number(1.0F));
    EXPECT_EQ(read("1+5"), number(1.0F));
    EXPECT_EQ(read("0x10"), number(0.0F));
    EXPECT_EQ(read("1\xff"
                   "5"),
              number(1.0F));
    EXPECT_EQ(read("1.5. 7"), number(1.5F));
}

TEST(ParseFloat, TakesTheExponentAsTheIntegerReaderDoes)
{
    EXPECT_EQ(read("5e0"), number(5.0F));
    EXPECT_EQ(read("5e+2"), number(500.0F));
    EXPECT_EQ(read("500e-2"), number(5.0F));
    EXPECT_EQ(read("5e002"), number(500.0F));
    EXPECT_EQ(read("5e 2"), number(500.0F));
    EXPECT_EQ(read("5e\n\t-1"), number(0.5F));
    EXPECT_EQ(read("5e"), number(5.0F));
    EXPECT_EQ(read("5ex"), number(5.0F));
    EXPECT_EQ(read("5e-"), number(5.0F));
    EXPECT_EQ(read("5e+-2"), number(5.0F));
    EXPECT_EQ(read("5e.2"), number(5.0F));
    EXPECT_EQ(read("5e- 2"), number(5.0F));
}

TEST(ParseFloat, EndsTheNumberBehindTheExponent)
{
    EXPECT_EQ(read("5e2e2"), number(500.0F));
    EXPECT_EQ(read("5e2.5"), number(500.0F));
    EXPECT_EQ(read("5e27"), number(5e27F));
    EXPECT_EQ(read("5e2 7"), number(500.0F));
}

TEST(ParseFloat, WorksInSinglePrecisionAtEachStep)
{
    // Worked out with exact rational arithmetic; the nearest floats are others.
    EXPECT_EQ(read("0.01"), (Reading{1, 0x3c23d70b}));       // nearest ...0a
    EXPECT_EQ(read("0.05"), (Reading{1, 0x3d4cccce}));       // nearest ...cd
    EXPECT_EQ(read("3.14159"), (Reading{1, 0x40490fce}));    // nearest ...d0
    EXPECT_EQ(read("4294967295"), (Reading{1, 0x4f7fffff})); // nearest 0x4f800000
    EXPECT_EQ(read("2.718281828"), (Reading{1, 0x402df854}));
    EXPECT_EQ(read("0.1234567"), (Reading{1, 0x3dfcd6de}));
    EXPECT_EQ(read("123456789"), (Reading{1, 0x4ceb79a3}));
}

TEST(ParseFloat, RoundsDigitsBeyondTheMantissaToTheNearestEven)
{
    EXPECT_EQ(read("16777215"), number(16777215.0F));
    EXPECT_EQ(read("16777217"), number(16777216.0F));
    EXPECT_EQ(read("16777219"), number(16777220.0F));
    EXPECT_EQ(read("99999999"), number(100000000.0F));
}

TEST(ParseFloat, MultipliesByThePowerOfTenInDoublePrecision)
{
    EXPECT_EQ(read("1e-1"), number(0.1F));
    EXPECT_EQ(read("1e-2"), number(0.01F));
    EXPECT_EQ(read("1e-5"), number(1e-5F));
    EXPECT_EQ(read("1e10"), number(1e10F));
    EXPECT_EQ(read("1e38"), number(1e38F));
    EXPECT_EQ(read("3e-30"), number(3e-30F));
    EXPECT_EQ(read("1e-40"), (Reading{1, 71362}));       // 1e-40 / 2^-149 = 71362.4
    EXPECT_EQ(read("1e-45"), (Reading{1, 1}));           // 0.71 of the least float
    EXPECT_EQ(read("100000000e-50"), (Reading{1, 714})); // 1e-42 / 2^-149 = 713.6
}

TEST(ParseFloat, LetsANumberOutOfRangeBecomeInfiniteOrZero)
{
    EXPECT_EQ(read("1e39"), (Reading{1, infinity}));
    EXPECT_EQ(read("-1e39"), (Reading{1, minus_infinity}));
    EXPECT_EQ(read("1e400"), (Reading{1, infinity}));
    EXPECT_EQ(read("1e-46"), (Reading{1, 0}));
    EXPECT_EQ(read("-1e-400"), (Reading{1, 0x80000000}));
    EXPECT_EQ(read(std::string(40, '9')), (Reading{1, infinity}));
    EXPECT_EQ(read("-" + std::string(5000, '1') + ".5"), (Reading{1, minus_infinity}));
    EXPECT_EQ(read("0." + std::string(5000, '0') + "1"), (Reading{1, 0}));
}

TEST(ParseFloat, TakesExponentsBeyondEveryIntegerAsOutOfRange)
{
    for (const char *huge :
         {"2147483647", "2147483648", "4294967296", "4294967297", "99999999999",
          "9223372036854775808", "18446744073709551616", "100000000000000000000000000000000"}) {
        EXPECT_EQ(read(std::string("1e") + huge), (Reading{1, infinity})) << huge;
        EXPECT_EQ(read(std::string("-1e+") + huge), (Reading{1, minus_infinity})) << huge;
        EXPECT_EQ(read(std::string("1e-") + huge), (Reading{1, 0})) << huge;
    }
    EXPECT_EQ(read("1e" + std::string(1000, '0') + "2"), number(100.0F));
}

TEST(ParseFloat, LeavesErrnoAloneWhereTheExponentIsOutOfRange)
{
    errno = ENOENT;
    const Reading reading = read("1e99999999999999999999");
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(reading, (Reading{1, infinity}));
}

TEST(ParseFloat, LetsNoExponentMakeANumberNotANumber)
{
    EXPECT_EQ(read("0e400"), number(0.0F));
    EXPECT_EQ(read("-0e99999999999"), number(-0.0F));
    EXPECT_EQ(read("0.0e39"), number(0.0F));
    const std::uint32_t stored = read(std::string(60, '9') + "e-400").stored;
    EXPECT_TRUE(stored == infinity || stored == 0) << std::hex << stored;
}

TEST(ParseFloat, ReachesEveryFloatFromEveryOtherByItsExponent)
{
    // The greatest power of ten to the least float, and a power of ten below all normal floats up.
    EXPECT_EQ(read("1" + std::string(38, '0') + "e-83"), (Reading{1, 1}));
    const Reading small = read("0." + std::string(43, '0') + "1e82");
    float up;
    std::memcpy(&up, &small.stored, sizeof up);
    EXPECT_GT(up, 0.5e38F);
    EXPECT_LT(up, 2e38F);
}

TEST(ParseFloat, MultipliesTheValueAsItWasRoundedBefore)
{
    // 0.1f to the seventh power is 0x33d6bf97, not the float nearest to 1e-7 (0x33d6bf95).
    EXPECT_EQ(read("0.0000001"), (Reading{1, 0x33d6bf97}));
    EXPECT_EQ(read("0.0000001e45"), (Reading{1, 0x7e96769b}));
}

TEST(ParseFloat, ReadsManyDigitsWithoutALimit)
{
    EXPECT_EQ(read(std::string(100000, '0') + "5"), number(5.0F));
    EXPECT_EQ(read(std::string(100000, ' ') + "5"), number(5.0F));
    EXPECT_EQ(read("5." + std::string(100000, '0')), number(5.0F));
}

TEST(ParseFloat, DoesNotDependOnTheLocale)
{
    const TestLocale locale(german_latin1);
    if (!locale.available()) {
        GTEST_SKIP() << "no locale with a decimal comma";
    }
    char probe[8];
    std::snprintf(probe, sizeof probe, "%.1f", 1.5);
    ASSERT_STREQ(probe, "1,5");
    EXPECT_EQ(read("1.5"), number(1.5F));
    EXPECT_EQ(read("1,5"), number(1.0F));
    EXPECT_EQ(read("1.5e-1"), number(0.15F));
    EXPECT_EQ(read("1.500,5"), number(1.5F));
    EXPECT_EQ(read("\xa0"
                   "2"),
              no_number);
}

void expect_same_reading(const std::string &text)
{
    const std::optional<std::uint32_t> model = PlainReader().read(text);
    const Reading expected = model ? Reading{1, *model} : no_number;
    const Reading actual = read(text);
    if (is_not_a_number(expected.stored)) {
        ASSERT_EQ(actual.returned, 1) << '"' << text << '"';
        return;
    }
    ASSERT_EQ(actual, expected) << '"' << text << '"';
}

TEST(ParseFloat, AgreesWithAPlainReaderOnRandomTexts)
{
    RandomTexts noise(41, "0123456789.eE+- \tx\x80\xff", 12);
    RandomTexts sparse(42, "05.e- ", 9);
    for (int i = 0; i < 40000; ++i) {
        ASSERT_NO_FATAL_FAILURE(expect_same_reading(noise.next()));
        ASSERT_NO_FATAL_FAILURE(expect_same_reading(sparse.next()));
    }
}

TEST(ParseFloat, AgreesWithAPlainReaderOnRandomNumbers)
{
    RandomTexts digits(43, "0123456789", 14);
    const char *const signs[] = {"", "-", "+", " ", "\t-"};
    const char *const tails[] = {"", "e", "E-", "e+", "kg", ".", " 9", "e "};
    for (int i = 0; i < 60000; ++i) {
        std::string text = signs[digits.below(5)] + digits.next();
        text += digits.below(4) == 0 ? "" : "." + digits.next();
        text += tails[digits.below(8)];
        text += digits.below(2) == 0 ? "" : std::to_string(digits.below(48));
        ASSERT_NO_FATAL_FAILURE(expect_same_reading(text));
    }
}

} // namespace
