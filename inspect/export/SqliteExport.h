// A database as tables: docs/sqlite.md describes them, and what to ask them.
//
//     database
//     kernel ─┬ instance
//             ├ variable ── variable_instance ── variable_bit
//             ├ register ── bit
//             ├ condition
//             └ bram
//     view source_bit: where each bit of each argument and variable lies
#pragma once

#include "inspect/export/SqliteFile.h"
#include "query/Database.h"

namespace consolidator::inspect {

/// Makes the tables in an empty file and fills them, in one transaction. Throws SqliteError.
void exportSqlite(const Database& database, SqliteFile& file);

} // namespace consolidator::inspect
