// Feeds the same logic locations to their reader and to the plain reader of the tests. The input
// may begin with the project's kernels (see splitProject).
//
// Checks that both come to the same end with the same kernels, whether the bytes come at once or in
// pieces.

#include "fuzz/FuzzProject.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "readers/LLFile.h"
#include "readers/LocationBudget.h"
#include "tests/support/PlainLogicLocations.h"
#include "tests/support/Trickle.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <streambuf>
#include <utility>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

constexpr std::size_t mostAtATime = 100;

/// Requires that the reader does with these bytes what the plain reader does.
void checkAgainst(const fuzz::ProjectAndText& input, std::unique_ptr<std::streambuf> source,
                  bool plainSucceeded, const std::vector<Kernel>& plain) {
    std::ostringstream errors;
    LLFile reader(std::move(source), errors);
    reader.setKernels(input.kernels);
    constexpr std::uint64_t noLimit = std::uint64_t{1} << 40; // the plain reader has none
    reader.setBudget(LocationBudget(noLimit, noLimit));
    fuzz::require(reader.parse() == plainSucceeded, "both readers come to the same end");
    fuzz::require(fuzz::same(reader.kernels(), plain), "both readers make the same kernels");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::ProjectAndText input = fuzz::splitProject(fuzz::textOf(data, size));
    std::vector<Kernel> plain = input.kernels;
    const bool succeeded = test::readPlainLogicLocations(input.text, plain);
    checkAgainst(input, std::make_unique<std::stringbuf>(input.text), succeeded, plain);
    checkAgainst(input, std::make_unique<test::Trickle>(input.text, mostAtATime), succeeded, plain);
    return 0;
}
