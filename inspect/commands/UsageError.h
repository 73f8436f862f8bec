// What is said of a command line that cannot be understood.
//
//     consolidator-inspect: error: there is no command "sumary"; did you mean "summary"?
//     consolidator-inspect summary: error: DB is required
#pragma once

#include "inspect/commands/Command.h"

#include <string>
#include <string_view>

namespace CLI { // NOLINT(readability-identifier-naming)
class App;
class ParseError;
} // namespace CLI

namespace consolidator::inspect {

/// Says what is wrong in words that are printable() already. `command` is empty when none is known.
Status usageError(Console& console, std::string_view command, std::string_view reason);

/// The same for a command line that the parser has refused.
Status usageError(Console& console, const CLI::App& app, const CLI::ParseError& error);

/// A check for an argument that names a file: without a name, which mostly comes of a variable of a
/// script that is not set, no message could say which file is meant.
std::string emptyNameError(const std::string& path);

} // namespace consolidator::inspect
