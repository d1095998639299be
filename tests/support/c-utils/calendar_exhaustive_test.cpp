// The calendar against its 64-bit model for every 32-bit day number and every 32-bit year.
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>

#include "support/c-utils.h"
#include "tests/support/c-utils/calendar_model.h"

namespace {

/// Calls \p check with every 32-bit number until it returns false, and prints how many there were.
template <typename Check> void for_every_number(const char *what, Check check)
{
    std::int64_t number = INT32_MIN;
    while (number <= INT32_MAX && check(static_cast<std::int32_t>(number))) {
        ++number;
    }
    std::printf("%lld %s\n", static_cast<long long>(number - INT32_MIN), what);
    ASSERT_EQ(number, std::int64_t{INT32_MAX} + 1) << "the last one differs";
}

} // namespace

TEST(EveryDayNumber, HasTheDateOfTheModel)
{
    for_every_number("day numbers", [](std::int32_t day_number) {
        ModelDate date = {-7, -7, -7};
        date_from_day_number(day_number, &date.year, &date.month, &date.day);
        return date == model_date(day_number);
    });
}

TEST(EveryYear, HasTheDayNumbersOfTheModel)
{
    for_every_number("years", [](std::int32_t year) {
        const std::int32_t month = 1 + (year & 7) + (year >> 3 & 3);
        return day_number_from_date(year, month, 31) == model_day_number(year, month, 31);
    });
}
