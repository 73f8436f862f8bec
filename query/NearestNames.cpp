#include "query/NearestNames.h"

#include "query/NameDistance.h"
#include "shared/Printable.h"

#include <algorithm>

namespace consolidator {

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
    result.reserve(nearest_.size());
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

} // namespace consolidator
