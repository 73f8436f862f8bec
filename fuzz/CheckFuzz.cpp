// Feeds `consolidator-inspect check` any files, in the form of RunInput.h.
//
// Checks that it ends in a known way; that the same check says the same; that it changes no file;
// that its text has no control characters and its JSON can be read; and that it says of exactly
// those files that nothing of them is merged whose readers fail.

#include "fuzz/Fuzzing.h"
#include "fuzz/LogicLocationInput.h"
#include "fuzz/RunInput.h"
#include "fuzz/ScratchDirectory.h"
#include "inspect/Inspector.h"
#include "readers/AuxiliaryXMLFile.h"
#include "readers/HLSFile.h"
#include "readers/HierarchyFile.h"
#include "readers/KernelFile.h"
#include "readers/LLFile.h"
#include "tests/support/ArgumentVector.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <rapidjson/document.h>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

/// What a check says.
struct Result {
    int status;
    std::string out;
    std::string err;

    bool operator==(const Result&) const = default;
};

Result check(const fuzz::RunInput& run, std::string_view format) {
    std::vector<std::string> words{"consolidator-inspect", "check", "--format",
                                   std::string(format)};
    std::copy_if(run.words.begin() + 1, run.words.end(), std::back_inserter(words),
                 [](const std::string& word) { return word != "-c"; });
    std::ostringstream out;
    std::ostringstream err;
    inspect::Console console{.out = out, .err = err};
    const test::ArgumentVector arguments(words);
    const int status = inspect::inspect(arguments.count(), arguments.pointers(), console);
    return {status, out.str(), err.str()};
}

template <typename Reader>
bool fails(const std::string& path) {
    std::ostringstream nowhere;
    Reader reader(path, nowhere);
    return !reader.tryToParse();
}

/// Whether the reader of a file's kind fails on it.
bool fails(const fuzz::InputPiece& file) {
    switch (file.option) {
    case 'h':
        return fails<HierarchyFile>(file.path);
    case 'k':
        return fails<KernelFile>(file.path);
    case 's':
        return fails<HLSFile>(file.path);
    case 'x':
        return fails<AuxiliaryXMLFile>(file.path);
    case 'l':
        return fails<LLFile>(file.path);
    default:
        return false; // nothing is merged from RAM reports and DWARF in any case
    }
}

/// The files that the check says nothing is merged of.
std::set<std::string> unmerged(const rapidjson::Document& json) {
    std::set<std::string> files;
    for (const auto& finding : json["findings"].GetArray()) {
        const std::string_view text(finding["text"].GetString(), finding["text"].GetStringLength());
        if (text.ends_with("nothing of this file is merged")) {
            files.insert(finding["file"].GetString());
        }
    }
    return files;
}

void checkJson(const fuzz::RunInput& run, const Result& result) {
    rapidjson::Document json;
    json.Parse<rapidjson::kParseValidateEncodingFlag>(result.out.data(), result.out.size());
    fuzz::require(!json.HasParseError(), "the JSON can be read");
    std::set<std::string> expected;
    for (const fuzz::InputPiece& file : run.files) {
        if (fails(file)) {
            expected.insert(file.path);
        }
    }
    fuzz::require(unmerged(json) == expected, "the files that readers fail on are named");
    const bool anyFault = json["errors"].GetUint64() > 0 || json["warnings"].GetUint64() > 0;
    fuzz::require(result.status == (anyFault ? 1 : 0), "the status shows errors and warnings");
}

bool isPrinted(char byte) {
    return byte == '\n' || (static_cast<unsigned char>(byte) >= 0x20 && byte != 0x7F);
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
    if (run.hasDatabase) {
        directory.write(fuzz::databaseName, run.database);
    }
    const Result text = check(run, "text");
    fuzz::require(text == check(run, "text"), "the same check says the same");
    fuzz::require(std::ranges::all_of(text.out, isPrinted), "nothing drives the terminal");
    const Result json = check(run, "json");
    fuzz::require(json.status == text.status, "both formats end in the same way");
    if (json.status == 2) { // an option was repeated, or there is no input
        fuzz::require(text.out.empty() && !text.err.empty(), "the fault is said");
    } else {
        fuzz::require(text.err.empty() && json.err.empty(), "nothing else is said");
        checkJson(run, json);
    }
    fuzz::require(directory.read(fuzz::databaseName) ==
                      (run.hasDatabase ? std::optional(run.database) : std::nullopt),
                  "the database stays as it is");
    return 0;
}
