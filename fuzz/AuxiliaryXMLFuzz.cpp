// Feeds the bytes to the reader of auxiliary XML.
//
// Checks what holds for every reader (see checkReader); that nothing is printed, that a file that
// can be used makes one kernel and any other none, and that a failure is explained.

#include "fuzz/Fuzzing.h"
#include "fuzz/ReaderChecks.h"
#include "readers/AuxiliaryXMLFile.h"

#include <memory>
#include <sstream>
#include <streambuf>

using namespace consolidator; // NOLINT(google-build-using-namespace)

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ostringstream errors;
    const auto make = [&](std::unique_ptr<std::streambuf> source) {
        return std::make_unique<AuxiliaryXMLFile>(std::move(source), errors);
    };
    const fuzz::Reading reading = fuzz::checkReader(make, fuzz::textOf(data, size));
    fuzz::require(reading.kernels.size() == (reading.succeeded ? 1 : 0), "a file makes a kernel");
    fuzz::require(reading.succeeded || reading.stopped, "a file that fails says where");
    fuzz::require(errors.str().empty(), "an auxiliary file says nothing");
    return 0;
}
