// The rows of a table of bits, of which there are millions.
#pragma once

#include "inspect/export/InsertStatement.h"
#include "inspect/export/SqliteFile.h"
#include "model/LogicLocation.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace consolidator::inspect {

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

} // namespace consolidator::inspect
