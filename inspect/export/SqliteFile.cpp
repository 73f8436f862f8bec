#include "inspect/export/SqliteFile.h"

#include <sqlite3.h>

namespace consolidator::inspect {

SqliteError::SqliteError(sqlite3* connection) : std::runtime_error(sqlite3_errmsg(connection)) {}

SqliteFile::SqliteFile(const std::string& path) {
    sqlite3* connection = nullptr;
    const int result = sqlite3_open_v2(path.c_str(), &connection,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
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
