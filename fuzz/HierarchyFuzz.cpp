// Feeds the bytes to the reader of hierarchy files.
//
// Checks what holds for every reader (see checkReader), and that nothing is thrown.

#include "fuzz/Fuzzing.h"
#include "fuzz/ReaderChecks.h"
#include "readers/HierarchyFile.h"

#include <memory>
#include <sstream>
#include <streambuf>

using namespace consolidator; // NOLINT(google-build-using-namespace)

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ostringstream errors;
    const auto make = [&](std::unique_ptr<std::streambuf> source) {
        return std::make_unique<HierarchyFile>(std::move(source), errors);
    };
    const fuzz::Reading reading = fuzz::checkReader(make, fuzz::textOf(data, size));
    fuzz::require(!reading.threw, "a hierarchy file never throws");
    return 0;
}
