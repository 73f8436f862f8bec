#include "inspect/diff/ListMatch.h"

namespace consolidator::inspect {

std::optional<std::pair<std::uint32_t, std::uint32_t>> ListMatch::firstOutOfOrder() const {
    // The positions after that have a partner, ascending: what the pairs' would be in order.
    std::uint32_t expected = 0;
    auto added = added_.begin();
    for (const auto& [before, after] : pairs_) {
        while (added != added_.end() && *added == expected) {
            ++added;
            ++expected;
        }
        if (after != expected) {
            return std::pair(expected, after);
        }
        ++expected;
    }
    return std::nullopt;
}

} // namespace consolidator::inspect
