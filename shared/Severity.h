// How bad it is what was found, and how often it was found.
#pragma once

#include <array>
#include <cstddef>
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

/// How many findings of each severity there are.
class SeverityCounts {
public:
    /// Counts one more, and returns how many there are of its severity now.
    std::uint64_t add(Severity severity) {
        return ++counts_.at(static_cast<std::size_t>(severity));
    }

    std::uint64_t of(Severity severity) const {
        return counts_.at(static_cast<std::size_t>(severity));
    }

private:
    std::array<std::uint64_t, 3> counts_{};
};

} // namespace consolidator
