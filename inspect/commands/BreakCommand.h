// `consolidator-inspect break DB FILE[:LINE]`: the source lines at which a kernel can be stopped.
//
//     scale_rows.cpp
//       line  kernel      condition
//         14  scale_rows  == 1'b1 $i/fsm_state2
//
// FILE is the whole path of a source file, as the database has it, or its end behind a "/". If it
// is the end of several, each has a part. "$i" in a condition stands for the path of an instance.
// What follows a ":" and is no line number is refused, unless there is a file of that whole name.
#pragma once

#include "inspect/commands/DatabaseCommand.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace consolidator::inspect {

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

/// FILE[:LINE] in its two parts. A last ":" belongs to the file unless a line number follows it.
struct SourcePlace {
    explicit SourcePlace(std::string_view text);

    /// What stands behind the last ":" of the file and may have been meant as a line number.
    /// Nothing if that is a part of a path.
    std::optional<std::string> mistakenLine() const;

    std::string file;
    std::optional<std::uint32_t> line;
};

} // namespace consolidator::inspect
