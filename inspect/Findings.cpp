#include "inspect/Findings.h"

namespace consolidator::inspect {

std::string_view label(Finding::Severity severity) {
    switch (severity) {
    case Finding::Severity::Error:
        return "error";
    case Finding::Severity::Warning:
        return "warning";
    case Finding::Severity::Note:
        break;
    }
    return "note";
}

} // namespace consolidator::inspect
