// Input files by chance, together with the facts that they state. All of them are whole and good;
// what cannot be read is Damage's business.
#pragma once

#include "tests/support/KnownKernels.h"
#include "tests/support/RandomSource.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::test {

/// The text of a file, and what a reader finds in it, in this order.
struct StatedInput {
    std::string text;
    std::vector<KnownKernel> kernels;
};

/// The same seed gives the same files everywhere.
class RandomInputs {
public:
    explicit RandomInputs(std::uint32_t seed) : random_(seed) {}

    /// Kernels with types and instance paths, some of them named more than once.
    StatedInput hierarchy();

    /// One kernel with conditions and variables; the file has to be named KERNEL.hls.
    StatedInput hls(const std::string& kernelName);

    /// One kernel with arguments.
    StatedInput auxiliary();

    /// Locations for some of the arguments and variables of kernels that the project has already,
    /// between nets of nobody. Instance paths of different kernels must not contain one another.
    StatedInput logicLocations(const std::vector<KnownKernel>& project);

    /// Rows for the kernels of the project and for others. It states nothing.
    StatedInput ramReport(const std::vector<KnownKernel>& project);

private:
    std::string word();
    std::string blank();
    std::string bitLine(const std::string& net, const KnownPlace& place);
    void addEntry(std::size_t line, StatedInput& input);
    void addRegister(KnownKernel& kernel, const std::string& net, std::string& text);

    RandomSource random_;
};

} // namespace consolidator::test
