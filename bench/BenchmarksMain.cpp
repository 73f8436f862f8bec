// Measures the hot paths one by one, on data in memory. All options are Google Benchmark's:
//
//     bench_hot_paths --benchmark_filter=nets

#include "bench/Benchmarks.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    consolidator::bench::registerLogicLocations();
    consolidator::bench::registerRecords();
    consolidator::bench::registerXml();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
