// `consolidator-inspect break DB FILE[:LINE]`: the source lines at which a kernel can be stopped.
//
//     scale_rows.cpp
//       line  kernel      condition
//         14  scale_rows  == 1'b1 $i/fsm_state2
//
// FILE is the whole path of a source file, as the database has it, or its end behind a "/". If it
// is the end of several, each has a part. "$i" in a condition stands for the path of an instance.
// What follows a ":" and is no line number is refused, unless there is a file of that whole name.

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/commands/UsageError.h"
#include "inspect/text/Style.h"
#include "inspect/text/Table.h"
#include "query/KernelView.h"
#include "query/NearestNames.h"
#include "query/Stops.h"
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
#include <tuple>
#include <vector>

namespace consolidator::inspect {

namespace {

/// FILE[:LINE] in its two parts. A last ":" belongs to the file unless a line number follows it.
struct SourcePlace {
    explicit SourcePlace(std::string_view text);

    /// What stands behind the last ":" of the file and may have been meant as a line number.
    /// Nothing if that is a part of a path.
    std::optional<std::string> textBehindColon() const;

    std::string file;
    std::optional<std::uint32_t> line;
};

SourcePlace::SourcePlace(std::string_view text) : file(text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return;
    }
    const std::string_view digits = text.substr(colon + 1);
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    if (result.ec == std::errc() && result.ptr == end) {
        line = number;
        file.resize(colon);
    }
}

std::optional<std::string> SourcePlace::textBehindColon() const {
    const std::size_t colon = file.rfind(':');
    if (line || colon == std::string::npos ||
        file.find_first_of("/\\", colon) != std::string::npos) {
        return std::nullopt;
    }
    return file.substr(colon + 1);
}

/// Calls visit(stops) for those of one file after the other.
template <typename Visit>
void forEachFile(std::span<const Stop> stops, Visit visit) {
    while (!stops.empty()) {
        const auto end = std::ranges::find_if(
            stops, [&](const Stop& stop) { return stop.file() != stops.front().file(); });
        const auto count = static_cast<std::size_t>(end - stops.begin());
        visit(stops.first(count));
        stops = stops.subspan(count);
    }
}

void printFile(std::span<const Stop> stops, Console& console) {
    console.out << bold(printable(stops.front().file()), console.colour) << '\n';
    const auto makeRow = [stops](std::size_t row) {
        return std::vector{std::to_string(stops[row].line()),
                           shortPrintable(stops[row].kernel->name()),
                           printable(stops[row].condition->condition)};
    };
    printRows(console.out, {{"line", Table::Align::Right}, {"kernel"}, {"condition"}}, stops.size(),
              makeRow, "  ", console.colour);
}

std::string nearestLines(std::span<const Stop> stops, std::uint32_t line) {
    const auto after = std::ranges::upper_bound(stops, line, {}, &Stop::line);
    std::string text("nearest lines: ");
    text += after == stops.begin() ? "none" : std::to_string(std::prev(after)->line());
    text += " before, ";
    text += after == stops.end() ? "none" : std::to_string(after->line());
    text += " after";
    return text;
}

/// A line at which no kernel can be stopped is answered with the nearest ones at which one can.
class BreakCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit BreakCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    explicit BreakCommand(CLI::App* command);

    std::string place_;
};

BreakCommand::BreakCommand(CLI::App& commandLine)
    : BreakCommand(commandLine.add_subcommand(
          "break", "Show the source lines at which kernels can be stopped")) {}

BreakCommand::BreakCommand(CLI::App* command) : DatabaseCommand(*command) {
    command
        ->add_option("FILE", place_,
                     "A source file, as the end of its path, and a line of it; without the line, "
                     "all lines of the file")
        ->type_name("FILE[:LINE]") // for the help
        ->required()
        ->check([](const std::string& text) {
            return SourcePlace(text).file.empty() ? std::string("there is no name of a file")
                                                  : std::string();
        });
}

Status BreakCommand::show(const Database& database, Console& console) {
    const SourcePlace place(place_);
    const std::vector<Stop> stops = stopsIn(database.kernels(), place.file);
    std::vector<Stop> wanted = stops;
    if (place.line) {
        std::erase_if(wanted, [&](const Stop& stop) { return stop.line() != *place.line; });
    }
    bool isFirst = true;
    forEachFile(wanted, [&](std::span<const Stop> ofFile) {
        console.out << (std::exchange(isFirst, false) ? "" : "\n");
        printFile(ofFile, console);
    });
    if (!isFirst) {
        return Status::Fine;
    }
    if (const auto text = place.textBehindColon(); text && stops.empty()) {
        return usageError(console, "break",
                          quotedPrintable(*text) + " is no line number up to " +
                              std::to_string(std::numeric_limits<std::uint32_t>::max()));
    }
    const std::string start = printable(database.path()) + ": error: ";
    forEachFile(stops, [&](std::span<const Stop> ofFile) {
        console.err << start << "no kernel can be stopped at " << printable(ofFile.front().file())
                    << ':' << *place.line << "; " << nearestLines(ofFile, *place.line) << '\n';
    });
    if (stops.empty()) {
        NearestNames nearest(lastComponent(place.file));
        for (const Stop& stop : allStops(database.kernels())) {
            nearest.add(lastComponent(stop.file()));
        }
        console.err << start << "no kernel can be stopped in " << quotedPrintable(place.file)
                    << nearest.question() << '\n';
    }
    return Status::Findings;
}

} // namespace

std::unique_ptr<Command> makeBreakCommand(CLI::App& commandLine) {
    return std::make_unique<BreakCommand>(commandLine);
}

} // namespace consolidator::inspect
