// `consolidator-inspect kernel DB NAME`: everything that a database has of one kernel.
//
//     kernel scale_rows, type HLS
//
//     Instances (in JSON each path ends in "/U0")
//       #  path
//       0  top/region_0/scale_rows_1
//       1  top/region_0/scale_rows_2
//
//     Arguments
//       source name  hardware name  type  width  registers  instances
//       input        input_r        int*     64          0
//       …
//     Variables
//       source name  hardware name  type  width  registers  instances
//       sum          sum_reg        int      32          2  0-1
//
//     Registers
//       instance 0: /top/region_0/scale_rows_1/U0/sum_reg
//         bits 7:0  frame 0x00001a01  offsets 160-167
//       instance 1: /top/region_0/scale_rows_2/U0/sum_reg
//         bits 5:0  frame 0x00002a01  offsets 160-165
//         bit 6     not located
//         bit 7     frame 0x00002a01  offset 167
//
//     Conditions
//       at                 condition
//       start              == 1'b1 $i/kc_start
//       scale_rows.cpp:14  == 1'b1 $i/fsm_state2
//
//     BRAMs
//       none
//
// The columns "registers" and "instances" tell how many registers there are by the hardware name,
// and in which instances: "0-2, 5 (2 each)" is one in each of the instances 0, 1 and 2, and two in
// instance 5. Of many pieces only the first are shown. "none" is a register in whose net no path of
// an instance occurs.
//
// A hand-made database may hold locations in an argument or variable itself: they follow the
// registers, under a heading of their own. It may also hold several kernels of one name: all are
// shown.

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/text/Style.h"
#include "inspect/text/Table.h"
#include "query/KernelView.h"
#include "query/NearestNames.h"
#include "query/Words.h"
#include "shared/Printable.h"
#include "shared/TextHash.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <unordered_map>

namespace consolidator::inspect {

namespace {

constexpr std::string_view indent = "  ";
constexpr std::string_view bitIndent = "    ";

/// In which instances the registers of a hardware name lie, in few words.
///
/// Each name is looked into once, however many variables have it.
class InstanceLists {
public:
    explicit InstanceLists(const KernelView& view) : view_(&view) {}

    const std::string& of(std::string_view hardwareName) {
        const auto [entry, isNew] = known_.try_emplace(hardwareName);
        if (isNew) {
            entry->second = described(hardwareName);
        }
        return entry->second;
    }

private:
    std::string described(std::string_view hardwareName) const {
        std::map<std::uint32_t, std::size_t> counts;
        std::size_t nowhere = 0;
        for (const std::uint32_t position : view_->registersOf(hardwareName)) {
            if (const auto instance = view_->instanceOf(position)) {
                ++counts[*instance];
            } else {
                ++nowhere;
            }
        }
        std::string text = described(counts);
        if (nowhere > 0) {
            text += text.empty() ? "none" : ", none";
            text += nowhere > 1 ? " (" + std::to_string(nowhere) + ")" : "";
        }
        return text;
    }

    static std::string described(const std::map<std::uint32_t, std::size_t>& counts) {
        constexpr std::size_t mostPieces = 8;
        std::string text;
        std::size_t pieces = 0;
        for (auto from = counts.begin(); from != counts.end();) {
            if (++pieces > mostPieces) {
                return text + ", … (" + std::to_string(counts.size()) + " in all)";
            }
            auto last = from;
            auto next = std::next(from);
            while (next != counts.end() && next->first == last->first + 1 &&
                   next->second == from->second) {
                last = next++;
            }
            text += text.empty() ? "" : ", ";
            text += rangeText(from->first, last->first);
            text += from->second > 1 ? " (" + std::to_string(from->second) + " each)" : "";
            from = next;
        }
        return text;
    }

    const KernelView* view_;
    std::unordered_map<std::string_view, std::string, TextHash> known_;
};

/// A line for each run of the bits:
///
///     bits 5:0  frame 0x00002a01  offsets 160-165
///     bit 6     not located
void printBitRuns(std::ostream& out, const LocationList& locations) {
    if (locations.empty()) {
        out << bitIndent << "no bits\n";
        return;
    }
    const std::size_t width = bitsWidth(locations.size()) +
                              std::string_view(locations.size() == 1 ? "bit " : "bits ").size();
    forEachBitRun(locations, [&](const BitRun& run) {
        std::string bits(run.first == run.last ? "bit " : "bits ");
        bits += bitsText(run);
        bits.append(std::max(width, bits.size()) - bits.size(), ' ');
        out << bitIndent << bits << "  " << placeText(run) << '\n';
    });
}

/// One kernel on its way out.
class KernelText {
public:
    KernelText(const Kernel& kernel, Console& console)
        : kernel_(kernel),
          view_(kernel),
          instanceLists_(view_),
          console_(console),
          out_(console.out) {}

