#include "inspect/NameDistance.h"

#include <algorithm>
#include <array>
#include <utility>

namespace consolidator::inspect {

namespace {

/// What a name must share with a longer one, at least, to be taken for its beginning.
constexpr std::size_t shortestBeginning = 3;

constexpr std::size_t mostChanges = 3;

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isEqualButForCase(std::string_view first, std::string_view second) {
    return std::ranges::equal(first, second, {}, lower, lower);
}

/// The edit distance of Levenshtein, row by row. `first` is the shorter name.
std::size_t changesBetween(std::string_view first, std::string_view second) {
    std::array<std::size_t, longestComparedName + 1> row{};
    for (std::size_t i = 0; i <= first.size(); ++i) {
        row.at(i) = i;
    }
    for (std::size_t j = 1; j <= second.size(); ++j) {
        std::size_t diagonal = std::exchange(row[0], j);
        for (std::size_t i = 1; i <= first.size(); ++i) {
            const std::size_t replaced = diagonal + (first[i - 1] == second[j - 1] ? 0U : 1U);
            diagonal = row.at(i);
            row.at(i) = std::min({replaced, row.at(i) + 1, row.at(i - 1) + 1});
        }
    }
    return row.at(first.size());
}

} // namespace

std::optional<std::size_t> nameDistance(std::string_view first, std::string_view second) {
    if (first.size() > second.size()) {
        std::swap(first, second);
    }
    if (first.empty() || second.size() > longestComparedName) {
        return std::nullopt;
    }
    if (isEqualButForCase(first, second)) {
        return 1;
    }
    if (first.size() >= shortestBeginning && second.starts_with(first)) {
        return 2;
    }
    const std::size_t most = std::min(mostChanges, second.size() / 4);
    if (second.size() - first.size() > most) {
        return std::nullopt;
    }
    const std::size_t changes = changesBetween(first, second);
    return changes <= most ? std::optional(1 + changes) : std::nullopt;
}

} // namespace consolidator::inspect
