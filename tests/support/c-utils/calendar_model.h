/// \file
/// The two formulas of Fliegel and Van Flandern, step by step, in 64 bits that no argument
/// overflows. Divisions truncate toward zero; results keep their low 32 bits.
#pragma once

#include <cstdint>

struct ModelDate {
    std::int32_t year, month, day;

    bool operator==(const ModelDate &other) const
    {
        return year == other.year && month == other.month && day == other.day;
    }
};

constexpr std::int32_t low_32_bits(std::int64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

constexpr std::int32_t model_day_number(std::int64_t year, std::int64_t month, std::int64_t day)
{
    const std::int64_t a = (14 - month) / 12;
    const std::int64_t y = year - a;
    const std::int64_t days_of_years = (1461 * (y + 4800)) / 4;
    const std::int64_t days_of_months = (367 * (month + 12 * a - 2)) / 12;
    const std::int64_t centuries = (3 * ((y + 4900) / 100)) / 4;
    return low_32_bits(days_of_years + days_of_months - centuries + day - 32075);
}

constexpr ModelDate model_date(std::int64_t day_number)
{
    std::int64_t l = day_number + 68569;
    const std::int64_t k = (4 * l) / 146097;
    l = l - (146097 * k + 3) / 4;
    const std::int64_t i = (4000 * (l + 1)) / 1461001;
    l = l - (1461 * i) / 4 + 31;
    const std::int64_t j = (80 * l) / 2447;
    const std::int64_t day = l - (2447 * j) / 80;
    l = j / 11;
    return {low_32_bits(100 * (k - 49) + i + l), low_32_bits(j + 2 - 12 * l), low_32_bits(day)};
}
