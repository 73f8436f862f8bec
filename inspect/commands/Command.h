// The base of all commands of the inspector.
#pragma once

#include "inspect/commands/Console.h"

#include <cstdint>

namespace consolidator::inspect {

/// Exit status of the inspector. Of several, the highest counts.
enum class Status : std::uint8_t {
    Fine = 0,
    Findings = 1,   ///< Something was found that should not be, or nothing that should be.
    Unreadable = 2, ///< A file cannot be read or written, or the command line not be understood.
};

/// One command: `consolidator-inspect NAME …`. A derived class adds its name, options and their
/// explanations to the command line when it is made, and its members are filled when the command
/// line is parsed.
class Command {
public:
    Command() = default;
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Does what the command line asks for. Messages about files go to `console.err`, as
    /// "FILE: error: REASON".
    virtual Status run(Console& console) = 0;
};

} // namespace consolidator::inspect
