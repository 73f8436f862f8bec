// Text in aligned columns.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
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
class Table {
public:
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
    std::vector<std::size_t> widths() const;
    std::string line(const std::vector<std::string>& cells,
                     const std::vector<std::size_t>& widths) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace consolidator::inspect
