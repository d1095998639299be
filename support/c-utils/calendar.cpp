#include "support/c-utils/calendar.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "support/c-utils/calendar_formulas.h"
#include "support/c-utils/characters.h"
#include "support/c-utils/copy.h"
#include "support/c-utils/decimal.h"

const char *const month_names[13] = {"???", "jan", "feb", "mar", "apr", "may", "jun",
                                     "jul", "aug", "sep", "oct", "nov", "dec"};

using corvella::wrapped;

namespace {

constexpr std::size_t month_name_length = 3;
constexpr std::size_t date_text_size = 24; // holds every result of the two formats

/// The name of a month, also for the numbers that day numbers far before year 1 give.
const char *month_name(std::int32_t month)
{
    return month_names[month >= 1 && month <= 12 ? month : 0];
}

// The results of the formulas for the dates in use, in 32 bits, after Neri and Schneider,
// "Euclidean affine functions and their application to calendar algorithms", Software: Practice and
// Experience 53 (2023), page 937. Years begin in March, so that the leap day is the last of its
// year, and count from the year -4800. Divisions are multiplications by a reciprocal, exact within
// these bounds.

constexpr std::uint32_t year_offset = 4800;
constexpr std::uint32_t day_offset = 32044; // from 1 March of the year -4800 to day 0
constexpr std::uint32_t usual_years = 24000;
constexpr std::uint32_t usual_days = 7000000;

/// The days between 1 March and the first of each month from January on.
constexpr std::int16_t days_to_month[12] = {306, 337, 0, 31, 61, 92, 122, 153, 184, 214, 245, 275};

/// \p month_index is 0 for January, \p years at least 1.
std::int32_t usual_day_number(std::uint32_t years, std::uint32_t month_index, std::uint32_t day)
{
    const std::uint32_t year = years - (month_index < 2 ? 1 : 0);
    const std::uint32_t century = year * 5243 >> 19; // year / 100
    return wrapped(1461 * year / 4 - century + century / 4 +
                   static_cast<std::uint32_t>(days_to_month[month_index]) + day - 1 - day_offset);
}

/// \p days is the number of days since 1 March of the year -4800.
void usual_date(std::uint32_t days, std::int32_t *year, std::int32_t *month, std::int32_t *day)
{
    const std::uint32_t century = (4 * days + 3) / 146097;
    const std::uint32_t quarters = 4 * (days + century - century / 4) + 3; // of Julian years
    // The high half is quarters / 1461, the low half the elapsed fraction of that year.
    const std::uint64_t year_and_fraction = std::uint64_t{2939745} * quarters;
    const std::uint32_t day_of_year = static_cast<std::uint32_t>(year_and_fraction) / 2939745 / 4;
    const std::uint32_t next_year = (day_of_year + 206) >> 9; // 1 from January, day 306, on
    const std::uint32_t month_and_day = 2141 * day_of_year + 197913;
    const std::uint32_t march_based = month_and_day >> 16; // 3 to 14
    *year = wrapped((year_and_fraction >> 32) + next_year - year_offset);
    *month = wrapped(march_based - 12 * next_year);
    *day = wrapped(((month_and_day & 0xffff) * 31345 >> 26) + 1); // / 2141
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
    const std::uint32_t years = static_cast<std::uint32_t>(year) + year_offset;
    const std::uint32_t month_index = static_cast<std::uint32_t>(month) - 1;
    if (years - 1 < usual_years - 1 && month_index < 12) {
        return usual_day_number(years, month_index, static_cast<std::uint32_t>(day));
    }
    return corvella::formula_day_number(year, month, day);
}

void date_from_day_number(std::int32_t day_number, std::int32_t *year, std::int32_t *month,
                          std::int32_t *day)
{
    const std::uint32_t days = static_cast<std::uint32_t>(day_number) + day_offset;
    if (days < usual_days) {
        usual_date(days, year, month, day);
    } else {
        corvella::formula_date(day_number, year, month, day);
    }
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
