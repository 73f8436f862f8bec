// Feeds the bytes to the database as a file of its own: read, written anew, read back, dumped.
//
// Checks that
// - what is written is laid out as it has to be: header, table, payloads without gaps;
// - reading it back gives project, DWARF and kernels that were written, as often as their sections
//   occur, with the conditions translated once for each JSON section in front; and that it succeeds
//   unless there is a section of unknown type, which ends the reading;
// - a dump is the section's bytes, from the file as it came and from the one that was written, and
//   the JSON is the kernels' own.

#include "consolidated/ConsolidatedFile.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/KernelChecks.h"
#include "fuzz/ScratchFile.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

using Header = ConsolidatedFile::Header;

constexpr std::size_t entrySize = sizeof(SectionEntry);

void translate(std::vector<Kernel>& kernels) {
    for (Kernel& kernel : kernels) {
        kernel.translateConditions();
    }
}

std::string jsonOf(const std::vector<Kernel>& kernels) {
    std::ostringstream json;
    const char* separator = "";
    json << "{  \"Kernels\" : [ ";
    for (const Kernel& kernel : kernels) {
        json << separator;
        kernel.writeJson(json);
        separator = ", ";
    }
    json << " ] }" << '\0';
    return json.str();
}

bool isKnown(const SectionEntry& entry) {
    return entry.type <= static_cast<std::uint32_t>(SectionType::KernelJson);
}

/// The bytes that the entry speaks of, as far as a file of these bytes has all of them. Positions
/// are signed 32-bit numbers.
std::optional<std::string> payloadOf(const std::string& file, const SectionEntry& entry) {
    const auto offset = static_cast<std::int32_t>(entry.offset);
    if (offset < 0 || static_cast<std::size_t>(offset) > file.size() ||
        file.size() - static_cast<std::size_t>(offset) < entry.size) {
        return std::nullopt;
    }
    return file.substr(static_cast<std::size_t>(offset), entry.size);
}

/// The table of a file that was written. Entries for sections that repeat too often are left out of
/// it; the payloads begin where it would have ended with them.
struct Table {
    std::vector<SectionEntry> sections;
    std::size_t room; ///< Its entries, with those that were left out.
};

/// Requires that a file that was written begins with the header and this table, and that the
/// payloads follow without gaps.
void requireLayout(const std::string& file, const Table& table) {
    const std::vector<SectionEntry>& sections = table.sections;
    Header header;
    fuzz::require(file.size() >= sizeof header + sections.size() * entrySize,
                  "a file holds its table");
    std::memcpy(&header, file.data(), sizeof header);
    fuzz::require(header.magic == 0xBEEFDAD4 && header.majorVersion == 1 &&
                      header.minorVersion == 1 && header.sectionCount == sections.size(),
                  "a file begins with its header");
    fuzz::require(sections.size() <= table.room, "a file has no more sections than it had");
    std::size_t end = sizeof header + table.room * entrySize;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        SectionEntry entry;
        std::memcpy(&entry, file.data() + sizeof header + i * entrySize, entrySize);
        fuzz::require(entry == sections[i], "a file holds the table as it is known");
        fuzz::require(entry.offset == end, "payloads follow without gaps");
        end += isKnown(entry) ? entry.size : 0;
    }
    fuzz::require(file.size() == end, "a file ends with its last payload");
}

/// What a database holds.
struct Content {
    bool whole = true;
    std::string project;
    std::optional<std::string> dwarf;
    std::vector<Kernel> kernels;
};

Content contentOf(const ConsolidatedFile& database, bool whole) {
    return {whole, database.project(), database.dwarf(), database.kernels()};
}

