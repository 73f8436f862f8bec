// Feeds the bytes to the binding of kernel descriptions.
//
// Checks that a document that was read, written and read again gives an equal tree, that writing
// the second tree gives the same text, and that nothing but the binding's own exceptions is thrown.

#include "fuzz/Fuzzing.h"
#include "shared/schemas/KernelDescription.h"

#include <sstream>
#include <string>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

std::string documentOf(const Mekto::Project& project) {
    std::ostringstream out;
    project.write(out);
    return out.str();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::textOf(data, size);
    Mekto::Project project;
    lmx60::ErrorCode error = lmx60::ErrorCode::None;
    try {
        project.readMemory(text, &error);
    } catch (const lmx60::c_lmx_exception& exception) {
        fuzz::require(exception.code() == error, "the code is told both ways");
        fuzz::require(error != lmx60::ErrorCode::None, "a failure has a code");
    }
    // What was read before a fault is a whole tree too.
    const std::string document = documentOf(project);
    Mekto::Project again;
    again.readMemory(document);
    fuzz::require(again == project, "what is written reads back as an equal tree");
    fuzz::require(documentOf(again) == document, "an equal tree is written the same");
    return 0;
}
