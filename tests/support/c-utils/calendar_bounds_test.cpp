// The calendar against its 64-bit model where 32 bits end, at powers of two and at random.
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "support/c-utils.h"
#include "tests/support/c-utils/calendar_model.h"

namespace {

/// 0, the powers of two and of ten, their multiples by 3, and their negatives, each with its
/// neighbours.
std::vector<std::int32_t> bounds()
{
    std::vector<std::int64_t> centres = {0, INT32_MIN, INT32_MAX};
    for (std::int64_t power = 1; power <= INT32_MAX; power *= 2) {
        centres.insert(centres.end(), {power, -power, 3 * power, -3 * power});
    }
    for (std::int64_t power = 1; power <= INT32_MAX; power *= 10) {
        centres.insert(centres.end(), {power, -power, 3 * power, -3 * power});
    }
    std::vector<std::int32_t> all;
    for (const std::int64_t centre : centres) {
        for (std::int64_t step = -3; step <= 3; ++step) {
            all.push_back(low_32_bits(centre + step));
        }
    }
    return all;
}

void expect_date_of_model(std::int32_t day_number)
{
    ModelDate date = {-7, -7, -7};
    date_from_day_number(day_number, &date.year, &date.month, &date.day);
    ASSERT_TRUE(date == model_date(day_number)) << day_number;
}

void expect_day_of_model(std::int32_t year, std::int32_t month, std::int32_t day)
{
    ASSERT_EQ(day_number_from_date(year, month, day), model_day_number(year, month, day))
        << year << ' ' << month << ' ' << day;
}

} // namespace

TEST(CalendarBounds, GiveTheDatesOfTheModel)
{
    for (const std::int32_t day_number : bounds()) {
        expect_date_of_model(day_number);
    }
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i) {
        expect_date_of_model(static_cast<std::int32_t>(random()));
    }
}

TEST(CalendarBounds, GiveTheDayNumbersOfTheModel)
{
    const std::vector<std::int32_t> all = bounds();
    for (const std::int32_t bound : all) {
        for (std::int32_t month = -1; month <= 14; ++month) {
            expect_day_of_model(bound, month, 31);
        }
        for (const std::int32_t year : {-4901, 1, 2000, 999999, 1000000}) {
            expect_day_of_model(year, bound, 1);
            expect_day_of_model(year, 12, bound);
        }
    }
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i) {
        const auto year = static_cast<std::int32_t>(random());
        const auto month = static_cast<std::int32_t>(random());
        const auto day = static_cast<std::int32_t>(random());
        expect_day_of_model(year, month, day);
        expect_day_of_model(year, 1 + (month & 7), day);
    }
}
