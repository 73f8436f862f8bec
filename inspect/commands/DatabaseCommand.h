// The base of all commands that show something of one database.
#pragma once

#include "inspect/commands/Command.h"
#include "query/Database.h"

#include <string>

namespace CLI { // NOLINT(readability-identifier-naming)
class App;
} // namespace CLI

namespace consolidator::inspect {

/// A command whose first argument is a database, which is read before the command proper begins.
///
/// A file that is no database ends the command. Of a damaged one, what the consolidator itself
/// would still make of it is shown, after a message, and the status is `Unreadable`.
class DatabaseCommand : public Command {
public:
    Status run(Console& console) final;

protected:
    /// Adds the argument DB to the command's own part of the command line.
    explicit DatabaseCommand(CLI::App& command);

    /// How much the command wants to know, asked when the command line has been parsed.
    virtual Database::Extent extent() const { return Database::Extent::All; }

    /// The command proper.
    virtual Status show(const Database& database, Console& console) = 0;

private:
    std::string path_;
};

/// Reads the database at `path` for a command, with messages as DatabaseCommand gives them. Nothing
/// if the file is no database.
std::optional<Database> readDatabase(const std::string& path, Console& console,
                                     Database::Extent extent = Database::Extent::All);

} // namespace consolidator::inspect
