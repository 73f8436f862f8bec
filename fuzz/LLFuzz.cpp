// Feeds logic locations to their reader. The input may begin with the project's kernels (see
// splitProject).
//
// Checks what holds for every reader (see checkReader); that nothing is thrown or printed, and that
// nothing but registers changes in the kernels; that looking on changes nothing, and that who does
// is told of nets and placements in order, and of each bit where it was placed before.

#include "fuzz/FuzzProject.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "fuzz/LogicLocationInput.h"
#include "fuzz/ReaderChecks.h"
#include "readers/LLFile.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

Kernel withoutRegisters(const Kernel& kernel) {
    Kernel result;
    result.setName(kernel.name());
    for (const std::string& path : kernel.instancePaths()) {
        result.addInstancePath(path);
    }
    for (const Variable& argument : kernel.arguments()) {
        result.addArgument(argument.sourceName, argument.hardwareName, argument.typeText);
    }
    for (const Variable& variable : kernel.variables()) {
        result.addVariable(variable.sourceName, variable.hardwareName, variable.typeText);
    }
    return result;
}

std::vector<Kernel> withoutRegisters(const std::vector<Kernel>& kernels) {
    std::vector<Kernel> result;
    result.reserve(kernels.size());
    for (const Kernel& kernel : kernels) {
        result.push_back(withoutRegisters(kernel));
    }
    return result;
}

/// Requires that what it is told holds together.
class Listener final : public LogicLocationObserver {
public:
    void netNamed(std::string_view /*net*/, std::uint64_t line) override {
        fuzz::require(line > lineOfNet_, "nets come in order");
        lineOfNet_ = line;
    }

    void bitPlaced(const Placement& placement) override {
        fuzz::require(placement.line > lineOfBit_ && placement.line <= lineOfNet_,
                      "placements come in order, behind their nets");
        lineOfBit_ = placement.line;
        const auto [known, isNew] =
            places_.try_emplace({std::string(placement.net), placement.bitIndex});
        fuzz::require(placement.before == (isNew ? std::nullopt : std::optional(known->second)),
                      "where the bit was placed before is told");
        known->second = placement.location;
    }

private:
    std::uint64_t lineOfNet_ = 0;
    std::uint64_t lineOfBit_ = 0;
    std::map<std::pair<std::string, std::uint32_t>, LogicLocation> places_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::ProjectAndText input = fuzz::splitProject(fuzz::textOf(data, size));
    if (fuzz::namesLargeBit(input.text)) {
        return 0;
    }
    std::ostringstream errors;
    const auto make = [&](std::unique_ptr<std::streambuf> source) {
        auto reader = std::make_unique<LLFile>(std::move(source), errors);
        reader->setKernels(input.kernels);
        return reader;
    };
    const fuzz::Reading reading = fuzz::checkReader(make, input.text);
    fuzz::require(!reading.threw, "logic locations never throw");
    fuzz::require(errors.str().empty(), "logic locations say nothing");
    fuzz::require(fuzz::same(withoutRegisters(reading.kernels), withoutRegisters(input.kernels)),
                  "logic locations change nothing but registers");
    Listener listener;
    const auto makeWatched = [&](std::unique_ptr<std::streambuf> source) {
        auto reader = make(std::move(source));
        reader->observe(listener);
        return reader;
    };
    fuzz::requireSame(reading,
                      fuzz::readingOf(makeWatched, std::make_unique<std::stringbuf>(input.text)));
    return 0;
}
