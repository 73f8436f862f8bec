// Which paths there are, and who has each of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

/// The distinct paths in ascending order, which PathFinder wants, each with the numbers of those
/// who have it: kernels, or places in a list.
///
///     PathOwners owners({{"top/b", 0}, {"top/a", 1}, {"top/b", 2}});
///     PathFinder finder(owners.paths()); // top/a, top/b
///     owners.ownersOf(1)                 // 0, 2
///
/// The paths are views, and what they are views of must outlive this object. They are sorted, which
/// takes little memory and no hash.
class PathOwners {
public:
    using Entry = std::pair<std::string_view, std::uint32_t>; ///< A path and one of its owners.

    explicit PathOwners(std::vector<Entry> entries);

    /// A path's number is its position here.
    const std::vector<std::string_view>& paths() const { return paths_; }

    /// The owners of the path of this number, ascending and each once; at least one.
    std::span<const std::uint32_t> ownersOf(std::uint32_t path) const;

    /// How many owners all the paths have, together.
    std::size_t entryCount() const { return owners_.size(); }

private:
    std::vector<std::string_view> paths_;
    std::vector<std::size_t> ends_;     ///< Per path, where its owners end in the list.
    std::vector<std::uint32_t> owners_; ///< The owners of the first path, of the second, …
};

} // namespace consolidator
