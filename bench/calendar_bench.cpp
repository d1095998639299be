// Day numbers against <chrono>; this file is compiled as C++20.
#include <chrono>

#include "bench/harness.h"
#include "support/c-utils.h"

namespace {

constexpr std::int32_t day_of_epoch = 2440588;
constexpr std::int32_t first_day = 1721426; // 1 January of year 1
constexpr std::int32_t days = 3652059;      // to 31 December 9999

struct date {
    std::int32_t year, month, day;
    bool operator==(const date &) const = default;
};

void date_ours(std::int32_t number, date &result)
{
    date_from_day_number(number, &result.year, &result.month, &result.day);
}

void date_by_peer(std::int32_t number, date &result)
{
    const std::chrono::year_month_day parts{
        std::chrono::sys_days(std::chrono::days(number - day_of_epoch))};
    result = {static_cast<int>(parts.year()),
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
        date ours;
        date peer;
        date_ours(number, ours);
        date_by_peer(number, peer);
        if (ours != peer || number_ours(ours) != number || number_by_peer(peer) != number) {
            return false;
        }
    }
    return true;
});

/// Every day in turn, over and over.
struct NextDay {
    std::int32_t number = first_day;
    std::int32_t operator()()
    {
        number = number + 1 < first_day + days ? number + 1 : first_day;
        return number;
    }
};

/// Days in an order that no branch predictor learns.
struct RandomDay {
    std::uint32_t state = 1;
    std::int32_t operator()()
    {
        state = state * 1664525u + 1013904223u;
        return first_day + static_cast<std::int32_t>(std::uint64_t{state} * days >> 32);
    }
};

template <void (*to_date)(std::int32_t, date &), std::int32_t (*to_number)(const date &),
          typename Days>
void there_and_back(benchmark::State &state)
{
    Days next_day;
    for (auto _ : state) {
        date there;
        to_date(next_day(), there);
        benchmark::DoNotOptimize(there);
        benchmark::DoNotOptimize(to_number(there));
    }
}

void calendar_ours(benchmark::State &state)
{
    there_and_back<date_ours, number_ours, NextDay>(state);
}
BENCHMARK(calendar_ours);

void calendar_chrono(benchmark::State &state)
{
    there_and_back<date_by_peer, number_by_peer, NextDay>(state);
}
BENCHMARK(calendar_chrono);

void random_days_ours(benchmark::State &state)
{
    there_and_back<date_ours, number_ours, RandomDay>(state);
}
BENCHMARK(random_days_ours);

void random_days_chrono(benchmark::State &state)
{
    there_and_back<date_by_peer, number_by_peer, RandomDay>(state);
}
BENCHMARK(random_days_chrono);

} // namespace
