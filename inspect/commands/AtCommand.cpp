// `consolidator-inspect at DB ADDRESS [OFFSET]`: what lies at a place of the device.
//
//     frame 0x00001a01
//       offsets  bits  kernel      instance  register                               holds
//       160-167  7:0   scale_rows  0         /top/region_0/scale_rows_1/U0/sum_reg  variable sum
//
// With an offset only what lies there, without one all of the frame by ascending offsets. Bits of a
// register that follow one another come in one line. "holds" are the arguments and variables, under
// their source names, that have the register's hardware name.
//
// A register in whose net no path of an instance occurs has "-" as instance. Locations that a
// hand-made database holds in an argument or variable itself have "-" as register.

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/text/Style.h"
#include "inspect/text/Table.h"
#include "query/KernelView.h"
#include "query/Occupants.h"
#include "query/Words.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::inspect {

namespace {

/// A frame, or one bit of it.
struct Place {
    std::uint32_t address = 0;
    std::optional<std::uint32_t> offset;

    PlaceRange range() const {
        PlaceRange range{.firstAddress = address, .lastAddress = address};
        if (offset) {
            range.firstOffset = range.lastOffset = *offset;
        }
        return range;
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

std::vector<std::string> cells(const Occupant& occupant) {
    const bool isRegister = occupant.hardware != nullptr;
    return {rangeText(occupant.bits.place.offset, occupant.bits.lastOffset()),
            bitsText(occupant.bits),
            shortPrintable(occupant.kernel->kernel().name()),
            occupant.instance ? std::to_string(*occupant.instance) : "-",
            isRegister ? shortPrintable(occupant.hardware->name) : "-",
            isRegister ? variablesText(occupant.variables) : variableText(occupant.itself)};
}

void print(const std::vector<Occupant>& occupants, Console& console) {
    printRows(
        console.out, {{"offsets"}, {"bits"}, {"kernel"}, {"instance"}, {"register"}, {"holds"}},
        occupants.size(), [&occupants](std::size_t row) { return cells(occupants[row]); }, "  ",
        console.colour);
}

/// A number of up to 64 bits that is written in decimal or, behind "0x", in hexadecimal digits.
/// Nothing if the text is anything else.
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

class AtCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit AtCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    explicit AtCommand(CLI::App* command);

    std::string address_;
    std::string offset_; ///< Empty if there is none.
};

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
    const std::vector<KernelView> views(database.kernels().begin(), database.kernels().end());
    const std::vector<Occupant> occupants = occupantsOf(views, place.range());
    if (occupants.empty()) {
        return complain("nothing lies in " + place.described());
    }
    console.out << bold(place.described(), console.colour) << '\n';
    print(occupants, console);
    return Status::Fine;
}

} // namespace

std::unique_ptr<Command> makeAtCommand(CLI::App& commandLine) {
    return std::make_unique<AtCommand>(commandLine);
}

} // namespace consolidator::inspect
