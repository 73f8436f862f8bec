#include "inspect/NearestNames.h"

#include "inspect/Printable.h"

#include <algorithm>

namespace consolidator::inspect {

namespace {

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

NearestNames::NearestNames(std::string_view wanted)
    : wanted_(wanted), limit_(std::min<std::size_t>(1 + wanted.size() / 4, 4)) {}

void NearestNames::add(std::string_view name) {
    const std::size_t distance = editDistance(wanted_, name, limit_);
    const auto isName = [name](const auto& known) { return known.second == name; };
    if (distance > limit_ || std::ranges::any_of(nearest_, isName)) {
        return;
    }
    const auto isFarther = [distance](const auto& known) { return known.first > distance; };
    nearest_.insert(std::ranges::find_if(nearest_, isFarther), {distance, name});
    if (nearest_.size() > most) {
        nearest_.pop_back();
    }
}

std::vector<std::string_view> NearestNames::names() const {
    std::vector<std::string_view> result;
    for (const auto& [distance, name] : nearest_) {
        result.push_back(name);
    }
    return result;
}

std::string NearestNames::question() const {
    std::string text;
    for (std::size_t i = 0; i < nearest_.size(); ++i) {
        const bool isLast = i + 1 == nearest_.size();
        text += i == 0 ? "; did you mean " : isLast ? " or " : ", ";
        text += '"';
        text += shortPrintable(nearest_[i].second);
        text += '"';
    }
    return text.empty() ? text : text + '?';
}

} // namespace consolidator::inspect
