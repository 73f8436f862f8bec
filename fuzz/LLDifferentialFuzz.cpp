// Feeds the same logic locations to their reader and to the plain reader of the tests. The input
// may begin with the project's kernels (see splitProject).
//
// Checks that both come to the same end with the same kernels.

#include "fuzz/Fuzzing.h"
#include "readers/LLFile.h"
#include "tests/support/PlainLogicLocations.h"

#include <cstdint>
#include <sstream>

using namespace consolidator; // NOLINT(google-build-using-namespace)

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::ProjectAndText input = fuzz::splitProject(fuzz::textOf(data, size));
    std::ostringstream errors;
    LLFile reader(std::make_unique<std::stringbuf>(input.text), errors);
    reader.setKernels(input.kernels);
    constexpr std::uint64_t noLimit = std::uint64_t{1} << 40; // the plain reader has none
    reader.setBudget(LocationBudget(noLimit, noLimit));
    const bool succeeded = reader.parse();

    std::vector<Kernel> plain = input.kernels;
    fuzz::require(test::readPlainLogicLocations(input.text, plain) == succeeded,
                  "both readers come to the same end");
    fuzz::require(fuzz::same(reader.kernels(), plain), "both readers make the same kernels");
    return 0;
}
