#include "inspect/text/Table.h"

#include "inspect/text/Style.h"
#include "shared/Printable.h"

#include <algorithm>
#include <ostream>

namespace consolidator::inspect {

namespace {

void widen(std::vector<std::size_t>& widths, const std::vector<std::string>& cells) {
    for (std::size_t column = 0; column < widths.size(); ++column) {
        const std::size_t width = columns(cells.at(column));
        if (width <= Table::widestColumn) {
            widths[column] = std::max(widths[column], width);
        }
    }
}

std::string line(const std::vector<Table::Column>& tableColumns,
                 const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
    std::string text;
    for (std::size_t column = 0; column < cells.size(); ++column) {
        const std::size_t width = columns(cells[column]);
        const std::string gap(std::max(widths[column], width) - width, ' ');
        const bool right = tableColumns[column].align == Table::Align::Right;
        text += column == 0 ? "" : "  ";
        text += right ? gap + cells[column] : cells[column] + gap;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

void Table::print(std::ostream& out, const std::string& indent, bool colour) const {
    const auto row = [this](std::size_t number) { return rows_[number]; };
    printRows(out, columns_, rows_.size(), row, indent, colour);
}

void printRows(std::ostream& out, const std::vector<Table::Column>& columns, std::size_t count,
               const std::function<std::vector<std::string>(std::size_t)>& makeRow,
               const std::string& indent, bool colour) {
    std::vector<std::string> headings;
    headings.reserve(columns.size());
    for (const Table::Column& column : columns) {
        headings.push_back(column.heading);
    }
    std::vector<std::size_t> widths(columns.size());
    widen(widths, headings);
    for (std::size_t row = 0; row < count; ++row) {
        widen(widths, makeRow(row));
    }
    out << indent << bold(line(columns, headings, widths), colour) << '\n';
    for (std::size_t row = 0; row < count; ++row) {
        out << indent << line(columns, makeRow(row), widths) << '\n';
    }
}

} // namespace consolidator::inspect
