// Colour for terminals, by the control sequences of ECMA-48 (SGR).
#pragma once

#include "shared/Severity.h"

#include <string>
#include <string_view>

namespace consolidator::inspect {

/// The text between a sequence of control characters and the one that ends it, or as it is if
/// `colour` is not set.
std::string styled(std::string_view text, std::string_view sequence, bool colour);

inline std::string bold(std::string_view text, bool colour) {
    return styled(text, "\x1b[1m", colour);
}
inline std::string red(std::string_view text, bool colour) {
    return styled(text, "\x1b[31m", colour);
}
inline std::string yellow(std::string_view text, bool colour) {
    return styled(text, "\x1b[33m", colour);
}
inline std::string green(std::string_view text, bool colour) {
    return styled(text, "\x1b[32m", colour);
}

/// What a severity is called, in the colour that compilers give it.
std::string styledLabel(Severity severity, bool colour);

} // namespace consolidator::inspect
