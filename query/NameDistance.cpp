#include "query/NameDistance.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace consolidator {

namespace {

/// What a name must share with a longer one, at least, to be taken for its beginning.
constexpr std::size_t shortestBeginning = 3;

constexpr std::size_t mostChanges = 3;

constexpr std::size_t mostTypos = 4;

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

std::size_t editDistance(std::string_view left, std::string_view right, std::size_t limit) {
    if (left.size() > right.size()) {
        std::swap(left, right);
    }
    if (right.size() - left.size() > limit) {
        return limit + 1;
    }
    // One row of the usual table: distances between the first bytes of left and each beginning of
    // right. Only those near its diagonal can be within the limit; the others stay above it.
    std::vector<std::size_t> row(right.size() + 1, limit + 1);
    for (std::size_t column = 0; column <= std::min(limit, right.size()); ++column) {
        row[column] = column;
    }
    for (std::size_t number = 1; number <= left.size(); ++number) {
        const std::size_t from = number > limit ? number - limit : 1;
        const std::size_t to = std::min(number + limit, right.size());
        std::size_t diagonal = row[from - 1];
        row[from - 1] = from == 1 ? std::min(number, limit + 1) : limit + 1;
        std::size_t least = row[from - 1];
        for (std::size_t column = from; column <= to; ++column) {
            const bool equal = lowered(left[number - 1]) == lowered(right[column - 1]);
            const std::size_t replaced = diagonal + (equal ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({replaced, row[column] + 1, row[column - 1] + 1, limit + 1});
            least = std::min(least, row[column]);
        }
        if (least > limit) {
            return limit + 1;
        }
    }
    return row.back();
}

std::optional<std::size_t> typoDistance(std::string_view typed, std::string_view name) {
    const std::size_t most = std::min(1 + typed.size() / 4, mostTypos);
    const std::size_t distance = editDistance(typed, name, most);
    return distance <= most ? std::optional(distance) : std::nullopt;
}

std::optional<std::size_t> nameDistance(std::string_view first, std::string_view second) {
    if (first.size() > second.size()) {
        std::swap(first, second);
    }
    if (first.empty() || second.size() > longestComparedName) {
        return std::nullopt;
    }
    const std::size_t most = std::min(mostChanges, second.size() / 4);
    const std::size_t changes = editDistance(first, second, most);
    if (changes > 0 && first.size() >= shortestBeginning && second.starts_with(first)) {
        return 2;
    }
    return changes <= most ? std::optional(1 + changes) : std::nullopt;
}

} // namespace consolidator
