#include "inspect/export/SqliteExport.h"

#include "model/LogicLocation.h"
#include "query/Bits.h"
#include "query/InstanceFinder.h"
#include "query/KernelView.h"
#include "query/Words.h"
#include "shared/Utf8.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace consolidator::inspect {

namespace {

// The user's version is that of these tables: it goes up when a query that worked no longer does.
constexpr const char* tables = R"(
PRAGMA user_version = 1;
CREATE TABLE database (
    id            INTEGER PRIMARY KEY CHECK (id = 1),
    major_version INTEGER NOT NULL,
    minor_version INTEGER NOT NULL,
    complete      INTEGER NOT NULL CHECK (complete IN (0, 1)),
    project       TEXT,
    dwarf         BLOB
);
CREATE TABLE kernel (
    id          INTEGER PRIMARY KEY,
    name        TEXT NOT NULL,
    type        TEXT NOT NULL,
    type_number INTEGER NOT NULL
);
CREATE TABLE instance (
    id        INTEGER PRIMARY KEY,
    kernel_id INTEGER NOT NULL REFERENCES kernel (id),
    path      TEXT NOT NULL
);
CREATE TABLE variable (
    id            INTEGER PRIMARY KEY,
    kernel_id     INTEGER NOT NULL REFERENCES kernel (id),
    role          TEXT NOT NULL CHECK (role IN ('argument', 'variable')),
    source_name   TEXT NOT NULL,
    hardware_name TEXT NOT NULL,
    type          TEXT NOT NULL,
    width         INTEGER NOT NULL
);
CREATE TABLE variable_instance (
    variable_id INTEGER NOT NULL REFERENCES variable (id),
    instance    INTEGER NOT NULL,
    width       INTEGER NOT NULL,
    PRIMARY KEY (variable_id, instance)
) WITHOUT ROWID;
CREATE TABLE variable_bit (
    variable_id INTEGER NOT NULL,
    instance    INTEGER NOT NULL,
    bit         INTEGER NOT NULL,
    address     INTEGER NOT NULL,
    offset      INTEGER NOT NULL,
    PRIMARY KEY (variable_id, instance, bit),
    FOREIGN KEY (variable_id, instance) REFERENCES variable_instance (variable_id, instance)
) WITHOUT ROWID;
CREATE TABLE register (
    id            INTEGER PRIMARY KEY,
    kernel_id     INTEGER NOT NULL REFERENCES kernel (id),
    instance_id   INTEGER REFERENCES instance (id),
    net           TEXT NOT NULL,
    hardware_name TEXT NOT NULL,
    width         INTEGER NOT NULL
);
CREATE TABLE bit (
    register_id INTEGER NOT NULL REFERENCES register (id),
    bit         INTEGER NOT NULL,
    address     INTEGER NOT NULL,
    offset      INTEGER NOT NULL,
    PRIMARY KEY (register_id, bit)
) WITHOUT ROWID;
CREATE TABLE condition (
    id          INTEGER PRIMARY KEY,
    kernel_id   INTEGER NOT NULL REFERENCES kernel (id),
    kind        TEXT NOT NULL CHECK (kind IN ('start', 'stop', 'line', 'error')),
    kind_number INTEGER NOT NULL,
    file        TEXT,
    line        INTEGER,
    condition   TEXT NOT NULL
);
CREATE TABLE bram (
    id        INTEGER PRIMARY KEY,
    kernel_id INTEGER NOT NULL REFERENCES kernel (id),
    name      TEXT NOT NULL
);
CREATE VIEW source_bit AS
    SELECT kernel.name AS kernel, variable.role, variable.source_name, variable.hardware_name,
           variable.type, instance.path AS instance, register.net, bit.bit, bit.address, bit.offset
    FROM variable
    JOIN kernel ON kernel.id = variable.kernel_id
    JOIN register ON register.kernel_id = variable.kernel_id
                 AND register.hardware_name = variable.hardware_name
    LEFT JOIN instance ON instance.id = register.instance_id
    JOIN bit ON bit.register_id = register.id;
)";

// Sorting all rows at once is much faster than finding a place for each.
constexpr const char* indexes = R"(
CREATE INDEX kernel_name ON kernel (name);
CREATE INDEX instance_path ON instance (path);
CREATE INDEX instance_kernel ON instance (kernel_id);
CREATE INDEX variable_source_name ON variable (source_name);
CREATE INDEX variable_hardware_name ON variable (hardware_name, kernel_id);
CREATE INDEX variable_kernel ON variable (kernel_id);
CREATE INDEX variable_bit_place ON variable_bit (address, offset);
CREATE INDEX register_net ON register (net);
CREATE INDEX register_hardware_name ON register (hardware_name, kernel_id);
CREATE INDEX register_kernel ON register (kernel_id);
CREATE INDEX register_instance ON register (instance_id);
CREATE INDEX bit_place ON bit (address, offset);
CREATE INDEX condition_line ON condition (file, line);
CREATE INDEX condition_kernel ON condition (kernel_id);
CREATE INDEX bram_name ON bram (name);
CREATE INDEX bram_kernel ON bram (kernel_id);
)";

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

/// SQLite takes a null pointer for NULL, not for a text without characters.
const char* pointerTo(std::string_view bytes) {
    return bytes.empty() ? "" : bytes.data();
}

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

