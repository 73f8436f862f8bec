#include "shared/Severity.h"

namespace consolidator {

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

} // namespace consolidator
