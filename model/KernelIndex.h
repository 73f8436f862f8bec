// Which kernels of a list have an instance path.
#pragma once

#include "model/Kernel.h"

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
///
/// The paths are sorted, which takes little memory, and gives PathFinder the order that it needs.
class KernelIndex {
public:
    /// The instance paths of the kernels that have at most `longest` bytes.
    static KernelIndex ofInstancePaths(const std::vector<Kernel>& kernels, std::size_t longest);

    /// A text's number is its position here.
    const std::vector<std::string_view>& texts() const { return texts_; }

    /// The positions of the kernels that have the text of this number, ascending and each once.
    std::span<const std::uint32_t> kernelsOf(std::uint32_t number) const;

    /// How many kernels all the texts have, together.
    std::size_t entryCount() const { return kernels_.size(); }

private:
    using Entry = std::pair<std::string_view, std::uint32_t>; ///< A text and one of its kernels.

    explicit KernelIndex(std::vector<Entry> entries);

    std::vector<std::string_view> texts_;
    std::vector<std::size_t> ends_;      ///< Per text, where its kernels end in the list.
    std::vector<std::uint32_t> kernels_; ///< The kernels of the first text, of the second, …
};

} // namespace consolidator
