// Compares ours with the peers, then times both. The options are Google Benchmark's.
#include "bench/harness.h"

int main(int count, char **vector)
{
    benchmark::Initialize(&count, vector);
    if (benchmark::ReportUnrecognizedArguments(count, vector) || !all_agree()) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
