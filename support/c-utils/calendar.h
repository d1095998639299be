/// \file
/// Calendar dates as Julian Day Numbers, after Fliegel and Van Flandern, "A Machine Algorithm for
/// Processing Calendar Dates", Communications of the ACM 11 (1968), page 657. Day 2451545 is
/// 1 January 2000, day 2440588 is 1 January 1970.
///
/// The calendar is the Gregorian one, also before its introduction; the functions are exact from
/// year 1 on and defined for every argument: nothing is range-checked, results wrap to 32 bits.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// "???", "jan", "feb", ... "dec", indexed by month number from 1 on.
extern const char *const month_names[13];

/// Reads an English month name by its first three characters, which it lower-cases in place, one
/// at a time up to a NUL; what is behind them is not looked at. \return 1 to 12, or 0.
int month_from_name(char *text);

/// \return the day number of a date; a day beyond its month counts on into the next.
std::int32_t day_number_from_date(std::int32_t year, std::int32_t month, std::int32_t day);

/// Stores the date of a day number: month 1 to 12 and day 1 to 31 from year 1 on.
void date_from_day_number(std::int32_t day_number, std::int32_t *year, std::int32_t *month,
                          std::int32_t *day);

/// Writes a date as 1-jan-2000 into \p buffer, at most 24 bytes with the NUL, whatever the day
/// number. \return \p buffer.
char *format_date_long(std::int32_t day_number, char *buffer);

/// Writes a date as 1jan00 into \p buffer, at most 24 bytes with the NUL. The year is counted from
/// 2000 when it is below 2100, deliberately also before 2000 (31dec-01), and written whole from
/// 2100 on. \return \p buffer.
char *format_date_compact(std::int32_t day_number, char *buffer);

/// \return the day number of today's date in the local time zone; 0 when the system cannot form the
/// date of its time, whose year may not fit. A time that it cannot tell reads, deliberately, as the
/// last second before 1970, which is what time (POSIX) gives then: nothing tells the two apart.
/// Uses the process-wide result of localtime (POSIX).
std::int32_t today_day_number();

/// Reads a date in the compact form: a day from 1 to 31, the three letters of a month right behind
/// it, a year. A year below 2000 gets 2000 added, deliberately also one of four digits. The day is
/// not checked against the month: 31feb2009 is the third of March. White space may stand before the
/// two numbers, a sign too; a number beyond 32 bits counts as the nearest one inside.
/// \return the number of characters read, with the day number in \p day_number; -1, with
/// \p day_number untouched, for any other text.
int parse_date(const char *text, std::int32_t *day_number);

#pragma GCC visibility pop
