// Feeds whole runs of the program, in the form of RunInput.h.
//
// Checks that the run ends with 0, or with 1 for a database of another project or version; that the
// same run on the same files does the same; that what it writes can be read back, unless the old
// database had a section of unknown type; that a run without an old database gives unique lists;
// and that the dumps are the file's sections.

#include "consolidated/ConsolidatedFile.h"
#include "driver/Driver.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "fuzz/LogicLocationInput.h"
#include "fuzz/RunInput.h"
#include "fuzz/ScratchDirectory.h"
#include "tests/support/ArgumentVector.h"

#include <optional>
#include <sstream>
#include <string>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

/// All that a run tells and leaves.
struct Result {
    int status;
    std::string out;
    std::string err;
    std::optional<std::string> database;

    bool operator==(const Result&) const = default;
};

Result execute(const fuzz::ScratchDirectory& directory, const std::vector<std::string>& words) {
    std::ostringstream out;
    std::ostringstream err;
    const test::ArgumentVector arguments(words);
    const int status = run(arguments.count(), arguments.pointers(), out, err);
    return {status, out.str(), err.str(), directory.read(fuzz::databaseName)};
}

Result executeAfresh(const fuzz::ScratchDirectory& directory, const fuzz::RunInput& run) {
    directory.remove(fuzz::databaseName);
    if (run.hasDatabase) {
        directory.write(fuzz::databaseName, run.database);
    }
    return execute(directory, run.words);
}

/// Requires that a database that a run has written holds what belongs into it.
void checkDatabase(const fuzz::ScratchDirectory& directory, const fuzz::RunInput& run,
                   bool mayBeCut) {
    ConsolidatedFile database;
    const bool isWhole = database.readExisting(directory.path(fuzz::databaseName));
    const bool mayHaveUnknown = run.hasDatabase && !run.isFresh;
    fuzz::require(isWhole || mayHaveUnknown, "a new database can be read back");
    // A text that was cut at a zero byte may be there twice.
    if (mayHaveUnknown || mayBeCut) {
        return;
    }
    for (const Kernel& kernel : database.kernels()) {
        fuzz::requireUniqueNames(kernel); // conditions may have become equal by their translation
    }
}

/// Requires that a dump gives the bytes of the first section of the type.
void checkDump(const fuzz::ScratchDirectory& directory, const std::string& option,
               SectionType type) {
    ConsolidatedFile database;
    database.readExisting(directory.path(fuzz::databaseName));
    const Result result =
        execute(directory, {"consolidator", "-f", directory.path(fuzz::databaseName), option,
                            directory.path("dump.out")});
    fuzz::require(result.status == 0 && result.out.empty() && result.err.empty(),
                  "a dump succeeds in silence");
    std::string expected;
    for (const SectionEntry& entry : database.sections()) {
        if (entry.is(type)) {
            expected = result.database->substr(entry.offset, entry.size);
            break;
        }
    }
    fuzz::require(directory.read("dump.out") == expected, "a dump is the section's bytes");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchDirectory directory;
    const std::string bytes = fuzz::textOf(data, size);
    const std::vector<fuzz::Piece> pieces = fuzz::piecesOf(bytes);
    if (pieces.empty() || fuzz::namesLargeBit(bytes)) {
        return 0;
    }
    directory.clear();
    const fuzz::RunInput run = fuzz::prepareRun(directory, pieces);
    const Result first = executeAfresh(directory, run);
    fuzz::require(first.status == 0 || first.status == 1, "a run ends in a known way");
    fuzz::require(first.status == 0 || (run.hasDatabase && !run.isFresh),
                  "only an old database refuses a run");
    fuzz::require(executeAfresh(directory, run) == first, "the same run does the same");
    if (first.status == 0 && first.out.empty()) {
        checkDatabase(directory, run, bytes.find('\0') != std::string::npos);
        checkDump(directory, "-u", SectionType::Dwarf);
        checkDump(directory, "-j", SectionType::KernelJson);
    }
    return 0;
}
