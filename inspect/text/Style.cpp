#include "inspect/text/Style.h"

namespace consolidator::inspect {

std::string styled(std::string_view text, std::string_view sequence, bool colour) {
    if (!colour) {
        return std::string(text);
    }
    std::string result(sequence);
    result += text;
    result += "\x1b[0m";
    return result;
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
