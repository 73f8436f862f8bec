#include "inspect/Table.h"

#include "inspect/Printable.h"
#include "inspect/Style.h"

#include <algorithm>
#include <ostream>

namespace consolidator::inspect {

std::vector<std::size_t> Table::widths() const {
    std::vector<std::size_t> result;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        std::size_t width = columns(columns_[column].heading);
        for (const std::vector<std::string>& row : rows_) {
            width = std::max(width, columns(row.at(column)));
        }
        result.push_back(width);
    }
    return result;
}

std::string Table::line(const std::vector<std::string>& cells,
                        const std::vector<std::size_t>& widths) const {
    std::string text;
    for (std::size_t column = 0; column < cells.size(); ++column) {
        const std::string gap(widths[column] - columns(cells[column]), ' ');
        const bool right = columns_[column].align == Align::Right;
        text += column == 0 ? "" : "  ";
        text += right ? gap + cells[column] : cells[column] + gap;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

void Table::print(std::ostream& out, const std::string& indent, bool colour) const {
    const std::vector<std::size_t> columnWidths = widths();
    std::vector<std::string> headings;
    for (const Column& column : columns_) {
        headings.push_back(column.heading);
    }
    out << indent << bold(line(headings, columnWidths), colour) << '\n';
    for (const std::vector<std::string>& row : rows_) {
        out << indent << line(row, columnWidths) << '\n';
    }
}

} // namespace consolidator::inspect
