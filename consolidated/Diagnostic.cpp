#include "consolidated/Diagnostic.h"

#include <utility>

namespace consolidator {

namespace {

std::string shortened(std::string text) {
    if (text.size() > Diagnostic::longestText) {
        text.resize(Diagnostic::longestText);
        // A thousand remarks are kept: none may hold on to the megabytes that a name had.
        text.shrink_to_fit();
        text += "...";
    }
    return text;
}

} // namespace

void Diagnostic::stop(std::uint64_t line, std::string reason) {
    // The first reason is the cause; the exception that ends a reader comes after it.
    if (!stopped_) {
        stopped_ =
            Finding{"", line, Severity::Error, Code::ReadingStopped, shortened(std::move(reason))};
    }
}

void Diagnostic::remark(std::uint64_t line, Code code, std::string text) {
    keep({"", line, Severity::Warning, code, std::move(text)});
}

void Diagnostic::note(std::uint64_t line, Code code, std::string text) {
    keep({"", line, Severity::Note, code, std::move(text)});
}

void Diagnostic::keep(Finding remark) {
    ++remarkCount_;
    if (remarks_.size() < mostRemarks) {
        remark.text = shortened(std::move(remark.text));
        remarks_.push_back(std::move(remark));
    }
}

std::string describe(const Finding& remark) {
    if (remark.line == 0) {
        return remark.text;
    }
    return "line " + std::to_string(remark.line) + ": " + remark.text;
}

std::string inQuotes(std::string_view text) {
    std::string result(1, '"');
    result += text;
    result += '"';
    return result;
}

} // namespace consolidator
