// The date conversions against a walk through the calendar, one day after the other.
// Tests support/c-utils/calendar_formulas.cpp.
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>

#include "support/c-utils.h"

namespace {

constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();

/// A calendar sheet: knows only how long the months are, and what comes after its date.
struct Sheet {
    std::int32_t year;
    std::int32_t month;
    std::int32_t day;

    bool leap_year() const
    {
        return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    }

    std::int32_t days_of_month() const
    {
        static const std::int32_t days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        return month == 2 && leap_year() ? 29 : days[month - 1];
    }

    void turn()
    {
        if (++day > days_of_month()) {
            day = 1;
            if (++month > 12) {
                month = 1;
                ++year;
            }
        }
    }
};

Sheet date_of(std::int32_t day_number)
{
    Sheet date{-7, -7, -7};
    date_from_day_number(day_number, &date.year, &date.month, &date.day);
    return date;
}

bool operator==(const Sheet &a, const Sheet &b)
{
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

std::ostream &operator<<(std::ostream &stream, const Sheet &date)
{
    return stream << date.year << '-' << date.month << '-' << date.day;
}

// The day before which the Julian Period has none, in the Gregorian calendar with a year 0.
const Sheet first_day = {-4713, 11, 24};
constexpr int last_year = 20000;

struct DateCase {
    Sheet date;
    std::int32_t number;
};

const DateCase date_cases[] = {
    {{2000, 1, 1}, 2451545},  {{1970, 1, 1}, 2440588},   {{2009, 1, 5}, 2454837},
    {{2009, 3, 3}, 2454894},  {{1858, 11, 17}, 2400001}, {{1582, 10, 15}, 2299161},
    {{1, 1, 1}, 1721426},     {{0, 12, 31}, 1721425},    {{0, 1, 1}, 1721060},
    {{-4713, 11, 24}, 0},     {{1900, 2, 28}, 2415079},  {{1900, 3, 1}, 2415080},
    {{2000, 2, 29}, 2451604}, {{2000, 12, 31}, 2451910}, {{1999, 12, 31}, 2451544},
    {{2100, 3, 1}, 2488129},  {{2038, 1, 19}, 2465443},  {{1997, 1, 1}, 2450450},
};

TEST(DayNumber, OfWellKnownDates)
{
    for (const DateCase &c : date_cases) {
        EXPECT_EQ(day_number_from_date(c.date.year, c.date.month, c.date.day), c.number) << c.date;
    }
}

TEST(DateFromDayNumber, OfWellKnownDays)
{
    for (const DateCase &c : date_cases) {
        EXPECT_EQ(date_of(c.number), c.date);
    }
}

TEST(DayNumber, GoesUpByOneADayThroughTheWholeCalendar)
{
    std::int32_t number = 0;
    for (Sheet sheet = first_day; sheet.year <= last_year; sheet.turn()) {
        ASSERT_EQ(day_number_from_date(sheet.year, sheet.month, sheet.day), number) << sheet;
        ++number;
    }
}

TEST(DateFromDayNumber, IsTheNextSheetForTheNextDayThroughTheWholeCalendar)
{
    // By hand: l = 0, k = 0, l - 3 / 4 = 0, i = 4000 / 1461001 = 0, l = 31, j = 2480 / 2447 = 1,
    // day = 31 - 2447 / 80 = 1, l = 0, month = 3, 100 x -49.
    std::int32_t number = -68569;
    for (Sheet sheet = {-4900, 3, 1}; sheet.year <= last_year; sheet.turn()) {
        ASSERT_EQ(date_of(number), sheet);
        ++number;
    }
}

TEST(DateFromDayNumber, RepeatsEvery400Years)
{
    constexpr std::int32_t days_of_400_years = 146097;
    for (std::int32_t start = 2451545; start < 2451545 + days_of_400_years; start += 37) {
        const Sheet date = date_of(start);
        for (const std::int32_t turns : {1, 10, 100, 1000, 3000, 14000}) {
            const Sheet later = {date.year + 400 * turns, date.month, date.day};
            ASSERT_EQ(date_of(start + turns * days_of_400_years), later) << start;
            ASSERT_EQ(day_number_from_date(later.year, later.month, later.day),
                      start + turns * days_of_400_years);
        }
    }
}

struct OverflowingCase {
    Sheet given;
    Sheet meant;
};

const OverflowingCase overflowing_cases[] = {
    {{2009, 2, 31}, {2009, 3, 3}},   {{2008, 2, 31}, {2008, 3, 2}},
    {{2009, 4, 31}, {2009, 5, 1}},   {{2009, 1, 0}, {2008, 12, 31}},
    {{2009, 1, -1}, {2008, 12, 30}}, {{2009, 1, 365}, {2009, 12, 31}},
    {{2009, 1, 366}, {2010, 1, 1}},  {{2009, 12, 32}, {2010, 1, 1}},
    {{2000, 0, 1}, {1999, 12, 1}},   {{2000, 13, 1}, {2001, 1, 1}},
    {{2000, 14, 1}, {2001, 2, 1}},
};

TEST(DayNumber, TakesDaysAndMonthsBeyondTheirRangeAsTheyFollow)
{
    for (const OverflowingCase &c : overflowing_cases) {
        EXPECT_EQ(date_of(day_number_from_date(c.given.year, c.given.month, c.given.day)), c.meant)
            << c.given;
    }
}

TEST(DayNumber, DividesTowardsZeroFarBeforeTheJulianPeriod)
{
    // By hand: a = 1, y = -4901, then 1461 x -101 / 4 = -36890 (not -36891), 367 x 11 / 12 = 336,
    // 3 x (-1 / 100) / 4 = 0, and -36890 + 336 - 0 + 1 - 32075.
    EXPECT_EQ(day_number_from_date(-4900, 1, 1), -68628);
    // By hand: a = 0, y = -5100, then 1461 x -300 / 4 = -109575, 367 x 8 / 12 = 244,
    // 3 x (-200 / 100) / 4 = -6 / 4 = -1, and -109575 + 244 + 1 + 15 - 32075.
    EXPECT_EQ(day_number_from_date(-5100, 10, 15), -141390);
    // By hand: a = (14 - 30) / 12 = -1, y = 2001, 1461 x 6801 / 4 = 2484065,
    // 367 x (30 - 12 - 2) / 12 = 489, 3 x 69 / 4 = 51.
    EXPECT_EQ(day_number_from_date(2000, 30, 1), 2484065 + 489 - 51 + 1 - 32075);
    // By hand: a = 2147483662 / 12 = 178956971, y = -178954971, 1461 x -178950171 / 4 =
    // -65361549957, 367 x (-2147483648 + 2147483652 - 2) / 12 = 61, 3 x -1789500 / 4 = -1342125,
    // which is -65360239845 in all, and 68719476736 is the next multiple of 2 to the 32nd.
    EXPECT_EQ(day_number_from_date(2000, least, 1), -935730405);
}

TEST(DayNumber, GoesUpByOneADayFromMarchOfYearMinus4800)
{
    // By hand: 12 times 146,097 days before 1 March of the year 0.
    std::int32_t number = 1721060 + 60 - 12 * 146097;
    for (Sheet sheet = {-4800, 3, 1}; number <= 0; sheet.turn()) {
        ASSERT_EQ(day_number_from_date(sheet.year, sheet.month, sheet.day), number) << sheet;
        ++number;
    }
}

TEST(DateFromDayNumber, DividesTowardsZeroFarBeforeTheJulianPeriod)
{
    // By hand: l = -31431, k = 4 x -31431 / 146097 = 0, 3 / 4 = 0, i = 4000 x -31430 / 1461001 =
    // -86, l = -31431 - (1461 x -86 / 4 = -31411) + 31 = 11, j = 880 / 2447 = 0, 100 x -49 - 86.
    EXPECT_EQ(date_of(-100000), (Sheet{-4986, 2, 11}));
    // By hand: l = -931431, k = -3725724 / 146097 = -25, l - (-3652422 / 4 = -913105) = -18326,
    // i = 4000 x -18325 / 1461001 = -50, l = -18326 - (-73050 / 4 = -18262) + 31 = -33,
    // j = -2640 / 2447 = -1, day = -33 - (-2447 / 80 = -30), month = -1 + 2, 100 x (-25 - 49) - 50.
    EXPECT_EQ(date_of(-1000000), (Sheet{-7450, 1, -3}));
}

TEST(DayNumber, AnswersForEveryArgumentWithoutOverflow)
{
    const std::int32_t extremes[] = {least,     least + 1, -1000000000, -1469871,     -4901,
                                     -1,        0,         1,           1464930,      1469871,
                                     536870911, 715827882, 1000000000,  greatest - 1, greatest};
    for (const std::int32_t year : extremes) {
        for (const std::int32_t month : extremes) {
            const std::uint32_t first =
                static_cast<std::uint32_t>(day_number_from_date(year, month, 1));
            for (const std::int32_t day : extremes) {
                // Whatever else wraps, the day is simply added.
                const std::int32_t number = day_number_from_date(year, month, day);
                ASSERT_EQ(static_cast<std::uint32_t>(number),
                          first + static_cast<std::uint32_t>(day) - 1U);
            }
        }
    }
}

TEST(DateFromDayNumber, AnswersForEveryDayNumberWithoutOverflow)
{
    for (std::int64_t number = least; number <= greatest; number += 65521) {
        const Sheet date = date_of(static_cast<std::int32_t>(number));
        ASSERT_FALSE(date == (Sheet{-7, -7, -7}));
    }
    for (const std::int32_t edge : {least, -536939480, -68570, -68569, 0, 536802342, greatest}) {
        for (int step = -3; step <= 3; ++step) {
            const std::uint32_t number =
                static_cast<std::uint32_t>(edge) + static_cast<std::uint32_t>(step);
            const Sheet date = date_of(static_cast<std::int32_t>(number));
            ASSERT_FALSE(date == (Sheet{-7, -7, -7}));
        }
    }
}

TEST(DateFromDayNumber, GoesBackToTheDayNumberItCameFrom)
{
    for (std::int32_t number = 0; number < 500000000; number += 9973) {
        const Sheet date = date_of(number);
        ASSERT_EQ(day_number_from_date(date.year, date.month, date.day), number);
    }
}

} // namespace
