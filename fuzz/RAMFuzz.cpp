// Feeds a RAM utilization report to its reader. The input may begin with the project's kernels (see
// splitProject).
//
// Checks what holds for every reader (see checkReader); that reading always succeeds and makes no
// kernels, and that the matching rows are those that a walk over all lines, kernels and paths
// finds.

#include "fuzz/FuzzProject.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "fuzz/ReaderChecks.h"
#include "model/RAMFile.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

/// The lines as the reader sees them: white space between them skipped, cut at a zero byte. A line
/// that is too long is the last one and comes in part.
std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    while (!stream.eof()) {
        std::vector<char> line(RAMFile::longestLine + 1);
        stream.getline(line.data(), static_cast<std::streamsize>(line.size()));
        lines.emplace_back(line.data());
        if (stream.fail() && !stream.eof()) {
            break;
        }
        stream >> std::ws;
    }
    return lines;
}

/// Whether a path of any kernel matches this row.
bool matchesRow(const std::string& row, const std::vector<Kernel>& kernels) {
    if (row.empty()) {
        return false;
    }
    const std::size_t first = row.find('|', 1);
    const std::size_t second =
        first == std::string::npos ? std::string::npos : row.find('|', first + 1);
    if (second == std::string::npos ||
        row.substr(first, second - first).find("RAMB") == std::string::npos) {
        return false;
    }
    const std::string name = row.substr(1, first - 1);
    return std::ranges::any_of(kernels, [&name](const Kernel& kernel) {
        return std::ranges::any_of(kernel.instancePaths(), [&name](const std::string& path) {
            return name.find(path) != std::string::npos;
        });
    });
}

std::uint64_t matchingRows(const std::string& text, const std::vector<Kernel>& kernels) {
    std::uint64_t matches = 0;
    bool pastContents = false;
    bool inTable = false;
    for (const std::string& line : linesOf(text)) {
        if (inTable) {
            if (line == "4. Memory Performance - Inferred" ||
                line == "7. Memory Utilization - Instantiated") {
                inTable = false;
            } else if (!line.starts_with('-')) {
                matches += matchesRow(line, kernels) ? 1 : 0;
            }
            continue;
        }
        inTable = pastContents && (line == "3. Memory Utilization - Inferred" ||
                                   line == "6. Memory Utilization - Instantiated");
        pastContents = pastContents || line == "8. Block Ram / URAM Memory Power - Instantiated";
    }
    return matches;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::ProjectAndText input = fuzz::splitProject(fuzz::textOf(data, size));
    const std::vector<Kernel> before = input.kernels;
    std::ostringstream errors;
    const auto make = [&](std::unique_ptr<std::streambuf> source) {
        return std::make_unique<RAMFile>(std::move(source), input.kernels, errors);
    };
    const fuzz::Reading reading = fuzz::checkReader(make, input.text);
    fuzz::require(reading.succeeded, "a report never fails");
    fuzz::require(reading.kernels.empty(), "a report makes no kernels");
    fuzz::require(fuzz::same(before, input.kernels), "a report leaves the project as it is");
    fuzz::require(errors.str().empty(), "a report says nothing");
    fuzz::require(reading.remarkCount == matchingRows(input.text, input.kernels),
                  "a report's matching rows are all found");
    return 0;
}
