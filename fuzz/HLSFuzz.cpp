// Feeds the bytes to the reader of HLS kernel metadata.
//
// Checks what holds for every reader (see checkReader); that nothing is thrown or printed, and that
// a file that can be used makes one kernel and any other none.

#include "fuzz/Fuzzing.h"
#include "fuzz/ReaderChecks.h"
#include "readers/HLSFile.h"

#include <memory>
#include <sstream>
#include <streambuf>

using namespace consolidator; // NOLINT(google-build-using-namespace)

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ostringstream errors;
    const auto make = [&](std::unique_ptr<std::streambuf> source) {
        return std::make_unique<HLSFile>(std::move(source), errors);
    };
    const fuzz::Reading reading = fuzz::checkReader(make, fuzz::textOf(data, size));
    fuzz::require(!reading.threw, "an HLS file never throws");
    fuzz::require(reading.kernels.size() == (reading.succeeded ? 1 : 0), "a file makes a kernel");
    fuzz::require(errors.str().empty(), "an HLS file says nothing");
    return 0;
}
