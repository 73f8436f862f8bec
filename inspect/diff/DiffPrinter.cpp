#include "inspect/diff/DiffPrinter.h"

#include "inspect/text/Style.h"

#include <ostream>
#include <string_view>

namespace consolidator::inspect {

namespace {

std::string inColour(char mark, bool colour) {
    const std::string_view text(&mark, 1);
    switch (mark) {
    case '-':
        return red(text, colour);
    case '+':
        return green(text, colour);
    default:
        return yellow(text, colour);
    }
}

} // namespace

void DiffPrinter::setPart(const std::string& heading) {
    heading_ = heading;
    isInPart_ = !heading.empty();
}

void DiffPrinter::detail(const std::string& text) {
    console_->out << (isInPart_ ? "      " : "    ") << text << '\n';
}

void DiffPrinter::print(char mark, const std::string& text) {
    if (isSame_) {
        console_->out << bold("--- " + before_, console_->colour) << '\n'
                      << bold("+++ " + after_, console_->colour) << '\n';
        isSame_ = false;
    }
    if (!heading_.empty()) {
        console_->out << bold(heading_, console_->colour) << '\n';
        heading_.clear();
    }
    console_->out << (isInPart_ ? "  " : "") << inColour(mark, console_->colour) << ' ' << text
                  << '\n';
}

} // namespace consolidator::inspect
