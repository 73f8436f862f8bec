// How fast records are added to, written, read and rendered.

#include "bench/Benchmarks.h"
#include "bench/LargeProject.h"
#include "consolidated/FileBuffer.h"
#include "consolidated/FileHandle.h"
#include "model/Kernel.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::bench {

namespace {

/// A kernel of 20,000 registers.
Kernel largeKernel() {
    std::vector<Kernel> kernels =
        fullKernels({.kernels = 1, .instances = 20, .variables = 1000, .bits = 32});
    return std::move(kernels.front());
}

/// Each bit of each register, as an input names them.
void addLocations(benchmark::State& state) {
    const Kernel source = largeKernel();
    std::int64_t added = 0;
    for ([[maybe_unused]] auto round : state) {
        Kernel kernel;
        for (const HardwareVariable& variable : source.hardwareVariables()) {
            for (std::uint32_t bit = 0; bit < variable.locations.size(); ++bit) {
                kernel.addHardwareLocation(variable.name, bit, bit, bit);
            }
            added += variable.locations.size();
        }
        benchmark::DoNotOptimize(kernel.hardwareVariables().data());
    }
    state.SetItemsProcessed(added);
}

/// What an input that adds nothing new makes of each kernel.
void mergeTheSame(benchmark::State& state) {
    Kernel kernel = largeKernel();
    const Kernel same = kernel;
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        Kernel other = same; // merging takes over what it is given
        state.ResumeTiming();
        kernel.merge(std::move(other));
        benchmark::DoNotOptimize(kernel.hardwareVariables().data());
    }
    state.SetItemsProcessed(state.iterations() * 20'000);
}

void writeBinary(benchmark::State& state) {
    const Kernel kernel = largeKernel();
    const FileHandle file(std::tmpfile());
    std::uint32_t written = 0;
    for ([[maybe_unused]] auto round : state) {
        std::rewind(file.get());
        written = kernel.write(file.get());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t{written});
}

void readBinary(benchmark::State& state) {
    const FileHandle file(std::tmpfile());
    const std::uint32_t length = largeKernel().write(file.get());
    for ([[maybe_unused]] auto round : state) {
        std::rewind(file.get());
        Kernel kernel;
        if (!kernel.read(file.get())) {
            state.SkipWithError("the kernel was not read");
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t{length});
}

void renderJson(benchmark::State& state) {
    const Kernel kernel = largeKernel();
    const FileHandle file = openFile("/dev/null", "w");
    std::uint64_t written = 0;
    for ([[maybe_unused]] auto round : state) {
        FileBuffer buffer(file.get(), std::numeric_limits<std::uint64_t>::max());
        std::ostream out(&buffer);
        kernel.writeJson(out);
        buffer.finish();
        written += buffer.written();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(written));
}

} // namespace

void registerRecords() {
    const auto add = [](const char* name, void (*run)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond);
    };
    add("records/add_locations", addLocations);
    add("records/merge_the_same", mergeTheSame);
    add("records/write_binary", writeBinary);
    add("records/read_binary", readBinary);
    add("records/render_json", renderJson);
}

} // namespace consolidator::bench
