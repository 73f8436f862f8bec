// The place of one storage bit in the configured device.
#pragma once

#include <cstdint>

namespace consolidator {

/// Where one bit of a register lies: the two numbers that a logic-location file gives for it.
/// A bit that no file has named yet is a pair of zeros.
struct LogicLocation {
    std::uint32_t address = 0; ///< Frame address; only its low 32 bits are kept.
    std::uint32_t offset = 0;  ///< Bit offset within the frame.

    bool operator==(const LogicLocation&) const = default;
};

// Runs of locations are read and written as memory images of their two numbers.
static_assert(sizeof(LogicLocation) == 2 * sizeof(std::uint32_t));

} // namespace consolidator
