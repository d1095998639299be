#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "support/c-utils.h"

namespace {

constexpr std::int32_t untouched = -987654321;

/// \return the day number of a date of the years 2000 to 9999, counted year by year.
std::int32_t counted_day_number(int year, int month, int day)
{
    std::int32_t number = 2451545 - 1;
    const auto leap = [](int y) { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); };
    for (int y = 2000; y < year; ++y) {
        number += leap(y) ? 366 : 365;
    }
    const int days[] = {31, leap(year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int m = 1; m < month; ++m) {
        number += days[m - 1];
    }
    return number + day;
}

struct AcceptedCase {
    const char *text;
    int consumed;
    std::int32_t day_number;
};

const AcceptedCase accepted_cases[] = {
    {"1jan00", 6, 2451545},
    {"31feb2009", 9, 2454894}, // 3 March
    {"5jan09", 6, 2454837},
    {"05Jan2009", 9, 2454837},
    {"31DEC99", 7, 2488069}, // of 2099
    {"5jan9", 5, 2454837},
    {"5jAN09", 6, 2454837},
    {"1jan2000", 8, 2451545},
    {"1jan0", 5, 2451545},
    {"1jan0000", 8, 2451545},
    {"0000001jan0000", 14, 2451545},
    {"1jan2100", 8, 2488070},
    {"1mar100", 7, 2488129}, // of 2100
    // The number conversions skip white space and take signs, as sscanf does.
    {" 5jan09", 7, 2454837},
    {"\t\n\v\f\r 5jan09", 12, 2454837},
    {"+5jan09", 7, 2454837},
    {" +05jan09", 9, 2454837},
    {"5jan 09", 7, 2454837},
    {"5jan\t\n 09", 9, 2454837},
    {"5jan+09", 7, 2454837},
    {"5jan +9", 7, 2454837},
    {"5jan-0", 6, 2451549},
    // Reading stops where the year does.
    {"5jan09 ", 6, 2454837},
    {"5jan09x", 6, 2454837},
    {"5jan09.5", 6, 2454837},
    {"5jan09jan", 6, 2454837},
    {"5jan09-5", 6, 2454837},
    {"5jan0x9", 5, 2451549},
    {"1jan9999", 8, 5373120}, // a year before 1 January 10000
};

TEST(ParseDate, StoresTheDayNumberAndReturnsTheCharactersRead)
{
    for (const AcceptedCase &c : accepted_cases) {
        std::int32_t day_number = untouched;
        EXPECT_EQ(parse_date(c.text, &day_number), c.consumed) << c.text;
        EXPECT_EQ(day_number, c.day_number) << c.text;
    }
}

const char *const refused_cases[] = {
    "",
    " ",
    "5",
    "5j",
    "5ja",
    "5jan",
    "5jan ",
    "5jan+",
    "5jan-",
    "5jan--9",
    "5janx",
    "5january09",
    "5-jan-09",
    "5 jan 09",
    "5 jan09",
    "5 ja09",
    "5-jan09",
    "jan09",
    "jan 5 09",
    "x5jan09",
    "0jan09",
    "00jan09",
    "-0jan09",
    "32jan09",
    "-1jan09",
    "-5jan09",
    "- 5jan09",
    "+ 5jan09",
    "++5jan09",
    "100jan09",
    "5foo09",
    "5???09",
    "5jam09",
    "5\xCA\xC1\xCE"
    "09",
    "5JA"
    "\xEE"
    "09",
    "5.jan09",
    "0x5jan09",
    "1e1jan09",
    "2147483647jan09",
    "-2147483648jan09",
    // 2^32 + 5, 2^64 + 5 and more: out of range on every word size.
    "4294967301jan09",
    "-4294967291jan09",
    "18446744073709551621jan09",
    "99999999999999999999999999999999jan09",
    "-99999999999999999999999999999999jan09",
    "5/jan/09",
    "2009-01-05",
};

TEST(ParseDate, RefusesEverythingElseAndLeavesTheResultAlone)
{
    for (const char *text : refused_cases) {
        std::int32_t day_number = untouched;
        EXPECT_EQ(parse_date(text, &day_number), -1) << text;
        EXPECT_EQ(day_number, untouched) << text;
    }
}

TEST(ParseDate, Adds2000ToEveryYearBelow2000)
{
    // Deliberate: a four-digit 1999 becomes 3999, and -1 becomes 1999.
    for (const int year : {0, 1, 9, 10, 99, 100, 999, 1000, 1970, 1998, 1999}) {
        std::int32_t day_number = untouched;
        EXPECT_GT(parse_date(("28feb" + std::to_string(year)).c_str(), &day_number), 0);
        EXPECT_EQ(day_number, counted_day_number(2000 + year, 2, 28)) << year;
    }
    std::int32_t day_number = untouched;
    EXPECT_EQ(parse_date("31dec-1", &day_number), 7);
    EXPECT_EQ(day_number, 2451544);
    EXPECT_EQ(parse_date("1jan-30", &day_number), 7);
    EXPECT_EQ(day_number, 2440588);
}

TEST(ParseDate, KeepsYearsFrom2000On)
{
    for (const int year : {2000, 2001, 2009, 2099, 2100, 3999, 9999}) {
        std::int32_t day_number = untouched;
        EXPECT_EQ(parse_date(("28feb" + std::to_string(year)).c_str(), &day_number), 9);
        EXPECT_EQ(day_number, counted_day_number(year, 2, 28)) << year;
    }
}

TEST(ParseDate, TakesDays1To31OfEveryMonth)
{
    const char *const months[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                  "jul", "aug", "sep", "oct", "nov", "dec"};
    for (int month = 1; month <= 12; ++month) {
        for (int day = -1; day <= 33; ++day) {
            const std::string text = std::to_string(day) + months[month - 1] + "2009";
            std::int32_t day_number = untouched;
            const int consumed = parse_date(text.c_str(), &day_number);
            if (day < 1 || day > 31) {
                EXPECT_EQ(consumed, -1) << text;
            } else {
                // The day is not checked against the month: it counts on into the next.
                EXPECT_EQ(consumed, static_cast<int>(text.size())) << text;
                EXPECT_EQ(day_number, counted_day_number(2009, month, 1) + day - 1) << text;
            }
        }
    }
}

struct PrefixCase {
    std::size_t length;
    int year; // 0 where the beginning is not a date yet
};

TEST(ParseDate, ReadsEveryBeginningOfADateForWhatItIs)
{
    const std::string whole = "31DEC2009";
    const PrefixCase prefixes[] = {{0, 0}, {1, 0},    {2, 0},    {3, 0},    {4, 0},
                                   {5, 0}, {6, 2002}, {7, 2020}, {8, 2200}, {9, 2009}};
    for (const PrefixCase &c : prefixes) {
        // Exactly as long as the text, so that AddressSanitizer watches its end.
        const std::string text = whole.substr(0, c.length);
        char *copy = new char[text.size() + 1];
        text.copy(copy, text.size());
        copy[text.size()] = '\0';
        std::int32_t day_number = untouched;
        const int consumed = parse_date(copy, &day_number);
        delete[] copy;
        EXPECT_EQ(consumed, c.year == 0 ? -1 : static_cast<int>(c.length)) << text;
        EXPECT_EQ(day_number, c.year == 0 ? untouched : counted_day_number(c.year, 12, 31)) << text;
    }
}

TEST(ParseDate, ReadsAYearOfAnyNumberOfDigitsToItsEnd)
{
    for (const std::string &year :
         {std::string("2147483647"), std::string("-2147483648"), std::string("4294967296"),
          std::string("99999999999"), std::string("-99999999999"), std::string(40, '9'),
          '-' + std::string(40, '9'), std::string(3000, '7')}) {
        const std::string text = "5jan" + year;
        std::int32_t day_number = untouched;
        EXPECT_EQ(parse_date(text.c_str(), &day_number), static_cast<int>(text.size())) << year;
    }
}

TEST(ParseDate, TakesAnyNumberOfLeadingZeros)
{
    std::int32_t day_number = untouched;
    const std::string zeros(5000, '0');
    EXPECT_EQ(parse_date((zeros + "5jan" + zeros + "9").c_str(), &day_number), 10005);
    EXPECT_EQ(day_number, 2454837);
}

TEST(ParseDate, LeavesItsTextAlone)
{
    char text[] = "05JAN2009";
    std::int32_t day_number = untouched;
    parse_date(text, &day_number);
    EXPECT_STREQ(text, "05JAN2009");
}

TEST(ParseDate, ReadsBackEveryCompactDateOfThisCentury)
{
    for (std::int32_t expected = 2451545; expected < 2488070; ++expected) {
        char text[24];
        format_date_compact(expected, text);
        std::int32_t day_number = untouched;
        ASSERT_EQ(parse_date(text, &day_number), static_cast<int>(std::string(text).size()));
        ASSERT_EQ(day_number, expected) << text;
    }
}

} // namespace
