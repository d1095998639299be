// The option parser against libc's getopt_long.
#include <algorithm>
#include <array>
#include <getopt.h>
#include <vector>

#include "bench/harness.h"
#include "support/options.h"

namespace {

// Eleven arguments: long and short options, with arguments attached and not, and operands among
// them. Both parsers move the options to the front.
constexpr int argument_count = 12;
using argument_vector = std::array<char *, argument_count + 1>;

argument_vector command_line()
{
    static char text[argument_count][16] = {"program",      "--output",   "out.txt",   "-v",
                                            "--proxy=h:80", "one.txt",    "--level",   "7",
                                            "two.txt",      "--user=abc", "--dry-run", "three.txt"};
    argument_vector vector = {};
    std::transform(text, text + argument_count, vector.begin(), [](char *word) { return word; });
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

/// Calls \p take for every option.
template <typename Take> void scan_ours(argument_vector &vector, Take take)
{
    option_index = 0;
    int code;
    int index = 0;
    while ((code = get_long_options(argument_count, vector.data(), short_options, our_table,
                                    &index)) != -1) {
        take(code, option_argument, index);
    }
}

template <typename Take> void scan_by_peer(argument_vector &vector, Take take)
{
    optind = 0;
    int code;
    int index = 0;
    while ((code = getopt_long(argument_count, vector.data(), short_options, peer_table, &index)) !=
           -1) {
        take(code, optarg, index);
    }
}

struct found {
    int code;
    std::string argument;
    int index;
    bool operator==(const found &other) const
    {
        return code == other.code && argument == other.argument && index == other.index;
    }
};

const Agreement agreement("options", [] {
    std::vector<found> ours;
    std::vector<found> peer;
    argument_vector our_vector = command_line();
    argument_vector peer_vector = command_line();
    scan_ours(our_vector, [&](int code, const char *argument, int index) {
        ours.push_back({code, argument != nullptr ? argument : "", index});
    });
    scan_by_peer(peer_vector, [&](int code, const char *argument, int index) {
        peer.push_back({code, argument != nullptr ? argument : "", index});
    });
    return ours.size() == 6 && ours == peer && our_vector == peer_vector &&
           option_index == optind && optind == argument_count - 3;
});

void options_ours(benchmark::State &state)
{
    const argument_vector unchanged = command_line();
    for (auto _ : state) {
        argument_vector vector = unchanged;
        scan_ours(vector, [](int code, const char *argument, int) {
            benchmark::DoNotOptimize(code);
            benchmark::DoNotOptimize(argument);
        });
    }
}
BENCHMARK(options_ours);

void options_libc(benchmark::State &state)
{
    const argument_vector unchanged = command_line();
    for (auto _ : state) {
        argument_vector vector = unchanged;
        scan_by_peer(vector, [](int code, const char *argument, int) {
            benchmark::DoNotOptimize(code);
            benchmark::DoNotOptimize(argument);
        });
    }
}
BENCHMARK(options_libc);

} // namespace
