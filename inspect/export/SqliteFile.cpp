#include "inspect/export/SqliteFile.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <string_view>

namespace consolidator::inspect {

namespace {

// SQLite opens files by their names, and a file that is to leave nothing behind has none. So the
// system call with which SQLite opens this name, which nothing else has, gives the file that is
// about to be opened. SQLite takes one function for all connections of a process: hence a variable.
constexpr const char* nameForSqlite = "/file of the inspector that has no name";
int fileForSqlite = -1;

int openForSqlite(const char* path, int flags, int mode) {
    return path == std::string_view(nameForSqlite) ? fcntl(fileForSqlite, F_DUPFD_CLOEXEC, 0)
                                                   : open(path, flags, mode);
}

/// Opens the file as SQLite sees it. (It looks at a name before it opens it and follows links, so
/// that /proc/self/fd does not do.)
int openConnection(int descriptor, sqlite3** connection) {
    sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
    fileForSqlite = descriptor;
    system->xSetSystemCall(system, "open",
                           reinterpret_cast<sqlite3_syscall_ptr>(openForSqlite)); // NOLINT
    const int result = sqlite3_open_v2(nameForSqlite, connection,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    system->xSetSystemCall(system, "open", nullptr); // as it was
    fileForSqlite = -1;
    return result;
}

} // namespace

SqliteError::SqliteError(sqlite3* connection) : std::runtime_error(sqlite3_errmsg(connection)) {}

SqliteFile::SqliteFile(int descriptor) {
    sqlite3* connection = nullptr;
    const int result = openConnection(descriptor, &connection);
    connection_.reset(connection);
    if (result != SQLITE_OK) {
        throw SqliteError(connection);
    }
    execute("PRAGMA page_size = 4096;"
            "PRAGMA journal_mode = OFF;"
            "PRAGMA synchronous = OFF;"
            "PRAGMA locking_mode = EXCLUSIVE;"
            "PRAGMA cache_size = -65536;" // KiB; indexes are sorted in pieces of this size
            "PRAGMA temp_store = FILE");
}

void SqliteFile::execute(const std::string& statements) {
    if (sqlite3_exec(connection(), statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw SqliteError(connection());
    }
}

void SqliteFile::close() {
    sqlite3* const open = connection_.release();
    if (sqlite3_close(open) != SQLITE_OK) {
        connection_.reset(open); // it stays open then
        throw SqliteError(open);
    }
}

void SqliteFile::Closer::operator()(sqlite3* connection) const {
    sqlite3_close_v2(connection);
}

} // namespace consolidator::inspect
