#include "shared/PathOwners.h"

#include <algorithm>

namespace consolidator {

PathOwners::PathOwners(std::vector<Entry> entries) {
    // By path and then by owner, so that the owners of each path are ascending too.
    std::ranges::sort(entries);
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    owners_.reserve(entries.size());
    for (const auto& [path, owner] : entries) {
        if (paths_.empty() || paths_.back() != path) {
            paths_.push_back(path);
            ends_.push_back(owners_.size());
        }
        owners_.push_back(owner);
        ++ends_.back();
    }
}

std::span<const std::uint32_t> PathOwners::ownersOf(std::uint32_t path) const {
    const std::size_t first = path == 0 ? 0 : ends_[path - 1];
    return std::span(owners_).subspan(first, ends_[path] - first);
}

} // namespace consolidator
