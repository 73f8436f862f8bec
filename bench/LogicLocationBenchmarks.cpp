// How fast LLFile gets over lines of each sort.

#include "bench/Benchmarks.h"
#include "bench/LargeProject.h"
#include "readers/LLFile.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::bench {

namespace {

constexpr std::uint64_t textLength = std::uint64_t{4} * 1024 * 1024;

/// The project's kernels as they are before any logic locations are known.
std::vector<Kernel> kernelsWithoutRegisters(Shape shape) {
    shape.bits = 0;
    std::vector<Kernel> kernels;
    for (const Kernel& full : fullKernels(shape)) {
        Kernel& kernel = kernels.emplace_back();
        kernel.setName(full.name());
        for (const std::string& path : full.instancePaths()) {
            kernel.addInstancePath(path);
        }
        for (const Variable& variable : full.variables()) {
            kernel.addVariable(variable.sourceName, variable.hardwareName, variable.typeText);
        }
    }
    return kernels;
}

void readLogicLocations(benchmark::State& state, const Shape& shape, const Lines& lines) {
    std::ostringstream text;
    writeLogicLocations(text, shape, lines, textLength);
    const std::vector<Kernel> kernels = kernelsWithoutRegisters(shape);
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        LLFile reader(std::make_unique<std::stringbuf>(text.str()));
        reader.setKernels(kernels);
        state.ResumeTiming();
        if (!reader.parse()) {
            state.SkipWithError("the text was refused");
            return;
        }
        benchmark::DoNotOptimize(reader.kernels().data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.str().size()));
}

} // namespace

void registerLogicLocations() {
    const auto add = [](const char* name, const Shape& shape, const Lines& lines) {
        benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
            readLogicLocations(state, shape, lines);
        })->Unit(benchmark::kMillisecond);
    };
    const Shape usual;
    const Shape manyPaths{.kernels = 1, .instances = 4096};
    const Shape manyKernels{.kernels = 1000, .instances = 1, .variables = 1000};
    add("lines/no_net", usual, {.withNet = 0});
    add("lines/nets_of_no_kernel", usual, {.withNet = 100, .ofKernels = 0});
    add("lines/nets_of_kernels", usual, {.withNet = 100, .ofKernels = 100});
    add("lines/usual", usual, {});
    add("lines/usual_many_paths", manyPaths, {});
    add("lines/usual_many_kernels", manyKernels, {});
}

} // namespace consolidator::bench
