// What must hold for every reader, whatever it is given.
#pragma once

#include "consolidated/ConsolidatedFile.h"
#include "consolidated/Diagnostic.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "model/Kernel.h"
#include "tests/support/Trickle.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace consolidator::fuzz {

/// All that one reading left behind.
struct Reading {
    bool succeeded = false;
    bool threw = false;
    std::vector<Kernel> kernels;
    std::optional<Finding> stopped;
    std::vector<Finding> remarks;
    std::uint64_t remarkCount = 0;
};

/// Requires that kernels that a reader has made can be merged, as often as one likes, and stored.
/// `mayHoldZeroBytes`: texts may come back cut.
void requireUsable(const std::vector<Kernel>& kernels, bool mayHoldZeroBytes);

/// Requires of two readings of the same bytes that nothing tells them apart.
void requireSame(const Reading& first, const Reading& second);

/// Lets a reader made by make(source) read; notes what it throws, as ConsolidatedFile does.
template <typename Make>
Reading readingOf(Make make, std::unique_ptr<std::streambuf> source) {
    auto reader = make(std::move(source));
    Reading reading;
    try {
        reading.succeeded = reader->parse();
    } catch (const std::exception&) {
        reading.threw = true;
    }
    reading.kernels = reader->kernels();
    reading.stopped = reader->diagnostic().stopped();
    reading.remarks = reader->diagnostic().remarks();
    reading.remarkCount = reader->diagnostic().remarkCount();
    return reading;
}

/// Requires of a reader whatever must hold for all of them: the same bytes give the same result
/// however they arrive, and the kernels can be used; and that ConsolidatedFile takes in what was
/// read. Returns the reading.
template <typename Make>
Reading checkReader(Make make, const std::string& text) {
    Reading reading = readingOf(make, std::make_unique<std::stringbuf>(text));
    const std::size_t most = 1 + text.size() % 100; // bytes at a time
    requireSame(reading, readingOf(make, std::make_unique<test::Trickle>(text, most)));
    requireUsable(reading.kernels, text.find('\0') != std::string::npos);

    ConsolidatedFile project;
    const auto reader = make(std::make_unique<std::stringbuf>(text));
    project.addInputFile(*reader);
    ConsolidatedFile expected;
    if (reading.succeeded && !reading.threw) {
        for (const Kernel& kernel : reading.kernels) {
            expected.mergeKernel(kernel);
        }
    }
    require(same(project.kernels(), expected.kernels()), "adding an input merges its kernels");
    return reading;
}

} // namespace consolidator::fuzz
