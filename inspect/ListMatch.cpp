#include "inspect/ListMatch.h"

#include <algorithm>

namespace consolidator::inspect {

std::optional<std::pair<std::uint32_t, std::uint32_t>> ListMatch::firstOutOfOrder() const {
    std::vector<std::uint32_t> sorted;
    for (const auto& [before, after] : pairs_) {
        sorted.push_back(after);
    }
    std::ranges::sort(sorted);
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (sorted[i] != pairs_[i].second) {
            return std::pair(sorted[i], pairs_[i].second);
        }
    }
    return std::nullopt;
}

} // namespace consolidator::inspect
