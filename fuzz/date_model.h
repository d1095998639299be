/// \file
/// A second, plain account of dates: days counted from 1 January of year 1.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

struct PlainDate {
    long long year;
    int month;
    int day;
};

constexpr long long first_day_of_year_1 = 1721426;

inline bool is_leap_year(long long year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

inline int days_of_month(long long year, int month)
{
    const int days[] = {31, is_leap_year(year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[month - 1];
}

/// Of a year from 1 on; a day beyond its month counts on.
inline long long plain_day_number(const PlainDate &date)
{
    const long long before = date.year - 1;
    long long number = first_day_of_year_1 - 1 + date.day;
    number += before * 365 + before / 4 - before / 100 + before / 400;
    for (int month = 1; month < date.month; ++month) {
        number += days_of_month(date.year, month);
    }
    return number;
}

/// Of a day from 1 January of year 1 on: a guess of the year that is never too late, corrected.
inline PlainDate plain_date(long long day_number)
{
    PlainDate date = {1 + (day_number - first_day_of_year_1) / 366, 1, 1};
    date.year += (day_number - plain_day_number(date)) / 366; // the guess is 1 in 1500 short
    while (plain_day_number({date.year + 1, 1, 1}) <= day_number) {
        ++date.year;
    }
    while (plain_day_number(date) + days_of_month(date.year, date.month) <= day_number) {
        ++date.month;
    }
    date.day += static_cast<int>(day_number - plain_day_number(date));
    return date;
}

inline std::string month_text(int month)
{
    return std::string("janfebmaraprmayjunjulaugsepoctnovdec")
        .substr(static_cast<std::size_t>(month - 1) * 3, 3);
}

/// The number of the month that \p text is the lower-case name of, or 0.
inline int plain_month(const std::string &text)
{
    for (int month = 1; month <= 12; ++month) {
        if (text == month_text(month)) {
            return month;
        }
    }
    return 0;
}

/// What the reading of a compact date gives.
struct PlainReading {
    int consumed;
    PlainDate date;
};

/// Reads the compact form from left to right.
class PlainDateReader {
public:
    explicit PlainDateReader(const std::string &text) : text_(text) {}

    std::optional<PlainReading> read()
    {
        const std::optional<long long> day = integer();
        if (!day || *day < 1 || *day > 31 || text_.size() - at_ < 3) {
            return {};
        }
        const int month = plain_month(three_letters());
        const std::optional<long long> year = integer();
        if (month == 0 || !year) {
            return {};
        }
        return PlainReading{static_cast<int>(at_),
                            {*year < 2000 ? *year + 2000 : *year, month, static_cast<int>(*day)}};
    }

private:
    /// White space, a sign and digits. A number outside 32 bits becomes the nearest one inside.
    std::optional<long long> integer()
    {
        at_ = std::min(text_.find_first_not_of(" \t\n\v\f\r", at_), text_.size());
        const bool negative = text_[at_] == '-';
        at_ += negative || text_[at_] == '+' ? 1U : 0U;
        const std::size_t start = at_;
        long long value = 0;
        for (; text_[at_] >= '0' && text_[at_] <= '9'; ++at_) {
            value = std::min(value * 10 + (text_[at_] - '0'), 99999999999LL);
        }
        if (at_ == start) {
            return {};
        }
        return std::clamp<long long>(negative ? -value : value, INT32_MIN, INT32_MAX);
    }

    std::string three_letters()
    {
        std::string letters = text_.substr(at_, 3);
        at_ += 3;
        for (char &c : letters) {
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        return letters;
    }

    std::string text_;
    std::size_t at_ = 0;
};