/// What is to be read from the file that this content was written to, by its sections. `json`
/// becomes the text of the last JSON section.
Content expectedBack(const Content& content, const std::vector<SectionEntry>& sections,
                     std::string& json) {
    Content back;
    std::vector<Kernel> kernels = content.kernels;
    bool reached = true; // reading gets as far as this
    for (const SectionEntry& entry : sections) {
        reached = reached && isKnown(entry);
        if (entry.is(SectionType::KernelJson)) {
            translate(kernels);
            json = jsonOf(kernels);
        } else if (reached && entry.is(SectionType::ProjectName)) {
            back.project = content.project;
        } else if (reached && entry.is(SectionType::Dwarf)) {
            back.dwarf = content.dwarf.value_or("").substr(0, entry.size);
        } else if (reached && entry.is(SectionType::KernelData)) {
            back.kernels.insert(back.kernels.end(), kernels.begin(), kernels.end());
        }
    }
    back.whole = reached;
    return back;
}

/// Reads the file, which has this content, and writes it. Returns its table from then on.
Table writeAnew(const fuzz::ScratchFile& file, const Content& content) {
    ConsolidatedFile database; // its end closes the file
    fuzz::require(database.open(file.path(), false, false), "a file is opened for adding");
    fuzz::require(fuzz::same(database.kernels(), content.kernels), "reading twice is the same");
    const std::vector<SectionEntry> before = database.sections();
    const auto isAdded = [&before](SectionType type) {
        return std::ranges::none_of(before, [&](const auto& entry) { return entry.is(type); });
    };
    const std::size_t room = before.size() + (isAdded(SectionType::KernelJson) ? 1 : 0) +
                             (!content.kernels.empty() && isAdded(SectionType::KernelData) ? 1 : 0);
    database.write();
    return {database.sections(), room};
}

/// Requires that both dumps of the file give the first section's bytes, or nothing at all, and
/// find the project that reading the whole file finds.
void checkDumps(const fuzz::ScratchFile& file, fuzz::ScratchFile& output) {
    const std::string bytes = file.bytes();
    ConsolidatedFile whole;
    whole.readExisting(file.path());
    for (const SectionType type : {SectionType::Dwarf, SectionType::KernelJson}) {
        ConsolidatedFile database;
        fuzz::require(database.open(file.path(), false, true), "a file is opened for a dump");
        fuzz::require(database.project() == whole.project(), "a dump finds the project");
        database.dumpSection(type, output.path());
        const auto& sections = database.sections();
        const auto entry = std::ranges::find_if(
            sections, [type](const SectionEntry& candidate) { return candidate.is(type); });
        const std::string expected =
            entry == sections.end() ? "" : payloadOf(bytes, *entry).value_or("");
        fuzz::require(output.bytes() == expected, "a dump is the section's bytes");
    }
    fuzz::require(file.bytes() == bytes, "a dump leaves the file as it is");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchFile file;
    static fuzz::ScratchFile output;
    file.setBytes(fuzz::textOf(data, size));
    checkDumps(file, output);

    ConsolidatedFile original;
    const bool isWhole = original.readExisting(file.path());
    const Content content = contentOf(original, isWhole);

    const Table table = writeAnew(file, content);
    requireLayout(file.bytes(), table);
    const std::vector<SectionEntry>& sections = table.sections;

    std::string json;
    const Content expected = expectedBack(content, sections, json);
    ConsolidatedFile again;
    const bool isWholeAgain = again.readExisting(file.path());
    const Content back = contentOf(again, isWholeAgain);
    fuzz::require(back.whole == expected.whole, "only an unknown section ends the reading");
    fuzz::require(back.project == expected.project, "the project is read back");
    fuzz::require(back.dwarf == expected.dwarf, "the DWARF blob is read back");
    fuzz::require(fuzz::same(back.kernels, expected.kernels), "the kernels are read back");

    const auto lastJson = std::find_if(sections.rbegin(), sections.rend(), [](const auto& entry) {
        return entry.is(SectionType::KernelJson);
    });
    fuzz::require(lastJson != sections.rend(), "a file has a JSON section");
    fuzz::require(payloadOf(file.bytes(), *lastJson) == json, "the JSON is the kernels' own");
    checkDumps(file, output);
    std::ostringstream listing;
    again.printHeader(listing);
    return 0;
}
