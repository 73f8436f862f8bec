// How bad it is what a check found.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace consolidator::inspect {

enum class Severity : std::uint8_t {
    Note,    ///< Odd or worth knowing; nobody is misled by it.
    Warning, ///< All can be read or taken in, and not all of it means what it seems to.
    Error,   ///< Something cannot be read, or is of no use.
};

/// "note", "warning" or "error".
std::string_view label(Severity severity);

/// The label in the colour that compilers give it, if `colour` is set.
std::string styledLabel(Severity severity, bool colour);

} // namespace consolidator::inspect
