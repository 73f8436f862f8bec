// How a kernel was written, as the system linker states it.
#pragma once

#include <cstdint>
#include <string_view>

namespace consolidator {

/// Stored as a 32-bit number. A database may hold any other number too: it is kept as read.
enum class KernelType : std::uint32_t {
    OpenCL = 0,
    C = 1,
    RTL = 2,
    Unknown = 3, ///< The type of a new record, and of a kernel whose inputs never name one.
    HLS = 4,
};

/// The word that stands for the type in JSON, without quotes; "Unknown" for every number that is
/// not in the list above.
std::string_view label(KernelType type);

} // namespace consolidator
