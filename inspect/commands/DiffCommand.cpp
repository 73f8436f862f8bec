// `consolidator-inspect diff DB1 DB2`: what the second database has that the first one has not, and
// the other way round.
//
//     --- a.db
//     +++ b.db
//     ~ project: accelerator -> accelerator_2
//     + kernel checksum: C, 1 instance, 3 arguments, 1 variable, 2 registers, 1 condition
//     kernel scale_rows
//       + instance top/region_0/scale_rows_3
//       ~ register /top/region_0/scale_rows_2/U0/sum_reg: bit 6: not located -> 0x00002a01 166
//
// Nothing is printed if the two hold the same. Where sections lie, and the JSON document, which
// follows from the kernels, are not compared.

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/commands/UsageError.h"
#include "inspect/diff/DiffPrinter.h"
#include "inspect/diff/KernelDiff.h"
#include "inspect/diff/ListMatch.h"
#include "query/Database.h"
#include "query/Words.h"
#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::inspect {

namespace {

/// Prints a value that either database may lack.
void compareValues(const std::string& word, const std::string& before, const std::string& after,
                   DiffPrinter& printer) {
    if (before == after) {
        return;
    }
    if (after.empty()) {
        printer.removed(word + ": " + before);
    } else if (before.empty()) {
        printer.added(word + ": " + after);
    } else {
        printer.changed(word + ": " + before + " -> " + after);
    }
}

std::string versionOf(const Database& database) {
    return std::to_string(database.header().majorVersion) + '.' +
           std::to_string(database.header().minorVersion);
}

void compareDwarf(const Database& before, const Database& after, DiffPrinter& printer) {
    const auto sizeOf = [](const std::optional<std::string>& dwarf) {
        return dwarf ? inWords(dwarf->size(), "byte") : std::string();
    };
    if (!before.dwarf() || !after.dwarf()) {
        compareValues("DWARF", sizeOf(before.dwarf()), sizeOf(after.dwarf()), printer);
        return;
    }
    const std::string& left = *before.dwarf();
    const std::string& right = *after.dwarf();
    if (left == right) {
        return;
    }
    const std::size_t common = std::min(left.size(), right.size());
    const auto end = left.begin() + static_cast<std::ptrdiff_t>(common);
    const auto place = std::mismatch(left.begin(), end, right.begin()).first - left.begin();
    const std::string sizes = left.size() == right.size()
                                  ? sizeOf(left)
                                  : sizeOf(left) + " -> " + std::to_string(right.size());
    printer.changed("DWARF: " + sizes + ", the first difference at " +
                    inHex(static_cast<std::uint64_t>(place)));
}

/// "kernel checksum: C, 1 instance, 3 arguments", without lists that are empty.
std::string contentInWords(const Kernel& kernel) {
    std::string result = "kernel " + nameText(kernel.name()) + ": " + typeText(kernel.type());
    const auto add = [&result](std::size_t count, std::string_view thing) {
        if (count > 0) {
            result += ", " + inWords(count, thing);
        }
    };
    add(kernel.instancePaths().size(), "instance");
    add(kernel.arguments().size(), "argument");
    add(kernel.variables().size(), "variable");
    add(kernel.hardwareVariables().size(), "register");
    add(kernel.breakableConditions().size(), "condition");
    add(kernel.brams().size(), "BRAM");
    return result;
}

std::vector<std::string_view> namesOf(const std::vector<Kernel>& kernels) {
    std::vector<std::string_view> names;
    names.reserve(kernels.size());
    for (const Kernel& kernel : kernels) {
        names.emplace_back(kernel.name());
    }
    return names;
}

/// Whole kernels first, then what differs in those that both have.
void compareKernels(const std::vector<Kernel>& before, const std::vector<Kernel>& after,
                    DiffPrinter& printer) {
    const ListMatch match(namesOf(before), namesOf(after));
    for (const std::uint32_t position : match.removed()) {
        printer.removed(contentInWords(before[position]));
    }
    for (const std::uint32_t position : match.added()) {
        printer.added(contentInWords(after[position]));
    }
    reportOrder(
        "kernel", match,
        [&after](std::uint32_t position) { return nameText(after[position].name()); }, printer);
    for (const auto& [left, right] : match.pairs()) {
        printer.setPart("kernel " + nameText(before[left].name()));
        KernelDiff(before[left], after[right], printer).run();
    }
}

/// The status is `Findings` if anything differs. Of damaged databases, what can be read is
/// compared, and the status is `Unreadable`.
class DiffCommand final : public Command {
public:
    /// Adds the command to the command line.
    explicit DiffCommand(CLI::App& commandLine);

    Status run(Console& console) override;

private:
    std::string before_;
    std::string after_;
};

DiffCommand::DiffCommand(CLI::App& commandLine) {
    CLI::App* command =
        commandLine.add_subcommand("diff", "Show what differs between two databases");
    command->add_option("DB1", before_, "The consolidated file to begin with")
        ->required()
        ->check(emptyNameError);
    command->add_option("DB2", after_, "The one that it is compared with")
        ->required()
        ->check(emptyNameError);
}

Status DiffCommand::run(Console& console) {
    const std::optional<Database> before = readDatabase(before_, console);
    const std::optional<Database> after = readDatabase(after_, console);
    if (!before || !after) {
        return Status::Unreadable;
    }
    DiffPrinter printer(printable(before_), printable(after_), console);
    compareValues("version", versionOf(*before), versionOf(*after), printer);
    compareValues("project", printable(before->project()), printable(after->project()), printer);
    compareDwarf(*before, *after, printer);
    compareKernels(before->kernels(), after->kernels(), printer);
    const bool isWhole = before->error().empty() && after->error().empty();
    return std::max(printer.isSame() ? Status::Fine : Status::Findings,
                    isWhole ? Status::Fine : Status::Unreadable);
}

} // namespace

std::unique_ptr<Command> makeDiffCommand(CLI::App& commandLine) {
    return std::make_unique<DiffCommand>(commandLine);
}

} // namespace consolidator::inspect
