#include "inspect/Severity.h"

#include "inspect/Style.h"

namespace consolidator::inspect {

std::string_view label(Severity severity) {
    switch (severity) {
    case Severity::Note:
        return "note";
    case Severity::Warning:
        return "warning";
    case Severity::Error:
        break;
    }
    return "error";
}

std::string styledLabel(Severity severity, bool colour) {
    switch (severity) {
    case Severity::Error:
        return red(label(severity), colour);
    case Severity::Warning:
        return yellow(label(severity), colour);
    case Severity::Note:
        break;
    }
    return bold(label(severity), colour);
}

} // namespace consolidator::inspect
