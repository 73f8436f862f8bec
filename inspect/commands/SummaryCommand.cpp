// `consolidator-inspect summary DB`: what is in a database, at a glance.
//
//     accelerator.bin: consolidated file, version 1.1, 5120 bytes
//     project: accelerator
//     DWARF:   38 bytes
//
//     Sections
//       #  type          offset  size
//       0  project name     112    11
//       …
//     Kernels
//       name        type  instances  arguments  variables  registers  located bits  conditions
//       scale_rows  HLS           2          4          2          5            31           3

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/text/Style.h"
#include "inspect/text/Table.h"
#include "query/Bits.h"
#include "query/Words.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>

namespace consolidator::inspect {

namespace {

void printHead(const Database& database, std::ostream& out) {
    out << printable(database.path()) << ": consolidated file, version "
        << database.header().majorVersion << '.' << database.header().minorVersion << ", "
        << database.fileSize() << " bytes\n";
    out << "project: " << (database.project().empty() ? "none" : printable(database.project()))
        << '\n';
    out << "DWARF:   ";
    if (database.dwarf()) {
        out << database.dwarf()->size() << " bytes\n";
    } else {
        out << "none\n";
    }
}

void printSections(const Database& database, Console& console) {
    Table table({{"#", rightAligned}, {"type"}, {"offset", rightAligned}, {"size", rightAligned}});
    std::size_t number = 0;
    for (const SectionEntry& entry : database.sections()) {
        table.add({std::to_string(number++), sectionText(entry), std::to_string(entry.offset),
                   std::to_string(entry.size)});
    }
    console.out << '\n' << bold("Sections", console.colour) << '\n';
    table.print(console.out, "  ", console.colour);
}

void printKernels(const Database& database, Console& console) {
    Table table({{"name"},
                 {"type"},
                 {"instances", rightAligned},
                 {"arguments", rightAligned},
                 {"variables", rightAligned},
                 {"registers", rightAligned},
                 {"located bits", rightAligned},
                 {"conditions", rightAligned}});
    for (const Kernel& kernel : database.kernels()) {
        std::uint64_t bits = 0;
        for (const HardwareVariable& variable : kernel.hardwareVariables()) {
            bits += locatedBits(variable.locations);
        }
        table.add({printable(kernel.name()), typeText(kernel.type()),
                   std::to_string(kernel.instancePaths().size()),
                   std::to_string(kernel.arguments().size()),
                   std::to_string(kernel.variables().size()),
                   std::to_string(kernel.hardwareVariables().size()), std::to_string(bits),
                   std::to_string(kernel.breakableConditions().size())});
    }
    console.out << '\n' << bold("Kernels", console.colour) << '\n';
    if (table.empty()) {
        console.out << "  none\n";
    } else {
        table.print(console.out, "  ", console.colour);
    }
}

class SummaryCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit SummaryCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;
};

SummaryCommand::SummaryCommand(CLI::App& commandLine)
    : DatabaseCommand(*commandLine.add_subcommand(
          "summary", "Show sections, project and a table of the kernels")) {}

Status SummaryCommand::show(const Database& database, Console& console) {
    printHead(database, console.out);
    printSections(database, console);
    printKernels(database, console);
    return Status::Fine;
}

} // namespace

std::unique_ptr<Command> makeSummaryCommand(CLI::App& commandLine) {
    return std::make_unique<SummaryCommand>(commandLine);
}

} // namespace consolidator::inspect
