// Day numbers against <chrono>; this file is compiled as C++20.
#include <chrono>

#include "bench/harness.h"
#include "support/c-utils.h"

namespace {

constexpr std::int32_t day_of_epoch = 2440588;
constexpr std::int32_t first_day = 2415021; // 1 January 1900
constexpr std::int32_t days = 65536;        // to the year 2079

struct date {
    std::int32_t year, month, day;
    bool operator==(const date &) const = default;
};

date date_ours(std::int32_t number)
{
    date result;
    date_from_day_number(number, &result.year, &result.month, &result.day);
    return result;
}

date date_by_peer(std::int32_t number)
{
    const std::chrono::year_month_day parts{
        std::chrono::sys_days(std::chrono::days(number - day_of_epoch))};
    return {static_cast<int>(parts.year()),
            static_cast<std::int32_t>(static_cast<unsigned>(parts.month())),
            static_cast<std::int32_t>(static_cast<unsigned>(parts.day()))};
}

std::int32_t number_ours(const date &date)
{
    return day_number_from_date(date.year, date.month, date.day);
}

std::int32_t number_by_peer(const date &date)
{
    const std::chrono::sys_days point =
        std::chrono::year(date.year) / static_cast<int>(date.month) / static_cast<int>(date.day);
    return static_cast<std::int32_t>(point.time_since_epoch().count()) + day_of_epoch;
}

const Agreement agreement("calendar", [] {
    for (std::int32_t number = first_day; number < first_day + days; ++number) {
        const date ours = date_ours(number);
        if (ours != date_by_peer(number) || number_ours(ours) != number ||
            number_by_peer(ours) != number) {
            return false;
        }
    }
    return true;
});

/// One number after the other, in an order that no branch predictor learns.
std::int32_t next_number(std::uint32_t &state)
{
    state = state * 1664525u + 1013904223u;
    return first_day + static_cast<std::int32_t>(state >> 16);
}

template <date (*to_date)(std::int32_t), std::int32_t (*to_number)(const date &)>
void there_and_back(benchmark::State &state)
{
    std::uint32_t random = 1;
    for (auto _ : state) {
        date there = to_date(next_number(random));
        benchmark::DoNotOptimize(there);
        benchmark::DoNotOptimize(to_number(there));
    }
}

void calendar_ours(benchmark::State &state)
{
    there_and_back<date_ours, number_ours>(state);
}
BENCHMARK(calendar_ours);

void calendar_chrono(benchmark::State &state)
{
    there_and_back<date_by_peer, number_by_peer>(state);
}
BENCHMARK(calendar_chrono);

} // namespace
