// `consolidator-inspect find DB PATTERN`: where arguments, variables and registers lie.
//
//     kernel scale_rows, sum_reg
//       variable sum, int, 32 bits
//       instance 0: /top/region_0/scale_rows_1/U0/sum_reg
//         bit  address     offset
//           0  0x00001a01  160
//           …
//       instance 1: /top/region_0/scale_rows_2/U0/sum_reg
//         bit  address     offset
//           …
//           6  not located
//           7  0x00002a01  167
//
// A part for each hardware name of a kernel of which anything matches, with all that goes by it:
// the arguments and variables, and the registers whose net ends in it. Where only nets match, the
// other registers are left out.

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/commands/UsageError.h"
#include "inspect/text/Style.h"
#include "query/KernelView.h"
#include "query/NamePattern.h"
#include "query/Words.h"
#include "shared/Printable.h"
#include "shared/TextHash.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

namespace consolidator::inspect {

namespace {

/// What matches in one kernel, by hardware name, in the order in which it was found.
class Matches {
public:
    struct Part {
        std::string_view hardwareName;
        bool isWhole = false;                 ///< An argument or variable matches.
        std::vector<std::uint32_t> registers; ///< Otherwise, those whose nets match.
    };

    Matches(const Kernel& kernel, const NamePattern& pattern) {
        forEachVariable(kernel, [&](const SourceVariable& source) {
            const Variable& variable = *source.variable;
            if (pattern.matchesName(variable.sourceName) ||
                pattern.matchesName(variable.hardwareName)) {
                partOf(variable.hardwareName).isWhole = true;
            }
        });
        const std::vector<HardwareVariable>& registers = kernel.hardwareVariables();
        for (std::uint32_t position = 0; position < registers.size(); ++position) {
            const std::string& net = registers[position].name;
            if (pattern.matchesNet(net)) {
                partOf(lastComponent(net)).registers.push_back(position);
            }
        }
    }

    const std::vector<Part>& parts() const { return parts_; }

private:
    Part& partOf(std::string_view hardwareName) {
        const auto [entry, isNew] = positions_.try_emplace(hardwareName, parts_.size());
        if (isNew) {
            parts_.push_back({hardwareName, false, {}});
        }
        return parts_[entry->second];
    }

    std::vector<Part> parts_;
    std::unordered_map<std::string_view, std::size_t, TextHash> positions_; ///< In parts_.
};

/// Prints what matches in one kernel.
class MatchesText {
public:
    MatchesText(const Kernel& kernel, Console& console)
        : kernel_(kernel), view_(kernel), console_(console), out_(console.out) {}

    void print(const Matches::Part& part) {
        std::string head("kernel ");
        head += shortPrintable(kernel_.name());
        head += ", ";
        head += printable(part.hardwareName);
        out_ << bold(head, console_.colour) << '\n';
        for (const SourceVariable& source : view_.variablesOf(part.hardwareName)) {
            printVariable(source);
        }
        const std::span<const std::uint32_t> registers =
            part.isWhole ? view_.registersOf(part.hardwareName) : std::span(part.registers);
        for (const std::uint32_t position : registers) {
            const HardwareVariable& variable = kernel_.hardwareVariables()[position];
            out_ << "  " << instanceText(view_.instanceOf(position)) << ": "
                 << printable(variable.name) << '\n';
            printBits(variable.locations);
        }
        if (registers.empty()) {
            out_ << "  no register\n";
        }
    }

private:
    void printVariable(const SourceVariable& source) {
        const Variable& variable = *source.variable;
        out_ << "  " << source.kind() << ' ' << printable(variable.sourceName) << ", "
             << printable(variable.typeText) << ", " << variable.bitWidth() << " bits\n";
        // No input file leads to these, but a database may have them.
        for (std::size_t instance = 0; instance < variable.locations.size(); ++instance) {
            out_ << "  instance " << instance << ": of its own\n";
            printBits(LocationList(variable.locations[instance]));
        }
    }

    /// A line for each bit that has a place, and one for all neighbours that have none.
    void printBits(const LocationList& locations) {
        if (locations.empty()) {
            out_ << "    no bits\n";
            return;
        }
        constexpr std::string_view heading = "bit";
        const std::size_t width = std::max(heading.size(), bitsWidth(locations.size()));
        const auto beginLine = [&](std::string_view bits) -> std::ostream& {
            return out_ << "    " << std::string(width - bits.size(), ' ') << bits << "  ";
        };
        beginLine(heading) << "address     offset\n";
        forEachBitRun(locations, [&](const BitRun& run) {
            if (!run.isLocated()) {
                beginLine(bitsText(run)) << "not located\n";
                return;
            }
            for (std::uint32_t i = 0; i <= run.last - run.first; ++i) {
                beginLine(std::to_string(run.first + i))
                    << addressText(run.place.address) << "  " << run.place.offset + i << '\n';
            }
        });
    }

    const Kernel& kernel_;
    KernelView view_;
    Console& console_;
    std::ostream& out_;
};

/// The pattern is a NamePattern: a glob, or with "-r" a regular expression.
class FindCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit FindCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    explicit FindCommand(CLI::App* command);

    std::string pattern_;
    bool isRegex_ = false;
};

FindCommand::FindCommand(CLI::App& commandLine)
    : FindCommand(commandLine.add_subcommand(
          "find", "Show where the arguments, variables and registers of a name lie")) {}

FindCommand::FindCommand(CLI::App* command) : DatabaseCommand(*command) {
    command
        ->add_option("PATTERN", pattern_,
                     "Source name, hardware name or net, with * for any characters, ? for one, and "
                     "[...] for one of several")
        ->required();
    command->add_flag("-r,--regex", isRegex_,
                      "PATTERN is a regular expression (RE2), and a part that matches is enough");
}

Status FindCommand::show(const Database& database, Console& console) {
    const NamePattern pattern(pattern_,
                              isRegex_ ? NamePattern::Kind::Regex : NamePattern::Kind::Glob);
    if (!pattern.error().empty()) {
        return usageError(console, "find",
                          "pattern " + quotedPrintable(pattern_) +
                              " cannot be understood: " + pattern.error());
    }
    bool isFirst = true;
    for (const Kernel& kernel : database.kernels()) {
        const Matches matches(kernel, pattern);
        if (matches.parts().empty()) {
            continue;
        }
        MatchesText text(kernel, console);
        for (const Matches::Part& part : matches.parts()) {
            console.out << (std::exchange(isFirst, false) ? "" : "\n");
            text.print(part);
        }
    }
    if (!isFirst) {
        return Status::Fine;
    }
    console.err << printable(database.path())
                << ": error: no argument, variable or register matches "
                << quotedPrintable(pattern_) << '\n';
    return Status::Findings;
}

} // namespace

std::unique_ptr<Command> makeFindCommand(CLI::App& commandLine) {
    return std::make_unique<FindCommand>(commandLine);
}

} // namespace consolidator::inspect
