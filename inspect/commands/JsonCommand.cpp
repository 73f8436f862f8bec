// `consolidator-inspect json DB`: the content as JSON.
//
//     consolidator-inspect json DB             valid JSON on one line, see JsonExport.h
//     consolidator-inspect json --pretty DB    the same, indented
//     consolidator-inspect json --dwarf DB     with the DWARF blob's bytes
//     consolidator-inspect json --section DB   the JSON section that is stored in the database

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/export/JsonExport.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <memory>
#include <ostream>

namespace consolidator::inspect {

namespace {

/// Opens the file at the section's first byte. Offsets are signed 32-bit numbers to whoever reads a
/// database.
std::ifstream opened(const std::string& path, const SectionEntry& entry) {
    std::ifstream file(path, std::ios::binary);
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    const std::streamoff offset = static_cast<std::int32_t>(entry.offset);
    if (offset < 0 || offset > size || size - offset < static_cast<std::streamoff>(entry.size)) {
        file.setstate(std::ios::failbit);
    }
    file.seekg(offset);
    return file;
}

/// False when so many bytes do not come.
bool copy(std::istream& in, std::uint64_t size, std::ostream& out) {
    constexpr std::uint64_t blockSize = std::uint64_t{64} * 1024;
    const auto block = std::make_unique_for_overwrite<char[]>(blockSize);
    while (size > 0 && out) {
        const auto length = static_cast<std::streamsize>(std::min(size, blockSize));
        if (!in.read(block.get(), length)) {
            return false;
        }
        out.write(block.get(), length);
        size -= static_cast<std::uint64_t>(length);
    }
    return static_cast<bool>(in);
}

/// Copies the first JSON section byte for byte, the zero byte at its end included.
Status showSection(const Database& database, Console& console) {
    const auto entry = std::ranges::find_if(database.sections(), [](const SectionEntry& candidate) {
        return candidate.is(SectionType::KernelJson);
    });
    if (entry == database.sections().end()) {
        console.err << printable(database.path()) << ": error: has no JSON section\n";
        return Status::Findings;
    }
    std::ifstream file = opened(database.path(), *entry);
    if (!copy(file, entry->size, console.out)) {
        console.err << printable(database.path())
                    << ": error: the file ends before its JSON section does\n";
        return Status::Unreadable;
    }
    return Status::Fine;
}

class JsonCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit JsonCommand(CLI::App& commandLine);

private:
    /// The stored section is only copied.
    Database::Extent extent() const override {
        return section_ ? Database::Extent::Table : Database::Extent::All;
    }
    Status show(const Database& database, Console& console) override;

    bool pretty_ = false;
    bool withDwarf_ = false;
    bool section_ = false;
};

JsonCommand::JsonCommand(CLI::App& commandLine)
    : DatabaseCommand(*commandLine.add_subcommand("json", "Print the content as JSON")) {
    CLI::App& command = *commandLine.get_subcommand("json");
    CLI::Option* const pretty = command.add_flag("--pretty", pretty_, "Indent it");
    CLI::Option* const dwarf =
        command.add_flag("--dwarf", withDwarf_, "With the bytes of the DWARF data, in Base64");
    command
        .add_flag("--section", section_, "Print the JSON section of the database as it is stored")
        ->excludes(pretty)
        ->excludes(dwarf);
}

Status JsonCommand::show(const Database& database, Console& console) {
    if (section_) {
        return showSection(database, console);
    }
    exportJson(database,
               {.layout = pretty_ ? JsonOptions::Layout::Pretty : JsonOptions::Layout::Compact,
                .withDwarf = withDwarf_},
               console.out);
    return Status::Fine;
}

} // namespace

std::unique_ptr<Command> makeJsonCommand(CLI::App& commandLine) {
    return std::make_unique<JsonCommand>(commandLine);
}

} // namespace consolidator::inspect
