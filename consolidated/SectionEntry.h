// One entry of a consolidated file's section table.
#pragma once

#include <cstdint>

namespace consolidator {

/// What a section holds. A file may carry other numbers, of sections that this program does not
/// know.
enum class SectionType : std::uint32_t {
    ProjectName = 0, ///< The project's name, without a terminator.
    Dwarf = 1,       ///< A DWARF blob, byte for byte as it was given.
    KernelData = 2,  ///< The kernel count, then each kernel in its binary form.
    KernelJson = 3,  ///< The kernels as a JSON text, closed by a zero byte.
};

/// A table entry as it stands in the file, 24 bytes. The two paddings are kept as they are read.
struct SectionEntry {
    std::uint32_t type = 0; ///< A SectionType, or another number.
    std::uint32_t padding1 = 0;
    std::uint64_t offset = 0; ///< Of the payload, in bytes from the start of the file.
    std::uint32_t size = 0;   ///< Of the payload, in bytes.
    std::uint32_t padding2 = 0;

    /// A new entry, whose payload has no place yet.
    static SectionEntry make(SectionType type, std::uint32_t size) {
        return {.type = static_cast<std::uint32_t>(type), .size = size};
    }

    bool is(SectionType wanted) const { return type == static_cast<std::uint32_t>(wanted); }

    bool operator==(const SectionEntry&) const = default;
};

static_assert(sizeof(SectionEntry) == 24);

} // namespace consolidator
