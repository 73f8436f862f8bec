// `consolidator-inspect sqlite DB OUT.sqlite`: the content as an SQLite database.
//
//     consolidator-inspect sqlite DB OUT            makes OUT, see SqliteExport.h
//     consolidator-inspect sqlite --force DB OUT    replaces it
//
// Nothing is printed unless something is wrong. OUT appears when it is complete: an export that
// fails leaves nothing behind.
#pragma once

#include "inspect/commands/DatabaseCommand.h"

#include <string>

namespace consolidator::inspect {

class SqliteCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit SqliteCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    std::string output_;
    bool force_ = false;
};

} // namespace consolidator::inspect
