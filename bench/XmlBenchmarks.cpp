// How fast kernel descriptions are read: by the reader, which takes what it needs, and as a tree.

#include "bench/Benchmarks.h"
#include "bench/LargeProject.h"
#include "readers/KernelFile.h"
#include "shared/schemas/KernelDescription.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

namespace consolidator::bench {

namespace {

std::string document() {
    std::ostringstream text;
    writeKernelXml(text, 10, std::uint64_t{4} * 1024 * 1024);
    return text.str();
}

void readKernels(benchmark::State& state) {
    const std::string text = document();
    for ([[maybe_unused]] auto round : state) {
        KernelFile reader(std::make_unique<std::stringbuf>(text));
        if (!reader.parse()) {
            state.SkipWithError("the document was refused");
            return;
        }
        benchmark::DoNotOptimize(reader.kernels().data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void readTree(benchmark::State& state) {
    const std::string text = document();
    for ([[maybe_unused]] auto round : state) {
        Mekto::Project project;
        project.readMemory(text);
        benchmark::DoNotOptimize(project.platform.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

} // namespace

void registerXml() {
    benchmark::RegisterBenchmark("xml/kernels", readKernels)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("xml/tree", readTree)->Unit(benchmark::kMillisecond);
}

} // namespace consolidator::bench
