// Feeds the bytes to the reader of kernel descriptions.
//
// Checks what holds for every reader (see checkReader), and that the kernels are those that the
// whole tree of the document gives, walked in the plainest way.

#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "fuzz/ReaderChecks.h"
#include "readers/KernelFile.h"
#include "shared/schemas/KernelDescription.h"
#include "tests/support/PlainKernelDescription.h"

#include <memory>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

/// The kernels of a document; none when it cannot be read.
std::optional<std::vector<Kernel>> plainKernels(const std::string& document) {
    Mekto::Project project;
    try {
        project.readMemory(document);
    } catch (const lmx60::c_lmx_exception&) {
        return std::nullopt;
    }
    return test::plainKernelsOf(project);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ostringstream errors;
    const auto make = [&](std::unique_ptr<std::streambuf> source) {
        return std::make_unique<KernelFile>(std::move(source), errors);
    };
    const std::string text = fuzz::textOf(data, size);
    const fuzz::Reading reading = fuzz::checkReader(make, text);
    fuzz::require(!reading.threw, "a kernel description never throws");
    const std::optional<std::vector<Kernel>> plain = plainKernels(text);
    fuzz::require(reading.succeeded == plain.has_value(), "the reader reads what can be read");
    fuzz::require(fuzz::same(reading.kernels, plain.value_or(std::vector<Kernel>())),
                  "the kernels are those of the document's tree");
    fuzz::require(errors.str().empty() == reading.succeeded, "a failure is said");
    return 0;
}
