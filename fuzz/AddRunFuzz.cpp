// Feeds whole runs of the program: the input is cut into files of all kinds, at lines of "==" and
// the letter of the option that the piece is given with.
//
//     ==h              a hierarchy file; likewise k, s, x, l, r, d
//     scale
//     type: hls
//     ==s              HLS files are named scale.hls, check.hls and k.hls, in this order
//     Begin Function …
//     ==f              the database as it was before; binary
//     ==p              the project's name
//     ==c              start afresh
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
#include "fuzz/ScratchDirectory.h"
#include "tests/support/ArgumentVector.h"

#include <array>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

constexpr std::size_t mostPieces = 24;
constexpr std::array<std::string_view, 3> hlsNames = {"scale.hls", "check.hls", "k.hls"};
constexpr std::string_view databaseName = "db.bin";

struct Piece {
    char option;
    std::string_view bytes;
};

/// The next "==X" line at or behind `from` that begins a piece.
std::size_t findMark(std::string_view bytes, std::size_t from) {
    constexpr std::string_view options = "hksxlrdfpc";
    for (std::size_t mark = bytes.find("==", from); mark != std::string_view::npos;
         mark = bytes.find("==", mark + 1)) {
        const bool beginsLine = mark == 0 || bytes[mark - 1] == '\n';
        if (beginsLine && mark + 3 < bytes.size() && bytes[mark + 3] == '\n' &&
            options.find(bytes[mark + 2]) != std::string_view::npos) {
            return mark;
        }
    }
    return bytes.size();
}

std::vector<Piece> piecesOf(std::string_view bytes) {
    std::vector<Piece> pieces;
    for (std::size_t mark = findMark(bytes, 0);
         mark < bytes.size() && pieces.size() < mostPieces;) {
        const std::size_t next = findMark(bytes, mark + 4);
        pieces.push_back({bytes[mark + 2], bytes.substr(mark + 4, next - mark - 4)});
        mark = next;
    }
    return pieces;
}

/// One run: its command line, and the database before it.
struct Run {
    std::vector<std::string> words{"consolidator"};
    std::string database;
    bool hasDatabase = false;
    bool isFresh = false;
};

std::string fileNameOf(char option, std::size_t number, std::size_t hlsNumber) {
    if (option == 's' && hlsNumber < hlsNames.size()) {
        return std::string(hlsNames.at(hlsNumber));
    }
    return std::to_string(number) + ".txt";
}

/// Puts the pieces into files and names them on a command line.
Run prepare(const fuzz::ScratchDirectory& directory, const std::vector<Piece>& pieces) {
    Run run;
    std::size_t hlsCount = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const auto [option, bytes] = pieces[i];
        if (option == 'f') {
            run.database = bytes;
            run.hasDatabase = true;
            continue;
        }
        run.words.push_back(std::string("-") + option);
        if (option == 'c') {
            run.isFresh = true;
        } else if (option == 'p') {
            run.words.push_back("name" + std::string(bytes.substr(0, bytes.find('\0'))));
        } else {
            const std::string name = fileNameOf(option, i, hlsCount);
            hlsCount += option == 's' ? 1 : 0;
            directory.write(name, bytes);
            run.words.push_back(directory.path(name));
        }
    }
    run.words.emplace_back("-f");
    run.words.push_back(directory.path(databaseName));
    return run;
}

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
    return {status, out.str(), err.str(), directory.read(databaseName)};
}

Result executeAfresh(const fuzz::ScratchDirectory& directory, const Run& run) {
    directory.remove(databaseName);
    if (run.hasDatabase) {
        directory.write(databaseName, run.database);
    }
    return execute(directory, run.words);
}

/// Requires that a database that a run has written holds what belongs into it.
void checkDatabase(const fuzz::ScratchDirectory& directory, const Run& run, bool mayBeCut) {
    ConsolidatedFile database;
    const bool isWhole = database.readExisting(directory.path(databaseName));
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
    database.readExisting(directory.path(databaseName));
    const Result result = execute(directory, {"consolidator", "-f", directory.path(databaseName),
                                              option, directory.path("dump.out")});
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
    const std::vector<Piece> pieces = piecesOf(bytes);
    if (pieces.empty() || fuzz::namesLargeBit(bytes)) {
        return 0;
    }
    directory.clear();
    const Run run = prepare(directory, pieces);
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
