// Search and replace against Abseil.
#include <absl/strings/str_replace.h>
#include <vector>

#include "bench/harness.h"
#include "support/c-utils.h"

namespace {

const std::string &source()
{
    static const std::string text = repeated(
        "The host asks the user for a name, and the user gives the host a name that it keeps. ",
        4096);
    return text;
}

std::string replaced_by_peer()
{
    return absl::StrReplaceAll(source(), {{"user", "customer"}});
}

const Agreement agreement("replace_all_substrings", [] {
    std::vector<char> destination(2 * source().size() + 1);
    replace_all_substrings("user", "customer", source().c_str(), destination.data());
    return replaced_by_peer() == destination.data();
});

void replace_ours(benchmark::State &state)
{
    std::vector<char> destination(2 * source().size() + 1);
    for (auto _ : state) {
        replace_all_substrings("user", "customer", source().c_str(), destination.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(replace_ours);

void replace_abseil(benchmark::State &state)
{
    for (auto _ : state) {
        const std::string text = replaced_by_peer();
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(replace_abseil);

} // namespace
