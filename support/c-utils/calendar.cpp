#include "support/c-utils/calendar.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "support/c-utils/characters.h"
#include "support/c-utils/copy.h"
#include "support/c-utils/decimal.h"

const char *const month_names[13] = {"???", "jan", "feb", "mar", "apr", "may", "jun",
                                     "jul", "aug", "sep", "oct", "nov", "dec"};

namespace {

constexpr std::size_t month_name_length = 3;
constexpr std::size_t date_text_size = 24; // holds every result of the two formats

/// The name of a month, also for the numbers that day numbers far before year 1 give.
const char *month_name(std::int32_t month)
{
    return month_names[month >= 1 && month <= 12 ? month : 0];
}

/// Takes the low 32 bits.
template <typename integer> std::int32_t wrapped(integer value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

struct date {
    std::int32_t year, month, day;
};

// Both formulas in either of two kinds of integer, whose divisions truncate toward zero: 64 bits
// hold every intermediate value of every argument; 32 bits without a sign are faster and hold those
// of the dates in use, of which only the last sums may pass below zero, to be wrapped back.
constexpr std::int32_t usual_years = 1000000;
constexpr std::int32_t usual_days = 365000000;

template <typename integer>
std::int32_t day_number_of(std::int32_t year_number, std::int32_t month_number,
                           std::int32_t day_number)
{
    const auto year = static_cast<integer>(year_number);
    const auto month = static_cast<integer>(month_number);
    const integer a = (14 - month) / 12;
    const integer y = year - a;
    return wrapped(1461 * (y + 4800) / 4 + 367 * (month + 12 * a - 2) / 12 -
                   3 * ((y + 4900) / 100) / 4 + static_cast<integer>(day_number) - 32075);
}

template <typename integer> date date_of(std::int32_t day_number)
{
    integer l = static_cast<integer>(day_number) + 68569;
    const integer k = 4 * l / 146097;
    l -= (146097 * k + 3) / 4;
    const integer i = 4000 * (l + 1) / 1461001;
    l = l - 1461 * i / 4 + 31;
    const integer j = 80 * l / 2447;
    const integer day = l - 2447 * j / 80;
    l = j / 11;
    return {wrapped(100 * (k - 49) + i + l), wrapped(j + 2 - 12 * l), wrapped(day)};
}

} // namespace

int month_from_name(char *text)
{
    for (std::size_t i = 0; i < month_name_length; ++i) {
        if (text[i] == '\0') {
            return 0;
        }
        text[i] = corvella::to_lower(text[i]);
    }
    for (int month = 1; month <= 12; ++month) {
        if (std::memcmp(text, month_names[month], month_name_length) == 0) {
            return month;
        }
    }
    return 0;
}

std::int32_t day_number_from_date(std::int32_t year, std::int32_t month, std::int32_t day)
{
    const bool is_usual = year > 0 && year < usual_years && month >= 1 && month <= 12;
    return is_usual ? day_number_of<std::uint32_t>(year, month, day)
                    : day_number_of<std::int64_t>(year, month, day);
}

void date_from_day_number(std::int32_t day_number, std::int32_t *year, std::int32_t *month,
                          std::int32_t *day)
{
    const date found = day_number >= 0 && day_number < usual_days
                           ? date_of<std::uint32_t>(day_number)
                           : date_of<std::int64_t>(day_number);
    *year = found.year;
    *month = found.month;
    *day = found.day;
}

char *format_date_long(std::int32_t day_number, char *buffer)
{
    std::int32_t year, month, day;
    date_from_day_number(day_number, &year, &month, &day);
    std::snprintf(buffer, date_text_size, "%d-%s-%.2d", day, month_name(month), year);
    return buffer;
}

char *format_date_compact(std::int32_t day_number, char *buffer)
{
    std::int32_t year, month, day;
    date_from_day_number(day_number, &year, &month, &day);
    const std::int32_t shown_year = year < 2100 ? year - 2000 : year;
    std::snprintf(buffer, date_text_size, "%d%s%.2d", day, month_name(month), shown_year);
    return buffer;
}

std::int32_t today_day_number()
{
    const std::time_t now = std::time(nullptr);
    const std::tm *const today = std::localtime(&now);
    if (today == nullptr) {
        return 0; // a clock so far off that its year cannot be held
    }
    return day_number_from_date(wrapped(std::int64_t{today->tm_year} + 1900), today->tm_mon + 1,
                                today->tm_mday);
}

int parse_date(const char *text, std::int32_t *day_number)
{
    const char *cursor = text;
    std::int32_t day;
    if (!corvella::scan_decimal(cursor, day) || day < 1 || day > 31) {
        return -1;
    }
    char month_text[month_name_length + 1];
    copy_string_bounded(month_text, cursor, sizeof month_text);
    const int month = month_from_name(month_text);
    if (month == 0) {
        return -1;
    }
    cursor += month_name_length;
    std::int32_t year;
    if (!corvella::scan_decimal(cursor, year)) {
        return -1;
    }
    if (year < 2000) {
        year += 2000; // deliberate, also for a year written with four digits
    }
    *day_number = day_number_from_date(year, month, day);
    return static_cast<int>(cursor - text);
}
