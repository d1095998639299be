// The option parser against libc's getopt_long, on five kinds of command line.
//
// Ours reads the environment at each call whose result depends on it, libc only at the first call
// of a scan. Each command line is therefore timed against libc as it is and against libc with the
// same question asked in front of each call.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <getopt.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "bench/harness.h"
#include "support/options.h"

namespace {

constexpr std::size_t variable_count = 40;

/// Replaces the environment by one of 40 variables for as long as it lives, so that the results do
/// not depend on the caller's.
class FixedEnvironment {
public:
    FixedEnvironment() : saved_(environ)
    {
        for (std::size_t i = 0; i < variable_count; ++i) {
            texts_[i] = "BENCH_VARIABLE_" + std::to_string(i) + "=/usr/share/value";
            pointers_[i] = texts_[i].data();
        }
        environ = pointers_.data();
    }
    FixedEnvironment(const FixedEnvironment &) = delete;
    FixedEnvironment &operator=(const FixedEnvironment &) = delete;
    ~FixedEnvironment()
    {
        environ = saved_;
    }

private:
    char **saved_;
    std::array<std::string, variable_count> texts_;
    std::array<char *, variable_count + 1> pointers_ = {};
};

using words = std::vector<std::string>;

enum { OPTIONS_FIRST, OPERANDS_FIRST, CLUSTERS, ABBREVIATIONS, MANY_OPERANDS, KIND_COUNT };

words command_line(int kind)
{
    switch (kind) {
    case OPTIONS_FIRST:
        return {"program", "--output", "out.txt",   "-v",      "--proxy=h:80", "--level",
                "7",       "-q",       "--dry-run", "one.txt", "two.txt",      "three.txt"};
    case OPERANDS_FIRST:
        return {"program", "one.txt",      "two.txt", "three.txt", "--output", "out.txt",
                "-v",      "--proxy=h:80", "--level", "7",         "--dry-run"};
    case CLUSTERS:
        return {"program", "-vqv", "-qvqv", "-vvo", "out.txt", "-qqqqo", "in.txt", "one.txt"};
    case ABBREVIATIONS:
        return {"program", "--out",   "out.txt", "--verb", "--prox=h:80", "--lev",
                "7",       "--us=me", "--dry",   "--verb", "one.txt",     "two.txt"};
    default: {
        words all = {"program"};
        for (int i = 0; i < 20; ++i) {
            all.push_back("file-" + std::to_string(i) + ".txt");
            if (i % 5 == 4) {
                all.emplace_back(i % 2 == 0 ? "-v" : "--level=3");
            }
        }
        return all;
    }
    }
}

using argument_vector = std::vector<char *>;

argument_vector pointers_to(words &texts)
{
    argument_vector vector;
    std::transform(texts.begin(), texts.end(), std::back_inserter(vector),
                   [](std::string &word) { return word.data(); });
    vector.push_back(nullptr);
    return vector;
}

constexpr char short_options[] = "vo:q";

constexpr long_option our_table[] = {{"output", 1, nullptr, 'o'}, {"verbose", 0, nullptr, 'v'},
                                     {"proxy", 1, nullptr, 'p'},  {"level", 1, nullptr, 'l'},
                                     {"user", 1, nullptr, 'u'},   {"dry-run", 0, nullptr, 'd'},
                                     {nullptr, 0, nullptr, 0}};

constexpr option peer_table[] = {{"output", 1, nullptr, 'o'}, {"verbose", 0, nullptr, 'v'},
                                 {"proxy", 1, nullptr, 'p'},  {"level", 1, nullptr, 'l'},
                                 {"user", 1, nullptr, 'u'},   {"dry-run", 0, nullptr, 'd'},
                                 {nullptr, 0, nullptr, 0}};

int count_of(const argument_vector &vector)
{
    return static_cast<int>(vector.size()) - 1;
}

/// Calls \p take for every option.
template <typename Take> void scan_ours(argument_vector &vector, Take take)
{
    option_index = 0;
    int code;
    int index = 0;
    while ((code = get_long_options(count_of(vector), vector.data(), short_options, our_table,
                                    &index)) != -1) {
        take(code, option_argument);
    }
}

template <bool asks_each_time, typename Take> void scan_by_peer(argument_vector &vector, Take take)
{
    optind = 0;
    int code;
    int index = 0;
    do {
        if (asks_each_time) {
            const char *const answer = std::getenv("POSIXLY_CORRECT");
            benchmark::DoNotOptimize(answer);
        }
        code = getopt_long(count_of(vector), vector.data(), short_options, peer_table, &index);
        if (code != -1) {
            take(code, optarg);
        }
    } while (code != -1);
}

struct found {
    int code;
    std::string argument;
    bool operator==(const found &other) const
    {
        return code == other.code && argument == other.argument;
    }
};

const Agreement agreement("options", [] {
    const FixedEnvironment environment;
    for (int kind = 0; kind < KIND_COUNT; ++kind) {
        words texts = command_line(kind);
        argument_vector our_vector = pointers_to(texts);
        argument_vector peer_vector = our_vector;
        std::vector<found> ours;
        std::vector<found> peer;
        scan_ours(our_vector, [&](int code, const char *argument) {
            ours.push_back({code, argument != nullptr ? argument : ""});
        });
        scan_by_peer<true>(peer_vector, [&](int code, const char *argument) {
            peer.push_back({code, argument != nullptr ? argument : ""});
        });
        if (ours.empty() || ours != peer || our_vector != peer_vector || option_index != optind) {
            return false;
        }
    }
    return true;
});

template <typename Scan> void scan_over_and_over(benchmark::State &state, Scan scan)
{
    const FixedEnvironment environment;
    words texts = command_line(static_cast<int>(state.range(0)));
    const argument_vector unchanged = pointers_to(texts);
    argument_vector vector = unchanged;
    for (auto _ : state) {
        std::copy(unchanged.begin(), unchanged.end(), vector.begin());
        scan(vector, [](int code, const char *argument) {
            benchmark::DoNotOptimize(code);
            benchmark::DoNotOptimize(argument);
        });
    }
}

void options_ours(benchmark::State &state)
{
    scan_over_and_over(state, [](argument_vector &vector, auto take) { scan_ours(vector, take); });
}
BENCHMARK(options_ours)->DenseRange(0, KIND_COUNT - 1);

void options_libc(benchmark::State &state)
{
    scan_over_and_over(
        state, [](argument_vector &vector, auto take) { scan_by_peer<false>(vector, take); });
}
BENCHMARK(options_libc)->DenseRange(0, KIND_COUNT - 1);

void options_libc_asking(benchmark::State &state)
{
    scan_over_and_over(
        state, [](argument_vector &vector, auto take) { scan_by_peer<true>(vector, take); });
}
BENCHMARK(options_libc_asking)->DenseRange(0, KIND_COUNT - 1);

} // namespace
