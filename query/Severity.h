// How bad it is what a check found.
#pragma once

#include <cstdint>
#include <string_view>

namespace consolidator {

enum class Severity : std::uint8_t {
    Note,    ///< Odd or worth knowing; nobody is misled by it.
    Warning, ///< All can be read or taken in, and not all of it means what it seems to.
    Error,   ///< Something cannot be read, or is of no use.
};

/// "note", "warning" or "error".
std::string_view label(Severity severity);

} // namespace consolidator
