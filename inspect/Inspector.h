// One run of the inspector, from the command line to the exit status.
//
//     consolidator-inspect COMMAND …
//
// Each command is a class of its own, in a source file of its name; inspect/commands/Commands.h
// makes them.
#pragma once

#include "inspect/commands/Command.h"

namespace consolidator::inspect {

/// Runs the program on a command line as main() gets it and returns the exit status, a Status.
/// Problems of the command line go to `console.err`.
int inspect(int argc, const char* const* argv, Console& console);

} // namespace consolidator::inspect