/// Adds rows of four numbers to a table, several at a time.
class BitRows {
public:
    BitRows(const SqliteFile& file, const std::string& table)
        : one_(file, table, columns), batch_(file, table, columns, batchSize) {}

    void add(std::int64_t owner, std::uint32_t bit, LogicLocation location);

    /// Adds what is still waiting. To be called at the end.
    void finish();

private:
    static constexpr int columns = 4;
    static constexpr std::size_t batchSize = 32;

    InsertStatement one_;
    InsertStatement batch_;
    std::array<std::int64_t, columns * batchSize> waiting_{};
    std::size_t count_ = 0; ///< Numbers that wait.
};

void BitRows::add(std::int64_t owner, std::uint32_t bit, LogicLocation location) {
    for (const std::int64_t number :
         std::initializer_list<std::int64_t>{owner, bit, location.address, location.offset}) {
        waiting_[count_++] = number;
    }
    if (count_ == waiting_.size()) {
        batch_.runNumbers(waiting_);
        count_ = 0;
    }
}

void BitRows::finish() {
    for (std::size_t i = 0; i < count_; i += columns) {
        one_.runNumbers(std::span(waiting_).subspan(i, columns));
    }
    count_ = 0;
}

/// A statement for each table, and the numbers of the rows that come next.
class Rows {
public:
    explicit Rows(const SqliteFile& file)
        : database_(file, "database", 6),
          kernel_(file, "kernel", 4),
          instance_(file, "instance", 3),
          variable_(file, "variable", 7),
          variableInstance_(file, "variable_instance", 3),
          variableBit_(file, "variable_bit", 5),
          register_(file, "register", 6),
          bit_(file, "bit"),
          condition_(file, "condition", 7),
          bram_(file, "bram", 3) {}

    void add(const Database& database) {
        std::optional<std::string_view> project;
        if (!database.project().empty()) {
            project = database.project();
        }
        std::optional<Blob> dwarf;
        if (database.dwarf()) {
            dwarf = Blob{*database.dwarf()};
        }
        database_.run(1, database.header().majorVersion, database.header().minorVersion,
                      database.error().empty(), project, dwarf);
        for (const Kernel& kernel : database.kernels()) {
            add(kernel);
        }
        bit_.finish();
    }

private:
    void add(const Kernel& kernel) {
        kernel_.run(++kernels_, kernel.name(), label(kernel.type()),
                    static_cast<std::uint32_t>(kernel.type()));
        const std::int64_t firstInstance = instances_ + 1;
        for (const std::string& path : kernel.instancePaths()) {
            instance_.run(++instances_, kernels_, path);
        }
        add(kernel.arguments(), "argument");
        add(kernel.variables(), "variable");
        InstanceFinder finder(kernel.instancePaths());
        for (const HardwareVariable& variable : kernel.hardwareVariables()) {
            const std::optional<std::uint32_t> position = finder.instanceOf(variable.name);
            add(variable, position ? std::optional(firstInstance + *position) : std::nullopt);
        }
        for (const BreakableCondition& condition : kernel.breakableConditions()) {
            add(condition);
        }
        for (const std::string& name : kernel.brams()) {
            bram_.run(++brams_, kernels_, name);
        }
    }

    void add(std::span<const Variable> variables, std::string_view role) {
        for (const Variable& variable : variables) {
            variable_.run(++variables_, kernels_, role, variable.sourceName, variable.hardwareName,
                          variable.typeText, variable.bitWidth());
            std::int64_t instance = 0;
            for (const std::vector<LogicLocation>& locations : variable.locations) {
                variableInstance_.run(variables_, instance, locations.size());
                forEachLocatedBit(locations, [&](std::uint32_t bit, LogicLocation location) {
                    variableBit_.run(variables_, instance, bit, location.address, location.offset);
                });
                ++instance;
            }
        }
    }

    void add(const HardwareVariable& variable, std::optional<std::int64_t> instance) {
        register_.run(++registers_, kernels_, instance, variable.name, lastComponent(variable.name),
                      variable.locations.size());
        forEachLocatedBit(variable.locations, [&](std::uint32_t bit, LogicLocation location) {
            bit_.add(registers_, bit, location);
        });
    }

    void add(const BreakableCondition& condition) {
        const bool hasLine = condition.kind == BreakableCondition::FileLine;
        condition_.run(++conditions_, kernels_, conditionKind(condition), condition.kind,
                       hasLine ? std::optional<std::string_view>(condition.file) : std::nullopt,
                       hasLine ? std::optional(condition.line) : std::nullopt, condition.condition);
    }

    InsertStatement database_;
    InsertStatement kernel_;
    InsertStatement instance_;
    InsertStatement variable_;
    InsertStatement variableInstance_;
    InsertStatement variableBit_;
    InsertStatement register_;
    BitRows bit_;
    InsertStatement condition_;
    InsertStatement bram_;
    std::int64_t kernels_ = 0;
    std::int64_t instances_ = 0;
    std::int64_t variables_ = 0;
    std::int64_t registers_ = 0;
    std::int64_t conditions_ = 0;
    std::int64_t brams_ = 0;
};

} // namespace

void exportSqlite(const Database& database, SqliteFile& file) {
    file.execute("BEGIN");
    file.execute(tables);
    Rows(file).add(database);
    file.execute(indexes);
    file.execute("COMMIT");
}

} // namespace consolidator::inspect
