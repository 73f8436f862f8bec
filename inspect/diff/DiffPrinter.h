// The lines of a comparison.
#pragma once

#include "inspect/commands/Console.h"

#include <string>

namespace consolidator::inspect {

/// Prints what differs, line by line, and the headings above it once it is clear that something
/// does:
///
///     --- a.db
///     +++ b.db
///     kernel scale_rows
///       + instance top/region_0/scale_rows_3
class DiffPrinter {
public:
    /// The names of the two files, printable as all texts.
    DiffPrinter(std::string before, std::string after, Console& console)
        : before_(std::move(before)), after_(std::move(after)), console_(&console) {}

    /// What the lines from here on belong to; nothing, if it is empty.
    void setPart(const std::string& heading);

    void removed(const std::string& text) { print('-', text); }
    void added(const std::string& text) { print('+', text); }
    void changed(const std::string& text) { print('~', text); }

    /// A line that belongs to the one before.
    void detail(const std::string& text);

    /// Whether nothing was printed.
    bool isSame() const { return isSame_; }

private:
    void print(char mark, const std::string& text);

    std::string before_;
    std::string after_;
    Console* console_;
    std::string heading_; ///< Of the current part, until it is printed.
    bool isInPart_ = false;
    bool isSame_ = true;
};

} // namespace consolidator::inspect
