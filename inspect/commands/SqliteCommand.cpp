// `consolidator-inspect sqlite DB OUT.sqlite`: the content as an SQLite database.
//
//     consolidator-inspect sqlite DB OUT            makes OUT, see SqliteExport.h
//     consolidator-inspect sqlite --force DB OUT    replaces it
//
// Nothing is printed unless something is wrong. OUT appears when it is complete; see
// shared/FileReplacement.h for what an export that fails leaves behind.

#include "inspect/commands/Commands.h"
#include "inspect/commands/DatabaseCommand.h"
#include "inspect/commands/UsageError.h"
#include "inspect/export/SqliteExport.h"
#include "shared/FileReplacement.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <system_error>

namespace consolidator::inspect {

namespace {

/// Why nothing is to be written under this name; empty if it may be.
std::string targetError(const std::string& path, bool force, const std::string& databasePath) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::symlink_status(path, error);
    if (!std::filesystem::exists(status)) {
        return "";
    }
    if (!force) {
        return "exists already; --force replaces it";
    }
    if (!std::filesystem::is_regular_file(status)) {
        return "is no regular file and cannot be replaced";
    }
    if (std::filesystem::equivalent(path, databasePath, error)) {
        return "is the database itself";
    }
    return "";
}

/// Why the export has failed; empty if it has not. Nothing is left of it then.
std::string exportError(const Database& database, const std::string& path, bool force) {
    FileReplacement output;
    if (!output.make(path)) {
        return std::string("cannot be written: ") + std::strerror(errno);
    }
    try {
        SqliteFile file(output.begin());
        exportSqlite(database, file);
        file.close();
    } catch (const SqliteError& error) {
        return std::string("cannot be written: ") + error.what();
    }
    const auto existing =
        force ? FileReplacement::Existing::Replace : FileReplacement::Existing::Keep;
    return output.commit(existing) ? "" : std::string("cannot be written: ") + std::strerror(errno);
}

class SqliteCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit SqliteCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    std::string output_;
    bool force_ = false;
};

SqliteCommand::SqliteCommand(CLI::App& commandLine)
    : DatabaseCommand(
          *commandLine.add_subcommand("sqlite", "Write the content into an SQLite database")) {
    CLI::App& command = *commandLine.get_subcommand("sqlite");
    command.add_option("OUT", output_, "The SQLite database to make")
        ->required()
        ->check(emptyNameError);
    command.add_flag("--force", force_, "Replace the file if it exists");
}

Status SqliteCommand::show(const Database& database, Console& console) {
    std::string error = targetError(output_, force_, database.path());
    if (error.empty()) {
        error = exportError(database, output_, force_);
    }
    if (!error.empty()) {
        console.err << printable(output_) << ": error: " << error << '\n';
        return Status::Unreadable;
    }
    return Status::Fine;
}

} // namespace

std::unique_ptr<Command> makeSqliteCommand(CLI::App& commandLine) {
    return std::make_unique<SqliteCommand>(commandLine);
}

} // namespace consolidator::inspect
