// An SQLite database that is filled in one go.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

struct sqlite3;

namespace consolidator::inspect {

/// SQLite or the system could not do what was asked for; what() says why.
class SqliteError : public std::runtime_error {
public:
    /// What the connection has last complained about.
    explicit SqliteError(sqlite3* connection);
};

/// The connection to one file. Nobody else knows the file yet, and one that is not finished is of
/// no use: so nothing is done to survive a crash in between.
class SqliteFile {
public:
    /// Opens an empty file by a descriptor that stays the caller's.
    explicit SqliteFile(int descriptor);

    /// Runs statements that give no rows.
    void execute(const std::string& statements);

    /// Closes the file; all statements must be gone. Only now is everything in it.
    void close();

    sqlite3* connection() const { return connection_.get(); }

private:
    struct Closer {
        void operator()(sqlite3* connection) const;
    };

    std::unique_ptr<sqlite3, Closer> connection_;
};

} // namespace consolidator::inspect
