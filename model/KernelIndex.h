// Which kernels of a list have an instance path.
#pragma once

#include "model/Kernel.h"
#include "shared/PathOwners.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

/// The distinct paths in ascending order, each with its kernels.
///
/// They are views of the kernels' own: the kernels must outlive the index, stay where they are, and
/// keep their instance paths. Adding registers to them is harmless.
class KernelIndex {
public:
    /// The instance paths of the kernels that have at most `longest` bytes.
    static KernelIndex ofInstancePaths(const std::vector<Kernel>& kernels, std::size_t longest);

    /// A text's number is its position here.
    const std::vector<std::string_view>& texts() const { return owners_.paths(); }

    /// The positions of the kernels that have the text of this number, ascending and each once.
    std::span<const std::uint32_t> kernelsOf(std::uint32_t number) const {
        return owners_.ownersOf(number);
    }

    /// How many kernels all the texts have, together.
    std::size_t entryCount() const { return owners_.entryCount(); }

private:
    explicit KernelIndex(std::vector<PathOwners::Entry> entries) : owners_(std::move(entries)) {}

    PathOwners owners_;
};

} // namespace consolidator
