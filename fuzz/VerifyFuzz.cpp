// Feeds the bytes to the strict check of a database, and to what reads databases.
//
// Checks that
// - a file in which the check finds no error is read whole, with as many kernels as it counted;
// - a file that was written from whatever could be read has no error but unknown section types,
//   which are kept; and the check's findings come with as many texts as it says;
// - a database does not differ from itself.

#include "consolidated/ConsolidatedFile.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/ScratchFile.h"
#include "inspect/diff/DiffPrinter.h"
#include "inspect/diff/KernelDiff.h"
#include "query/integrity/ContainerCheck.h"
#include "query/integrity/DatabaseFindings.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

/// Requires that what is kept of the findings is what the counts say.
void requireCounts(const DatabaseFindings& findings) {
    std::uint64_t expected = 0;
    for (const Severity severity : {Severity::Note, Severity::Warning, Severity::Error}) {
        expected += std::min(findings.count(severity), DatabaseFindings::mostKept);
    }
    fuzz::require(findings.kept().size() == expected, "findings are kept up to their limit");
    for (const Finding& finding : findings.kept()) {
        fuzz::require(!finding.text.empty() && finding.text.find('\n') == std::string::npos,
                      "a finding has one line");
    }
}

/// Checks the file and compares that with reading it. Returns the number of errors.
std::uint64_t checkAndRead(const fuzz::ScratchFile& file, const ConsolidatedFile& database,
                           bool isWhole) {
    DatabaseFindings findings;
    ContainerCheck check(findings);
    fuzz::require(check.check(file.path()), "a file is opened");
    requireCounts(findings);
    const std::uint64_t errors = findings.count(Severity::Error);
    if (errors == 0) {
        fuzz::require(isWhole, "a file without an error is read whole");
        fuzz::require(check.kernels() == database.kernels().size(), "all kernels are counted");
    }
    return errors;
}

void requireSameAsItself(const ConsolidatedFile& database) {
    std::ostringstream out;
    inspect::Console console{.out = out, .err = out};
    inspect::DiffPrinter printer("a", "b", console);
    for (const Kernel& kernel : database.kernels()) {
        inspect::KernelDiff(kernel, kernel, printer).run();
    }
    fuzz::require(printer.isSame() && out.str().empty(), "a kernel does not differ from itself");
}

std::uint64_t unknownSections(const ConsolidatedFile& database) {
    return static_cast<std::uint64_t>(
        std::ranges::count_if(database.sections(), [](const SectionEntry& entry) {
            return entry.type > static_cast<std::uint32_t>(SectionType::KernelJson);
        }));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchFile file;
    file.setBytes(fuzz::textOf(data, size));
    ConsolidatedFile original;
    const bool isWhole = original.readExisting(file.path());
    checkAndRead(file, original, isWhole);
    requireSameAsItself(original);

    {
        ConsolidatedFile database; // its end closes the file
        fuzz::require(database.open(file.path(), false, false), "a file is opened for adding");
        database.write();
    }
    ConsolidatedFile again;
    const bool isWholeAgain = again.readExisting(file.path());
    fuzz::require(checkAndRead(file, again, isWholeAgain) == unknownSections(again),
                  "a file that was written has no error but unknown sections");
    return 0;
}
