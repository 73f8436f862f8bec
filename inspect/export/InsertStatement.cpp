#include "inspect/export/InsertStatement.h"

#include "shared/Utf8.h"

#include <sqlite3.h>

namespace consolidator::inspect {

namespace {

/// SQLite takes a null pointer for NULL, not for a text without characters.
const char* pointerTo(std::string_view bytes) {
    return bytes.empty() ? "" : bytes.data();
}

} // namespace

InsertStatement::InsertStatement(const SqliteFile& file, const std::string& table, int columns,
                                 std::size_t rows) {
    std::string row = "(?";
    for (int i = 1; i < columns; ++i) {
        row += ", ?";
    }
    row += ")";
    std::string sql = "INSERT INTO ";
    sql += table;
    sql += " VALUES ";
    sql += row;
    for (std::size_t i = 1; i < rows; ++i) {
        sql += ", ";
        sql += row;
    }
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(file.connection(), sql.c_str(), -1, &statement, nullptr);
    statement_.reset(statement);
    if (result != SQLITE_OK) {
        throw SqliteError(file.connection());
    }
}

void InsertStatement::runNumbers(std::span<const std::int64_t> numbers) {
    int column = 0;
    for (const std::int64_t number : numbers) {
        bindNumber(++column, number);
    }
    step();
}

void InsertStatement::bind(int column, std::string_view text) {
    // The row is made before the caller's text can change; only a repaired one has to be copied.
    if (isUtf8(text)) {
        check(sqlite3_bind_text64(statement_.get(), column, pointerTo(text), text.size(),
                                  SQLITE_STATIC, SQLITE_UTF8));
    } else {
        const std::string repaired = validUtf8(text);
        check(sqlite3_bind_text64(statement_.get(), column, pointerTo(repaired), repaired.size(),
                                  SQLITE_TRANSIENT, SQLITE_UTF8));
    }
}

void InsertStatement::bind(int column, const Blob& blob) {
    check(sqlite3_bind_blob64(statement_.get(), column, pointerTo(blob.bytes), blob.bytes.size(),
                              SQLITE_STATIC));
}

void InsertStatement::bindNumber(int column, std::int64_t number) {
    check(sqlite3_bind_int64(statement_.get(), column, number));
}

void InsertStatement::bindNull(int column) {
    check(sqlite3_bind_null(statement_.get(), column));
}

void InsertStatement::step() {
    if (sqlite3_step(statement_.get()) != SQLITE_DONE) {
        throw SqliteError(sqlite3_db_handle(statement_.get()));
    }
    check(sqlite3_reset(statement_.get()));
}

void InsertStatement::check(int result) const {
    if (result != SQLITE_OK) {
        throw SqliteError(sqlite3_db_handle(statement_.get()));
    }
}

void InsertStatement::Finalizer::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

} // namespace consolidator::inspect