    void print() {
        std::string head("kernel ");
        head += printable(kernel_.name());
        out_ << bold(head, console_.colour) << ", type " << typeText(kernel_.type()) << '\n';
        printInstances();
        printVariables("Arguments", kernel_.arguments());
        printVariables("Variables", kernel_.variables());
        printRegisters();
        printOwnLocations();
        printConditions();
        printBrams();
    }

private:
    /// The heading of a part, and whether anything follows it.
    bool begin(std::string_view heading, bool hasContent, std::string_view remark = {}) {
        out_ << '\n' << bold(heading, console_.colour) << (hasContent ? remark : "") << '\n';
        if (!hasContent) {
            out_ << indent << "none\n";
        }
        return hasContent;
    }

    void printTable(const std::vector<Table::Column>& tableColumns, std::size_t rows,
                    const std::function<std::vector<std::string>(std::size_t)>& makeRow) {
        printRows(out_, tableColumns, rows, makeRow, std::string(indent), console_.colour);
    }

    void printInstances() {
        const std::vector<std::string>& paths = kernel_.instancePaths();
        std::string remark(" (in JSON each path ends in \"");
        remark += kernel_.instanceSuffix();
        remark += "\")";
        if (begin("Instances", !paths.empty(), remark)) {
            printTable({{"#", rightAligned}, {"path"}}, paths.size(), [&paths](std::size_t row) {
                return std::vector{std::to_string(row), printable(paths[row])};
            });
        }
    }

    void printVariables(std::string_view heading, std::span<const Variable> variables) {
        if (!begin(heading, !variables.empty())) {
            return;
        }
        const std::vector<Table::Column> tableColumns{
            {"source name"},         {"hardware name"},           {"type"},
            {"width", rightAligned}, {"registers", rightAligned}, {"instances"}};
        printTable(tableColumns, variables.size(), [&](std::size_t row) {
            const Variable& variable = variables[row];
            return std::vector{printable(variable.sourceName),
                               printable(variable.hardwareName),
                               printable(variable.typeText),
                               std::to_string(variable.bitWidth()),
                               std::to_string(view_.registersOf(variable.hardwareName).size()),
                               instanceLists_.of(variable.hardwareName)};
        });
    }

    void printRegisters() {
        const std::vector<HardwareVariable>& registers = kernel_.hardwareVariables();
        if (!begin("Registers", !registers.empty())) {
            return;
        }
        for (std::size_t position = 0; position < registers.size(); ++position) {
            out_ << indent << instanceText(view_.instanceOf(position)) << ": "
                 << printable(registers[position].name) << '\n';
            printBitRuns(out_, registers[position].locations);
        }
    }

    void printOwnLocations() {
        bool isFirst = true;
        forEachVariable(kernel_, [&](const SourceVariable& source) {
            const auto& instances = source.variable->locations;
            for (std::size_t instance = 0; instance < instances.size(); ++instance) {
                if (std::exchange(isFirst, false)) {
                    begin("Locations of the arguments and variables themselves", true);
                }
                out_ << indent << "instance " << instance << ": " << variableText(source) << '\n';
                printBitRuns(out_, LocationList(instances[instance]));
            }
        });
    }

    void printConditions() {
        const std::vector<BreakableCondition>& conditions = kernel_.breakableConditions();
        if (begin("Conditions", !conditions.empty())) {
            printTable({{"at"}, {"condition"}}, conditions.size(), [&](std::size_t row) {
                return std::vector{conditionPlace(conditions[row]),
                                   printable(conditions[row].condition)};
            });
        }
    }

    void printBrams() {
        if (begin("BRAMs", !kernel_.brams().empty())) {
            for (const std::string& bram : kernel_.brams()) {
                out_ << indent << printable(bram) << '\n';
            }
        }
    }

    const Kernel& kernel_;
    KernelView view_;
    InstanceLists instanceLists_;
    Console& console_;
    std::ostream& out_;
};

class KernelCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit KernelCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    explicit KernelCommand(CLI::App* command);

    std::string name_;
};

KernelCommand::KernelCommand(CLI::App& commandLine)
    : KernelCommand(commandLine.add_subcommand("kernel", "Show all of one kernel")) {}

KernelCommand::KernelCommand(CLI::App* command) : DatabaseCommand(*command) {
    command->add_option("NAME", name_, "The kernel's name")->required();
}

Status KernelCommand::show(const Database& database, Console& console) {
    NearestNames nearest(name_);
    bool isFirst = true;
    for (const Kernel& kernel : database.kernels()) {
        if (kernel.name() == name_) {
            console.out << (std::exchange(isFirst, false) ? "" : "\n");
            KernelText(kernel, console).print();
        } else {
            nearest.add(kernel.name());
        }
    }
    if (!isFirst) {
        return Status::Fine;
    }
    console.err << printable(database.path()) << ": error: has no kernel " << quotedPrintable(name_)
                << nearest.question() << '\n';
    return Status::Findings;
}

} // namespace

std::unique_ptr<Command> makeKernelCommand(CLI::App& commandLine) {
    return std::make_unique<KernelCommand>(commandLine);
}

} // namespace consolidator::inspect
