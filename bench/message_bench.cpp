// One reported message against libc printing its two lines.
#include <cstdio>
#include <fstream>
#include <iterator>

#include "bench/harness.h"
#include "support/error.h"

namespace {

// An error is shown on the print stream and, with the bell, by the hook.
void report_ours(int number)
{
    report_message(9, "Can't open file %s: error %d\n", "/Volumes/Work/picture.tif", number);
}

void report_by_peer(int number)
{
    std::fprintf(stderr, "%s: Can't open file %s: error %d\n\n", "Error",
                 "/Volumes/Work/picture.tif", number);
    std::fflush(stderr);
    std::fprintf(stderr, "%s: Can't open file %s: error %d\a\n", "Error",
                 "/Volumes/Work/picture.tif", number);
    std::fflush(stderr);
}

std::string written_by(void (*report)(int number))
{
    const TemporaryDirectory directory;
    const std::string path = directory.path() + "/messages";
    {
        const StandardErrorTo redirected(path.c_str());
        report(2);
    }
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

const Agreement agreement("report_message", [] {
    const std::string ours = written_by(report_ours);
    return !ours.empty() && ours == written_by(report_by_peer);
});

void report(benchmark::State &state, void (*report)(int number))
{
    const StandardErrorTo redirected("/dev/null");
    int number = 0;
    for (auto _ : state) {
        report(number = (number + 1) % 100);
    }
}

void message_ours(benchmark::State &state)
{
    report(state, report_ours);
}
BENCHMARK(message_ours);

void message_libc(benchmark::State &state)
{
    report(state, report_by_peer);
}
BENCHMARK(message_libc);

} // namespace
