// Feeds logic locations to their reader. The input may begin with the project's kernels (see
// splitProject).
//
// Checks what holds for every reader (see checkReader); that nothing is thrown or printed, and that
// nothing but registers changes in the kernels.

#include "fuzz/FuzzProject.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "fuzz/LogicLocationInput.h"
#include "fuzz/ReaderChecks.h"
#include "readers/LLFile.h"

#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
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
    return 0;
}
