#include "inspect/commands/DatabaseCommand.h"

#include "inspect/commands/UsageError.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>
#include <ostream>

namespace consolidator::inspect {

std::optional<Database> readDatabase(const std::string& path, Console& console,
                                     Database::Extent extent) {
    Database database;
    const Database::Readable readable = database.read(path, extent);
    if (!database.error().empty()) {
        console.err << printable(path) << ": error: " << database.error() << '\n';
    }
    if (readable == Database::Readable::Not) {
        return std::nullopt;
    }
    return database;
}

DatabaseCommand::DatabaseCommand(CLI::App& command) {
    command.add_option("DB", path_, "The consolidated file to look into")
        ->required()
        ->check(emptyNameError);
}

Status DatabaseCommand::run(Console& console) {
    const std::optional<Database> database = readDatabase(path_, console, extent());
    if (!database) {
        return Status::Unreadable;
    }
    const Status status = show(*database, console);
    return database->error().empty() ? status : std::max(status, Status::Unreadable);
}

} // namespace consolidator::inspect
