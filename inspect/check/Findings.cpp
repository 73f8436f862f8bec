#include "inspect/check/Findings.h"

#include "consolidated/Diagnostic.h"
#include "shared/Utf8.h"

#include <utility>

namespace consolidator::inspect {

void Findings::add(Finding finding) {
    counts_.add(finding.severity);
    if (finding.severity != Severity::Error) {
        std::size_t& kept = keptOf_[finding.file];
        if (kept == mostOfAFile) {
            ++dropped_;
            return;
        }
        ++kept;
    }
    kept_.push_back(std::move(finding));
}

std::string quotedName(std::string_view text) {
    if (text.size() <= Diagnostic::longestText) {
        return consolidator::inQuotes(text);
    }
    std::string shortened(utf8Beginning(text, Diagnostic::longestText));
    shortened += "...";
    return consolidator::inQuotes(shortened);
}

} // namespace consolidator::inspect
