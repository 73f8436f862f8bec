// Which elements of two lists belong together.
#pragma once

#include "shared/KeyedHash.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace consolidator::inspect {

/// What a condition is known by: kind, line, file and text.
using ConditionKey = std::tuple<std::uint32_t, std::uint32_t, std::string_view, std::string_view>;

/// The partners of two lists' elements. Takes time in the elements of both.
///
/// The first element of a key belongs to the other list's first one of this key, the second to the
/// second, and so on.
class ListMatch {
public:
    /// The two lists' keys, texts or ConditionKeys.
    template <typename Key>
    ListMatch(const std::vector<Key>& before, const std::vector<Key>& after);

    /// The positions in both lists of elements that belong together, in the order of the list
    /// before.
    const std::vector<std::pair<std::uint32_t, std::uint32_t>>& pairs() const { return pairs_; }

    /// The partner of an element of the list before.
    std::optional<std::uint32_t> partner(std::uint32_t position) const {
        return partners_[position];
    }

    /// Those that the list before has alone, ascending.
    const std::vector<std::uint32_t>& removed() const { return removed_; }

    /// Those that the list after has alone, ascending.
    const std::vector<std::uint32_t>& added() const { return added_; }

    /// Where pairs have another order in the list after: of the first pair that has, the position
    /// there, and that of the one whose place it has taken.
    std::optional<std::pair<std::uint32_t, std::uint32_t>> firstOutOfOrder() const;

private:
    struct Hash {
        std::size_t operator()(std::string_view text) const { return keyHash(text); }
        std::size_t operator()(const ConditionKey& key) const {
            const auto& [kind, line, file, text] = key;
            return KeyedHash().add(kind).add(line).add(file).add(text).value();
        }
    };

    static constexpr auto none = static_cast<std::uint32_t>(-1);

    std::vector<std::optional<std::uint32_t>> partners_;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs_;
    std::vector<std::uint32_t> removed_;
    std::vector<std::uint32_t> added_;
};

template <typename Key>
ListMatch::ListMatch(const std::vector<Key>& before, const std::vector<Key>& after) {
    // A chain for each key: its first position that has no partner yet, and from there to the next.
    std::unordered_map<Key, std::uint32_t, Hash> heads;
    std::vector<std::uint32_t> next(after.size(), none);
    for (auto position = static_cast<std::uint32_t>(after.size()); position-- > 0;) {
        const auto [head, isNew] = heads.try_emplace(after[position], position);
        if (!isNew) {
            next[position] = head->second;
            head->second = position;
        }
    }
    std::vector<bool> isTaken(after.size());
    for (std::uint32_t position = 0; position < before.size(); ++position) {
        const auto head = heads.find(before[position]);
        if (head == heads.end() || head->second == none) {
            partners_.emplace_back();
            removed_.push_back(position);
            continue;
        }
        const std::uint32_t partner = head->second;
        head->second = next[partner];
        isTaken[partner] = true;
        partners_.emplace_back(partner);
        pairs_.emplace_back(position, partner);
    }
    for (std::uint32_t position = 0; position < after.size(); ++position) {
        if (!isTaken[position]) {
            added_.push_back(position);
        }
    }
}

} // namespace consolidator::inspect
