// All commands of the inspector.
//
// Each function makes one: it adds the command, with its options and their explanations, to the
// command line, as the last one so far, and returns what runs it. The command line must outlive
// that, whose members it fills. What a command takes and prints stands at the top of its source
// file.
#pragma once

#include "inspect/commands/Command.h"

#include <memory>

namespace CLI { // NOLINT(readability-identifier-naming)
class App;
} // namespace CLI

namespace consolidator::inspect {

/// `summary`: what is in a database, at a glance.
std::unique_ptr<Command> makeSummaryCommand(CLI::App& commandLine);

/// `kernel`: all that a database has of one kernel.
std::unique_ptr<Command> makeKernelCommand(CLI::App& commandLine);

/// `find`: where the arguments, variables and registers of a name lie.
std::unique_ptr<Command> makeFindCommand(CLI::App& commandLine);

/// `at`: what lies at a place of the device.
std::unique_ptr<Command> makeAtCommand(CLI::App& commandLine);

/// `break`: the source lines at which kernels can be stopped.
std::unique_ptr<Command> makeBreakCommand(CLI::App& commandLine);

/// `check`: what a run of the consolidator would make of its inputs, and what it would pass over in
/// silence. Nothing is written.
std::unique_ptr<Command> makeCheckCommand(CLI::App& commandLine);

/// `merge`: the same, and the database is written if there is no error.
std::unique_ptr<Command> makeMergeCommand(CLI::App& commandLine);

/// `json`: the content of a database as JSON.
std::unique_ptr<Command> makeJsonCommand(CLI::App& commandLine);

/// `sqlite`: the content of a database as an SQLite database.
std::unique_ptr<Command> makeSqliteCommand(CLI::App& commandLine);

/// `diff`: what differs between two databases.
std::unique_ptr<Command> makeDiffCommand(CLI::App& commandLine);

/// `verify`: whether a database is what it should be, to the byte.
std::unique_ptr<Command> makeVerifyCommand(CLI::App& commandLine);

} // namespace consolidator::inspect
