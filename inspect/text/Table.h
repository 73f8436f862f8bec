// Text in aligned columns.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::inspect {

/// Rows of cells, printed with two blanks between columns that are as wide as their widest cell:
///
///     Table table({{"type"}, {"size", Table::Align::Right}});
///     table.add({"kernel data", "1432"});
///     table.print(out, "  ", false);
///
///       type         size
///       kernel data  1432
///
/// A cell of more than `widestColumn` columns widens none: it pushes aside what follows it in its
/// row. Otherwise a single name of megabytes would make every row as long.
class Table {
public:
    static constexpr std::size_t widestColumn = 120;

    enum class Align { Left, Right };

    struct Column {
        std::string heading;
        Align align = Align::Left;
    };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Cells are printable() texts, one for each column.
    void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

    bool empty() const { return rows_.empty(); }

    /// Prints the headings, in bold if `colour` is set, and the rows, each behind `indent` and
    /// without blanks at its end.
    void print(std::ostream& out, const std::string& indent, bool colour) const;

private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

/// For columns of numbers.
inline constexpr Table::Align rightAligned = Table::Align::Right;

/// Prints a table of `count` rows, whose cells makeRow(number) gives, without keeping them: it is
/// called twice for each. For tables that grow with the bits of a database.
void printRows(std::ostream& out, const std::vector<Table::Column>& columns, std::size_t count,
               const std::function<std::vector<std::string>(std::size_t)>& makeRow,
               const std::string& indent, bool colour);

} // namespace consolidator::inspect
