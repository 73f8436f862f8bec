#include "inspect/commands/AtCommand.h"

#include "inspect/text/Style.h"
#include "inspect/text/Table.h"
#include "query/BitRun.h"
#include "query/HeldVariables.h"
#include "query/KernelNets.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <limits>
#include <memory>
#include <ostream>
#include <span>
#include <vector>

namespace consolidator::inspect {

namespace {

/// The place that was asked for.
struct Place {
    std::uint32_t address = 0;
    std::optional<std::uint32_t> offset;

    /// The part of the run that lies there.
    std::optional<BitRun> partOf(const BitRun& run) const {
        if (!run.isLocated() || run.place.address != address) {
            return std::nullopt;
        }
        if (!offset) {
            return run;
        }
        if (*offset < run.place.offset || *offset > run.lastOffset()) {
            return std::nullopt;
        }
        const std::uint32_t bit = run.first + (*offset - run.place.offset);
        return BitRun{bit, bit, {address, *offset}};
    }

    std::string described() const {
        std::string text("frame ");
        text += addressText(address);
        if (offset) {
            text += ", offset ";
            text += std::to_string(*offset);
        }
        return text;
    }
};

/// What lies at a place.
class Occupants {
public:
    explicit Occupants(const Place& place) : place_(place) {}

    void addAllOf(const Kernel& kernel) {
        Names* names = nullptr; // costly, and most kernels have nothing there
        const auto namesOfKernel = [&] {
            if (names == nullptr) {
                names = names_.emplace_back(std::make_unique<Names>(kernel)).get();
            }
            return names;
        };
        const std::vector<HardwareVariable>& registers = kernel.hardwareVariables();
        for (std::size_t position = 0; position < registers.size(); ++position) {
            addRuns(registers[position].locations, [&] {
                const auto instance = namesOfKernel()->nets.instanceOf(position);
                const std::string_view hardwareName = lastComponent(registers[position].name);
                return Owner{
                    names, instance, &registers[position], names->held.of(hardwareName), {}};
            });
        }
        forEachVariable(kernel, [&](const HeldVariable& held) {
            const auto& instances = held.variable->locations;
            for (std::uint32_t instance = 0; instance < instances.size(); ++instance) {
                const auto owner = [&] {
                    return Owner{namesOfKernel(), instance, nullptr, {}, held};
                };
                addRuns(LocationList(instances[instance]), owner);
            }
        });
    }

    bool empty() const { return runs_.empty(); }

    void print(Console& console) {
        std::ranges::stable_sort(runs_, {}, [](const Run& run) { return run.bits.place.offset; });
        printRows(
            console.out, {{"offsets"}, {"bits"}, {"kernel"}, {"instance"}, {"register"}, {"holds"}},
            runs_.size(), [this](std::size_t row) { return cells(runs_[row]); }, "  ",
            console.colour);
    }

private:
    struct Names {
        explicit Names(const Kernel& kernel) : nets(kernel), held(kernel) {}

        KernelNets nets;
        HeldVariables held;
    };

    /// A register, or else an argument or variable with locations of its own.
    struct Owner {
        const Names* names = nullptr; ///< Of its kernel.
        std::optional<std::uint32_t> instance;
        const HardwareVariable* hardware = nullptr;
        std::span<const HeldVariable> held; ///< What the register holds.
        HeldVariable itself;
    };

    struct Run {
        BitRun bits;
        std::uint32_t owner = 0; ///< In owners_.
    };

    template <typename MakeOwner>
    void addRuns(const LocationList& locations, MakeOwner makeOwner) {
        bool isKnown = false;
        forEachBitRun(locations, [&](const BitRun& run) {
            if (const std::optional<BitRun> part = place_.partOf(run)) {
                if (!std::exchange(isKnown, true)) {
                    owners_.push_back(makeOwner());
                }
                runs_.push_back({*part, static_cast<std::uint32_t>(owners_.size() - 1)});
            }
        });
    }

    std::vector<std::string> cells(const Run& run) const {
        const Owner& owner = owners_[run.owner];
        const bool isRegister = owner.hardware != nullptr;
        return {rangeText(run.bits.place.offset, run.bits.lastOffset()),
                bitsText(run.bits),
                shortPrintable(owner.names->nets.kernel().name()),
                owner.instance ? std::to_string(*owner.instance) : "-",
                isRegister ? shortPrintable(owner.hardware->name) : "-",
                isRegister ? described(owner.held) : owner.itself.described()};
    }

    Place place_;
    std::vector<std::unique_ptr<Names>> names_; ///< Of the kernels that have anything there.
    std::vector<Owner> owners_;
    std::vector<Run> runs_;
};

/// A check for the command line: the complaint about a text that is no number up to the largest,
/// to be made printable with all that is said of a command line.
std::function<std::string(const std::string&)> numberUpTo(std::uint64_t largest) {
    return [largest](const std::string& text) {
        const std::optional<std::uint64_t> number = parsedNumber(text);
        return number && *number <= largest
                   ? std::string()
                   : '"' + text + "\" is no number up to " + std::to_string(largest) +
                         " in decimal, or behind 0x in hexadecimal digits";
    };
}

} // namespace

AtCommand::AtCommand(CLI::App& commandLine)
    : AtCommand(commandLine.add_subcommand("at", "Show what lies at a place of the device")) {}

AtCommand::AtCommand(CLI::App* command) : DatabaseCommand(*command) {
    command
        ->add_option(
            "ADDRESS", address_,
            "Frame address, of which the low 32 bits count; decimal, or 0x and hexadecimal")
        ->required()
        ->check(numberUpTo(std::numeric_limits<std::uint64_t>::max()));
    command->add_option("OFFSET", offset_, "Offset in the frame; without it, all of the frame")
        ->check(numberUpTo(std::numeric_limits<std::uint32_t>::max()));
}

Status AtCommand::show(const Database& database, Console& console) {
    // A logic-location file has addresses of up to 64 bits, and a database their low 32.
    Place place{static_cast<std::uint32_t>(parsedNumber(address_).value_or(0)), {}};
    if (!offset_.empty()) {
        place.offset = static_cast<std::uint32_t>(parsedNumber(offset_).value_or(0));
    }
    const auto complain = [&](std::string_view reason) {
        console.err << printable(database.path()) << ": error: " << reason << '\n';
        return Status::Findings;
    };
    if (place.address == 0 && place.offset == 0U) {
        return complain("frame 0, offset 0 stands for a bit that is not located: nothing can be "
                        "found there");
    }
    Occupants occupants(place);
    for (const Kernel& kernel : database.kernels()) {
        occupants.addAllOf(kernel);
    }
    if (occupants.empty()) {
        return complain("nothing lies in " + place.described());
    }
    console.out << bold(place.described(), console.colour) << '\n';
    occupants.print(console);
    return Status::Fine;
}

std::optional<std::uint64_t> parsedNumber(std::string_view text) {
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace consolidator::inspect
