// Reading a float against strtof. Ours rounds at each step, so that the two can differ in the last
// places; these are numbers on which they do not.
#include <cstdlib>

#include "bench/harness.h"
#include "support/c-utils.h"

namespace {

constexpr const char *plain_numbers[] = {"12345", "0.125", "1.250", "-7.50",
                                         "100.5", "+2.75", "9.500", "3.000"};
constexpr const char *powers[] = {"1.5e3", "2.0E2", "25e-1", "1e+10"};

float read_ours(const char *text)
{
    float value = 0;
    parse_float(text, &value);
    return value;
}

float read_by_peer(const char *text)
{
    return std::strtof(text, nullptr);
}

template <std::size_t count> bool same(const char *const (&numbers)[count])
{
    for (const char *number : numbers) {
        const float ours = read_ours(number);
        const float peer = read_by_peer(number);
        if (ours < peer || ours > peer) {
            return false;
        }
    }
    return true;
}

const Agreement agreement("parse_float", [] { return same(plain_numbers) && same(powers); });

template <std::size_t count>
void read_all(benchmark::State &state, const char *const (&numbers)[count],
              float (*read)(const char *))
{
    while (state.KeepRunningBatch(count)) {
        for (const char *number : numbers) {
            benchmark::DoNotOptimize(read(number));
        }
    }
}

void parse_float_ours(benchmark::State &state)
{
    read_all(state, plain_numbers, read_ours);
}
BENCHMARK(parse_float_ours);

void parse_float_libc(benchmark::State &state)
{
    read_all(state, plain_numbers, read_by_peer);
}
BENCHMARK(parse_float_libc);

void parse_power_ours(benchmark::State &state)
{
    read_all(state, powers, read_ours);
}
BENCHMARK(parse_power_ours);

void parse_power_libc(benchmark::State &state)
{
    read_all(state, powers, read_by_peer);
}
BENCHMARK(parse_power_libc);

} // namespace
