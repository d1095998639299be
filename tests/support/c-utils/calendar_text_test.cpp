#include <cctype>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "support/c-utils.h"

namespace {

constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();

const std::string names[] = {"???", "jan", "feb", "mar", "apr", "may", "jun",
                             "jul", "aug", "sep", "oct", "nov", "dec"};

std::string long_form(std::int32_t day_number)
{
    char buffer[24];
    EXPECT_EQ(format_date_long(day_number, buffer), buffer);
    return buffer;
}

std::string compact_form(std::int32_t day_number)
{
    char buffer[24];
    EXPECT_EQ(format_date_compact(day_number, buffer), buffer);
    return buffer;
}

TEST(DateText, WritesNothingBehindItsNul)
{
    char buffer[24];
    std::memset(buffer, 'x', sizeof buffer);
    format_date_long(2451545, buffer);
    EXPECT_STREQ(buffer, "1-jan-2000");
    EXPECT_EQ(std::string(buffer + 11, 13), std::string(13, 'x'));
    std::memset(buffer, 'x', sizeof buffer);
    format_date_compact(2451545, buffer);
    EXPECT_STREQ(buffer, "1jan00");
    EXPECT_EQ(std::string(buffer + 7, 17), std::string(17, 'x'));
}

TEST(MonthNames, AreAnUnknownOneAndTheTwelveMonths)
{
    static_assert(sizeof(month_names) == 13 * sizeof(char *), "thirteen texts");
    for (int month = 0; month <= 12; ++month) {
        EXPECT_EQ(month_names[month], names[month]);
    }
}

struct MonthCase {
    const char *text;
    int month;
    const char *left; // the caller's text afterwards
};

const MonthCase month_cases[] = {
    {"mar", 3, "mar"},
    {"MAY", 5, "may"},
    {"ju", 0, "ju"},
    {"JU", 0, "ju"},
    {"J", 0, "j"},
    {"", 0, ""},
    {"sept", 9, "sept"},
    {"xyz", 0, "xyz"},
    {"XYZ", 0, "xyz"},
    {"Jan", 1, "jan"},
    {"january", 1, "january"},
    {"janx", 1, "janx"},
    {"JANUARY", 1, "janUARY"},
    {"SEPTEMBER", 9, "sepTEMBER"},
    {"MAYBE", 5, "mayBE"},
    {"dEc", 12, "dec"},
    {" ma", 0, " ma"},
    {" MAR", 0, " maR"},
    {"may ", 5, "may "},
    {"???", 0, "???"},
    {"123", 0, "123"},
    {"@[`", 0, "@[`"},
    {"\xCA\xC1\xCE", 0, "\xCA\xC1\xCE"},
    {"j\xffn", 0, "j\xffn"},
    {"Ja\xEE", 0, "ja\xEE"},
};

TEST(MonthFromName, MatchesThreeCharactersAndLowerCasesThemInPlace)
{
    for (const MonthCase &c : month_cases) {
        std::string text = c.text;
        EXPECT_EQ(month_from_name(text.data()), c.month) << c.text;
        EXPECT_EQ(text, c.left) << c.text;
    }
}

TEST(MonthFromName, KnowsEveryMonthInEveryMixtureOfCases)
{
    for (int month = 1; month <= 12; ++month) {
        for (unsigned upper = 0; upper < 8; ++upper) {
            std::string text = names[month] + "X";
            for (unsigned place = 0; place < 3; ++place) {
                if ((upper >> place & 1U) != 0) {
                    text[place] = static_cast<char>(std::toupper(text[place]));
                }
            }
            EXPECT_EQ(month_from_name(text.data()), month) << text;
            EXPECT_EQ(text, names[month] + "X");
        }
    }
}

TEST(MonthFromName, StopsAtTheFirstNul)
{
    for (std::size_t length = 0; length < 3; ++length) {
        std::string text = "JANUARY";
        text[length] = '\0';
        std::string left = text;
        for (std::size_t i = 0; i < length; ++i) {
            left[i] = static_cast<char>(std::tolower(left[i]));
        }
        EXPECT_EQ(month_from_name(text.data()), 0);
        EXPECT_EQ(text, left) << length;
    }
}

TEST(MonthFromName, ReadsNothingBehindTheNulOrTheThirdCharacter)
{
    for (const std::string &content : {std::string(1, '\0'), std::string("j\0", 2),
                                       std::string("ja\0", 3), std::string("jan")}) {
        char *text = new char[content.size()]; // AddressSanitizer watches its end
        std::memcpy(text, content.data(), content.size());
        EXPECT_EQ(month_from_name(text), content == "jan" ? 1 : 0);
        delete[] text;
    }
}

struct TextCase {
    std::int32_t day_number;
    const char *long_text;
    const char *compact_text;
};

const TextCase text_cases[] = {
    {2451545, "1-jan-2000", "1jan00"},     {2454837, "5-jan-2009", "5jan09"},
    {2454894, "3-mar-2009", "3mar09"},     {2451604, "29-feb-2000", "29feb00"},
    {2451544, "31-dec-1999", "31dec-01"},  {2440588, "1-jan-1970", "1jan-30"},
    {2415021, "1-jan-1900", "1jan-100"},   {2488069, "31-dec-2099", "31dec99"},
    {2488070, "1-jan-2100", "1jan2100"},   {2488129, "1-mar-2100", "1mar2100"},
    {1721426, "1-jan-01", "1jan-1999"},    {1721425, "31-dec-00", "31dec-2000"},
    {1721059, "31-dec--01", "31dec-2001"}, {0, "24-nov--4713", "24nov-6713"},
    {5373485, "1-jan-10000", "1jan10000"}, // 8000 years are 20 times 146,097 days
};

TEST(DateTexts, AreLongAndCompact)
{
    for (const TextCase &c : text_cases) {
        EXPECT_EQ(long_form(c.day_number), c.long_text) << c.day_number;
        EXPECT_EQ(compact_form(c.day_number), c.compact_text) << c.day_number;
    }
}

TEST(DateTexts, NameNoMonthFarBeforeTheJulianPeriod)
{
    // By hand: l = -531306, k = -2125224 / 146097 = -14, l - (-2045355 / 4 = -511338) = -19968,
    // i = -79868000 / 1461001 = -54, l = -19968 - (-78894 / 4 = -19723) + 31 = -214,
    // j = -17120 / 2447 = -6, day = -214 - (-14682 / 80 = -183), month = -6 + 2, 100 x -63 - 54.
    // Two pieces, or "??-" would be a trigraph.
    EXPECT_EQ(long_form(-599875), "-31-???"
                                  "--6354");
    EXPECT_EQ(compact_form(-599875), "-31???"
                                     "-8354");
}

TEST(DateTexts, NameEveryMonth)
{
    for (int month = 1; month <= 12; ++month) {
        const std::int32_t day_number = day_number_from_date(2009, month, 17);
        EXPECT_EQ(long_form(day_number), "17-" + names[month] + "-2009");
        EXPECT_EQ(compact_form(day_number), "17" + names[month] + "09");
    }
}

bool names_a_month(const std::string &text)
{
    for (const std::string &name : names) {
        if (text.find(name) != std::string::npos) {
            return true;
        }
    }
    return false;
}

/// Whether both texts of a day number stay within 24 bytes and name an entry of the month table.
testing::AssertionResult texts_hold(std::int32_t day_number)
{
    for (char *(*form)(std::int32_t, char *) : {format_date_long, format_date_compact}) {
        char area[24 + 8];
        std::memset(area, 0x5a, sizeof area);
        form(day_number, area);
        const bool terminated = std::memchr(area, '\0', 24) != nullptr;
        const std::string behind(area + 24, 8);
        if (!terminated || behind != "\x5a\x5a\x5a\x5a\x5a\x5a\x5a\x5a" || !names_a_month(area)) {
            return testing::AssertionFailure() << day_number;
        }
    }
    return testing::AssertionSuccess();
}

TEST(DateTexts, OfEveryDayNumberFit24BytesAndNameAMonth)
{
    for (std::int64_t day_number = least; day_number <= greatest; day_number += 65521) {
        ASSERT_TRUE(texts_hold(static_cast<std::int32_t>(day_number)));
    }
    for (std::int32_t step = 0; step < 2000; ++step) {
        ASSERT_TRUE(texts_hold(least + step));
        ASSERT_TRUE(texts_hold(greatest - step));
        ASSERT_TRUE(texts_hold(-68569 - step)); // where the conversion's numbers turn negative
        ASSERT_TRUE(texts_hold(-68569 + step));
        ASSERT_TRUE(texts_hold(536802342 + step)); // where they leave 32 bits
    }
}

} // namespace
