/// \file
/// Calendar dates as Julian Day Numbers, after Fliegel and Van Flandern, "A Machine Algorithm for
/// Processing Calendar Dates", Communications of the ACM 11 (1968), page 657. Day 2451545 is
/// 1 January 2000, day 2440588 is 1 January 1970.
///
/// The calendar is Gregorian, also for dates before its introduction. The functions are exact from
/// year 1 on and defined for every argument: nothing is range-checked, and results wrap to 32 bits.
#pragma once

#include <cstdint>

#pragma GCC visibility push(default)

/// "???", "jan", "feb", ... "dec", indexed by month number from 1 on.
extern const char *const month_names[13];

/// Parses an English month name by its first three characters.
/// \param text the name. Its first three characters are lower-cased in place, one at a time up to a
///     NUL; the characters after them are not read.
/// \return 1 to 12, or 0 if \p text is not a month.
int month_from_name(char *text);

/// Converts a date to a day number.
/// \param year,month,day the date; a day after the end of its month counts on into the next month
/// \return the day number.
std::int32_t day_number_from_date(std::int32_t year, std::int32_t month, std::int32_t day);

/// Converts a day number to a date.
/// \param day_number the day number
/// \param year receives the year
/// \param month receives the month, 1 to 12 from year 1 on
/// \param day receives the day of the month, 1 to 31 from year 1 on
void date_from_day_number(std::int32_t day_number, std::int32_t *year, std::int32_t *month,
                          std::int32_t *day);

/// Formats a date as 1-jan-2000.
/// \param day_number any number
/// \param buffer receives at most 24 bytes, including the NUL
/// \return \p buffer.
char *format_date_long(std::int32_t day_number, char *buffer);

/// Formats a date as 1jan00.
///
/// From 2100 on, the year is written in full. Before, it is the year less 2000. On purpose: this
/// includes years before 2000, so that 31 December 1999 is 31dec-01.
///
/// \param day_number any number
/// \param buffer receives at most 24 bytes, including the NUL
/// \return \p buffer.
char *format_date_compact(std::int32_t day_number, char *buffer);

/// Returns the day number of today's date in the local time zone.
///
/// Uses the process-wide result of localtime (POSIX). On purpose: if the system cannot read the
/// time, it counts as the last second before 1970, which is what time (POSIX) then returns; the two
/// are indistinguishable.
///
/// \return the day number; 0 if localtime fails, for example because the year does not fit.
std::int32_t today_day_number();

/// Parses a date in the compact form: a day from 1 to 31, a month of three letters directly after
/// it, and a year.
///
/// White space and a sign may precede either number, which saturates to 32 bits. The day is not
/// checked against the month: 31feb2009 is the third of March. A year below 2000 gets 2000 added;
/// on purpose, so does a year of four digits.
///
/// \param text the string; characters after the date are not read
/// \param day_number receives the day number; unchanged on failure
/// \return the number of characters read, or -1 if \p text is not a date.
int parse_date(const char *text, std::int32_t *day_number);

#pragma GCC visibility pop
