/// \file
/// The two formulas of Fliegel and Van Flandern, for every argument. Internal to the calendar,
/// which computes the usual dates faster.
#pragma once

#include <cstdint>

namespace corvella {

/// Keeps the low 32 bits.
template <typename integer> std::int32_t wrapped(integer value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

// All divisions truncate toward zero, in 64 bits, which hold every intermediate value.

/// Returns the day number of a date, wrapped to 32 bits.
std::int32_t formula_day_number(std::int32_t year, std::int32_t month, std::int32_t day);

/// Stores the date of a day number, each part wrapped to 32 bits.
void formula_date(std::int32_t day_number, std::int32_t *year, std::int32_t *month,
                  std::int32_t *day);

} // namespace corvella
