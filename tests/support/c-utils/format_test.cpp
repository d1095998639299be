#include "support/c-utils/format.h"

#include <cfloat>
#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cwchar>
#include <gtest/gtest.h>
#include <new>
#include <string>

#include "support/error/allocation.h"
#include "tests/harness/long_numbers.h"
#include "tests/support/c-utils/exact_buffer.h"

namespace {

/// No character of the C locale, so that "%lc" fails.
constexpr auto unprintable = static_cast<std::wint_t>(0x20ac);

[[gnu::format(printf, 1, 2)]] char *through_a_list(const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    char *text = format_string_alloc(format, arguments);
    va_end(arguments);
    return text;
}

std::string taken(char *text)
{
    const std::string copy = text;
    checked_free(text);
    return copy;
}

TEST(FormatStringAlloc, FormatsAnArgumentListIntoANewText)
{
    EXPECT_EQ(taken(through_a_list("%s=%d%%", "x", -7)), "x=-7%");
}

TEST(FormatStringAlloc, ReadsEveryArgumentAgainWhenItPrintsAfterMeasuring)
{
    EXPECT_EQ(taken(through_a_list("%d %s %.2f %c %lld %s", 1, "two", 3.25, '4', 5LL, "six")),
              "1 two 3.25 4 5 six");
}

TEST(FormatStringAlloc, GivesAnEmptyTextOfItsOwnForAnEmptyResult)
{
    char *text = through_a_list("%s", "");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(taken(text), "");
}

TEST(FormatStringAlloc, GivesAnEmptyTextWhenFormattingFails)
{
    char *text = through_a_list("ab%lc", unprintable);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(taken(text), "");
}

TEST(FormatStringAlloc, RefusesATextThatAnIntCannotCount)
{
    const std::string format = "%" + std::to_string(INT_MAX + 1LL) + "d";
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    EXPECT_THROW(through_a_list(format.c_str(), 1), std::bad_alloc);
#pragma GCC diagnostic pop
}

TEST(FormatStringNew, FormatsTextsOfEveryLength)
{
    for (const std::size_t length :
         {0U,    1U,    2U,    126U,  127U,   128U,   254U,    255U,  256U,
          257U,  511U,  512U,  513U,  1023U,  1024U,  1025U,   2047U, 2048U,
          4094U, 4095U, 4096U, 4097U, 65535U, 65536U, 1000000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(taken(format_string_new("%s", text.c_str())), text) << length;
    }
}

TEST(FormatStringNew, GivesADistinctWritableBlockOnEachCall)
{
    char *first = format_string_new("%d", 1);
    char *second = format_string_new("%d", 1);
    EXPECT_NE(first, second);
    first[0] = '2';
    EXPECT_STREQ(second, "1");
    checked_free(first);
    checked_free(second);
}

TEST(FormatStringNew, FormatsTheLargestNumbers)
{
    EXPECT_EQ(taken(format_string_new("%f", DBL_MAX)), greatest_double_text);
    EXPECT_EQ(taken(format_string_new("%.5000f", 0.5)), "0.5" + std::string(4999, '0'));
}

TEST(FormatStringNew, GivesAnEmptyTextWhenFormattingFails)
{
    EXPECT_EQ(taken(format_string_new("%s%lc", std::string(5000, 'x').c_str(), unprintable)), "");
}

struct BoundedCase {
    std::string text;
    std::size_t size;
    std::string kept;
};

TEST(FormatStringBounded, KeepsWhatFitsAndReturnsTheUncutLength)
{
    const BoundedCase cases[] = {
        {"abc", 1, ""},
        {"abc", 2, "a"},
        {"abc", 3, "ab"},
        {"abc", 4, "abc"},
        {"abc", 5, "abc"},
        {"abc", 64, "abc"},
        {"", 1, ""},
        {"", 2, ""},
        {"\x80\xff", 3, "\x80\xff"},
        {std::string(70000, 'x'), 65536, std::string(65535, 'x')},
    };
    for (const BoundedCase &c : cases) {
        const ExactBuffer destination(c.size);
        EXPECT_EQ(format_string_bounded(destination.data(), c.size, "%s", c.text.c_str()),
                  static_cast<int>(c.text.size()));
        EXPECT_EQ(destination.text(), c.kept) << c.size;
        EXPECT_TRUE(destination.intact()) << c.size;
    }
}

TEST(FormatStringBounded, CutsTheLargestNumbersWithoutAByteOutside)
{
    for (const std::size_t size :
         {1U, 2U, 256U, 309U, 310U, 316U, 317U, 318U, 4002U, 4003U, 4004U, 5000U}) {
        const ExactBuffer greatest(size);
        EXPECT_EQ(format_string_bounded(greatest.data(), size, "%f", DBL_MAX), 316);
        EXPECT_EQ(greatest.text(), greatest_double_text.substr(0, size - 1)) << size;
        EXPECT_TRUE(greatest.intact()) << size;
        const ExactBuffer precise(size);
        EXPECT_EQ(format_string_bounded(precise.data(), size, "%.4000f", 0.5), 4002);
        EXPECT_EQ(precise.text(), precise_half_text.substr(0, size - 1)) << size;
        EXPECT_TRUE(precise.intact()) << size;
    }
}

TEST(FormatStringBounded, AlwaysStoresNulInTheLastByte)
{
    const ExactBuffer destination(10);
    EXPECT_EQ(format_string_bounded(destination.data(), 10, "%d", 12), 2);
    EXPECT_EQ(destination.text(), "12");
    EXPECT_EQ(destination.bytes()[9], '\0');
}

TEST(FormatStringBounded, WritesNothingWhenTheSizeIsZero)
{
    const ExactBuffer destination(2);
    EXPECT_EQ(format_string_bounded(destination.data(), 0, "%s", "abc"), 3);
    EXPECT_EQ(destination.bytes(), "ZZ");
    EXPECT_TRUE(destination.intact());
}

TEST(FormatStringBounded, MeasuresWithANullDestinationOfSizeZero)
{
    char *nowhere = nullptr;
    EXPECT_EQ(format_string_bounded(nowhere, 0, "%s-%d", "abc", 1234), 8);
}

TEST(FormatStringBounded, ReturnsANegativeNumberAndAnEmptyTextWhenFormattingFails)
{
    for (const std::size_t size : {1U, 2U, 3U, 20U}) {
        const ExactBuffer destination(size);
        EXPECT_LT(format_string_bounded(destination.data(), size, "ab%lc", unprintable), 0);
        EXPECT_EQ(destination.bytes()[0], '\0') << size;
        EXPECT_EQ(destination.bytes()[size - 1], '\0') << size;
        EXPECT_TRUE(destination.intact()) << size;
    }
}

TEST(FormatStringBounded, FormatsSeveralArguments)
{
    const ExactBuffer destination(12);
    EXPECT_EQ(format_string_bounded(destination.data(), 12, "%c|%5.1f|%x|%%", 'a', 2.25, 255U), 12);
    EXPECT_EQ(destination.text(), "a|  2.2|ff|");
}

} // namespace
