// Rows on their way into a table of an SQLite database.
#pragma once

#include "inspect/export/SqliteFile.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace consolidator::inspect {

/// Bytes that are no text.
struct Blob {
    std::string_view bytes;
};

/// A prepared statement that adds one row with each run:
///
///     InsertStatement insert(file, "bram", 3);
///     insert.run(1, 2, name);                    // INSERT INTO bram VALUES (1, 2, 'buffer')
///
/// Or so many rows, which is faster: starting and ending a statement takes longer than a small row.
class InsertStatement {
public:
    /// The table has so many columns.
    InsertStatement(const SqliteFile& file, const std::string& table, int columns,
                    std::size_t rows = 1);

    /// A value for each column: a number, a text, a Blob, or one of them that may be missing
    /// (std::optional), which makes NULL. What is no UTF-8 in a text becomes U+FFFD.
    template <typename... Values>
    void run(const Values&... values) {
        int column = 0;
        (bind(++column, values), ...);
        step();
    }

    /// The same for numbers only: those of the first row, of the second, and so on.
    void runNumbers(std::span<const std::int64_t> numbers);

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const;
    };

    template <std::integral Number>
    void bind(int column, Number number) {
        bindNumber(column, static_cast<std::int64_t>(number));
    }
    template <typename Value>
    void bind(int column, const std::optional<Value>& value) {
        if (value) {
            bind(column, *value);
        } else {
            bindNull(column);
        }
    }
    void bind(int column, std::string_view text);
    void bind(int column, const Blob& blob);
    void bindNumber(int column, std::int64_t number);
    void bindNull(int column);
    void step();
    void check(int result) const;

    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

} // namespace consolidator::inspect
